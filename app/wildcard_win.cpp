#include "app/wildcard.h"

#include "app/folder_run.h"
#include "sweep/dir_listing_win.h"
#include "sweep/file_ops.h"
#include "sweep/folder_hold_win.h"
#include "sweep/keep_pattern.h"
#include "text/output.h"

#include <utility>

namespace {

// One expansion of the folder argument: the pass every match gets, and how
// many folders it reached, cleaned, missing or skipped.
struct Expansion {
    const FolderPass& pass;
    int reported = 0;
};

const QChar kBackslash = QLatin1Char('\\');
const QChar kStar = QLatin1Char('*');

void warnReachedThroughLink(const QString& path)
{
    printText(fillIn("Warning: directory %1 is reached through a link, skipped!\n", path));
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

// For Wine only: it opens a link's target even when asked for the link
// itself, so there the held folder's listing is asked as well, as it shows a
// link as one. Wine opens the name as given when it exists, so the entry of
// that exact name is the one that counts, and one that matches only ignoring
// case counts when there is none: beside a folder "APPDATA", a link
// "AppData" must still be seen as the link it is.
bool isListedAsLinkUnderWine(HANDLE folder, const QString& name)
{
    DirListing* listing = nullptr;
    listing::create(listing);
    listing::open(listing, folder, QString());
    bool exact = false;
    bool link = false;
    while (!exact && listing::next(listing)) {
        const QString listed = listing::name(listing);
        exact = listed == name;
        if (exact || (!link && listed.compare(name, Qt::CaseInsensitive) == 0))
            link = listing::kind(listing) == EntryKind::Link;
    }
    listing::destroy(listing);
    return link;
}

void expandIn(const FolderHold& base, const QString& basePath, const QString& pattern, const QStringList& names,
              qsizetype next, Expansion& expansion);

// A folder on the way that is there but cannot be held, for example one that
// another program holds open without sharing, is reported by the run it was on
// the way to, since nothing below it was examined; below a later "*" it is
// reported itself.
void runBlockedFolder(FolderHold hold, const QString& path, const QString& concrete, Expansion& expansion)
{
    if (concrete.isEmpty())
        reportUnreachedFolder(path, hold.error, expansion.pass);
    else
        runReachedFolder(concrete, std::move(hold), expansion.pass);
    ++expansion.reported;
}

// Below a "*" every folder is one that a user may have made, so none may lead
// elsewhere. Each is opened by its name in the folder before it, never through
// a path, and the one reached is held until its run has ended: Windows renames
// or removes no folder while anything below it is open, so none of those above
// it can be renamed, removed or replaced by a link in between. Built paths are
// never read again as patterns, so a "*" in a found name is a character.
void follow(FolderHold reached, QString path, const QStringList& names, qsizetype next, Expansion& expansion)
{
    if (!reached.isHeld()) {
        runBlockedFolder(std::move(reached), path, concretePath(path, names, next), expansion);
        return;
    }
    for (; next < names.size(); ++next) {
        const QString& name = names.at(next);
        if (name.contains(kStar)) {
            expandIn(reached, path + kBackslash, name, names, next + 1, expansion);
            return;
        }
        const QString concrete = concretePath(path, names, next);
        path += kBackslash + name;
        if (name.isEmpty() || name == QLatin1String("."))
            continue;
        FolderHold inner = holdFoundFolder(reached, name);
        if (inner.isLink() || (inner.isHeld() && isListedAsLinkUnderWine(reached.handle(), name))) {
            if (expansion.pass.warns())
                warnReachedThroughLink(concrete.isEmpty() ? path : concrete);
            ++expansion.reported;
            return;
        }
        // What is missing below a later "*" matches nothing.
        if (inner.foundNoFolder()) {
            if (!concrete.isEmpty()) {
                if (expansion.pass.warns())
                    warnMissingFolder(concrete);
                ++expansion.reported;
            }
            return;
        }
        if (!inner.isHeld()) {
            runBlockedFolder(std::move(inner), path, concrete, expansion);
            return;
        }
        reached = std::move(inner);
    }
    runReachedFolder(path, std::move(reached), expansion.pass);
    ++expansion.reported;
}

// The component matches whole folder names, each "*" standing for any run of
// characters, ignoring case; a "*" matches neither files nor links, nor
// folders whose data is elsewhere, nor the system's own folders at a volume's
// root.
void expandIn(const FolderHold& base, const QString& basePath, const QString& pattern, const QStringList& names,
              qsizetype next, Expansion& expansion)
{
    DirListing* listing = nullptr;
    listing::create(listing);
    const DWORD error = listing::open(listing, base.handle(), basePath, AgeBy::Write, isVolumeRoot(basePath));
    if (error != ERROR_SUCCESS) {
        reportUnreachedFolder(basePath.chopped(1), error, expansion.pass);
        ++expansion.reported;
    }
    while (listing::next(listing)) {
        const QString name = listing::name(listing);
        if (!listing::isFolder(listing) || listing::kind(listing) != EntryKind::Plain
            || !matchesNamePattern(name, pattern))
            continue;
        // Gone, or a link, since the listing: no match either.
        FolderHold match = holdFoundFolder(base, name);
        if (!match.foundNoFolder() && !match.isLink())
            follow(std::move(match), basePath + name, names, next, expansion);
    }
    listing::destroy(listing);
}

}

// What the command line names before its first "*" is the admin's own choice,
// links included, and is opened as named. Whatever is missing or matches
// nothing is said, so a scheduled task never shows success on a run that
// cleaned nothing.
void expandWildcardFolders(QString path, const FolderPass& pass)
{
    if (!path.contains(kStar)) {
        runFolder(path, pass);
        return;
    }
    const QString given = path;
    // A slash in a path with a "*" separates folders as a backslash does, so a
    // mistyped separator never turns the rest of the path into a name filter.
    path.replace(QLatin1Char('/'), kBackslash);
    const WildcardParts parts = splitAtFirstWildcard(path);
    std::uint32_t error = ERROR_SUCCESS;
    const FolderHold base = folderExists(parts.base, error) ? holdNamedFolder(parts.base) : FolderHold();
    if (!base.isHeld()) {
        reportUnreachedFolder(parts.base.chopped(1), error == ERROR_SUCCESS ? base.error : error, pass);
        return;
    }
    Expansion expansion{pass};
    // The rest begins with a backslash, so its first name is empty.
    QStringList names = parts.rest.split(kBackslash);
    names.removeFirst();
    expandIn(base, parts.base, parts.nameStart + kStar + parts.nameEnd, names, 0, expansion);
    if (expansion.reported == 0 && pass.warns())
        printText(fillIn("\nWarning: no folder matches '%1'!\n", given));
}
