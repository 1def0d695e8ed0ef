#include "sweep/sweep.h"

#include "sweep/dir_listing_win.h"
#include "sweep/entry_ops_win.h"
#include "sweep/error_text.h"
#include "sweep/file_ops.h"
#include "sweep/folder_hold_win.h"
#include "sweep/keep_pattern.h"
#include "sweep/listing_rules.h"
#include "sweep/log_spill_win.h"
#include "text/output.h"
#include "text/path_normalize.h"

#include <deque>
#include <limits>
#include <set>
#include <utility>

namespace {

// One sweep's settings and outputs, the same for every folder of the walk.
struct Walk {
    const SweepSettings& settings;
    const SweepOutputs& out;

    // Every line but the deleted names needs the full log.
    bool fullLog() const { return out.log != nullptr && !settings.namesOnly; }
    // Neither a dry run nor a collection pins, deletes or removes anything.
    bool changesNothing() const { return settings.mode != SweepMode::Delete; }
};

// What one folder's sweep has left behind.
struct FolderVerdict {
    bool nothingLeft = true;
    bool kept = false;
    bool failed = false;
    // This run deleted or removed something in the folder (a dry run: would).
    bool emptiedSome = false;
};

void markKept(FolderVerdict& verdict)
{
    verdict.kept = true;
    verdict.nothingLeft = false;
}

QLatin1String latin(const char* text)
{
    return QLatin1String(text);
}

void appendToLog(const Walk& walk, const QString& line)
{
    QString& log = *walk.out.log;
    log.append(line);
    if (walk.out.logSpill != nullptr && log.size() > kHeldLogUnits)
        spillLog(*walk.out.logSpill, log);
}

// One decision of the -v log: the tag, the name, in brackets for a folder,
// and what decided it.
void logDecision(const Walk& walk, const char* tag, const QString& name, bool isFolder,
                 const QString& reason = QString())
{
    if (!walk.fullLog())
        return;
    const QString shown = isFolder ? QLatin1Char('[') + name + QLatin1Char(']') : name;
    appendToLog(walk, latin("     ") + latin(tag) + QLatin1Char(' ') + shown + reason + QLatin1Char('\n'));
}

// One line of the report's errors: what failed, and the system's reason.
void reportError(const Walk& walk, const QString& what, const QString& reason)
{
    if (walk.out.errors != nullptr)
        walk.out.errors->append(what + QLatin1Char(':') + reason + QLatin1Char('\n'));
}

QString quoted(const char* gap, const QString& text)
{
    return latin(gap) + QLatin1Char('\'') + text + QLatin1Char('\'');
}

// A name that -keep asks for is kept whatever else is true of the entry, its
// age and link status included. It counts as something left, so its parent
// stays, with no error.
bool keepByName(const QString& name, bool isFolder, const Walk& walk, FolderVerdict& verdict)
{
    const QString* pattern = matchingKeepPattern(walk.settings.keepPatterns, name);
    if (pattern == nullptr)
        return false;
    logDecision(walk, "-keep", name, isFolder, quoted("   ", *pattern));
    markKept(verdict);
    return true;
}

// An entry whose data is not on this machine is neither read, entered nor
// deleted: its space is not the node's, and deleting a cloud placeholder
// deletes the cloud's copy. Its parent stays, with no error.
void keepOffline(const QString& name, bool isFolder, const Walk& walk, FolderVerdict& verdict)
{
    logDecision(walk, "-ofl", name, isFolder);
    markKept(verdict);
}

// What the system keeps at a volume's root is the volume's, not a job's.
bool keepVolumeSystemEntry(const QString& name, bool isFolder, EntryKind kind, const Walk& walk,
                           FolderVerdict& verdict)
{
    if (kind != EntryKind::VolumeSystem)
        return false;
    logDecision(walk, "-sys", name, isFolder);
    markKept(verdict);
    return true;
}

void printProgress(const QString& folder, TimeStamp* progressStamp, TimeStamp now)
{
    if (progressStamp == nullptr)
        return;
    if (hasElapsed(*progressStamp, kProgressIntervalSeconds, true, &now))
        printText(fillIn("     ...%1...\n", folder));
}

void countDeleted(DirListing*& listing, const SweepOutputs& out, FolderVerdict& verdict)
{
    verdict.emptiedSome = true;
    if (out.deletedCount != nullptr)
        ++*out.deletedCount;
    if (out.deletedKiB != nullptr)
        *out.deletedKiB += roundedKiB(listing::size(listing));
    if (out.freedBytes != nullptr)
        *out.freedBytes += listing::allocation(listing);
    if (out.deletedBytes != nullptr)
        *out.deletedBytes += listing::size(listing);
}

void logTooYoung(const QString& name, const Walk& walk, FolderVerdict& verdict)
{
    logDecision(walk, "-ignT", name, false);
    markKept(verdict);
}

// Written before the attempt, so it also stands for a deletion that fails.
void logDeletion(const QString& name, const Walk& walk)
{
    if (walk.out.log == nullptr)
        return;
    if (walk.settings.namesOnly)
        appendToLog(walk, name + QLatin1Char('\n'));
    else
        logDecision(walk, "-del", name, false);
}

// One folder under way. The walk keeps these on the heap, one per level of the
// current path, and never recurses: a tree as deep as the longest paths allow
// (about 16,000 levels within 32,767 units) needs no more stack than a flat one.
struct FolderFrame {
    QString folder;
    // The name it was listed by in its parent; empty for the folder the walk
    // starts at.
    QString name;
    bool removeIfEmpty;
    FolderHold hold;
    // The hold of the folder it was listed in; none for the folder the walk
    // starts at.
    HANDLE parent = INVALID_HANDLE_VALUE;
    // Where the folder stood on its volume when it was reached, as the system
    // names it; empty when the system cannot say.
    QString expectedPath;
    // Held while the sweep deletes in the folder, released while it is below.
    OwnedHandle pin;
    // Moved, removed or replaced since it was reached: left alone from then on.
    bool abandoned = false;
    // The folder's age time as its parent listed it. The folder the walk
    // starts at has no such entry and is not dated: it goes, when asked to,
    // as soon as it is empty.
    TimeStamp ageTime = std::numeric_limits<TimeStamp>::min();
    DirListing* listing = nullptr;
    TimeStamp now = 0;
    FolderVerdict verdict;

    FolderFrame(const QString& folder, const QString& name, bool removeIfEmpty, FolderHold hold)
        : folder(folder), name(name), removeIfEmpty(removeIfEmpty), hold(std::move(hold))
    {
    }
    FolderFrame(const FolderFrame&) = delete;
    FolderFrame& operator=(const FolderFrame&) = delete;
    ~FolderFrame() { listing::destroy(listing); }
};

// A job may remove or rename its folder while the sweep is anywhere in it, so
// the hold shares deletion. Only while the tool deletes in a folder, or removes
// its emptied subfolders, does it pin the folder, without delete sharing, so
// the files it deletes are that folder's, at the place where it was found.
// Windows refuses to rename a folder while anything below it is open, so the
// folders above stay put while the sweep is below them; file servers and Wine
// do not refuse it, so the pin also compares where the folder stands now with
// where it stood: one call, whatever the depth. A folder moved, removed or
// replaced is left alone, without an error; what was done there stays counted.
bool pinFrame(FolderFrame& frame, const Walk& walk)
{
    if (frame.pin.isOpen())
        return true;
    if (frame.abandoned)
        return false;
    DWORD error = ERROR_SUCCESS;
    const Pin pin = pinFolder(PinRequest{frame.parent, frame.name, frame.hold.handle(), frame.hold.identity,
                                         frame.expectedPath},
                              frame.pin, error);
    if (pin == Pin::Taken)
        return true;
    frame.abandoned = true;
    markKept(frame.verdict);
    if (pin == Pin::Failed)
        reportError(walk, latin("Error reading folder ") + frame.folder, toQString(systemErrorText(error)));
    return false;
}

// A file that freeing space may take, with the space its deletion frees.
void collectCandidate(DirListing*& listing, const Walk& walk)
{
    if (walk.out.candidates != nullptr && listing::freesSpace(listing))
        walk.out.candidates->push_back(SpaceCandidate{listing::time(listing), listing::allocation(listing)});
}

// A dry run opens nothing.
void countDryRunDeletion(FolderFrame& frame, const Walk& walk)
{
    logDeletion(listing::name(frame.listing), walk);
    countDeleted(frame.listing, walk.out, frame.verdict);
}

// The listing's age decided that the file is opened at all; the file's own
// time, read through the handle that deletes it, decides whether it goes, so a
// file written since the listing stays.
void deleteFile(FolderFrame& frame, const Walk& walk)
{
    DirListing*& listing = frame.listing;
    FolderVerdict& verdict = frame.verdict;
    const QString name = listing::name(listing);
    if (!pinFrame(frame, walk))
        return;
    FileToDelete file;
    const bool opened = openFileToDelete(frame.hold.handle(), name, listing::isReadOnly(listing), file);
    if (opened && entryKind(EntryFacts{name, file.attributes}) == EntryKind::Offline) {
        keepOffline(name, false, walk, verdict);
        return;
    }
    if (opened && !isDue(ageTime(file.time, file.changed, walk.settings.ageBy), walk.settings, currentTime())) {
        logTooYoung(name, walk, verdict);
        return;
    }
    logDeletion(name, walk);
    const DWORD error =
        opened ? deleteOpenedFile(file, deletionSupportFor(frame.hold.identity.volumeSerial)) : file.error;
    // A file gone since the listing counts as deleted.
    if (error == ERROR_SUCCESS || isGoneError(error)) {
        countDeleted(listing, walk.out, verdict);
        return;
    }
    reportError(walk, listing::fullPath(listing), deletionFailureText(error));
    verdict.failed = true;
    verdict.nothingLeft = false;
}

// What becomes of a file that the settings would delete is the mode's alone.
void settleDueFile(FolderFrame& frame, const Walk& walk)
{
    switch (walk.settings.mode) {
    case SweepMode::Collect:
        collectCandidate(frame.listing, walk);
        return;
    case SweepMode::DryRun:
        countDryRunDeletion(frame, walk);
        return;
    case SweepMode::Delete:
        deleteFile(frame, walk);
        return;
    }
}

// A deque, since a frame's listing must stay where it was created while
// deeper frames come and go. The identities of the folders held on it tell a
// folder that leads back up the path, such as a file server's link shown as a
// plain folder or a folder mounted into itself.
struct FolderPath {
    std::deque<FolderFrame> frames;
    std::set<FolderIdentity> identities;
};

void sweepFile(FolderFrame& frame, const Walk& walk)
{
    DirListing*& listing = frame.listing;
    FolderVerdict& verdict = frame.verdict;
    const QString name = listing::name(listing);
    const EntryKind kind = listing::kind(listing);
    if (keepByName(name, false, walk, verdict) || keepVolumeSystemEntry(name, false, kind, walk, verdict))
        return;
    if (kind == EntryKind::Offline) {
        keepOffline(name, false, walk, verdict);
        return;
    }
    if (const QString* suffix = matchingSuffix(walk.settings.ignoreSuffixes, name)) {
        logDecision(walk, "-ignS", name, false, quoted("   ", *suffix));
        markKept(verdict);
        return;
    }
    // Freeing space never takes a file whose deletion would free next to
    // nothing: its data is deduplicated or packed elsewhere.
    if (!isDue(listing::time(listing), walk.settings, frame.now)
        || (walk.settings.freeingSpace && !listing::freesSpace(listing))) {
        logTooYoung(name, walk, verdict);
        return;
    }
    settleDueFile(frame, walk);
}

// The whole folder is read through the held handle before anything in it is
// deleted. A folder that could not be held or read is reported and kept, so
// it is never removed with files in it that nobody looked at; one that is gone
// since its listing is silently nothing.
void enterFolder(FolderPath& path, const QString& folder, const QString& name, bool removeIfEmpty, FolderHold hold,
                 bool atVolumeRoot, const Walk& walk)
{
    const FolderFrame* parent = path.frames.empty() ? nullptr : &path.frames.back();
    FolderFrame& frame = path.frames.emplace_back(folder, name, removeIfEmpty, std::move(hold));
    if (parent != nullptr) {
        frame.parent = parent->hold.handle();
        if (!parent->expectedPath.isEmpty())
            frame.expectedPath = folderPrefix(parent->expectedPath) + name;
    } else if (frame.hold.isHeld() && !walk.changesNothing()) {
        frame.expectedPath = placeOnVolume(frame.hold.handle(), static_cast<int>(folder.size()));
    }
    if (frame.hold.isHeld())
        path.identities.insert(frame.hold.identity);
    listing::create(frame.listing);
    if (walk.fullLog())
        appendToLog(walk, latin("   [") + folder + latin("]: \n"));
    DWORD error = frame.hold.error;
    if (frame.hold.isHeld())
        error = listing::open(frame.listing, frame.hold.handle(), folder, walk.settings.ageBy, atVolumeRoot);
    frame.now = currentTime();
    printProgress(folder, walk.out.progressStamp, frame.now);
    if (error == ERROR_SUCCESS)
        return;
    reportError(walk, latin("Error reading folder ") + folder, toQString(systemErrorText(error)));
    markKept(frame.verdict);
}

// What the folder's own handle shows it to be, on the path it was found on.
EntryKind heldKind(const FolderHold& hold, const FolderPath& path)
{
    EntryFacts facts = hold.facts;
    facts.onPath = hold.isHeld() && path.identities.count(hold.identity) != 0;
    return entryKind(facts);
}

// A link below the named folder is neither entered nor removed: whatever it
// leads to is not this sweep's to delete.
void keepLink(const QString& name, const Walk& walk, FolderVerdict& verdict)
{
    logDecision(walk, "-lnk", name, true);
    markKept(verdict);
}

// Entered when nothing about its name or kind keeps it; its removal, once it
// has been swept and is empty, is leaveFolder's.
void visitSubfolder(FolderPath& path, FolderFrame& parent, const Walk& walk)
{
    const QString name = listing::name(parent.listing);
    const EntryKind kind = listing::kind(parent.listing);
    if (keepByName(name, true, walk, parent.verdict) || keepVolumeSystemEntry(name, true, kind, walk, parent.verdict))
        return;
    if (kind == EntryKind::Offline) {
        keepOffline(name, true, walk, parent.verdict);
        return;
    }
    // Unlike an ignored file, an ignored folder leaves the kept flag alone: the
    // parent still tries to remove itself, fails on the folder inside and
    // reports that.
    if (const QString* suffix = matchingSuffix(walk.settings.ignoreSuffixes, name)) {
        logDecision(walk, "-ign", name, true, quoted("  ", *suffix));
        parent.verdict.nothingLeft = false;
        return;
    }
    if (kind == EntryKind::Link) {
        keepLink(name, walk, parent.verdict);
        return;
    }
    FolderHold hold = holdFoundFolder(parent.hold, name);
    const EntryKind held = heldKind(hold, path);
    if (held == EntryKind::Link || held == EntryKind::Loop) {
        keepLink(name, walk, parent.verdict);
        return;
    }
    logDecision(walk, "-dir", name, true);
    // Gone, or no folder any more, since the listing: nothing is left of it.
    if (hold.foundNoFolder())
        return;
    // A volume mounted inside the tree is a mount point, a link: a folder
    // entered here is never a volume's root.
    parent.pin.close();
    const TimeStamp folderAge = listing::time(parent.listing);
    enterFolder(path, listing::fullPath(parent.listing), name, true, std::move(hold), false, walk);
    path.frames.back().ageTime = folderAge;
}

// True when nothing was left behind, or, for a folder to be removed when empty,
// when it was removed. A folder found in its place that is not the one swept
// is left alone, without an error, and its parent stays.
bool leaveFolder(FolderPath& path, const Walk& walk)
{
    FolderFrame& frame = path.frames.back();
    const FolderVerdict& verdict = frame.verdict;
    if (verdict.kept || verdict.failed || !frame.removeIfEmpty || frame.abandoned)
        return verdict.nothingLeft;
    if (!removesEmptiedFolder(verdict.emptiedSome, frame.ageTime, walk.settings.ageLimitSeconds, frame.now))
        return false;
    if (walk.changesNothing())
        return true;
    std::deque<FolderFrame>& frames = path.frames;
    const bool hasParent = frames.size() > 1;
    if (hasParent && !pinFrame(frames[frames.size() - 2], walk))
        return false;
    frame.pin.close();
    DWORD error = ERROR_SUCCESS;
    const Removal removal =
        removeHeldFolder(frame.hold, hasParent ? frame.parent : INVALID_HANDLE_VALUE, frame.name, frame.folder, error);
    if (removal == Removal::Failed)
        reportError(walk, latin("Error deleting folder ") + frame.folder, toQString(systemErrorText(error)));
    return removal == Removal::Removed;
}

}

bool sweepHeldFolder(const QString& folder, FolderHold hold, const SweepSettings& settings, const SweepOutputs& outputs)
{
    if (hold.foundNoFolder())
        return true;

    const Walk walk{settings, outputs};
    FolderPath path;
    const bool atVolumeRoot = hold.isHeld() && isVolumeRoot(folder);
    enterFolder(path, folder, QString(), settings.removeIfEmpty, std::move(hold), atVolumeRoot, walk);
    for (;;) {
        FolderFrame& frame = path.frames.back();
        if (!frame.abandoned && listing::next(frame.listing)) {
            if (!listing::isFolder(frame.listing))
                sweepFile(frame, walk);
            else if (settings.recurse)
                visitSubfolder(path, frame, walk);
            continue;
        }
        const FolderIdentity identity = frame.hold.identity;
        const bool nothingLeft = leaveFolder(path, walk);
        path.identities.erase(identity);
        path.frames.pop_back();
        if (path.frames.empty())
            return nothingLeft;
        if (!nothingLeft)
            markKept(path.frames.back().verdict);
        else
            path.frames.back().verdict.emptiedSome = true;
    }
}

bool sweepFolder(const QString& folder, const SweepSettings& settings, const SweepOutputs& outputs)
{
    if (!folderExists(folder))
        return true;
    return sweepHeldFolder(folder, holdNamedFolder(folder), settings, outputs);
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
    settings.mode = dryRun ? SweepMode::DryRun : SweepMode::Delete;
    return sweepFolder(folder, settings, SweepOutputs{errors, deletedCount, deletedKiB, log, progressStamp});
}
