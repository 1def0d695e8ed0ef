#pragma once
// The entries of one folder through the Win32 directory search: name, full
// path, folder flag, time and size. The sweep reads each folder completely
// first, so that it can delete entries while it walks through them.

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
    bool fromLists = false;
    bool namesAreFullPaths = false;
    bool haveLists = false;
    bool includeFolders = false;
    QString folder;
    QString prefix;
    QStringList prefixFilters;
    QStringList suffixFilters;
    QStringList containsFilters;
    QString searchPattern;
    bool statDone = false;
    std::int32_t index = -1;
    TimeStamp statTime = 0;
    std::int64_t statSize = 0;
    bool statIsFolder = false;
    WIN32_FIND_DATAW findData = {};
    HANDLE findHandle = INVALID_HANDLE_VALUE;
    QStringList names;
    QList<TimeStamp> times;
    QList<std::int64_t> sizes;
    QList<bool> folderFlags;
    QList<bool> linkFlags;
    DirListingHandle* owner = nullptr;
};

// A link to another folder: a reparse point whose tag names another place
// (junctions, mount points, symbolic links), or whose tag is zero or not known
// to keep its data in place. Wine shows a Linux symbolic link to a folder as a
// reparse point with tag zero. Data placeholders, such as cloud files, are
// ordinary entries.
bool isLinkEntry(DWORD attributes, DWORD reparseTag);

namespace listing {

void create(DirListingHandle& handle);
void open(DirListingHandle& handle, const QString& folder, bool includeFolders, bool readAllFirst, bool sort,
          bool descending);
// Reads the whole folder through a handle held on it, as open does with
// readAllFirst and includeFolders; full paths are the folder's path, a
// backslash and the name. ERROR_SUCCESS, or why the folder could not be read
// to its end: what was read until then is served.
DWORD openHeld(DirListingHandle& handle, HANDLE folder, const QString& folderPath);
bool next(DirListingHandle& handle);

bool isFolder(DirListingHandle& handle);
bool isLink(DirListingHandle& handle);
QString name(DirListingHandle& handle);
QString fullPath(DirListingHandle& handle);
TimeStamp time(DirListingHandle& handle);
std::int64_t size(DirListingHandle& handle);

// An empty text is ignored.
void addSuffixFilter(DirListingHandle& handle, const QString& text);
void addPrefixFilter(DirListingHandle& handle, const QString& text);
void addContainsFilter(DirListingHandle& handle, const QString& text);

void close(DirListingHandle& handle);
void destroy(DirListingHandle& handle);

}
