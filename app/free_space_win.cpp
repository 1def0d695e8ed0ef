#include "app/free_space.h"

#include "app/folder_run.h"
#include "app/wildcard.h"
#include "sweep/file_ops.h"
#include "text/output.h"

#include <cmath>

namespace {

constexpr double kSecondsPerDay = 86400;

// Every match of a "*" lies on the drive of the part before it, since a "*"
// never matches a link.
QString goalFolder(QString folder)
{
    if (!folder.contains(QLatin1Char('*')))
        return absolutePath(folder);
    folder.replace(QLatin1Char('/'), QLatin1Char('\\'));
    return absolutePath(splitAtFirstWildcard(folder).base);
}

int printGoalLine(const RunOptions& options, std::uint64_t freeBytes, std::uint64_t goal, RunTotals& totals)
{
    totals.goalMet = freeBytes >= goal;
    const QString free = formatGroupedNumber(static_cast<std::int64_t>(mebibytesDown(freeBytes)));
    const QString wanted = formatGroupedNumber(static_cast<std::int64_t>(mebibytesUp(goal)));
    if (totals.goalMet) {
        printText(fillIn(options.dryRun ? "Free space goal would be met: %1 MiB free, goal %2 MiB.\n\n"
                                        : "Free space goal met: %1 MiB free, goal %2 MiB.\n\n",
                         free, wanted));
        return kExitOk;
    }
    printText(fillIn(options.dryRun ? "Free space goal would not be reached: %1 MiB free, goal %2 MiB. "
                                    : "Free space goal not reached: %1 MiB free, goal %2 MiB. ",
                     free, wanted)
              + fillIn("Nothing older than %1 days is left to delete.\n\n", QString::number(options.minAgeDays)));
    return kExitGoalNotReached;
}

int goalNotChecked()
{
    printText(QStringLiteral("Free space goal not checked: the drive's free space cannot be read.\n\n"));
    return kExitGoalNotReached;
}

}

// One pass and no loop: other programs write to the same drive, and chasing a
// goal they move would delete ever younger files.
int reachFreeSpaceGoal(const RunOptions& options, RunTotals& totals)
{
    const QString drive = goalFolder(options.directory);
    std::uint64_t freeBytes = 0;
    std::uint64_t totalBytes = 0;
    totals.freeKnown = readDriveSpace(drive, freeBytes, totalBytes);
    if (!totals.freeKnown)
        return goalNotChecked();
    totals.freeBytes = freeBytes;
    totals.hasGoal = true;
    totals.goalBytes = goalBytes(options.freeGoal, totalBytes);
    // A dry run deleted nothing: what the age run would have freed is counted.
    if (options.dryRun)
        freeBytes += static_cast<std::uint64_t>(totals.freedBytes);
    if (freeBytes >= totals.goalBytes)
        return printGoalLine(options, freeBytes, totals.goalBytes, totals);

    const TimeStamp floor = currentTime() - std::llround(options.minAgeDays * kSecondsPerDay);
    std::vector<SpaceCandidate> candidates;
    expandWildcardFolders(options.directory, FolderPass{options, PassKind::Scan, floor, &candidates, nullptr});
    const Cutoff cutoff = chooseCutoff(std::move(candidates), totals.goalBytes - freeBytes, floor);
    expandWildcardFolders(options.directory, FolderPass{options, PassKind::FreeSpace, cutoff.cutoff, nullptr, &totals});
    if (options.dryRun)
        return printGoalLine(options, freeBytes + cutoff.bytes, totals.goalBytes, totals);
    totals.freeKnown = readDriveSpace(drive, freeBytes, totalBytes);
    if (!totals.freeKnown)
        return goalNotChecked();
    totals.freeBytes = freeBytes;
    return printGoalLine(options, freeBytes, totals.goalBytes, totals);
}
