#pragma once
// The rules of the directory listing that need no platform call: which
// entries it yields, how it dates them and how it builds their paths.

#include "sweep/file_time.h"

#include <QString>

#include <cstdint>

// What a listing of the folder puts in front of each name to make its full
// path: the folder with backslashes for slashes, ending in one backslash.
QString folderPrefix(const QString& folder);

// The last-write time, or the creation time when the last-write time's upper
// word is zero.
TimeStamp entryTime(std::uint32_t writeLow, std::uint32_t writeHigh, std::uint32_t creationLow,
                    std::uint32_t creationHigh);

// "." and ".." stand for the folder and its parent, not for entries of it.
// Other names beginning with a dot, such as ".git", are entries.
bool isSelfOrParent(const QString& name);
