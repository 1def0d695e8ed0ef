#include "app/command_line.h"

#include "app/version.h"
#include "install/root_rules.h"
#include "sweep/keep_pattern.h"
#include "text/platform_printf.h"

namespace {

const char* const kBannerRule = ".----------------------------------------------------------------\n";
const char* const kToolName = ". kxDeleteOldFiles ";
const char* const kVersion = " " KX_VERSION;
const char* const kMakerNotice = "Part of the KX render farm suite. Removes old files and emptied folders.";

const char* const kUsageLines[] = {
    "\nUsage:\n\n",
    "  kxDeleteOldFiles   directory  [-do <days_old>]  [-v]\n",
    "\n",
    "  directory: The directory to remove files from.\n",
    "             Subfolders are automatically searched as well. Empty subfolders are deleted.\n",
    "             The directory can contain a folder with a * wildcard to be replaced by ALL folder found\n",
    "  -do <days_old>: This tool does not delete files if they are not older than <days_old> days. Default: 14 days\n",
    "  -v: Enable verbose messages.\n",
    "  -dryrun: List what would be deleted, and delete nothing.\n",
    "  -keep <pattern>: Never delete files or folders whose name matches <pattern> (* and ? wildcards, repeatable).\n",
    "Note: There is no required order for the commandline flags\n",
    "\n",
    "\n",
    "Example commandlines: \n",
    "   Delete files from folder C:\\temp \n",
    "       kxDeleteOldFiles C:\\temp -do 7  \n",
    "\n",
    "   Delete files from the temp folder of all users\n",
    "       kxDeleteOldFiles -do 14 c:\\Users\\*\\AppData\\Local\\Temp    \n",
    "\n",
    "   Delete files from the temp folder of all users starting with 'm'\n",
    "       kxDeleteOldFiles -do 14 c:\\Users\\m*\\AppData\\Local\\Temp \n",
    "\n",
    "\n",
};

bool isOption(const QString& argument, const char* option)
{
    return argument.compare(QString::fromLatin1(option), Qt::CaseInsensitive) == 0;
}

bool takesValue(const QString& argument)
{
    return isRootFlag(argument) || isOption(argument, "-do") || isOption(argument, "-keep");
}

// The value after -do or -keep is taken whatever it looks like, so "-do -v"
// fails to convert. A root flag's value is root discovery's alone.
int readValue(const QString& option, const QString& value, RunOptions& options)
{
    if (isOption(option, "-do")) {
        bool converted = false;
        options.daysOld = value.toInt(&converted, 10);
        if (converted)
            return kExitOk;
        platformPrintf("Error: Unable to convert %s into a number!\n", value.toLatin1().constData());
        return kExitBadDaysOld;
    }
    if (isOption(option, "-keep")) {
        if (!isKeepPattern(value)) {
            platformPrintf("Error: -keep needs a name pattern without a folder separator, not '%s'!\n",
                           value.toLatin1().constData());
            return kExitBadOption;
        }
        options.keepPatterns.append(value);
    }
    return kExitOk;
}

// Any other argument that begins with "-" is a typo, never the directory.
int readSingle(const QString& argument, int index, RunOptions& options)
{
    if (isOption(argument, "-v")) {
        options.verbose = true;
        return kExitOk;
    }
    if (isOption(argument, "-dryrun")) {
        options.dryRun = true;
        return kExitOk;
    }
    if (argument.startsWith(QLatin1Char('-'))) {
        platformPrintf("Error: Unknown option %s!\n", argument.toLatin1().constData());
        return kExitBadOption;
    }
    if (options.directoryIndex > 0) {
        platformPrintf("Error: More than one folder given: %s and %s!\n", options.directory.toLatin1().constData(),
                       argument.toLatin1().constData());
        return kExitBadOption;
    }
    options.directory = argument;
    options.directoryIndex = index;
    return kExitOk;
}

}

void printBanner()
{
    platformPrintf("%s", kBannerRule);
    platformPrintf("%s", kToolName);
    platformPrintf("%s", kVersion);
    platformPrintf("\n");
    platformPrintf(". ");
    platformPrintf("%s", kMakerNotice);
    platformPrintf("\n");
    platformPrintf("%s", kBannerRule);
}

void printUsage()
{
    for (const char* line : kUsageLines)
        platformPrintf("%s", line);
}

int readOptions(int argc, char* argv[], RunOptions& options)
{
    int i = 1;
    while (i < argc) {
        const QString argument = QString::fromLatin1(argv[i]);
        if (!takesValue(argument)) {
            const int code = readSingle(argument, i, options);
            if (code != kExitOk)
                return code;
            ++i;
            continue;
        }
        if (i + 1 == argc) {
            platformPrintf("Error: %s needs a value!\n", argument.toLatin1().constData());
            return kExitBadOption;
        }
        const QString value = QString::fromLatin1(argv[i + 1]);
        const int code = readValue(argument, value, options);
        if (code != kExitOk)
            return code;
        // Root discovery reads the argument after every root flag, even one
        // that is another option's value; that value is read again here, so
        // what discovery takes as a root never becomes the directory.
        i += isRootFlag(value) ? 1 : 2;
    }
    return kExitOk;
}
