#pragma once
// Where the program reads its shipped files from and writes its own files to.

#include <string>

namespace sheafwork {

/// The base of every program's per-user data: $XDG_DATA_HOME, else
/// ~/.local/share (the temporary folder without a home).
std::string UserDataHome();

/// The per-user folder for the files the program writes by default (the two
/// logs, the scratch drawing): $XDG_DATA_HOME/sheafwork, else
/// ~/.local/share/sheafwork. Only the name: whoever writes there first
/// creates it.
std::string UserDataFolder();

/// The per-user folder for what the program keeps only to go faster (it may
/// be deleted at any time): $XDG_CACHE_HOME/sheafwork, else
/// ~/.cache/sheafwork. Only the name, as above.
std::string UserCacheFolder();

/// The folder of the running program's executable; empty when the system
/// cannot tell.
std::string ProgramFolder();

}  // namespace sheafwork
