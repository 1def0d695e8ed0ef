#include "app/command_line.h"
#include "app/folder_run.h"
#include "app/free_space.h"
#include "app/log_file.h"
#include "app/metrics.h"
#include "app/run_lock.h"
#include "app/startup_check.h"
#include "app/wildcard.h"
#include "sweep/file_ops.h"
#include "text/output.h"
#include "text/path_normalize.h"

#include <QElapsedTimer>

namespace {

// The command line as Windows holds it, in UTF-16, split once: a name in any
// script reaches the tool whole, whatever the system's 8-bit code page.
QStringList argumentList(int argc, wchar_t* argv[])
{
    QStringList arguments;
    for (int i = 0; i < argc; ++i)
        arguments.append(QString::fromWCharArray(argv[i]));
    return arguments;
}

int cleanFolders(const RunOptions& options, RunTotals& totals)
{
    // No line feed: the start line of the first folder begins with one, while a
    // missing folder's warning follows on the same line.
    if (options.directory.contains(QLatin1Char('*')))
        printText(fillIn("Searching for folders matching '%1'.", options.directory));
    std::vector<LocatedFolder> located;
    expandWildcardFolders(options.directory, FolderPass{options, PassKind::Age, 0, nullptr, &totals,
                                                        options.hasFreeGoal ? &located : nullptr, QString()});
    if (!options.hasFreeGoal)
        return kExitOk;
    return reachFreeSpaceGoal(options, located, totals);
}

// The metrics file is written at the end of the run, so its folder is checked
// before anything is touched.
bool promFolderExists(const RunOptions& options)
{
    if (!options.hasPromFile || folderExists(folderOfPath(absolutePath(options.promFile))))
        return true;
    printText(fillIn("Error: the folder of the -prom file %1 does not exist!\n", options.promFile));
    return false;
}

// A dry run's figures would look like a cleanup to the monitoring, so it
// writes none. False when the file could not be written.
bool writeMetrics(const RunOptions& options, const RunTotals& totals, const QElapsedTimer& timer, int code)
{
    if (!options.hasPromFile || options.dryRun)
        return true;
    return writeMetricsFile(options.promFile, MetricsRun{options.directory, metricsTask(options.promFile),
                                                         currentTime(), timer.elapsed(), code, totals});
}

}

int wmain(int argc, wchar_t* argv[])
{
    QElapsedTimer timer;
    timer.start();
    const QStringList arguments = argumentList(argc, argv);
    printBanner();
    if (arguments.size() < kMinimumArgc) {
        printUsage();
        return kExitUsage;
    }
    if (!checkInstallRoot(arguments))
        return kExitRootNotFound;

    RunOptions options;
    const int optionsExit = readOptions(arguments, options);
    if (optionsExit != kExitOk)
        return optionsExit;
    // A check writes nothing, so neither the log nor the metrics are opened,
    // and it may run beside a cleanup.
    if (!options.hasLogFile || options.check)
        forgoLog();
    if (options.check)
        return checkFreeSpaceGoal(options);
    if (!lockFolderRuns(options.directory)) {
        printText(fillIn("Error: another run on %1 is still going!\n", options.directory));
        return kExitAlreadyRunning;
    }
    if (!promFolderExists(options) || (options.hasLogFile && !openLogFile(options.logFile)))
        return kExitBadOption;
    RunTotals totals;
    int code = cleanFolders(options, totals);
    // A folder there but unread was not cleaned; 5 wins over 4.
    if (totals.folderUnread)
        code = kExitIncomplete;
    // A report or figures that never reached their file leave the run
    // incomplete; the metrics carry that code when the log is what failed.
    if (logWriteFailed())
        code = kExitIncomplete;
    if (!writeMetrics(options, totals, timer, code))
        code = kExitIncomplete;
    reportLogFailure();
    return code;
}
