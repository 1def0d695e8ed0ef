#include "app/wildcard.h"

#include "app/folder_run.h"
#include "sweep/dir_listing.h"
#include "sweep/file_ops.h"
#include "text/platform_printf.h"

namespace {

enum class EntryKind { missing, link, other };

// The entry a path names, as its folder's listing shows it.
EntryKind entryKind(const QString& path)
{
    WIN32_FIND_DATAW data;
    const HANDLE found = FindFirstFileExW(asWide(patternForSearchCall(path).utf16()), FindExInfoBasic, &data,
                                          FindExSearchNameMatch, nullptr, 0);
    if (found == INVALID_HANDLE_VALUE)
        return EntryKind::missing;
    FindClose(found);
    return isLinkEntry(data.dwFileAttributes, data.dwReserved0) ? EntryKind::link : EntryKind::other;
}

// Whether a folder of the path, from index `from` on, is a link. The test ends
// at the first one that is missing: the folder run reports that.
bool isReachedThroughLink(const QString& path, qsizetype from)
{
    while (from < path.size()) {
        qsizetype end = path.indexOf(QLatin1Char('\\'), from);
        if (end < 0)
            end = path.size();
        if (end > from) {
            const EntryKind kind = entryKind(path.left(end));
            if (kind != EntryKind::other)
                return kind == EntryKind::link;
        }
        from = end + 1;
    }
    return false;
}

// What the command line names before its first "*" is the admin's own choice,
// links included. Below it every folder is one that a user may have made, so
// none may lead elsewhere: linksFrom is where that part of the path begins,
// -1 while no "*" has been expanded.
void expandFrom(const QString& path, qsizetype linksFrom, const RunOptions& options)
{
    if (!path.contains(QLatin1Char('*'))) {
        if (linksFrom >= 0 && isReachedThroughLink(path, linksFrom)) {
            platformPrintf("Warning: directory %s is reached through a link, skipped!\n", path.toLatin1().constData());
            return;
        }
        runFolder(path, options);
        return;
    }
    const WildcardParts parts = splitAtFirstWildcard(path);
    if (parts.base.isEmpty())
        return;
    if (linksFrom < 0)
        linksFrom = parts.base.size();

    DirListingHandle listing = nullptr;
    listing::create(listing);
    listing::addSuffixFilter(listing, parts.nameEnd);
    listing::open(listing, parts.base + parts.nameStart + QLatin1Char('*'), true, false, false, false);
    // A "*" matches neither files nor links.
    while (listing::next(listing)) {
        if (listing::isFolder(listing) && !listing::isLink(listing))
            expandFrom(parts.base + listing::name(listing) + parts.rest, linksFrom, options);
    }
    listing::destroy(listing);
}

}

// The text between the "*" and the next backslash goes to the listing as a
// suffix filter, which applies to files only: it does not narrow the folders
// that match, and it is not put back into the built path. That is the tool's
// long-standing behaviour, kept on purpose.
void expandWildcardFolders(QString path, const RunOptions& options)
{
    expandFrom(path, -1, options);
}
