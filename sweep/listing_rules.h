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

// Attribute bits and reparse tags as the platform defines them.
constexpr std::uint32_t kAttributeReparsePoint = 0x00000400;
constexpr std::uint32_t kAttributeOffline = 0x00001000;
constexpr std::uint32_t kAttributeRecallOnOpen = 0x00040000;
constexpr std::uint32_t kAttributeRecallOnDataAccess = 0x00400000;
constexpr std::uint32_t kReparseTagCloud = 0x9000001A;
// The cloud-files tags differ from kReparseTagCloud only in these bits.
constexpr std::uint32_t kReparseTagCloudMask = 0x0000F000;

bool isCloudFilesTag(std::uint32_t reparseTag);

// An entry whose data is not on this machine: offline, recalled from elsewhere
// when opened or read, or a cloud-files placeholder, whose deletion would
// delete the cloud's copy too. The sweep keeps it and never enters it.
bool isOfflineEntry(std::uint32_t attributes, std::uint32_t reparseTag);

// "." and ".." stand for the folder and its parent, not for entries of it.
// Other names beginning with a dot, such as ".git", are entries.
bool isSelfOrParent(const QString& name);
