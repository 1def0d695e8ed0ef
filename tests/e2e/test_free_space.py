"""-minfree on a small drive of the test's own, T:, a tmpfs of 64 MiB: the age
run first, then the oldest files until the goal is met, never one younger than
-minage, and the dry run foretelling each real run."""

import os
import re
import subprocess
import time

import pytest

from conftest import DAY, WINEPREFIX, tree

MIB = 1024 * 1024
# T:\ballast.bin fills the drive to 30 MiB; each file below is 4 MiB: its age in days.
JOB = {"job/a.bin": 10, "job/b.bin": 9, "job/c.bin": 8, "job/d.bin": 0.5, "job/x.lic": 20, "job/old.bin": 40}
USERS = {"users/u1/a.bin": 10, "users/u2/b.bin": 9, "users/u3/c.bin": 8, "users/u3/d.bin": 0.5, "old.bin": 40}
MET = "Free space goal met: {} MiB free, goal {} MiB.\n\n"
NOT_REACHED = "Free space goal not reached: {} MiB free, goal {} MiB. Nothing older than 1 days is left to delete.\n\n"


@pytest.fixture
def small(tmp_path, suite):
    root = tmp_path / "t"
    root.mkdir()
    if subprocess.run(["mount", "-t", "tmpfs", "-o", "size=64m", "tmpfs", str(root)], capture_output=True).returncode:
        pytest.skip("mount of a tmpfs is refused here")
    link = WINEPREFIX / "dosdevices" / "t:"
    link.unlink(missing_ok=True)
    link.symlink_to(root)
    (root / "ballast.bin").write_bytes(b"x" * 30 * MIB)
    yield root
    link.unlink()
    subprocess.run(["umount", str(root)], check=True)


def fill(root, files):
    now = int(time.time())
    for path, days in files.items():
        (root / path).parent.mkdir(parents=True, exist_ok=True)
        (root / path).write_bytes(b"x" * 4 * MIB)
        os.utime(root / path, (now - int(days * DAY), now - int(days * DAY)))
    return now


@pytest.mark.parametrize("files, folder, goal, gone, line, code, cutoff", [
    # Exactly the oldest go, down to the cutoff: c, d (under -minage) and the kept x.lic stay.
    (JOB, "T:\\job", "31.25%", "job/a.bin job/b.bin job/old.bin", MET.format(22, 20), 0, -9 * DAY + 1),
    # The age run alone meets the goal: no second pass.
    (JOB, "T:\\job", "12m", "job/old.bin", MET.format(14, 12), 0, None),
    # Everything above the floor goes, and that is not enough.
    (JOB, "T:\\job", "0.05G", "job/a.bin job/b.bin job/c.bin job/old.bin", NOT_REACHED.format(26, 52), 4,
     -DAY),
    # One cutoff for every match; T:\old.bin lies outside them.
    (USERS, "T:\\users\\*", "20M", "users/u1/a.bin users/u2/b.bin", MET.format(22, 20), 0, -9 * DAY + 1),
    # Every file arrived now, whatever its write time says: none is old, none older than -minage.
    (JOB, "T:\\job -age newest", "31.25%", "", NOT_REACHED.format(10, 20), 4, -DAY),
], ids=["part", "met by age", "unreachable", "wildcard", "arrived now"])
def test_oldest_files_go_until_the_goal_is_met(tool, small, files, folder, goal, gone, line, code, cutoff):
    now = fill(small, files)
    args = ["-do", "30", *folder.split(" "), "-minfree", goal, "-keep", "*.lic"]
    folder = folder.split(" ")[0]
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
    matches = [folder] if "*" not in folder else [f"T:\\users\\u{i}" for i in (1, 2, 3)]
    assert [m for m, _ in freeing] == ([] if cutoff is None else matches * 2)
    stamp = cutoff and time.strftime("%Y-%m-%d %H:%M:%S", time.localtime(now + cutoff))
    assert all(changed == stamp for _, changed in freeing) or cutoff == -DAY
