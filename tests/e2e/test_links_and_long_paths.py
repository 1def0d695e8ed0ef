"""Links below the named folder are never followed, and long or deep paths are
handled whole. Every link points at a folder of its own: under Wine, removing a
link to a folder removes the folder it points at."""

import os

from conftest import DAY, make_tree, tree
from test_command_line import BANNER
from test_sweep import masked, report

OLD = 30 * DAY
YOUNG = 60


def link(path, target):
    path.parent.mkdir(parents=True, exist_ok=True)
    os.symlink(target, path, target_is_directory=True)


def test_link_in_the_tree_is_kept_and_not_entered(tool, drive, work):
    make_tree(work, {"tree/a.old": (OLD, 1), "tree/sub/b.old": (OLD, 1), "library/canary.old": (OLD, 1)})
    link(work / "tree" / "cache", work / "library")
    folder = drive.win(work / "tree")
    result = tool("-do", "14", "-v", folder)
    log = (f"   [{folder}]: \n     -del a.old\n     -lnk [cache]\n     -dir [sub]\n"
           f"   [{folder}\\sub]: \n     -del b.old\n")
    assert masked(result.out) == BANNER + report(folder, 14, 2, 0, log=log)
    assert (work / "tree" / "cache").is_symlink()
    assert tree(work / "library") == ["canary.old"]
    assert tree(work / "tree") == ["cache/"]


def test_wildcard_never_reaches_through_a_link(tool, drive, work):
    make_tree(work, {
        "Users/alice/AppData/Local/Temp/old.tmp": (OLD, 1),
        "elsewhere/AppData/Local/Temp/canary.tmp": (OLD, 1),
        "Users/bob/": None,
        "shared/Local/Temp/canary.tmp": (OLD, 1),
    })
    link(work / "Users" / "linked", work / "elsewhere")
    link(work / "Users" / "bob" / "AppData", work / "shared")
    users = drive.win(work / "Users")
    temp = "\\AppData\\Local\\Temp"
    result = tool("-do", "14", users + "\\*" + temp)
    alice = users + "\\alice" + temp
    # The linked user folder is no match at all; bob's is reached through his
    # AppData link and is skipped with a warning.
    assert masked(result.out) == (
        BANNER + f"Searching for folders matching '{users}\\*{temp}'." + report(alice, 14, 1, 0)
        + f"Warning: directory {users}\\bob{temp} is reached through a link, skipped!\n")
    assert "canary.tmp" in tree(work / "elsewhere" / "AppData" / "Local" / "Temp")
    assert "canary.tmp" in tree(work / "shared" / "Local" / "Temp")
    assert tree(work / "Users" / "alice") == ["AppData/", "AppData/Local/", "AppData/Local/Temp/"]


def test_links_the_command_line_names_are_followed(tool, drive, work):
    make_tree(work, {"target/jobs/j1/old.tmp": (OLD, 1), "target/jobs/j1/new.tmp": (YOUNG, 1),
                     "target/direct/old.tmp": (OLD, 1), "target/direct/sub/old.tmp": (OLD, 1)})
    link(work / "named", work / "target")
    named = drive.win(work / "named")
    assert "  2 files deleted" in tool("-do", "14", named + "\\direct").out
    assert "  1 files deleted" in tool("-do", "14", named + "\\jobs\\*").out
    assert tree(work / "target") == ["direct/", "jobs/", "jobs/j1/", "jobs/j1/new.tmp"]


def test_deep_tree_with_paths_of_thousands_of_units(tool, drive, work):
    levels = 330
    kept = "/".join("level_%04d" % i for i in range(levels))
    gone = "/".join("other_%04d" % i for i in range(levels))
    files = {kept + "/young.txt": (YOUNG, 1), gone + "/old.txt": (OLD, 1)}
    files.update({"/".join(kept.split("/")[:depth]) + "/old.txt": (OLD, 1) for depth in range(1, levels + 1)})
    make_tree(work, files)
    assert len(drive.win(work / kept / "young.txt")) > 3300
    result = tool("-do", "14", drive.win(work))
    assert f"  {levels + 1} files deleted (0 Kib). \n" in result.out and "Errors:" not in result.out
    assert [entry for entry in tree(work) if not entry.endswith("/")] == [kept + "/young.txt"]
    assert len(tree(work)) == levels + 1
