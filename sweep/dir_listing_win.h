#pragma once
// The entries of one folder, read through a handle held on it: name, full
// path, folder flag, link flag, time and size. The whole folder is read before
// the first entry is served, so the caller may delete entries while it walks
// through them.

#include "sweep/file_time.h"
#include "sweep/listing_rules.h"
#include "sweep/win32.h"

#include <QString>

#include <cstdint>
#include <deque>
#include <string>

// One listed entry, kept as small as the sweep's decisions allow: a folder of
// hundreds of thousands of entries is listed whole before anything in it is
// deleted. Its name lies in the listing's name blocks.
struct ListedEntry {
    TimeStamp time = 0;
    std::int64_t size = 0;
    std::int64_t allocation = 0;
    std::uint32_t nameBlock = 0;
    std::uint16_t nameStart = 0;
    std::uint16_t nameLength = 0;
    std::uint8_t flags = 0;
};
// Every 8 bytes more cost 3.2 MB in a folder of 400,000 entries.
static_assert(sizeof(ListedEntry) <= 40, "a listed entry grew");

struct DirListing {
    bool isOpen = false;
    QString prefix;
    AgeBy ageBy = AgeBy::Write;
    std::int32_t index = -1;
    // Chunked, so a long listing never copies itself to grow.
    std::deque<ListedEntry> entries;
    // Names side by side in blocks of at most 65,535 units; a name never spans
    // two blocks.
    std::deque<std::u16string> nameBlocks;
};

namespace listing {

void create(DirListing*& handle);

// Reads the whole folder through the handle held on it; "." and ".." are left
// out. Full paths are the folder's path, a backslash and the name.
// Each entry's time is the one its age counts from under ageBy, decided as it
// is listed, so a record holds one time.
// ERROR_SUCCESS, or why the folder could not be read to its end: what was read
// until then is served.
DWORD open(DirListing*& handle, HANDLE folder, const QString& folderPath, AgeBy ageBy = AgeBy::Write);
bool next(DirListing*& handle);

bool isFolder(DirListing*& handle);
bool isLink(DirListing*& handle);
bool isReadOnly(DirListing*& handle);
// The entry's data is not on this machine.
bool isOffline(DirListing*& handle);
// Deleting the entry frees the space it takes.
bool freesSpace(DirListing*& handle);
QString name(DirListing*& handle);
QString fullPath(DirListing*& handle);
TimeStamp time(DirListing*& handle);
std::int64_t size(DirListing*& handle);
// The space the entry takes on its drive: what its deletion frees. Data kept
// in the file table, compressed or sparse takes less than its size.
std::int64_t allocation(DirListing*& handle);

void destroy(DirListing*& handle);

}
