"""Folder components with "*" run one report per matching folder, depth-first."""

import os
import re

import pytest

from conftest import DAY, make_tree, tree
from test_command_line import BANNER

OLD = 30 * DAY


def reported_folders(out: str):
    """The folders of the start and warning lines, in the order printed."""
    return re.findall(r"Starting to delete files in folder '([^']*)'|Warning: directory (.*) does not exist!", out)


def test_users_starting_with_m_each_get_their_own_report(tool, drive, work):
    make_tree(work, {
        "Users/mary/AppData/Local/Temp/a.tmp": (OLD, 1),
        "Users/Mike/AppData/Local/Temp/sub/c.tmp": (OLD, 1),
        "Users/mona/Documents/": None,
        "Users/bob/AppData/Local/Temp/d.tmp": (OLD, 1),
    })
    users = drive.win(work / "Users")
    # Folder names are matched ignoring case, as Windows matches them.
    temp = "\\appdata\\LOCAL\\temp"
    result = tool("-do", "14", users + "\\m*" + temp)
    assert result.out.startswith(BANNER + f"Searching for folders matching '{users}\\m*{temp}'.\n")
    assert result.out.count("Searching for folders matching") == 1
    # In the order the file system lists them: names compared upper-cased.
    assert reported_folders(result.out) == [
        (users + "\\mary" + temp, ""), (users + "\\Mike" + temp, ""), ("", users + "\\mona" + temp)]
    # Each matched folder stays, emptied; only what was below it goes.
    left = tree(work)
    assert [path for path in left if not path.endswith("/")] == ["Users/bob/AppData/Local/Temp/d.tmp"]
    assert "Users/Mike/AppData/Local/Temp/" in left and "Users/Mike/AppData/Local/Temp/sub/" not in left


def test_missing_subpath_warning_follows_the_search_line(tool, drive, work):
    make_tree(work, {"Users/anna/": None})
    pattern = drive.win(work / "Users") + "\\*\\Temp"
    result = tool(pattern, "-do", "1")
    assert result.out == BANNER + (
        f"Searching for folders matching '{pattern}'."
        f"Warning: directory {drive.win(work / 'Users' / 'anna')}\\Temp does not exist!\n")


# Matches in the order the file system lists them, each run with the rest of
# the path behind it; two stars expand depth-first; the text between a star and
# the next backslash does not narrow the match and is not put back.
@pytest.mark.parametrize("pattern, folders", [
    ("\\jobs\\*", ["\\jobs\\j1", "\\jobs\\j2"]),
    ("\\jobs\\*\\", ["\\jobs\\j1\\", "\\jobs\\j2\\"]),
    ("\\deep\\*\\*\\t", ["\\deep\\a\\x\\t", "\\deep\\a\\y\\t", "\\deep\\b\\x\\t"]),
    ("\\Users\\a*b\\tmp", ["\\Users\\ab\\tmp", "\\Users\\alpha\\tmp"]),
])
def test_stars_expand_to_every_matching_folder(tool, drive, work, pattern, folders):
    make_tree(work, {"jobs/j1/a.tmp": (OLD, 1), "jobs/j2/": None, "jobs/file.txt": (OLD, 1),
                     "deep/a/x/t/": None, "deep/a/y/t/": None, "deep/b/x/t/": None,
                     "Users/alpha/tmp/": None, "Users/ab/tmp/": None, "Users/zb/tmp/": None})
    root = drive.win(work)
    result = tool("-do", "14", root + pattern)
    assert reported_folders(result.out) == [(root + folder, "") for folder in folders]
    # Files beside the matched folders are not part of any run.
    assert "jobs/file.txt" in tree(work)


def test_lone_star_or_no_match_prints_only_the_search_line(tool, drive, work):
    make_tree(work, {"Users/": None})
    for pattern in ("*", drive.win(work / "Users") + "\\q*"):
        result = tool("-do", "14", pattern)
        assert result.out == BANNER + f"Searching for folders matching '{pattern}'."
        assert result.code == 0


@pytest.mark.parametrize("separators", ["\\*/AppData/Local/Temp", "\\*\\AppData/Local/Temp", "/*/AppData\\Local/Temp"])
def test_slashes_in_a_wildcard_path_separate_folders(tool, drive, work, separators):
    make_tree(work, {
        "Users/alice/AppData/Local/Temp/old.tmp": (OLD, 1), "Users/alice/Documents/thesis.doc": (OLD, 1),
        "Users/bob/AppData/": None, "shared/Temp/canary.tmp": (OLD, 1),
    })
    os.symlink(work / "shared", work / "Users" / "bob" / "AppData" / "Local", target_is_directory=True)
    users = drive.win(work / "Users")
    result = tool("-do", "14", users + separators)
    assert reported_folders(result.out) == [(users + "\\alice\\AppData\\Local\\Temp", "")]
    assert result.out.startswith(BANNER + f"Searching for folders matching '{users}{separators}'.\n")
    assert result.out.endswith(f"Warning: directory {users}\\bob\\AppData\\Local\\Temp is reached through a link, "
                               "skipped!\n")
    assert tree(work / "Users" / "alice") == ["AppData/", "AppData/Local/", "AppData/Local/Temp/", "Documents/",
                                              "Documents/thesis.doc"]
    assert tree(work / "shared") == ["Temp/", "Temp/canary.tmp"]
