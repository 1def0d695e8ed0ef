// LEAD NOTE, delete this line before committing: read NOTE-FROM-LEAD.md at the top of your worktree first; it holds the rules your brief's {COMMON} placeholder stood for.
#pragma once
// Single files and folders on a Windows file system: existence, time and size,
// deletion with its error text, removal of an empty folder, the long-path rule.

#include "sweep/file_time.h"
#include "text/fixed_string.h"

#include <QString>

#include <cstdint>

// File operations give a path of this many units or more the \\?\ prefix;
// a search pattern needs more than this many.
constexpr int kLongPathThreshold = 240;

bool needsLongPathPrefix(int length);
bool searchNeedsLongPathPrefix(int length);

// \\server\share\x becomes \\?\UNC\server\share\x, anything else gets \\?\ in
// front. Slashes, relative paths and an existing prefix are left as they are.
const FixedWideString& withLongPathPrefix(FixedWideString& destination, const FixedWideString& source);

// What the Win32 calls receive: the path cut at 500 units, with the prefix when
// the rule asks for it, the result cut at 500 again.
FixedWideString pathForFileCall(const FixedWideString& path);
FixedWideString patternForSearchCall(const QString& pattern);

// The folder part of a path, ending in a backslash.
QString folderOfPath(QString path);

bool fileExists(const QString& path);
bool fileExists(const FixedWideString& path);
bool folderExists(QString path);
bool fileTimeAndSize(const QString& path, TimeStamp* time, std::int64_t* size);
bool fileTimeAndSize(const FixedWideString& path, TimeStamp* time, std::int64_t* size);

// Empty on success, and for a file that has already vanished; otherwise
// "Unable to delete file; <system text>.".
QString deleteFile(const QString& path);

bool removeFolder(const QString& path);
