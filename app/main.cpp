#include "app/command_line.h"
#include "app/folder_run.h"
#include "app/startup_check.h"
#include "app/wildcard.h"
#include "text/platform_printf.h"

int main(int argc, char* argv[])
{
    printBanner();
    if (argc < kMinimumArgc) {
        printUsage();
        return kExitUsage;
    }
    if (!checkInstallRoot(argc, argv))
        return kExitRootNotFound;

    RunOptions options;
    const int optionsExit = readOptions(argc, argv, options);
    if (optionsExit != kExitOk)
        return optionsExit;

    if (options.directoryIndex > 0) {
        const QString folder = wideArgument(options.directoryIndex, argc);
        if (!folder.isEmpty())
            options.directory = folder;
    }
    progressStamp() = 0;
    // No line feed: the start line of the first folder begins with one, while a
    // missing folder's warning follows on the same line.
    if (options.directory.contains(QLatin1Char('*')))
        platformPrintf("Searching for folders matching '%s'.", options.directory.toLatin1().constData());
    expandWildcardFolders(options.directory, options);
    return kExitOk;
}
