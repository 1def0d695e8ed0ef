#include "app/command_line.h"
#include "app/folder_run.h"
#include "app/free_space.h"
#include "app/log_file.h"
#include "app/startup_check.h"
#include "app/wildcard.h"
#include "text/output.h"

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

int cleanFolders(const RunOptions& options)
{
    // No line feed: the start line of the first folder begins with one, while a
    // missing folder's warning follows on the same line.
    if (options.directory.contains(QLatin1Char('*')))
        printText(fillIn("Searching for folders matching '%1'.", options.directory));
    RunTotals totals;
    expandWildcardFolders(options.directory, FolderPass{options, PassKind::Age, 0, nullptr, &totals});
    if (!options.hasFreeGoal)
        return kExitOk;
    return reachFreeSpaceGoal(options, totals);
}

}

int wmain(int argc, wchar_t* argv[])
{
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
    if (options.hasLogFile && !openLogFile(options.logFile))
        return kExitBadOption;
    const int code = cleanFolders(options);
    reportLogFailure();
    return code;
}
