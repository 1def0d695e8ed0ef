#include "sweep/listing_rules.h"

namespace {

const QChar kBackslash = QLatin1Char('\\');

// Up to and including the last backslash; empty when there is none.
QString folderPart(const QString& path)
{
    return path.left(path.lastIndexOf(kBackslash) + 1);
}

void swapEntries(EntryLists& lists, qsizetype i, qsizetype j)
{
    lists.names.swapItemsAt(i, j);
    lists.times.swapItemsAt(i, j);
    lists.sizes.swapItemsAt(i, j);
    lists.folderFlags.swapItemsAt(i, j);
    lists.linkFlags.swapItemsAt(i, j);
}

bool comesBefore(const QString& a, const QString& b, bool descending)
{
    return descending ? b < a : a < b;
}

// Hoare's partition around the name at the lower middle index.
void quickSort(EntryLists& lists, qsizetype first, qsizetype last, bool descending)
{
    while (first < last) {
        const QString pivot = lists.names.at(first + (last - first) / 2);
        qsizetype i = first;
        qsizetype j = last;
        while (i <= j) {
            while (comesBefore(lists.names.at(i), pivot, descending))
                ++i;
            while (comesBefore(pivot, lists.names.at(j), descending))
                --j;
            if (i <= j) {
                swapEntries(lists, i, j);
                ++i;
                --j;
            }
        }
        // The smaller side is sorted by recursion and the larger one by the
        // loop, so the stack stays shallow even for unlucky pivots.
        if (j - first < last - i) {
            quickSort(lists, first, j, descending);
            first = i;
        } else {
            quickSort(lists, i, last, descending);
            last = j;
        }
    }
}

// QString's endsWith, startsWith or contains, each asked ignoring case.
using NameTest = bool (QString::*)(const QString&, Qt::CaseSensitivity) const;

bool anyMatches(const QString& name, const QStringList& texts, NameTest test)
{
    for (const QString& text : texts) {
        if ((name.*test)(text, Qt::CaseInsensitive))
            return true;
    }
    return false;
}

}

ListingPaths listingPaths(const QString& folder, bool (*isExistingFile)(const QString&))
{
    ListingPaths paths;
    paths.folder = folder;
    paths.folder.replace(QLatin1Char('/'), kBackslash);
    paths.searchPattern = paths.folder;

    if (paths.folder.endsWith(QLatin1Char('*'))) {
        paths.prefix = folderPart(paths.folder);
    } else if (isExistingFile(paths.folder)) {
        // Searching for the file's own name yields that one file.
        paths.prefix = folderPart(paths.folder);
    } else if (paths.folder.endsWith(kBackslash)) {
        paths.prefix = paths.folder;
        paths.searchPattern = paths.prefix + QLatin1Char('*');
    } else {
        paths.prefix = paths.folder + kBackslash;
        paths.searchPattern = paths.prefix + QLatin1Char('*');
    }
    return paths;
}

QString folderPrefix(const QString& folder)
{
    QString prefix = folder;
    prefix.replace(QLatin1Char('/'), kBackslash);
    if (!prefix.endsWith(kBackslash))
        prefix.append(kBackslash);
    return prefix;
}

// A last-write time whose upper word is zero lies within 430 seconds of 1601,
// which no real write does; the creation time stands in for it.
TimeStamp entryTime(std::uint32_t writeLow, std::uint32_t writeHigh, std::uint32_t creationLow,
                    std::uint32_t creationHigh)
{
    if (writeHigh == 0)
        return fileTimeToSeconds(creationLow, creationHigh);
    return fileTimeToSeconds(writeLow, writeHigh);
}

bool acceptsFolder(const QString& name, bool includeFolders)
{
    return includeFolders && name != QLatin1String(".") && name != QLatin1String("..");
}

bool acceptsFile(const QString& name, const QStringList& suffixFilters, const QStringList& prefixFilters,
                 const QStringList& containsFilters)
{
    bool accepted = true;
    if (!suffixFilters.isEmpty())
        accepted = anyMatches(name, suffixFilters, &QString::endsWith);
    if (!prefixFilters.isEmpty())
        accepted = anyMatches(name, prefixFilters, &QString::startsWith);
    if (!containsFilters.isEmpty())
        accepted = anyMatches(name, containsFilters, &QString::contains);
    return accepted;
}

void sortEntries(EntryLists lists, bool descending)
{
    const qsizetype count = lists.names.size();
    if (lists.times.size() != count || lists.sizes.size() != count || lists.folderFlags.size() != count
        || lists.linkFlags.size() != count)
        return;
    quickSort(lists, 0, count - 1, descending);
}
