#pragma once
// The rules of the directory listing that need no platform call: where a
// listing searches, which entries it yields, how it dates and sorts them.

#include "sweep/file_time.h"

#include <QList>
#include <QString>
#include <QStringList>

#include <cstdint>

struct ListingPaths {
    QString folder;
    QString prefix;
    QString searchPattern;
};

// The folder, with slashes turned into backslashes, is searched as a pattern
// when it ends in "*", as the single file it names when isExistingFile says
// so, and otherwise as a folder. Full paths are prefix + name.
ListingPaths listingPaths(const QString& folder, bool (*isExistingFile)(const QString&));

// What a listing of the folder puts in front of each name to make its full
// path: the folder with backslashes for slashes, ending in one backslash.
QString folderPrefix(const QString& folder);

// The last-write time, or the creation time when the last-write time's upper
// word is zero.
TimeStamp entryTime(std::uint32_t writeLow, std::uint32_t writeHigh, std::uint32_t creationLow,
                    std::uint32_t creationHigh);

bool acceptsFolder(const QString& name, bool includeFolders);

// Every file passes while all lists are empty. Otherwise each non-empty list,
// suffixes first, then prefixes, then contained texts, overrides the verdict
// of the one before.
bool acceptsFile(const QString& name, const QStringList& suffixFilters, const QStringList& prefixFilters,
                 const QStringList& containsFilters);

// What the listing keeps of each entry, one list per property, entry i of each
// list belonging to the same directory entry.
struct EntryLists {
    QStringList& names;
    QList<TimeStamp>& times;
    QList<std::int64_t>& sizes;
    QList<bool>& folderFlags;
    QList<bool>& linkFlags;
};

// Sorts by name with QString's operator<; the entry's other properties move
// with its name. Lists of different lengths are left alone.
void sortEntries(EntryLists lists, bool descending);
