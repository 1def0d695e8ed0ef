"""Runs that need their own choreography: the clock at the limit, a tree that
changes or is renamed while it is swept, and long relative paths."""

import os
import re
import subprocess
import time

import pytest

from conftest import BANNER, DAY, EXE, MESSAGE, TEST_TOOLS, WINE_RUN, Model, expect_run, held_open, make_tree, masked, tree, wine_env


def test_file_one_second_too_young_and_one_at_the_limit_survive(tool, drive, work):
    # The tool reads the clock itself: a run that starts and ends within the
    # second the tree was dated from has exactly that "now".
    for _ in range(30):
        now = int(time.time())
        for name, age in (("older.txt", 2 * DAY + 1), ("at_limit.txt", 2 * DAY), ("too_young.txt", 2 * DAY - 1)):
            (work / name).write_text("x")
            os.utime(work / name, (now - age, now - age))
        tool("-do", "2", drive.win(work))
        if int(time.time()) == now:
            assert tree(work) == ["at_limit.txt", "too_young.txt"]
            return
    pytest.fail("no run of the tool finished within a single second")


def test_file_rewritten_during_the_sweep_stays_and_one_removed_counts(suite, drive, work):
    make_tree(work, ", ".join(f"a_big/{i:04d}.tmp=o" for i in range(2000)) + ", b_rewritten.txt=o, c_vanished.txt=o")
    run = subprocess.Popen([str(WINE_RUN), EXE, "-v", "-do", "14", drive.win(work)], stdin=subprocess.DEVNULL,
                           stdout=subprocess.PIPE, env=wine_env())
    # The sibling's first file goes before the rewritten file's turn comes.
    while (work / "a_big" / "0000.tmp").exists():
        pass
    (work / "b_rewritten.txt").write_text("new")
    (work / "c_vanished.txt").unlink()
    out = run.communicate(timeout=300)[0].decode("latin-1").replace("\r\n", "\n")
    assert "\n     -ignT b_rewritten.txt\n" in out
    # A file gone since the listing counts as deleted, with no error.
    assert "  2001 files deleted (0 Kib). \n" in out and "Errors:" not in out
    assert tree(work) == ["b_rewritten.txt"]


def test_folders_from_the_match_down_can_be_entered_but_not_removed_or_renamed_while_swept(tool, drive, work):
    temp = work / "Users" / "alice" / "AppData" / "Local" / "Temp"
    make_tree(temp, ", ".join(f"b_big/{i:04d}.tmp=o" for i in range(2000)) + ", a_first.tmp=o, c_last.tmp=o")
    held = [temp.parent.parent.parent, temp.parent.parent, temp.parent, temp]
    renamer = subprocess.Popen(
        [str(WINE_RUN), str(TEST_TOOLS / "kxRenameWhenGone.exe"), drive.win(temp / "a_first.tmp"),
         drive.win(temp / "c_last.tmp"), *(drive.win(folder) for folder in held)],
        stdin=subprocess.DEVNULL, stdout=subprocess.PIPE, env=wine_env())
    assert renamer.stdout.readline().strip() == b"ready"
    result = tool("-do", "14", drive.win(work / "Users") + "\\*\\AppData\\Local\\Temp")
    tries = renamer.communicate(timeout=120)[0].decode().splitlines()
    # Entered as a rename's target and as a current folder, but neither removed
    # nor renamed (32, a sharing violation), each tried while the sweep went on.
    assert tries == ["0 0 32 32"] * len(held) + ["during"]
    assert "  2002 files deleted" in result[1]
    assert tree(work / "Users" / "alice") == ["AppData/", "AppData/Local/", "AppData/Local/Temp/"]


def test_folder_a_program_stands_in_is_cleaned_and_its_removal_reported(tool, drive, work):
    make_tree(work, "Temp/job/a.tmp=o1024, Temp/job/b.tmp=o1024, Temp/new.tmp=y")
    job = drive.win(work / "Temp" / "job")
    count = "  2 files deleted (2 Kib). \n\n"
    expected = BANNER + Model(drive, ["-do", "14", drive.win(work / "Temp")]).out().replace(
        count, f"{count}\nErrors:\n Error deleting folder {job}:{MESSAGE}\n \n\n")
    with held_open("-cd", job):
        result = tool("-do", "14", drive.win(work / "Temp"))
    assert re.fullmatch(re.escape(expected).replace(re.escape(MESSAGE), r"[^\n]+"), masked(result[1])), result[1]
    assert tree(work) == ["Temp/", "Temp/job/", "Temp/new.tmp"]


# A long relative path, named or reached, is made absolute before it gets the
# long-path prefix, and the free space is read from its real drive.
def test_relative_folder_cleans_long_paths(tool, drive, work):
    deep = "data/" + "/".join("relative_component_%02d" % i for i in range(14))
    make_tree(work, f"{deep}/old.txt=o, {deep}/new.txt=y, data/x/old.txt=o, {deep}/y/old.txt=o")
    assert len(deep) > 240
    for folder in (deep.replace("/", "\\") + "\\y", "x\\..\\data", ".\\data", "data"):
        expect_run(tool, drive, work, ["-do", "14", folder], cwd=work)
