#pragma once
// Where the running executable lives, and the process environment.

#include "text/fixed_string.h"

#include <QString>

// The folder of the running executable with a trailing backslash. argv0 stands
// in only when the module's own file name cannot be obtained. False when the
// result is empty.
bool appFolder(const char* argv0, FixedNarrowString250& folder);

// One folder up, keeping the trailing backslash; drive and share roots stay.
FixedNarrowString250 parentFolderNarrow(FixedNarrowString250& path);

// Empty when the variable is unset. "ProgramFiles" prefers ProgramW6432, so a
// 32-bit process also gets the 64-bit program folder.
QString getEnv(const QString& name);
