"""The banner, the usage text and the exit codes of the command line."""

import pytest

from conftest import DAY, make_tree, tree

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
    "  -keep <pattern>: Never delete files or folders whose name matches <pattern> (* and ? wildcards, repeatable).\n"
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


# Each bad argument ends the run before any folder is touched, and the first
# one wins. A missing folder, or a file named as one, is no error.
@pytest.mark.parametrize("args, out, code", [
    (["-do", "7", "-v"], "Warning: directory  does not exist!\n", 0),
    (["<f>\\absent", "-do", "1"], "Warning: directory <f>\\absent does not exist!\n", 0),
    (["<f>\\old.txt", "-do", "1"], "Warning: directory <f>\\old.txt does not exist!\n", 0),
    (["<f>", "-v", "-do"], "Error: -do needs a value!\n", 2),
    (["<f>", "-do", "14", "-KXROOT"], "Error: -KXROOT needs a value!\n", 2),
    (["<f>", "-do", "14", "-loadstatus"], "Error: -loadstatus needs a value!\n", 2),
    (["<f>", "-do", "abc"], "Error: Unable to convert abc into a number!\n", 3),
    (["-do", "-v", "<f>"], "Error: Unable to convert -v into a number!\n", 3),
    (["<f>", "-do7", "-verbose"], "Error: Unknown option -do7!\n", 2),
    (["--dryrun", "<f>", "-do", "abc"], "Error: Unknown option --dryrun!\n", 2),
    (["-n", "<f>", "-do", "14"], "Error: Unknown option -n!\n", 2),
    (["/dryrun", "<f>", "-do", "14"], "Error: More than one folder given: /dryrun and <f>!\n", 2),
    (["<f>", "-do", "14", "<f>\\sub"], "Error: More than one folder given: <f> and <f>\\sub!\n", 2),
    (["<f>", "-do", "14", "-keep"], "Error: -keep needs a value!\n", 2),
    (["-keep", "", "<f>", "-do", "14"], "Error: -keep needs a name pattern without a folder separator, not ''!\n", 2),
    (["-keep", "<f>", "-do", "14"], "Error: -keep needs a name pattern without a folder separator, not '<f>'!\n", 2),
    (["<f>", "-do", "14", "-KEEP", "\u00e9t\u00e9/*"],
     "Error: -keep needs a name pattern without a folder separator, not '\u00e9t\u00e9/*'!\n", 2),
])
def test_bad_arguments_end_the_run_before_any_folder_is_touched(tool, drive, work, args, out, code):
    make_tree(work, {"old.txt": (30 * DAY, 1), "sub/old.txt": (30 * DAY, 1)})
    folder = drive.win(work)
    result = tool(*(arg.replace("<f>", folder) for arg in args))
    assert (result.out, result.code) == (BANNER + out.replace("<f>", folder), code)
    assert tree(work) == ["old.txt", "sub/", "sub/old.txt"]
