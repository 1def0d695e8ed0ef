"""The banner, the usage text and the exit codes of the command line."""

import pytest

BANNER = (
    ".----------------------------------------------------------------\n"
    ". kxDeleteOldFiles  8.4.02\n"
    ". Part of the KX render farm suite. Removes old files and emptied folders.\n"
    ".----------------------------------------------------------------\n"
)

USAGE = (
    "\nUsage:\n\n"
    "  kxDeleteOldFiles   directory  [-do <days_old>]  [-v]\n"
    "\n"
    "  directory: The directory to remove files from.\n"
    "             Subfolders are automatically searched as well. Empty subfolders are deleted.\n"
    "             The directory can contain a folder with a * wildcard to be replaced by ALL folder found\n"
    "  -do <days_old>: This tool does not delete files if they are not older than <days_old> days. Default: 14 days\n"
    "  -v: Enable verbose messages.\n"
    "  -dryrun: List what would be deleted, and delete nothing.\n"
    "Note: There is no required order for the commandline flags\n"
    "\n\n"
    "Example commandlines: \n"
    "   Delete files from folder C:\\temp \n"
    "       kxDeleteOldFiles C:\\temp -do 7  \n"
    "\n"
    "   Delete files from the temp folder of all users\n"
    "       kxDeleteOldFiles -do 14 c:\\Users\\*\\AppData\\Local\\Temp    \n"
    "\n"
    "   Delete files from the temp folder of all users starting with 'm'\n"
    "       kxDeleteOldFiles -do 14 c:\\Users\\m*\\AppData\\Local\\Temp \n"
    "\n\n"
)

EXIT_USAGE = 255  # -1 as the shell sees it


@pytest.mark.parametrize("args", [(), ("C:\\temp",), ("C:\\temp", "-v")])
def test_fewer_than_three_arguments_print_usage_and_exit_minus_one(tool, args):
    result = tool(*args)
    assert result.out == BANNER + USAGE
    assert result.code == EXIT_USAGE
    assert result.err == ""
