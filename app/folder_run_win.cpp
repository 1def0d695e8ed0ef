#include "app/folder_run.h"

#include "sweep/file_ops.h"
#include "sweep/folder_hold_win.h"
#include "sweep/sweep.h"
#include "sweep/win32.h"
#include "text/output.h"

#include <utility>

namespace {

// A drive whose free space cannot be read is reported with this many MiB.
constexpr std::uint32_t kUnknownFreeMiB = 1000;
constexpr int kFreeSpaceRootUnits = 255;
constexpr int kBytesToMiBShift = 20;

}

bool runFolder(const QString& folder, const RunOptions& options)
{
    if (!folderExists(folder)) {
        warnMissingFolder(folder);
        return false;
    }
    runReachedFolder(folder, holdNamedFolder(folder), options);
    return true;
}

void warnMissingFolder(const QString& folder)
{
    printText(fillIn("Warning: directory %1 does not exist!\n", folder));
}

void runReachedFolder(const QString& folder, FolderHold hold, const RunOptions& options)
{
    const bool dryRun = options.dryRun;
    const QString days = QString::number(options.daysOld);
    printText(fillIn(dryRun ? "\nDry run in folder '%1': files older than %2 days are only listed, nothing is deleted.\n"
                            : "\nStarting to delete files in folder '%1', File have to be older than %2 days.\n",
                     folder, days));

    QString errors;
    QString log;
    std::int32_t deletedCount = 0;
    std::int64_t deletedKiB = 0;
    SweepSettings settings;
    // The folder named on the command line, or found by a wildcard, is never
    // removed itself.
    settings.removeIfEmpty = false;
    settings.ageLimitSeconds = ageLimitSeconds(options.daysOld);
    settings.dryRun = dryRun;
    settings.keepPatterns = options.keepPatterns;
    // Without -v the log would only be dropped, so none is kept: the run's
    // memory then stays with the folders on the current path, not the tree.
    sweepHeldFolder(folder, std::move(hold), settings,
                    SweepOutputs{&errors, &deletedCount, &deletedKiB, options.verbose ? &log : nullptr, &progressStamp()});

    // "Kib" is the report's own spelling.
    printText(fillIn(dryRun ? "  %1 files would be deleted (%2 Kib). \n\n" : "  %1 files deleted (%2 Kib). \n\n",
                     QString::number(deletedCount), formatGroupedNumber(deletedKiB)));
    if (!errors.isEmpty())
        printText(fillIn("\nErrors:\n %1 \n\n", errors));
    if (options.verbose)
        printText(fillIn("\n%1\n\n", log));
    printText(fillIn("  Done. Free drive space in %1 is %2 MiB\n\n", folder,
                     formatGroupedNumber(freeDriveSpaceMiB(absolutePath(folder)))));
}

std::uint32_t freeDriveSpaceMiB(QString path)
{
    const QString root = freeSpaceRoot(path);
    if (root.isEmpty() || root.size() >= kFreeSpaceRootUnits)
        return kUnknownFreeMiB;

    wchar_t rootUnits[kFreeSpaceRootUnits] = {};
    root.toWCharArray(rootUnits);
    ULARGE_INTEGER freeToCaller = {};
    ULARGE_INTEGER totalBytes = {};
    ULARGE_INTEGER totalFree = {};
    if (!GetDiskFreeSpaceExW(rootUnits, &freeToCaller, &totalBytes, &totalFree))
        return kUnknownFreeMiB;
    return static_cast<std::uint32_t>(freeToCaller.QuadPart >> kBytesToMiBShift);
}
