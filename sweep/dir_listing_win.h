#pragma once
// The entries of one folder, read through a handle held on it: name, full
// path, kind, time and size. The whole folder is read before
// the first entry is served, so the caller may delete entries while it walks
// through them.

#include "sweep/file_time.h"
#include "sweep/listing_rules.h"
#include "sweep/packed_entries.h"
#include "sweep/win32.h"

#include <QString>

#include <cstdint>

struct DirListing {
    bool isOpen = false;
    QString prefix;
    AgeBy ageBy = AgeBy::Write;
    bool atVolumeRoot = false;
    PackedEntries entries;
    // The entry served now.
    EntryValues values;
    QString name;
};

namespace listing {

void create(DirListing*& handle);

// Reads the whole folder through the handle held on it; "." and ".." are left
// out. Full paths are the folder's path, a backslash and the name.
// Each entry's time is the one its age counts from under ageBy, decided as it
// is listed, so a record holds one time.
// atVolumeRoot says the folder is a volume's root, where the system keeps
// entries of its own.
// ERROR_SUCCESS, or why the folder could not be read to its end: what was read
// until then is served.
DWORD open(DirListing*& handle, HANDLE folder, const QString& folderPath, AgeBy ageBy = AgeBy::Write,
           bool atVolumeRoot = false);
bool next(DirListing*& handle);

bool isFolder(DirListing*& handle);
EntryKind kind(DirListing*& handle);
bool isReadOnly(DirListing*& handle);
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
