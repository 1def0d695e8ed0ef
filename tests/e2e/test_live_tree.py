"""Runs that need their own choreography: the clock at the limit, a tree that
changes or is renamed while it is swept, and a second run beside the first."""

import fcntl
import os
import re
import resource
import struct
import subprocess
import termios
import time

import pytest

from conftest import (BANNER, DAY, EXE, MESSAGE, TEST_TOOLS, WINE_RUN, Model, held_open, make_tree, masked,
                      pattern, tree, wait_for, wine_env)

# fcntl's request for a pipe's capacity, which Python names from 3.10 on.
F_GETPIPE_SZ = 1032


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
    first = work / "a_big" / "0000.tmp"
    # A run that ends with the first file still there never started: Wine now and then fails to start a
    # program at all. It is started once more.
    for _ in range(2):
        run = subprocess.Popen([str(WINE_RUN), EXE, "-v", "-do", "14", drive.win(work)], stdin=subprocess.DEVNULL,
                               stdout=subprocess.PIPE, env=wine_env())
        # The sibling's first file goes before the rewritten file's turn comes.
        wait_for(lambda: not first.exists() or run.poll() is not None, "the sibling's first file to go")
        if not first.exists():
            break
    (work / "b_rewritten.txt").write_text("new")
    (work / "c_vanished.txt").unlink()
    out = run.communicate(timeout=300)[0].decode("latin-1").replace("\r\n", "\n")
    assert "\n     -ignT b_rewritten.txt\n" in out
    # A file gone since the listing counts as deleted, with no error.
    assert "  2001 files deleted (0 Kib). \n" in out and "Errors:" not in out
    assert tree(work) == ["b_rewritten.txt"]


def pipe_is_full(pipe):
    """No page of the pipe is left free: its writer waits in its write."""
    room = fcntl.fcntl(pipe, F_GETPIPE_SZ) - resource.getpagesize()
    return struct.unpack("i", fcntl.ioctl(pipe, termios.FIONREAD, b"\0" * 4))[0] > room


# A job may rename its folder, and rename it back, while the run is below it:
# the holds share deletion. The tries fall while the run waits to print
# alice's report, longer than its output pipe holds, below alice and before
# bob's turn. Wine, unlike Windows, renames a folder while files below it are
# being deleted, and loses those deletions, so the run must stand still. Then a
# second run on the folder, spelt otherwise, ends at once, deleting and writing
# nothing, though it would delete every file.
def test_folders_from_the_match_down_can_be_renamed_and_back_and_a_second_run_waits_while_the_run_is_below_them(
        tool, drive, work):
    temp = work / "Users" / "alice" / "AppData" / "Local" / "Temp"
    make_tree(temp, ", ".join(f"{i:04d}_{'x' * 40}.tmp=o" for i in range(2000)) + ", z_new.tmp=y")
    make_tree(work, "Users/bob/AppData/Local/Temp/old.tmp=o")
    stars = drive.win(work / "Users") + "\\*\\AppData\\Local\\Temp"
    spelt = stars.upper().replace("\\", "/")
    run = subprocess.Popen([str(WINE_RUN), EXE, "-v", "-do", "14", stars], stdin=subprocess.DEVNULL,
                           stdout=subprocess.PIPE, env=wine_env())
    try:
        wait_for(lambda: pipe_is_full(run.stdout), "the run to fill its output pipe")
        # Local is the deepest folder held then, and Temp's run has let go of Temp: Windows, unlike Wine,
        # refuses to rename alice or AppData while Local is open below them.
        held = [temp.parent, temp]
        tries = subprocess.run(
            [str(WINE_RUN), str(TEST_TOOLS / "kxRenameWhenGone.exe"), "-",
             drive.win(work / "Users/bob/AppData/Local/Temp/old.tmp"), *(drive.win(folder) for folder in held)],
            stdin=subprocess.DEVNULL, capture_output=True, env=wine_env(), timeout=120).stdout.decode().splitlines()
        second = tool("-do", "0", spelt, "-log", drive.win(work / "second.log"))
    finally:
        out = run.communicate(timeout=300)[0].decode("latin-1")
    # Entered as a rename's target and as a current folder, not removed while
    # it holds files (145), renamed and renamed back, all before bob's turn.
    assert tries == ["ready"] + ["0 0 145 0 0"] * len(held) + ["during"]
    assert run.returncode == 0 and out.count(" files deleted") == 2 and "Errors:" not in out
    assert second == (6, BANNER + f"Error: another run on {spelt} is still going!\n", "")
    assert not (work / "second.log").exists()
    assert tree(work / "Users") == ["alice/", "alice/AppData/", "alice/AppData/Local/", "alice/AppData/Local/Temp/",
                                    "alice/AppData/Local/Temp/z_new.tmp", "bob/", "bob/AppData/", "bob/AppData/Local/",
                                    "bob/AppData/Local/Temp/"]


def test_folder_a_program_stands_in_is_cleaned_and_its_removal_reported(tool, drive, work):
    make_tree(work, "Temp/job/a.tmp=o1024, Temp/job/b.tmp=o1024, Temp/new.tmp=y")
    job = drive.win(work / "Temp" / "job")
    count = "  2 files deleted (2 Kib). \n\n"
    expected = BANNER + Model(drive, ["-do", "14", drive.win(work / "Temp")]).out().replace(
        count, f"{count}\nErrors:\n Error deleting folder {job}:{MESSAGE}\n \n\n")
    with held_open("-cd", job):
        result = tool("-do", "14", drive.win(work / "Temp"))
    assert re.fullmatch(pattern(expected), masked(result[1])), result[1]
    assert tree(work) == ["Temp/", "Temp/job/", "Temp/new.tmp"]

