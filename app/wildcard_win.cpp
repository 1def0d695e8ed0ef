#include "app/wildcard.h"

#include "app/folder_run.h"
#include "sweep/dir_listing_win.h"
#include "sweep/folder_hold_win.h"
#include "text/platform_printf.h"

#include <utility>
#include <vector>

namespace {

const QChar kBackslash = QLatin1Char('\\');
const QChar kStar = QLatin1Char('*');

void warnReachedThroughLink(const QString& path)
{
    platformPrintf("Warning: directory %s is reached through a link, skipped!\n", path.toLatin1().constData());
}

// The path as the command line gives it, from the folder reached so far on:
// the names still to follow, or empty while one of them holds a "*".
QString concretePath(const QString& reached, const QStringList& names, qsizetype next)
{
    QString path = reached;
    for (qsizetype i = next; i < names.size(); ++i) {
        if (names.at(i).contains(kStar))
            return QString();
        path += kBackslash + names.at(i);
    }
    return path;
}

// Wine opens a link's target even when asked for the link itself, so the
// held folder's listing is asked as well: it shows a link as one.
bool isListedAsLink(HANDLE folder, const QString& name)
{
    DirListing* listing = nullptr;
    listing::create(listing);
    listing::open(listing, folder, QString());
    bool link = false;
    while (listing::next(listing)) {
        if (listing::name(listing).compare(name, Qt::CaseInsensitive) == 0) {
            link = listing::isLink(listing);
            break;
        }
    }
    listing::destroy(listing);
    return link;
}

void expandIn(const FolderHold& base, const QString& basePath, const QString& nameStart, const QStringList& names,
              qsizetype next, const RunOptions& options);

// A folder on the way that is there but cannot be held, for example one that
// another program holds open without sharing, is reported by the run it was on
// the way to, since nothing below it was examined; below a later "*" it
// matches nothing.
void runBlockedFolder(FolderHold hold, const QString& concrete, const RunOptions& options)
{
    if (!concrete.isEmpty())
        runReachedFolder(concrete, std::move(hold), options);
}

// Below a "*" every folder is one that a user may have made, so none may lead
// elsewhere. Each is opened by its name in the folder before it and held, with
// all before it, until the runs below it have ended: none of them can be
// renamed, removed or replaced by a link in between. Built paths are never
// read again as patterns, so a "*" in a found name is a character.
void follow(FolderHold reached, QString path, const QStringList& names, qsizetype next, const RunOptions& options)
{
    if (!reached.isHeld()) {
        runBlockedFolder(std::move(reached), concretePath(path, names, next), options);
        return;
    }
    std::vector<FolderHold> above;
    for (; next < names.size(); ++next) {
        const QString& name = names.at(next);
        if (name.contains(kStar)) {
            expandIn(reached, path + kBackslash, name.left(name.indexOf(kStar)), names, next + 1, options);
            return;
        }
        const QString concrete = concretePath(path, names, next);
        path += kBackslash + name;
        if (name.isEmpty() || name == QLatin1String("."))
            continue;
        FolderHold inner = holdFoundFolder(reached.handle(), name);
        if (inner.isLink || (inner.isHeld() && isListedAsLink(reached.handle(), name))) {
            warnReachedThroughLink(concrete.isEmpty() ? path : concrete);
            return;
        }
        // What is missing below a later "*" matches nothing.
        if (inner.isMissing) {
            if (!concrete.isEmpty())
                warnMissingFolder(concrete);
            return;
        }
        if (!inner.isHeld()) {
            runBlockedFolder(std::move(inner), concrete, options);
            return;
        }
        above.push_back(std::move(reached));
        reached = std::move(inner);
    }
    runReachedFolder(path, std::move(reached), options);
}

// Only what stands before the "*" narrows the match; a "*" matches neither
// files nor links.
void expandIn(const FolderHold& base, const QString& basePath, const QString& nameStart, const QStringList& names,
              qsizetype next, const RunOptions& options)
{
    DirListing* listing = nullptr;
    listing::create(listing);
    listing::open(listing, base.handle(), basePath);
    while (listing::next(listing)) {
        const QString name = listing::name(listing);
        if (!listing::isFolder(listing) || listing::isLink(listing) || !name.startsWith(nameStart, Qt::CaseInsensitive))
            continue;
        // Gone, or a link, since the listing: no match either.
        FolderHold match = holdFoundFolder(base.handle(), name);
        if (!match.isMissing && !match.isLink)
            follow(std::move(match), basePath + name, names, next, options);
    }
    listing::destroy(listing);
}

}

// What the command line names before its first "*" is the admin's own choice,
// links included, and is opened as named. The text between a "*" and the next
// separator does not narrow the folders that match, and it is not put back
// into the built path: that is the tool's long-standing behaviour, kept on
// purpose.
void expandWildcardFolders(QString path, const RunOptions& options)
{
    if (!path.contains(kStar)) {
        runFolder(path, options);
        return;
    }
    // A slash in a path with a "*" separates folders as a backslash does, so a
    // mistyped separator never turns the rest of the path into a name filter.
    path.replace(QLatin1Char('/'), kBackslash);
    const WildcardParts parts = splitAtFirstWildcard(path);
    if (parts.base.isEmpty())
        return;
    const FolderHold base = holdNamedFolder(parts.base);
    if (!base.isHeld())
        return;
    // The rest begins with a backslash, so its first name is empty.
    QStringList names = parts.rest.split(kBackslash);
    names.removeFirst();
    expandIn(base, parts.base, parts.nameStart, names, 0, options);
}
