"""-dryrun foretells the real run exactly and changes nothing."""

import os
import random
import stat
import time

import pytest

from conftest import DAY, make_tree
from test_sweep import masked

OLD = 30 * DAY
YOUNG = 60


def random_tree(root, seed):
    """Old, young, read-only and nested files, some folders left all old so that they empty."""
    rng = random.Random(seed)
    files = {}
    for i in range(40):
        folder = "/".join(rng.choice("abc") for _ in range(rng.randint(0, 4)))
        age = OLD if rng.random() < 0.7 else YOUNG
        files[f"{folder}/f{i:02d}.dat".lstrip("/")] = (age, rng.choice([0, 511, 512, 1535, 4096]))
    files["empty/"] = None
    make_tree(root, files)
    for i, relative in enumerate(sorted(files)):
        if i % 5 == 0 and not relative.endswith("/"):
            os.chmod(root / relative, stat.S_IRUSR)


def snapshot(root):
    """Name, kind, size, modification time and mode of everything below root."""
    entries = []
    for path in sorted(root.rglob("*")):
        info = path.lstat()
        entries.append((path.relative_to(root).as_posix(), stat.S_IFMT(info.st_mode), info.st_size,
                        info.st_mtime_ns, stat.S_IMODE(info.st_mode)))
    return entries


# The option is read in any letter case and at any place.
@pytest.mark.parametrize("seed, args", [
    (1, ("-dryrun", "-v", "-do", "14", "<folder>")),
    (2, ("-v", "-DRYRUN", "-do", "14", "<folder>")),
    (3, ("-v", "-do", "14", "<folder>", "-DryRun")),
])
def test_dry_run_changes_nothing_and_foretells_the_real_run(tool, drive, work, seed, args):
    random_tree(work, seed)
    folder = drive.win(work)
    before = snapshot(work)
    dry = tool(*(folder if arg == "<folder>" else arg for arg in args))
    assert snapshot(work) == before
    real = tool("-v", "-do", "14", folder)
    assert "Errors:" not in real.out and snapshot(work) != before
    # Read-only ones included, every old file is gone after the real run.
    assert all(path.stat().st_mtime > time.time() - DAY for path in work.rglob("*") if path.is_file())

    start = f"\nStarting to delete files in folder '{folder}', File have to be older than 14 days.\n"
    assert start in real.out
    foretold = real.out.replace(start, f"\nDry run in folder '{folder}': files older than 14 days are only"
                                       " listed, nothing is deleted.\n")
    foretold = foretold.replace(" files deleted (", " files would be deleted (")
    assert masked(dry.out) == masked(foretold)
    assert dry.code == real.code == 0
