#pragma once
// The entries of one folder, read through a handle held on it: name, full
// path, folder flag, link flag, time and size. The whole folder is read before
// the first entry is served, so the caller may delete entries while it walks
// through them.

#include "sweep/file_time.h"
#include "sweep/win32.h"

#include <QList>
#include <QString>
#include <QStringList>

#include <cstdint>

struct DirListing;

// The slot through which the caller owns its listing.
using DirListingHandle = DirListing*;

struct DirListing {
    bool isOpen = false;
    QString prefix;
    std::int32_t index = -1;
    QStringList names;
    QList<TimeStamp> times;
    QList<std::int64_t> sizes;
    QList<bool> folderFlags;
    QList<bool> linkFlags;
};

// A link to another folder: a reparse point whose tag names another place
// (junctions, mount points, symbolic links), or whose tag is zero or not known
// to keep its data in place. Wine shows a Linux symbolic link to a folder as a
// reparse point with tag zero. Data placeholders, such as cloud files, are
// ordinary entries.
bool isLinkEntry(DWORD attributes, DWORD reparseTag);

namespace listing {

void create(DirListingHandle& handle);

// Reads the whole folder through the handle held on it; "." and ".." are left
// out. Full paths are the folder's path, a backslash and the name.
// ERROR_SUCCESS, or why the folder could not be read to its end: what was read
// until then is served.
DWORD open(DirListingHandle& handle, HANDLE folder, const QString& folderPath);
bool next(DirListingHandle& handle);

bool isFolder(DirListingHandle& handle);
bool isLink(DirListingHandle& handle);
QString name(DirListingHandle& handle);
QString fullPath(DirListingHandle& handle);
TimeStamp time(DirListingHandle& handle);
std::int64_t size(DirListingHandle& handle);

void destroy(DirListingHandle& handle);

}
