"""-minfree on a small drive of the test's own, T:, a tmpfs of 64 MiB, with a
volume of 20 MiB mounted at T:\\cache: the age run first, then the oldest files
until the goal is met on each folder's own volume, never one younger than
-minage, and the dry run foretelling each real run."""

import os
import re
import subprocess
import time

import pytest

from conftest import BANNER, DAY, mounted, snapshot, tree

MIB = 1024 * 1024
# T:\ballast.bin fills the drive to 30 MiB; each file below is 4 MiB: its age in days.
JOB = {"job/a.bin": 10, "job/b.bin": 9, "job/c.bin": 8, "job/d.bin": 0.5, "job/x.lic": 20, "job/old.bin": 40}
USERS = {"users/u1/a.bin": 10, "users/u2/b.bin": 9, "users/u3/c.bin": 8, "users/u3/d.bin": 0.5, "old.bin": 40}
# Fills T:\cache to 16 MiB of 20.
CACHE = {"cache/a.bin": 10, "cache/b.bin": 9, "cache/c.bin": 8, "cache/d.bin": 0.5}
MET = "Free space goal met: {} MiB free, goal {} MiB.\n\n"
NOT_REACHED = "Free space goal not reached: {} MiB free, goal {} MiB. Nothing older than 1 days is left to delete.\n\n"


@pytest.fixture
def small(drive_t):
    (drive_t / "ballast.bin").write_bytes(b"x" * 30 * MIB)
    (drive_t / "cache").mkdir()
    mounted("-t", "tmpfs", "-o", "size=20m", "tmpfs", str(drive_t / "cache"))
    yield drive_t
    subprocess.run(["umount", str(drive_t / "cache")], check=True)


def fill(root, files):
    now = int(time.time())
    for path, days in files.items():
        (root / path).parent.mkdir(parents=True, exist_ok=True)
        (root / path).write_bytes(b"x" * 4 * MIB)
        os.utime(root / path, (now - int(days * DAY), now - int(days * DAY)))
    return now


@pytest.mark.parametrize("files, folder, goal, gone, line, code, cutoff, freed", [
    # Exactly the oldest go, down to the cutoff: c, d (under -minage) and the kept x.lic stay.
    (JOB, "T:\\job", "31.25%", "job/a.bin job/b.bin job/old.bin", MET.format(22, 20), 0, -9 * DAY + 1, "job"),
    # The age run alone meets the goal: no second pass.
    (JOB, "T:\\job", "12m", "job/old.bin", MET.format(14, 12), 0, None, ""),
    # Everything above the floor goes, and that is not enough.
    (JOB, "T:\\job", "0.05G", "job/a.bin job/b.bin job/c.bin job/old.bin", NOT_REACHED.format(26, 52), 4,
     -DAY, "job"),
    # One cutoff for every match; T:\old.bin lies outside them.
    (USERS, "T:\\users\\*", "20M", "users/u1/a.bin users/u2/b.bin", MET.format(22, 20), 0, -9 * DAY + 1,
     "users\\u1 users\\u2 users\\u3"),
    # Every file arrived now, whatever its write time says: none is old, none older than -minage.
    (JOB, "T:\\job -age newest", "31.25%", "", NOT_REACHED.format(10, 20), 4, -DAY, "job"),
    # The volume mounted at T:\cache is the one measured, with 4 MiB free, not T:\ with 34.
    (CACHE, "T:\\cache", "6m", "cache/a.bin", MET.format(8, 6), 0, -10 * DAY + 1, "cache"),
    # Below the low mark the pass frees up to the high one; between the two nothing goes.
    (CACHE, "T:\\cache", "6m -freeto 12m", "cache/a.bin cache/b.bin", MET.format(12, "6 MiB to 12"), 0,
     -9 * DAY + 1, "cache"),
    (CACHE, "T:\\cache", "3m -FreeTo 30%", "", MET.format(4, "3 MiB to 6"), 0, None, ""),
], ids=["part", "met by age", "unreachable", "wildcard", "arrived now", "inner volume", "below the low mark",
        "between the marks"])
def test_oldest_files_go_until_the_goal_is_met(tool, small, files, folder, goal, gone, line, code, cutoff, freed):
    now = fill(small, files)
    args = ["-do", "30", *folder.split(" "), "-minfree", *goal.split(), "-keep", "*.lic"]
    before = tree(small)
    dry = tool(*args, "-dryrun")
    assert (dry[0], tree(small)) == (code, before)
    real = tool(*args)
    assert real[0] == code
    assert real[1].endswith(line)
    assert dry[1].endswith(line.replace("goal met", "goal would be met").replace("not reached", "would not be reached"))
    assert sorted(set(before) - set(tree(small))) == gone.split()
    # Each match is freed with the same cutoff: one second after the youngest file taken, or the floor.
    freeing = re.findall(r"(?:Dry run, f|F)reeing space in folder '([^']*)': files changed before (.{19}) ",
                         dry[1] + real[1])
    assert [m for m, _ in freeing] == ["T:\\" + match for match in freed.split()] * 2
    stamp = cutoff and time.strftime("%Y-%m-%d %H:%M:%S", time.localtime(now + cutoff))
    assert all(changed == stamp for _, changed in freeing) or cutoff == -DAY


# A check answers from the folder's own volume, and deletes, removes and writes nothing, -log and -prom included.
def test_check_says_whether_each_goal_is_met_and_touches_nothing(tool, small):
    fill(small, {**CACHE, "job/old.bin": 40})
    (small / "cache" / "empty").mkdir()
    (small / "kx.prom").write_text("kept\n")
    before = snapshot(small)
    for goal, code, line in [("6m", 4, "Free space goal not reached: 4 MiB free, goal 6 MiB.\n"),
                             ("3m -freeto 5M", 0, "Free space goal met: 4 MiB free, goal 3 MiB to 5 MiB.\n")]:
        result = tool("-check", "-do", "1", "T:\\cache", "-minfree", *goal.split(), "-prom", "T:\\kx.prom",
                      "-log", "T:\\kx.log")
        assert result == (code, BANNER + line, "")
        assert snapshot(small) == before
    # The matches below the mounted volume are measured on it.
    assert tool("-check", "T:\\cache\\*", "-minfree", "5m", "-v") == (
        4, BANNER + "Free space goal not reached: 4 MiB free, goal 5 MiB.\n", "")
    assert snapshot(small) == before
    # The report of a plain run measures the mounted volume, not T:\.
    assert "  Done. Free drive space in T:\\cache is 4 MiB\n" in tool("-do", "100", "T:\\cache")[1]
