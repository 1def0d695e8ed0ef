#include "app/command_line.h"

#include "app/version.h"
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

// "-do" as the last argument is no option and becomes the directory; the value
// after "-do" is taken whatever it looks like, so "-do -v" fails to convert.
bool readOptions(int argc, char* argv[], RunOptions& options)
{
    int i = 1;
    while (i < argc) {
        const QString argument = QString::fromLatin1(argv[i]);
        if (isOption(argument, "-do") && i + 1 < argc) {
            const QString value = QString::fromLatin1(argv[i + 1]);
            bool converted = false;
            options.daysOld = value.toInt(&converted, 10);
            if (!converted) {
                platformPrintf("Error: Unable to convert %s into a number!\n", value.toLatin1().constData());
                return false;
            }
            i += 2;
            continue;
        }
        if (isOption(argument, "-v"))
            options.verbose = true;
        else if (isOption(argument, "-dryrun"))
            options.dryRun = true;
        else
            options.directory = argument;
        ++i;
    }
    return true;
}
