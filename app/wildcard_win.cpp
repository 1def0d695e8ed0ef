#include "app/wildcard.h"

#include "app/folder_run.h"
#include "sweep/dir_listing.h"

// The text between the "*" and the next backslash goes to the listing as a
// suffix filter, which applies to files only: it does not narrow the folders
// that match, and it is not put back into the built path. That is the tool's
// long-standing behaviour, kept on purpose.
void expandWildcardFolders(QString path, std::int32_t& daysOld, bool& verbose)
{
    if (!path.contains(QLatin1Char('*'))) {
        runFolder(path, daysOld, verbose);
        return;
    }
    const WildcardParts parts = splitAtFirstWildcard(path);
    if (parts.base.isEmpty())
        return;

    DirListingHandle listing = nullptr;
    listing::create(listing);
    listing::addSuffixFilter(listing, parts.nameEnd);
    listing::open(listing, parts.base + parts.nameStart + QLatin1Char('*'), true, false, false, false);
    while (listing::next(listing)) {
        if (listing::isFolder(listing))
            expandWildcardFolders(parts.base + listing::name(listing) + parts.rest, daysOld, verbose);
    }
    listing::destroy(listing);
}
