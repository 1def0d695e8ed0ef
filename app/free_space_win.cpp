#include "app/free_space.h"

#include "app/folder_run.h"
#include "app/volume_space.h"
#include "app/wildcard.h"
#include "sweep/file_ops.h"
#include "sweep/folder_hold_win.h"
#include "text/output.h"
#include "text/path_normalize.h"

#include <algorithm>
#include <cmath>

namespace {

constexpr double kSecondsPerDay = 86400;

// One volume the folders are on, in the order they were reached. Its space
// is read at the first folder on it.
struct Volume {
    QString key;
    QString folder;
    // What the age run freed there, or would free in a dry run.
    std::int64_t freedByAgeRun = 0;
    bool known = false;
    std::uint64_t freeBytes = 0;
    std::uint64_t totalBytes = 0;
    VolumeGoal goal;
};

Volume volumeAt(const QString& key, const QString& folder)
{
    Volume volume;
    volume.key = key;
    volume.folder = folder;
    return volume;
}

// With nothing reached, the goal is read where the folder argument points, as
// it always was.
std::vector<Volume> groupByVolume(const std::vector<LocatedFolder>& located, const QString& directory)
{
    std::vector<Volume> volumes;
    for (const LocatedFolder& folder : located) {
        auto same = std::find_if(volumes.begin(), volumes.end(), [&folder](const Volume& volume) {
            return volume.key.compare(folder.volume, Qt::CaseInsensitive) == 0;
        });
        if (same == volumes.end())
            same = volumes.insert(volumes.end(), volumeAt(folder.volume, folder.folder));
        same->freedByAgeRun += folder.freedBytes;
    }
    if (volumes.empty()) {
        // Every match of a "*" lies on the drive of the part before it, since
        // a "*" never matches a link.
        const QString folder = absolutePath(wildcardBase(directory));
        volumes.push_back(volumeAt(volumeKey(folder), folder));
    }
    return volumes;
}

// A goal that no volume of this size can meet ends the run before anything is
// freed for it: freeing would delete everything down to -minage for nothing.
int readVolumes(const RunOptions& options, std::vector<Volume>& volumes)
{
    for (Volume& volume : volumes) {
        volume.known = readFolderSpace(volume.folder, volume.freeBytes, volume.totalBytes);
        if (!volume.known)
            continue;
        const FreeGoal* high = options.hasFreeToGoal ? &options.freeToGoal : nullptr;
        const GoalFault fault = volumeGoal(options.freeGoal, high, volume.totalBytes, volume.goal);
        if (fault == GoalFault::HighBelowLow) {
            printText(QStringLiteral("Error: -freeto is below the -minfree goal!\n"));
            return kExitBadOption;
        }
        if (fault == GoalFault::AboveVolume) {
            const QString size = formatGroupedNumber(static_cast<std::int64_t>(mebibytesDown(volume.totalBytes)));
            printText(fillIn("Error: the free space goal is larger than the volume of %1 (%2 MiB)!\n",
                             volume.folder, size));
            return kExitBadOption;
        }
    }
    return kExitOk;
}

// A check's line is the last of the output, as a detection script reads it.
QString lineEnd(const RunOptions& options)
{
    return options.check ? QStringLiteral("\n") : QStringLiteral("\n\n");
}

QString goalText(const RunOptions& options, const VolumeGoal& goal)
{
    const QString low = formatGroupedNumber(static_cast<std::int64_t>(mebibytesUp(goal.low)));
    if (!options.hasFreeToGoal)
        return low;
    return fillIn("%1 MiB to %2", low, formatGroupedNumber(static_cast<std::int64_t>(mebibytesUp(goal.high))));
}

bool printGoalLine(const RunOptions& options, std::uint64_t freeBytes, const VolumeGoal& goal)
{
    const bool met = freeBytes >= goal.low;
    const QString free = formatGroupedNumber(static_cast<std::int64_t>(mebibytesDown(freeBytes)));
    const QString wanted = goalText(options, goal);
    if (met) {
        printText(fillIn(options.dryRun ? "Free space goal would be met: %1 MiB free, goal %2 MiB."
                                        : "Free space goal met: %1 MiB free, goal %2 MiB.",
                         free, wanted)
                  + lineEnd(options));
        return true;
    }
    const QString line = fillIn(options.dryRun ? "Free space goal would not be reached: %1 MiB free, goal %2 MiB."
                                               : "Free space goal not reached: %1 MiB free, goal %2 MiB.",
                                free, wanted);
    if (options.check) {
        printText(line + lineEnd(options));
        return false;
    }
    printText(line + fillIn(" Nothing older than %1 days is left to delete.", QString::number(options.minAgeDays))
              + lineEnd(options));
    return false;
}

void goalNotChecked(const RunOptions& options)
{
    printText(QStringLiteral("Free space goal not checked: the drive's free space cannot be read.") + lineEnd(options));
}

// The volume the metrics show: the one closest to missing its goal, or
// furthest below it. Kept apart from the run's totals, which every folder's
// report line reads anew.
struct ShownVolume {
    bool known = false;
    std::uint64_t freeBytes = 0;
    std::uint64_t goalBytes = 0;
};

void noteVolume(ShownVolume& shown, const Volume& volume)
{
    if (!volume.known)
        return;
    if (shown.known && volume.freeBytes + shown.goalBytes >= shown.freeBytes + volume.goal.low)
        return;
    shown = ShownVolume{true, volume.freeBytes, volume.goal.low};
}

// One pass and no loop: other programs write to the same drive, and chasing a
// goal they move would delete ever younger files.
bool freeOnVolume(const RunOptions& options, Volume& volume, RunTotals& totals)
{
    std::uint64_t freeBytes = volume.freeBytes;
    // A dry run deleted nothing: what the age run would have freed is counted.
    if (options.dryRun)
        freeBytes += static_cast<std::uint64_t>(volume.freedByAgeRun);
    const std::uint64_t missing = bytesToFree(volume.goal, freeBytes);
    if (missing == 0)
        return printGoalLine(options, freeBytes, volume.goal);

    const TimeStamp floor = currentTime() - std::llround(options.minAgeDays * kSecondsPerDay);
    std::vector<SpaceCandidate> candidates;
    expandWildcardFolders(options.directory,
                          FolderPass{options, PassKind::Scan, floor, &candidates, nullptr, nullptr, volume.key});
    const Cutoff cutoff = chooseCutoff(std::move(candidates), missing, floor);
    expandWildcardFolders(options.directory, FolderPass{options, PassKind::FreeSpace, cutoff.cutoff, nullptr,
                                                        &totals, nullptr, volume.key});
    if (options.dryRun)
        return printGoalLine(options, freeBytes + cutoff.bytes, volume.goal);
    volume.known = readFolderSpace(volume.folder, volume.freeBytes, volume.totalBytes);
    if (!volume.known) {
        goalNotChecked(options);
        return false;
    }
    return printGoalLine(options, volume.freeBytes, volume.goal);
}

int forEachVolume(const RunOptions& options, std::vector<Volume>& volumes, RunTotals& totals)
{
    const int fault = readVolumes(options, volumes);
    if (fault != kExitOk)
        return fault;
    bool allMet = true;
    ShownVolume shown;
    for (Volume& volume : volumes) {
        bool met = false;
        if (!volume.known)
            goalNotChecked(options);
        else if (options.check)
            met = printGoalLine(options, volume.freeBytes, volume.goal);
        else
            met = freeOnVolume(options, volume, totals);
        noteVolume(shown, volume);
        allMet = allMet && met && volume.known;
    }
    // The goal counts as met only when every volume meets it.
    totals.hasGoal = true;
    totals.goalMet = allMet;
    if (shown.known) {
        totals.freeKnown = true;
        totals.freeBytes = shown.freeBytes;
        totals.goalBytes = shown.goalBytes;
    }
    return allMet ? kExitOk : kExitGoalNotReached;
}

}

int reachFreeSpaceGoal(const RunOptions& options, const std::vector<LocatedFolder>& located, RunTotals& totals)
{
    std::vector<Volume> volumes = groupByVolume(located, options.directory);
    return forEachVolume(options, volumes, totals);
}

int checkFreeSpaceGoal(const RunOptions& options)
{
    std::vector<LocatedFolder> located;
    expandWildcardFolders(options.directory,
                          FolderPass{options, PassKind::Locate, 0, nullptr, nullptr, &located, QString()});
    std::vector<Volume> volumes = groupByVolume(located, options.directory);
    RunTotals unused;
    return forEachVolume(options, volumes, unused);
}
