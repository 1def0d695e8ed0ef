#include "app/folder_run.h"

#include "sweep/file_ops.h"
#include "sweep/folder_hold_win.h"
#include "sweep/sweep.h"
#include "sweep/win32.h"
#include "text/platform_printf.h"

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
    platformPrintf("Warning: directory %s does not exist!\n", folder.toLatin1().constData());
}

void runReachedFolder(const QString& folder, FolderHold hold, const RunOptions& options)
{
    const bool dryRun = options.dryRun;
    const QByteArray folderText = folder.toLatin1();
    platformPrintf(dryRun ? "\nDry run in folder '%s': files older than %d days are only listed, nothing is deleted.\n"
                          : "\nStarting to delete files in folder '%s', File have to be older than %d days.\n",
                   folderText.constData(), options.daysOld);

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
    platformPrintf(dryRun ? "  %d files would be deleted (%s Kib). \n\n" : "  %d files deleted (%s Kib). \n\n",
                   deletedCount, formatGroupedNumber(deletedKiB).toLatin1().constData());
    if (!errors.isEmpty())
        platformPrintf("\nErrors:\n %s \n\n", errors.toLatin1().constData());
    if (options.verbose)
        platformPrintf("\n%s\n\n", log.toLatin1().constData());
    platformPrintf("  Done. Free drive space in %s is %s MiB\n\n", folderText.constData(),
                   formatGroupedNumber(freeDriveSpaceMiB(absolutePath(folder))).toLatin1().constData());
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
