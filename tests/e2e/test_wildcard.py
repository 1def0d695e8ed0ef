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
    assert tree(work) == ["Users/", "Users/Mike/", "Users/Mike/AppData/", "Users/Mike/AppData/Local/",
                          "Users/Mike/AppData/Local/Temp/", "Users/bob/", "Users/bob/AppData/",
                          "Users/bob/AppData/Local/", "Users/bob/AppData/Local/Temp/",
                          "Users/bob/AppData/Local/Temp/d.tmp", "Users/mary/", "Users/mary/AppData/",
                          "Users/mary/AppData/Local/", "Users/mary/AppData/Local/Temp/", "Users/mona/",
                          "Users/mona/Documents/"]


def test_missing_subpath_warning_follows_the_search_line(tool, drive, work):
    make_tree(work, {"Users/anna/": None})
    pattern = drive.win(work / "Users") + "\\*\\Temp"
    result = tool(pattern, "-do", "1")
    assert result.out == BANNER + (
        f"Searching for folders matching '{pattern}'."
        f"Warning: directory {drive.win(work / 'Users' / 'anna')}\\Temp does not exist!\n")


def test_trailing_wildcard_runs_every_folder_with_or_without_backslash(tool, drive, work):
    make_tree(work, {"jobs/j1/a.tmp": (OLD, 1), "jobs/j2/": None, "jobs/file.txt": (OLD, 1)})
    jobs = drive.win(work / "jobs")

    plain = tool("-do", "14", jobs + "\\*")
    assert reported_folders(plain.out) == [(jobs + "\\j1", ""), (jobs + "\\j2", "")]

    slashed = tool("-do", "14", jobs + "\\*\\")
    assert reported_folders(slashed.out) == [(jobs + "\\j1\\", ""), (jobs + "\\j2\\", "")]
    # Files beside the matched folders are not part of any run.
    assert "jobs/file.txt" in tree(work)


def test_two_wildcards_expand_depth_first(tool, drive, work):
    make_tree(work, {
        "a/x/t/": None, "a/y/t/": None,
        "b/x/t/": None,
    })
    root = drive.win(work)
    result = tool("-do", "14", root + "\\*\\*\\t")
    assert [folder for folder, _ in reported_folders(result.out)] == [
        root + "\\a\\x\\t", root + "\\a\\y\\t", root + "\\b\\x\\t"]


def test_text_behind_the_star_does_not_narrow_the_match(tool, drive, work):
    make_tree(work, {"Users/alpha/tmp/": None, "Users/ab/tmp/": None, "Users/zb/tmp/": None})
    users = drive.win(work / "Users")
    result = tool("-do", "14", users + "\\a*b\\tmp")
    assert [folder for folder, _ in reported_folders(result.out)] == [
        users + "\\ab\\tmp", users + "\\alpha\\tmp"]


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
