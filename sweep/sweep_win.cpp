#include "sweep/sweep.h"

#include "sweep/dir_listing.h"
#include "sweep/error_text.h"
#include "sweep/file_ops.h"
#include "sweep/folder_pin.h"
#include "sweep/keep_pattern.h"
#include "sweep/listing_rules.h"
#include "text/platform_printf.h"

#include <deque>
#include <utility>

namespace {

// One sweep's settings and outputs, the same for every folder of the walk.
struct Walk {
    const SweepSettings& settings;
    const SweepOutputs& out;

    // Every line but the deleted names needs the full log.
    bool fullLog() const { return out.log != nullptr && !settings.namesOnly; }
};

// What one folder's sweep has left behind.
struct FolderVerdict {
    bool nothingLeft = true;
    bool kept = false;
    bool failed = false;
};

void markKept(FolderVerdict& verdict)
{
    verdict.kept = true;
    verdict.nothingLeft = false;
}

// A name that -keep asks for is kept whatever else is true of the entry, its
// age and link status included. It counts as something left, so its parent
// stays, with no error.
bool keepByName(const QString& name, bool isFolder, const Walk& walk, FolderVerdict& verdict)
{
    const QString* pattern = matchingKeepPattern(walk.settings.keepPatterns, name);
    if (pattern == nullptr)
        return false;
    if (walk.fullLog()) {
        const QString shown = isFolder ? QLatin1Char('[') + name + QLatin1Char(']') : name;
        walk.out.log->append(QLatin1String("     -keep ") + shown + QLatin1String("   '") + *pattern
                             + QLatin1String("'\n"));
    }
    markKept(verdict);
    return true;
}

void printProgress(const QString& folder, TimeStamp* progressStamp, TimeStamp now)
{
    if (progressStamp == nullptr)
        return;
    if (hasElapsed(*progressStamp, kProgressIntervalSeconds, true, &now))
        platformPrintf("     ...%s...\n", folder.toLatin1().constData());
}

void sweepFile(DirListingHandle& listing, TimeStamp now, const Walk& walk, FolderVerdict& verdict)
{
    const SweepOutputs& out = walk.out;
    const QString name = listing::name(listing);
    if (keepByName(name, false, walk, verdict))
        return;
    if (const QString* suffix = matchingSuffix(walk.settings.ignoreSuffixes, name)) {
        if (walk.fullLog())
            out.log->append(QLatin1String("     -ignS ") + name + QLatin1String("   '") + *suffix + QLatin1String("'\n"));
        markKept(verdict);
        return;
    }
    if (!isOldEnough(listing::time(listing), walk.settings.ageLimitSeconds, now)) {
        if (walk.fullLog())
            out.log->append(QLatin1String("     -ignT ") + name + QLatin1Char('\n'));
        markKept(verdict);
        return;
    }

    const std::int64_t size = listing::size(listing);
    // Written before the attempt, so it also stands for a deletion that fails.
    if (out.log != nullptr)
        out.log->append((walk.settings.namesOnly ? QString() : QStringLiteral("     -del ")) + name + QLatin1Char('\n'));

    const QString path = listing::fullPath(listing);
    const QString failure = walk.settings.dryRun ? QString() : deleteFile(path);
    if (failure.isEmpty()) {
        if (out.deletedCount != nullptr)
            ++*out.deletedCount;
        if (out.deletedKiB != nullptr)
            *out.deletedKiB += roundedKiB(size);
        return;
    }
    if (out.errors != nullptr)
        out.errors->append(path + QLatin1Char(':') + failure + QLatin1Char('\n'));
    verdict.failed = true;
    verdict.nothingLeft = false;
}

// One folder under way. The walk keeps these on the heap, one per level of the
// current path, and never recurses: a tree as deep as the longest paths allow
// (about 16,000 levels within 32,767 units) needs no more stack than a flat one.
struct FolderFrame {
    QString folder;
    bool removeIfEmpty;
    FolderPin pin;
    DirListingHandle listing = nullptr;
    TimeStamp now = 0;
    FolderVerdict verdict;

    FolderFrame(const QString& folder, bool removeIfEmpty, FolderPin pin)
        : folder(folder), removeIfEmpty(removeIfEmpty), pin(std::move(pin))
    {
    }
    FolderFrame(const FolderFrame&) = delete;
    FolderFrame& operator=(const FolderFrame&) = delete;
    ~FolderFrame() { listing::destroy(listing); }
};

// A deque, since a frame's listing must stay where it was created while
// deeper frames come and go.
using FolderPath = std::deque<FolderFrame>;

// The whole folder is read, and its search handle closed, before anything in
// it is deleted. A folder that could not be held is treated like one that
// cannot be listed: it yields nothing.
void enterFolder(FolderPath& path, const QString& folder, bool removeIfEmpty, FolderPin pin, const Walk& walk)
{
    FolderFrame& frame = path.emplace_back(folder, removeIfEmpty, std::move(pin));
    listing::create(frame.listing);
    if (frame.pin.isHeld())
        listing::open(frame.listing, folderSearchPattern(folder), true, true, false, false);
    if (walk.fullLog())
        walk.out.log->append(QLatin1String("   [") + folder + QLatin1String("]: \n"));
    frame.now = currentTime();
    printProgress(folder, walk.out.progressStamp, frame.now);
}

// A link below the named folder is neither entered nor removed: whatever it
// leads to is not this sweep's to delete.
void keepLink(const QString& name, const Walk& walk, FolderVerdict& verdict)
{
    if (walk.fullLog())
        walk.out.log->append(QLatin1String("     -lnk [") + name + QLatin1String("]\n"));
    markKept(verdict);
}

// Subfolders are removed when they end up empty.
void visitSubfolder(FolderPath& path, FolderFrame& parent, const Walk& walk)
{
    const QString name = listing::name(parent.listing);
    if (keepByName(name, true, walk, parent.verdict))
        return;
    // Unlike an ignored file, an ignored folder leaves the kept flag alone: the
    // parent still tries to remove itself, fails on the folder inside and
    // reports that.
    if (const QString* suffix = matchingSuffix(walk.settings.ignoreSuffixes, name)) {
        if (walk.fullLog())
            walk.out.log->append(QLatin1String("     -ign [") + name + QLatin1String("]  '") + *suffix + QLatin1String("'\n"));
        parent.verdict.nothingLeft = false;
        return;
    }
    if (listing::isLink(parent.listing)) {
        keepLink(name, walk, parent.verdict);
        return;
    }
    const QString folder = listing::fullPath(parent.listing);
    FolderPin pin = pinFoundFolder(folder);
    if (pin.isLink) {
        keepLink(name, walk, parent.verdict);
        return;
    }
    if (walk.fullLog())
        walk.out.log->append(QLatin1String("     -dir [") + name + QLatin1String("]\n"));
    // Gone since the listing: nothing is left of it. The held folder needs no
    // further test.
    if (pin.isMissing || (!pin.isHeld() && !folderExists(folder)))
        return;
    enterFolder(path, folder, true, std::move(pin), walk);
}

// True when nothing was left behind, or, for a folder to be removed when empty,
// when it was removed.
bool leaveFolder(FolderFrame& frame, const Walk& walk)
{
    const SweepOutputs& out = walk.out;
    const FolderVerdict& verdict = frame.verdict;
    if (verdict.kept || verdict.failed || !frame.removeIfEmpty)
        return verdict.nothingLeft;
    if (walk.settings.dryRun)
        return true;
    // The folder's own hold would stop its removal.
    frame.pin.release();
    if (removeFolder(frame.folder))
        return true;
    if (out.errors != nullptr)
        out.errors->append(QLatin1String("Error deleting folder ") + frame.folder + QLatin1Char(':')
                           + toQString(systemErrorText(kLastError)) + QLatin1Char('\n'));
    return false;
}

}

bool sweepFolder(const QString& folder, const SweepSettings& settings, const SweepOutputs& outputs)
{
    if (!folderExists(folder))
        return true;

    const Walk walk{settings, outputs};
    FolderPath path;
    enterFolder(path, folder, settings.removeIfEmpty, pinNamedFolder(folder), walk);
    for (;;) {
        FolderFrame& frame = path.back();
        if (listing::next(frame.listing)) {
            if (!listing::isFolder(frame.listing))
                sweepFile(frame.listing, frame.now, walk, frame.verdict);
            else if (settings.recurse)
                visitSubfolder(path, frame, walk);
            continue;
        }
        const bool nothingLeft = leaveFolder(frame, walk);
        path.pop_back();
        if (path.empty())
            return nothingLeft;
        if (!nothingLeft)
            markKept(path.back().verdict);
    }
}

bool sweepFolder(const QString& folder, bool& removeIfEmpty, bool& recurse, std::int32_t& maxAgeMinutes,
                 const QStringList* ignoreSuffixes, QString* errors, std::int32_t* deletedCount,
                 std::int64_t* deletedKiB, QString* log, bool& namesOnly, TimeStamp* progressStamp, bool dryRun)
{
    constexpr std::int64_t kSecondsPerMinute = 60;
    SweepSettings settings;
    settings.removeIfEmpty = removeIfEmpty;
    settings.recurse = recurse;
    settings.ageLimitSeconds = maxAgeMinutes * kSecondsPerMinute;
    settings.ignoreSuffixes = ignoreSuffixes;
    settings.namesOnly = namesOnly;
    settings.dryRun = dryRun;
    return sweepFolder(folder, settings, SweepOutputs{errors, deletedCount, deletedKiB, log, progressStamp});
}
