#pragma once
// Names for the string-table ids the code asks for.

namespace sheafwork::ids {

inline constexpr int kAppTitle = 31;            // "Utilitaire de traçage en différé Orvane"
inline constexpr int kLayoutCurrentTab = 72;    // "*Onglet courant*"
inline constexpr int kDefault = 76;             // "Par défaut"
inline constexpr int kColumnFirst = 78;         // "Fichier de dessin" .. 82
inline constexpr int kConfirmRemoveTitle = 86;  // "Confirmer la suppression de plusieurs fichiers"
inline constexpr int kConfirmRemove = 87;
inline constexpr int kErrorTitle = 88;  // "Erreur de traçage en différé Orvane"
inline constexpr int kEmptyList = 89;   // "Liste de lots vide"
inline constexpr int kSaveCurrentList = 90;
inline constexpr int kListFileNotValid = 91;
inline constexpr int kListFileLoadProblem = 92;
inline constexpr int kOpenListTitle = 93;
inline constexpr int kListFilter = 94;
inline constexpr int kCaptionPrefix = 95;  // "Utilitaire de traçage en différé Orvane - "
inline constexpr int kAppendListTitle = 96;
inline constexpr int kSaveListTitle = 97;
inline constexpr int kListFileSaveProblem = 98;
inline constexpr int kJournalWriteProblem = 99;
inline constexpr int kJournalNotAccessible = 123;
inline constexpr int kFileNameNotValid = 307;
inline constexpr int kJournalNameNotValid = 309;
inline constexpr int kErrorLogNameNotValid = 310;

}  // namespace sheafwork::ids
