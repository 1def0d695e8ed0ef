#pragma once
// Paths named on the command line and in the installation on a Windows file
// system: existence, the long-path rule, the deletion error text.

#include "sweep/file_time.h"

#include <QString>

#include <cstdint>

// A path of this many units or more gets the \\?\ prefix.
constexpr int kLongPathThreshold = 240;

bool needsLongPathPrefix(int length);

// \\server\share\x becomes \\?\UNC\server\share\x, anything else gets \\?\ in
// front. Slashes, relative paths and an existing prefix are left as they are.
QString withLongPathPrefix(const QString& path);

// What the Win32 calls receive: the path with the prefix when the rule asks for
// it. A path is never cut, so a call acts on the entry it was given or fails,
// never on another one whose path happens to begin the same way.
QString pathForFileCall(const QString& path);

// What a Win32 call is given for a path named on the command line: a short
// path as named, so a relative one is taken from the current folder; a long
// one made absolute with the long-path prefix, which only whole paths take.
QString platformPath(const QString& path);

// The path made absolute against the current folder; as given when that fails.
QString absolutePath(const QString& path);

bool fileExists(const QString& path);
bool folderExists(QString path);
// The same, with why it is not there: the system's error, or ERROR_SUCCESS
// when something other than a folder is.
bool folderExists(QString path, std::uint32_t& error);

// The text with a full stop at its end, never two.
QString withFullStop(const QString& text);

// "Unable to delete file; <system text>." for a deletion that failed so.
QString deletionFailureText(std::uint32_t error);
