"""-keep <pattern>: files and folders whose whole name matches are never deleted."""

import os
import re

from conftest import DAY, make_tree, tree
from test_command_line import BANNER
from test_sweep import masked, report

OLD = 30 * DAY
YOUNG = 60


def test_kept_names_stay_with_their_parents_and_near_misses_go(tool, drive, work):
    make_tree(work, {
        "tree/a.lic": (OLD, 1), "tree/new.LIC": (YOUNG, 1), "tree/a.lic.bak": (OLD, 1),
        "tree/cache1.tmp": (OLD, 1), "tree/cache10.tmp": (OLD, 1), "tree/v1x0.exr": (OLD, 1),
        "tree/[ab].txt": (OLD, 1), "tree/a.txt": (OLD, 1), "tree/job/frame.lic": (OLD, 1), "tree/job/old.exr": (OLD, 1),
        "tree/ShaderCache/x.bin": (OLD, 1), "tree/ShaderCache/sub/y.bin": (OLD, 1),
        "tree/shadercache_old/z.bin": (OLD, 1), "library/canary.old": (OLD, 1),
    })
    os.symlink(work / "library", work / "tree" / "cachelink", target_is_directory=True)
    folder = drive.win(work / "tree")
    result = tool("-v", "-keep", "cache?.tmp", "-KEEP", "*.lic", folder, "-Keep", "shadercache", "-do", "14",
                  "-keep", "v1.0.exr", "-keep", "[ab].txt", "-keep", "*link", "-keep", "frame.*")
    # The order the file system lists: names compared upper-cased.
    log = (f"   [{folder}]: \n"
           "     -keep a.lic   '*.lic'\n     -del a.lic.bak\n     -del a.txt\n"
           "     -keep cache1.tmp   'cache?.tmp'\n     -del cache10.tmp\n     -keep [cachelink]   '*link'\n"
           f"     -dir [job]\n   [{folder}\\job]: \n     -keep frame.lic   '*.lic'\n     -del old.exr\n"
           "     -keep new.LIC   '*.lic'\n     -keep [ShaderCache]   'shadercache'\n"
           f"     -dir [shadercache_old]\n   [{folder}\\shadercache_old]: \n     -del z.bin\n"
           "     -del v1x0.exr\n     -keep [ab].txt   '[ab].txt'\n")
    assert masked(result.out) == BANNER + report(folder, 14, 6, 0, log=log)
    assert result.code == 0
    assert tree(work / "tree") == ["ShaderCache/", "ShaderCache/sub/", "ShaderCache/sub/y.bin", "ShaderCache/x.bin",
                                   "[ab].txt", "a.lic", "cache1.tmp", "cachelink/", "job/", "job/frame.lic", "new.LIC"]
    assert tree(work / "library") == ["canary.old"]


# Patterns match below each cleaned folder, never the cleaned folder itself nor
# what the "*" matched.
def test_wildcard_run_keeps_in_every_folder_and_its_dry_run_foretells_it(tool, drive, work):
    make_tree(work, {
        "Users/anna/Temp/x.lic": (OLD, 1), "Users/anna/Temp/old.tmp": (OLD, 1),
        "Users/anna/Temp/shadercache/a.bin": (OLD, 1),
        "Users/bob/Temp/sub/w.LIC": (OLD, 1), "Users/bob/Temp/sub/z.tmp": (OLD, 1),
        "Users/shadercache/Temp/old.tmp": (OLD, 1),
    })
    args = ("-do", "14", drive.win(work / "Users") + "\\*\\Temp", "-keep", "*.lic", "-keep", "shadercache",
            "-keep", "TEMP", "-v")
    before = tree(work)
    dry = tool("-dryrun", *args)
    assert tree(work) == before
    real = tool(*args)
    assert tree(work) == ["Users/", "Users/anna/", "Users/anna/Temp/", "Users/anna/Temp/shadercache/",
                          "Users/anna/Temp/shadercache/a.bin", "Users/anna/Temp/x.lic", "Users/bob/",
                          "Users/bob/Temp/", "Users/bob/Temp/sub/", "Users/bob/Temp/sub/w.LIC",
                          "Users/shadercache/", "Users/shadercache/Temp/"]
    assert real.out.count("     -keep ") == 3 and "Errors:" not in real.out

    foretold, starts = re.subn(r"\nStarting to delete files in folder '([^']*)', File have to be older than 14 days\.\n",
                               r"\nDry run in folder '\1': files older than 14 days are only listed, nothing is deleted.\n",
                               real.out)
    assert starts == 3
    assert masked(dry.out) == masked(foretold.replace(" files deleted (", " files would be deleted ("))
    assert dry.code == real.code == 0
