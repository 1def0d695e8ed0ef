"""Volumes as a render node has them, on file systems of the test's own: a
drive's root with the system's entries, and a folder mounted into itself."""

import os
import re
import subprocess
import time

import pytest

from conftest import BANNER, OLD, make_tree, masked, mounted, pattern

SYSTEM = ("System Volume Information/tracking.log=o, $RECYCLE.BIN/S-1-5-18/old.dat=o, pagefile.sys=o, "
          "DumpStack.log.tmp=o, cache/old.exr=o, cache/new.exr=y, cache/pagefile.sys=o")
KEPT = ["System Volume Information/tracking.log", "$RECYCLE.BIN/S-1-5-18/old.dat", "pagefile.sys",
        "DumpStack.log.tmp", "cache/new.exr"]


def report(folder, count, log):
    return (f"\nStarting to delete files in folder '{folder}', File have to be older than 14 days.\n"
            f"     ...{folder}...\n  {count} files deleted (0 Kib). \n\n\n{log}\n\n"
            f"  Done. Free drive space in {folder} is <free> MiB\n\n")


# The drive named, and matched by a "*": the system's entries stay, the cache is cleaned, a name of
# theirs below the root included.
@pytest.mark.parametrize("folder, out", [
    ("T:\\", report("T:\\", 2, "   [T:\\]: \n     -sys [$RECYCLE.BIN]\n     -dir [cache]\n   [T:\\cache]: \n"
                                "     -ignT new.exr\n     -del old.exr\n     -del pagefile.sys\n     -sys DumpStack.log.tmp\n"
                                "     -sys pagefile.sys\n     -sys [System Volume Information]\n")),
    ("T:\\*", "Searching for folders matching 'T:\\*'." + report(
        "T:\\cache", 2, "   [T:\\cache]: \n     -ignT new.exr\n     -del old.exr\n     -del pagefile.sys\n")),
], ids=["root", "star"])
def test_a_volume_root_keeps_the_system_entries(tool, drive_t, folder, out):
    make_tree(drive_t, SYSTEM)
    code, stdout, stderr = tool("-do", "14", folder, "-v")
    assert re.fullmatch(pattern(BANNER + out), masked(stdout)) and (code, stderr) == (0, ""), stdout
    assert all((drive_t / path).is_file() for path in KEPT) and not (drive_t / "cache/pagefile.sys").exists()


# A folder that leads back up the path, as a file server's link shown as a
# plain folder does, is kept like a link: the sweep ends, and nothing is lost.
def test_a_folder_mounted_into_itself_is_kept_as_a_link(tool, drive, work):
    make_tree(work, "old.txt=o, b/old2.txt=o, b/loop/")
    loop = work / "b" / "loop"
    mounted("--bind", str(work), str(loop))
    try:
        code, stdout, stderr = tool("-v", "-do", "14", drive.win(work))
        assert loop.is_dir() and (loop / "b").is_dir()
    finally:
        subprocess.run(["umount", "-l", str(loop)], check=True)
    folder = drive.win(work)
    log = f"   [{folder}]: \n     -dir [b]\n   [{folder}\\b]: \n     -lnk [loop]\n     -del old2.txt\n     -del old.txt\n"
    assert re.fullmatch(pattern(BANNER + report(folder, 2, log)), masked(stdout)) and (code, stderr) == (0, ""), stdout
    assert sorted(os.listdir(work)) == ["b"] and os.listdir(loop) == []


# Only an image written before it is mounted keeps a change time older than
# now: with -age newest a file goes when it is old by both times, and stays
# when it is old by one.
def test_age_newest_deletes_what_is_old_by_both_times(tool, drive, work):
    image, cache, now = work / "cache.img", work / "cache", int(time.time())
    subprocess.run(["mke2fs", "-q", "-t", "ext2", "-F", str(image), "1M"], check=True)
    script = "".join(f"write /dev/null {n}\nset_inode_field {n} mtime @{now - m}\nset_inode_field {n} ctime @{now - c}\n"
                     for n, m, c in (("both.tmp", OLD, OLD), ("write.tmp", OLD, 0), ("change.tmp", 0, OLD)))
    subprocess.run(["debugfs", "-w", "-f", "-", str(image)], input=script.encode(), capture_output=True, check=True)
    cache.mkdir()
    mounted("-o", "loop", str(image), str(cache))
    try:
        code, stdout, stderr = tool("-age", "newest", "-do", "14", drive.win(cache))
        left = sorted(os.listdir(cache))
    finally:
        subprocess.run(["umount", str(cache)], check=True)
    assert (code, stderr, left) == (0, "", ["change.tmp", "lost+found", "write.tmp"]), stdout
