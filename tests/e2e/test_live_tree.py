"""Each deletion is decided on the file as it is at that moment, nothing is
changed about a file that stays, and a folder that cannot be read is said so."""

import os
import re
import stat
import subprocess

from conftest import DAY, WINE_RUN, held_open, make_tree, tree, wine_env
from test_command_line import BANNER
from test_sweep import masked, report

OLD = 30 * DAY


def reported_with_error(folder, count, error, head=""):
    """A pattern of the whole output of a run whose only error line matches error."""
    return re.escape(BANNER + head + report(folder, 14, count, 0, errors="@")).replace("@", error)


def test_file_rewritten_during_the_sweep_stays_and_one_removed_counts(tool, suite, drive, work):
    files = {f"a_big/{i:04d}.tmp": (OLD, 1) for i in range(2000)}
    files.update({"a_big/0000_first.tmp": (OLD, 1), "b_rewritten.txt": (OLD, 1), "c_vanished.txt": (OLD, 1)})
    make_tree(work, files)
    folder = drive.win(work)
    exe = drive.win(suite / "bin" / "win64" / "kxDeleteOldFiles.exe")
    run = subprocess.Popen([str(WINE_RUN), exe, "-v", "-do", "14", folder], stdin=subprocess.DEVNULL,
                           stdout=subprocess.PIPE, env=wine_env())
    # The sibling's first file goes before the rewritten file's turn comes.
    while (work / "a_big" / "0000_first.tmp").exists():
        pass
    (work / "b_rewritten.txt").write_text("new")
    (work / "c_vanished.txt").unlink()
    out = run.communicate(timeout=300)[0].decode("latin-1").replace("\r\n", "\n")
    assert "\n     -ignT b_rewritten.txt\n" in out
    # A file gone since the listing counts as deleted, with no error.
    assert "  2002 files deleted (0 Kib). \n" in out and "Errors:" not in out
    assert tree(work) == ["b_rewritten.txt"]


def test_hard_links_to_read_only_files_outside_keep_their_mode(tool, drive, work):
    make_tree(work, {"outside/free.txt": (OLD, 1), "outside/held.txt": (OLD, 1), "tree/plain.txt": (OLD, 1)})
    for name in ("free", "held"):
        os.chmod(work / "outside" / f"{name}.txt", stat.S_IRUSR)
        os.link(work / "outside" / f"{name}.txt", work / "tree" / f"{name}.lnk")
    folder = drive.win(work / "tree")
    with held_open(drive.win(work / "tree" / "held.lnk")):
        result = tool("-do", "14", folder)
    error = re.escape(f"{folder}\\held.lnk:Unable to delete file; Error 32: ") + r"[^\n]+\.\.\n"
    assert re.fullmatch(reported_with_error(folder, 2, error), masked(result.out)), result.out
    assert tree(work / "tree") == ["held.lnk"]
    for name in ("free", "held"):
        assert stat.S_IMODE((work / "outside" / f"{name}.txt").stat().st_mode) == stat.S_IRUSR


def test_held_folders_are_reported_and_kept(tool, drive, work):
    make_tree(work, {"named/a.tmp": (OLD, 1), "tree/clean/b.tmp": (OLD, 1), "tree/held/c.tmp": (OLD, 1),
                     "users/bob/Temp/d.tmp": (OLD, 1)})
    named, held, bob = (drive.win(work / path) for path in ("named", "tree/held", "users/bob"))
    tree_folder = drive.win(work / "tree")
    with held_open(named, held, bob):
        first = tool("-do", "14", named)
        second = tool("-do", "14", tree_folder)
        # A wildcard match that cannot be held is reported by the run it leads to.
        pattern = drive.win(work / "users") + "\\*\\Temp"
        third = tool("-do", "14", pattern)
    error = r"Error reading folder {}:Error 32: [^\n]+\.\n"
    assert re.fullmatch(reported_with_error(named, 0, error.format(re.escape(named))), masked(first.out)), first.out
    assert re.fullmatch(reported_with_error(tree_folder, 1, error.format(re.escape(held))), masked(second.out))
    search = f"Searching for folders matching '{pattern}'."
    assert re.fullmatch(reported_with_error(bob + "\\Temp", 0, error.format(re.escape(bob + "\\Temp")), search),
                        masked(third.out)), third.out
    assert tree(work) == ["named/", "named/a.tmp", "tree/", "tree/held/", "tree/held/c.tmp", "users/", "users/bob/",
                          "users/bob/Temp/", "users/bob/Temp/d.tmp"]
