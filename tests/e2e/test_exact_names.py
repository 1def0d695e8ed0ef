"""Every entry is acted on by its own name, whatever the Win32 path rules would
make of it, and the folders below a wildcard match stay put while they are swept."""

import os
import stat
import subprocess

from conftest import DAY, TEST_TOOLS, WINE_RUN, make_tree, tree, wine_env
from test_command_line import BANNER
from test_sweep import masked, report

OLD = 30 * DAY
YOUNG = 60


def snapshot(root):
    """Name, kind and mode, size and modification time of everything below root."""
    return [(path.relative_to(root).as_posix(), path.lstat().st_mode, path.lstat().st_size, path.lstat().st_mtime_ns)
            for path in sorted(root.rglob("*"))]


# The dry run foretells the real run exactly and changes nothing, read-only
# files included; the option is read in any letter case and at any place.
def test_odd_names_go_and_their_young_plain_twins_stay(tool, drive, work):
    make_tree(work, {
        "old.": (OLD, 1), "old": (YOUNG, 1), "sp ": (OLD, 1), "sp": (YOUNG, 1), "...": (OLD, 1),
        "nul": (OLD, 1), "aux": (OLD, 1), "con.txt": (OLD, 1), "com1.log": (OLD, 1),
        "dir./a.txt": (OLD, 2048), "dir/b.txt": (YOUNG, 1),
    })
    for read_only in ("aux", "dir./a.txt"):
        os.chmod(work / read_only, stat.S_IRUSR)
    folder = drive.win(work)
    log = (f"   [{folder}]: \n     -del ...\n     -del aux\n     -del com1.log\n     -del con.txt\n"
           f"     -dir [dir]\n   [{folder}\\dir]: \n     -ignT b.txt\n"
           f"     -dir [dir.]\n   [{folder}\\dir.]: \n     -del a.txt\n"
           "     -del nul\n     -ignT old\n     -del old.\n     -ignT sp\n     -del sp \n")
    start = f"\nStarting to delete files in folder '{folder}', File have to be older than 14 days.\n"
    real = report(folder, 14, 8, 2, log=log)

    before = snapshot(work)
    dry = tool("-v", "-do", "14", folder, "-DryRun")
    assert masked(dry.out) == BANNER + real.replace(start, (
        f"\nDry run in folder '{folder}': files older than 14 days are only listed, nothing is deleted.\n")
    ).replace(" files deleted (", " files would be deleted (")
    assert snapshot(work) == before

    result = tool("-v", "-do", "14", folder)
    assert masked(result.out) == BANNER + real
    assert result.code == 0
    assert tree(work) == ["dir/", "dir/b.txt", "old", "sp"]


def test_wildcard_match_with_a_trailing_dot_is_its_own_folder(tool, drive, work):
    make_tree(work, {"Users/bob/Temp/new.tmp": (YOUNG, 1), "Users/bob./Temp/old.tmp": (OLD, 1)})
    users = drive.win(work / "Users")
    result = tool("-do", "14", users + "\\*\\Temp")
    second = report(users + "\\bob.\\Temp", 14, 1, 0).replace(f"     ...{users}\\bob.\\Temp...\n", "")
    assert masked(result.out) == (BANNER + f"Searching for folders matching '{users}\\*\\Temp'."
                                  + report(users + "\\bob\\Temp", 14, 0, 0) + second)
    assert tree(work / "Users") == ["bob./", "bob./Temp/", "bob/", "bob/Temp/", "bob/Temp/new.tmp"]


def test_relative_folder_cleans_long_paths_and_reads_its_real_drive(tool, drive, work):
    deep = "data/" + "/".join("relative_component_%02d" % i for i in range(14))
    make_tree(work, {deep + "/old.txt": (OLD, 1), deep + "/new.txt": (YOUNG, 1), "data/x/old.txt": (OLD, 1)})
    assert len(deep) > 240
    for folder in ("x\\..\\data", ".\\data", "data"):
        result = tool("-do", "14", folder, cwd=work)
        assert "Errors:" not in result.out
        assert result.out.count("files deleted") == 1
        assert "Free drive space in %s is 1000 MiB" % folder not in result.out
    assert [path for path in tree(work) if not path.endswith("/")] == [deep + "/new.txt"]


def test_folder_named_outside_latin1_is_cleaned_and_printed_with_question_marks(tool, drive, work):
    make_tree(work, {"\u041a\u044d\u0448/old.exr": (OLD, 1), "\u041a\u044d\u0448/new.exr": (YOUNG, 1)})
    folder = drive.win(work / "\u041a\u044d\u0448")
    result = tool("-do", "14", folder)
    assert masked(result.out) == BANNER + report(folder.replace("\u041a\u044d\u0448", "???"), 14, 1, 0)
    assert tree(work) == ["\u041a\u044d\u0448/", "\u041a\u044d\u0448/new.exr"]


def test_folders_from_the_match_down_cannot_be_renamed_while_swept(tool, drive, work):
    temp = work / "Users" / "alice" / "AppData" / "Local" / "Temp"
    files = {f"Temp/b_big/{i:04d}.tmp": (OLD, 1) for i in range(2000)}
    files.update({"Temp/a_first.tmp": (OLD, 1), "Temp/c_last.tmp": (OLD, 1)})
    make_tree(temp.parent, files)
    held = [temp.parent.parent.parent, temp.parent.parent, temp.parent, temp]
    renamer = subprocess.Popen(
        [str(WINE_RUN), str(TEST_TOOLS / "kxRenameWhenGone.exe"), drive.win(temp / "a_first.tmp"),
         drive.win(temp / "c_last.tmp"), *(drive.win(folder) for folder in held)],
        stdin=subprocess.DEVNULL, stdout=subprocess.PIPE, env=wine_env())
    assert renamer.stdout.readline().strip() == b"ready"
    result = tool("-do", "14", drive.win(work / "Users") + "\\*\\AppData\\Local\\Temp")
    tries = renamer.communicate(timeout=120)[0].decode().split()
    # 32: a sharing violation for every folder, tried while the sweep went on.
    assert tries == ["32"] * len(held) + ["during"]
    assert "  2002 files deleted" in result.out
    assert tree(work / "Users" / "alice") == ["AppData/", "AppData/Local/", "AppData/Local/Temp/"]
