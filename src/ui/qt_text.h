#pragma once
// Text between the core (UTF-8 std::string) and Qt (QString), and the string
// table's texts in the forms Qt widgets take.
#include <QString>
#include <QStringList>
#include <string>
#include <string_view>

namespace sheafwork::ui {

inline QString Q(std::string_view text) {
  return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}
inline std::string S(const QString& text) { return text.toStdString(); }

/// The string-table text of `id`.
QString Res(int id);

/// A file-dialog filter of the string table ("description|pattern|...") as
/// a Qt name filter list ("description (pattern pattern);;..."). A pattern
/// list at the end of a description is replaced by the pair's own.
QString QtNameFilters(std::string_view tableFilter);

/// The add-drawing dialog's filter: the string table's drawings and
/// templates, with DXF drawings (the embedded host's own format) added to
/// the first pair and as a pair of their own.
std::string DrawingFilter();

/// The first pattern of each pair, for the suffix a save dialog adds.
QString FirstSuffix(std::string_view tableFilter);

/// The captions of one menu, in order, with no two sharing a mnemonic (the
/// letter after "&"): a caption whose letter an earlier one took gets the
/// first free initial of its words, else its first free letter; it keeps
/// its letter when none is free. The text itself is never changed.
QStringList DistinctMnemonics(const QStringList& captions);

}  // namespace sheafwork::ui
