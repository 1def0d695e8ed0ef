#pragma once
// Single files and folders on a Windows file system: existence, time and size,
// deletion with its error text, removal of an empty folder, the long-path rule.

#include "sweep/file_time.h"

#include <QString>

#include <cstdint>

// File operations give a path of this many units or more the \\?\ prefix;
// a search pattern needs more than this many.
constexpr int kLongPathThreshold = 240;

bool needsLongPathPrefix(int length);
bool searchNeedsLongPathPrefix(int length);

// \\server\share\x becomes \\?\UNC\server\share\x, anything else gets \\?\ in
// front. Slashes, relative paths and an existing prefix are left as they are.
QString withLongPathPrefix(const QString& path);

// What the Win32 calls receive: the path with the prefix when the rule asks for
// it. A path is never cut, so a call acts on the entry it was given or fails,
// never on another one whose path happens to begin the same way.
QString pathForFileCall(const QString& path);
QString patternForSearchCall(const QString& pattern);

// What a Win32 call is given for a path named on the command line: a short
// path as named, so a relative one is taken from the current folder; a long
// one made absolute with the long-path prefix, which only whole paths take.
QString platformPath(const QString& path);

// The path made absolute against the current folder; as given when that fails.
QString absolutePath(const QString& path);

// The folder part of a path, ending in a backslash.
QString folderOfPath(QString path);

bool fileExists(const QString& path);
bool folderExists(QString path);
bool fileTimeAndSize(const QString& path, TimeStamp* time, std::int64_t* size);

// Empty on success, and for a file that has already vanished; otherwise
// "Unable to delete file; <system text>.".
QString deleteFile(const QString& path);

// "Unable to delete file; <system text>." for a deletion that failed so.
QString deletionFailureText(std::uint32_t error);

bool removeFolder(const QString& path);
