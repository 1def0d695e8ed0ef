#pragma once
// Where the running executable lives, and the process environment.

#include "text/fixed_string.h"

#include <QString>

// The folder of the running executable with a trailing backslash, in UTF-16
// and of any length. argv0 stands in only when the module's own file name
// cannot be obtained. False when the result is empty.
bool appFolder(const char* argv0, QString& folder);

// Empty when the variable is unset. "ProgramFiles" prefers ProgramW6432, so a
// 32-bit process also gets the 64-bit program folder.
QString getEnv(const QString& name);

// The platform-neutral steps of appFolder, testable without Win32.

// True when argv0 is a relative path with a folder part (it does not begin
// with "\", has no drive and contains a "\"): the one case that needs the
// current directory.
bool argv0NeedsCurrentDirectory(const char* argv0);

// The executable path that argv0 gives: cut at 250, cleared when shorter than
// 4 characters; a relative path with a folder part is made absolute against
// currentDirectory, folding each "..\" of argv0 into it, and stays relative
// when currentDirectory has 3 characters or fewer.
FixedNarrowString250 executablePathFromArgv0(const char* argv0, FixedNarrowString250 currentDirectory);

// Replaces an executable path by its folder. False when the path is empty.
bool toExecutableFolder(FixedNarrowString250& path);
