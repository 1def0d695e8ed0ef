#include "sweep/sweep.h"

#include "sweep/dir_listing.h"
#include "sweep/entry_ops.h"
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

void countDeleted(std::int64_t size, const SweepOutputs& out)
{
    if (out.deletedCount != nullptr)
        ++*out.deletedCount;
    if (out.deletedKiB != nullptr)
        *out.deletedKiB += roundedKiB(size);
}

void logTooYoung(const QString& name, const Walk& walk, FolderVerdict& verdict)
{
    if (walk.fullLog())
        walk.out.log->append(QLatin1String("     -ignT ") + name + QLatin1Char('\n'));
    markKept(verdict);
}

// Written before the attempt, so it also stands for a deletion that fails.
void logDeletion(const QString& name, const Walk& walk)
{
    if (walk.out.log != nullptr)
        walk.out.log->append((walk.settings.namesOnly ? QString() : QStringLiteral("     -del ")) + name
                             + QLatin1Char('\n'));
}

// The listing's age decided that the file is opened at all; the file's own
// time, read through the handle that deletes it, decides whether it goes, so a
// file written since the listing stays. A dry run opens nothing.
void deleteListedFile(DirListingHandle& listing, HANDLE folder, const Walk& walk, FolderVerdict& verdict)
{
    const QString name = listing::name(listing);
    if (walk.settings.dryRun) {
        logDeletion(name, walk);
        countDeleted(listing::size(listing), walk.out);
        return;
    }
    FileToDelete file;
    const bool opened = openFileToDelete(folder, name, file);
    if (opened && !isOldEnough(file.time, walk.settings.ageLimitSeconds, currentTime())) {
        logTooYoung(name, walk, verdict);
        return;
    }
    logDeletion(name, walk);
    const DWORD error = opened ? deleteOpenedFile(file) : file.error;
    // A file gone since the listing counts as deleted.
    if (error == ERROR_SUCCESS || isGoneError(error)) {
        countDeleted(listing::size(listing), walk.out);
        return;
    }
    if (walk.out.errors != nullptr)
        walk.out.errors->append(listing::fullPath(listing) + QLatin1Char(':') + deletionFailureText(error)
                                + QLatin1Char('\n'));
    verdict.failed = true;
    verdict.nothingLeft = false;
}

void sweepFile(DirListingHandle& listing, HANDLE folder, TimeStamp now, const Walk& walk, FolderVerdict& verdict)
{
    const QString name = listing::name(listing);
    if (keepByName(name, false, walk, verdict))
        return;
    if (const QString* suffix = matchingSuffix(walk.settings.ignoreSuffixes, name)) {
        if (walk.fullLog())
            walk.out.log->append(QLatin1String("     -ignS ") + name + QLatin1String("   '") + *suffix
                                 + QLatin1String("'\n"));
        markKept(verdict);
        return;
    }
    if (!isOldEnough(listing::time(listing), walk.settings.ageLimitSeconds, now)) {
        logTooYoung(name, walk, verdict);
        return;
    }
    deleteListedFile(listing, folder, walk, verdict);
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

// The whole folder is read through the held handle before anything in it is
// deleted. A folder that could not be held or read is reported and kept, so
// it is never removed with files in it that nobody looked at; one that is gone
// since its listing is silently nothing.
void enterFolder(FolderPath& path, const QString& folder, bool removeIfEmpty, FolderPin pin, const Walk& walk)
{
    FolderFrame& frame = path.emplace_back(folder, removeIfEmpty, std::move(pin));
    listing::create(frame.listing);
    if (walk.fullLog())
        walk.out.log->append(QLatin1String("   [") + folder + QLatin1String("]: \n"));
    DWORD error = frame.pin.error;
    if (frame.pin.isHeld())
        error = listing::open(frame.listing, frame.pin.handle, folder);
    frame.now = currentTime();
    printProgress(folder, walk.out.progressStamp, frame.now);
    if (error == ERROR_SUCCESS)
        return;
    if (walk.out.errors != nullptr)
        walk.out.errors->append(QLatin1String("Error reading folder ") + folder + QLatin1Char(':')
                                + toQString(systemErrorText(error)) + QLatin1Char('\n'));
    markKept(frame.verdict);
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
    FolderPin pin = pinFoundFolder(parent.pin.handle, name, true);
    if (pin.isLink) {
        keepLink(name, walk, parent.verdict);
        return;
    }
    if (walk.fullLog())
        walk.out.log->append(QLatin1String("     -dir [") + name + QLatin1String("]\n"));
    // Gone since the listing: nothing is left of it.
    if (pin.isMissing)
        return;
    enterFolder(path, listing::fullPath(parent.listing), true, std::move(pin), walk);
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
    const DWORD error = removePinnedFolder(frame.pin);
    if (error == ERROR_SUCCESS)
        return true;
    if (out.errors != nullptr)
        out.errors->append(QLatin1String("Error deleting folder ") + frame.folder + QLatin1Char(':')
                           + toQString(systemErrorText(error)) + QLatin1Char('\n'));
    return false;
}

}

bool sweepHeldFolder(const QString& folder, FolderPin pin, const SweepSettings& settings, const SweepOutputs& outputs)
{
    if (pin.isMissing)
        return true;

    const Walk walk{settings, outputs};
    FolderPath path;
    enterFolder(path, folder, settings.removeIfEmpty, std::move(pin), walk);
    for (;;) {
        FolderFrame& frame = path.back();
        if (listing::next(frame.listing)) {
            if (!listing::isFolder(frame.listing))
                sweepFile(frame.listing, frame.pin.handle, frame.now, walk, frame.verdict);
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

bool sweepFolder(const QString& folder, const SweepSettings& settings, const SweepOutputs& outputs)
{
    if (!folderExists(folder))
        return true;
    return sweepHeldFolder(folder, pinNamedFolder(folder, settings.removeIfEmpty), settings, outputs);
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
