#include "app/folder_run.h"

#include "app/volume_space.h"
#include "sweep/error_text.h"
#include "sweep/file_ops.h"
#include "sweep/folder_hold_win.h"
#include "sweep/log_spill_win.h"
#include "sweep/win32.h"
#include "text/output.h"
#include "text/path_normalize.h"

#include <QDateTime>

#include <utility>

namespace {

// A drive whose free space cannot be read is reported with this many MiB.
constexpr std::uint32_t kUnknownFreeMiB = 1000;
constexpr int kBytesToMiBShift = 20;

QString localTime(TimeStamp time)
{
    return QDateTime::fromSecsSinceEpoch(time).toString(QStringLiteral("yyyy-MM-dd hh:mm:ss"));
}

void printStartLine(const QString& folder, const FolderPass& pass)
{
    const bool dryRun = pass.options.dryRun;
    if (pass.kind == PassKind::FreeSpace) {
        printText(fillIn(dryRun ? "Dry run, freeing space in folder '%1': files changed before %2 are only listed, "
                                  "nothing is deleted.\n"
                                : "Freeing space in folder '%1': files changed before %2 are deleted.\n",
                         folder, localTime(pass.changedBefore)));
        return;
    }
    const QString days = QString::number(pass.options.daysOld);
    printText(fillIn(dryRun ? "\nDry run in folder '%1': files older than %2 days are only listed, nothing is deleted.\n"
                            : "\nStarting to delete files in folder '%1', File have to be older than %2 days.\n",
                     folder, days));
}

// The scan only looks.
SweepMode sweepMode(const FolderPass& pass)
{
    if (pass.kind == PassKind::Scan)
        return SweepMode::Collect;
    return pass.options.dryRun ? SweepMode::DryRun : SweepMode::Delete;
}

SweepSettings settingsFor(const FolderPass& pass)
{
    const RunOptions& options = pass.options;
    SweepSettings settings;
    // The folder named on the command line, or found by a wildcard, is never
    // removed itself.
    settings.removeIfEmpty = false;
    settings.ageLimitSeconds = ageLimitSeconds(options.daysOld);
    settings.ageBy = options.ageBy;
    settings.mode = sweepMode(pass);
    settings.keepPatterns = options.keepPatterns;
    settings.freeingSpace = pass.kind != PassKind::Age;
    settings.changedBefore = pass.changedBefore;
    return settings;
}

// The free space of the folder's drive, as the report shows it, and as the
// run's last reading.
QString freeSpaceText(const QString& folder, RunTotals* totals)
{
    std::uint64_t freeBytes = 0;
    std::uint64_t totalBytes = 0;
    const bool known = readFolderSpace(folder, freeBytes, totalBytes);
    if (totals != nullptr) {
        totals->freeKnown = known;
        totals->freeBytes = freeBytes;
    }
    return formatGroupedNumber(known ? freeBytes >> kBytesToMiBShift : kUnknownFreeMiB);
}

}

bool runFolder(const QString& folder, const FolderPass& pass)
{
    std::uint32_t error = ERROR_SUCCESS;
    if (!folderExists(folder, error)) {
        reportUnreachedFolder(folder, error, pass);
        return false;
    }
    runReachedFolder(folder, holdNamedFolder(folder), pass);
    return true;
}

void warnMissingFolder(const QString& folder)
{
    printText(fillIn("Warning: directory %1 does not exist!\n", folder));
}

// Only "file not found", "path not found" and a file in the folder's place say
// that a folder is not there: a share that is down, access denied or a folder
// held by another program is a miss that monitoring must see.
void reportUnreachedFolder(const QString& folder, std::uint32_t error, const FolderPass& pass)
{
    if (error == ERROR_SUCCESS || error == ERROR_FILE_NOT_FOUND || error == ERROR_PATH_NOT_FOUND
        || error == ERROR_DIRECTORY) {
        if (pass.warns())
            warnMissingFolder(folder);
        return;
    }
    if (pass.totals != nullptr)
        pass.totals->folderUnread = true;
    if (pass.warns())
        printText(fillIn("Error: directory %1 cannot be read:%2\n", folder, toQString(systemErrorText(error))));
}

void runReachedFolder(const QString& folder, FolderHold hold, const FolderPass& pass)
{
    if (pass.kind == PassKind::Locate) {
        pass.located->push_back(LocatedFolder{folder, volumeKey(folder)});
        return;
    }
    if (!pass.onVolume.isEmpty() && volumeKey(folder).compare(pass.onVolume, Qt::CaseInsensitive) != 0)
        return;
    if (!hold.isHeld() && pass.totals != nullptr)
        pass.totals->folderUnread = true;
    const SweepSettings settings = settingsFor(pass);
    if (pass.kind == PassKind::Scan) {
        SweepOutputs collect;
        collect.candidates = pass.candidates;
        sweepHeldFolder(folder, std::move(hold), settings, collect);
        return;
    }
    printStartLine(folder, pass);
    QString errors;
    QString log;
    std::int32_t deletedCount = 0;
    std::int64_t deletedKiB = 0;
    // Every pass that reports has its totals; only the scan and the locating
    // pass, which ended above, have none.
    RunTotals& totals = *pass.totals;
    // Without -v the log would only be dropped, so none is kept: the run's
    // memory then stays with the folders on the current path, not the tree.
    SweepOutputs outputs{&errors, &deletedCount, &deletedKiB, pass.options.verbose ? &log : nullptr,
                         &progressStamp()};
    outputs.freedBytes = &totals.freedBytes;
    outputs.deletedBytes = &totals.deletedBytes;
    const std::int64_t freedBefore = totals.freedBytes;
    LogSpill spill;
    outputs.logSpill = &spill;
    sweepHeldFolder(folder, std::move(hold), settings, outputs);
    if (pass.located != nullptr)
        pass.located->push_back(LocatedFolder{folder, volumeKey(folder), totals.freedBytes - freedBefore});
    totals.deletedFiles += deletedCount;
    totals.errors += errors.count(QLatin1Char('\n'));
    if (pass.kind == PassKind::Age)
        ++totals.folders;

    // "Kib" is the report's own spelling.
    printText(fillIn(pass.options.dryRun ? "  %1 files would be deleted (%2 Kib). \n\n"
                                         : "  %1 files deleted (%2 Kib). \n\n",
                     QString::number(deletedCount), formatGroupedNumber(deletedKiB)));
    if (!errors.isEmpty())
        printText(fillIn("\nErrors:\n %1 \n\n", errors));
    if (pass.options.verbose) {
        printText(QStringLiteral("\n"));
        printSpilled(spill);
        printText(log + QStringLiteral("\n\n"));
    }
    printText(fillIn("  Done. Free drive space in %1 is %2 MiB\n\n", folder, freeSpaceText(folder, &totals)));
}
