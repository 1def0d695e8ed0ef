"""The installation-root check at start-up. The probe, a bad "-do" value, exits
with code 3 once the options are reached and is never examined otherwise."""

import shutil

import pytest

from conftest import DAY, STAGE, held_open, make_tree, run_exe, tree, wine_env
from test_command_line import BANNER
from test_sweep import masked, report

INSIDE = "K:\\suite\\bin\\win64\\kxDeleteOldFiles.exe"
OUTSIDE = "K:\\outside\\a\\b\\kxDeleteOldFiles.exe"
PROBE = ("C:\\temp", "-do", "abc")
REACHED = BANNER + "Error: Unable to convert abc into a number!\n"


def message(exe, flag_value, root_log):
    return (BANNER + "Unable to get KX Root path; This executable was not started from a KX directory.\n\n"
            " (Tried: '" + exe + "', '" + flag_value + "')\n" + root_log)


@pytest.fixture(scope="session")
def outside(drive, suite):
    """The staged exe in no installation, and the sample installation beside it."""
    shutil.copytree(STAGE, drive.root / "outside" / "a" / "b")


@pytest.mark.parametrize("exe, args, env, out, code", [
    (INSIDE, (), {}, REACHED, 3),
    (OUTSIDE, ("-kxRoot", "K:\\suite"), {}, REACHED, 3),
    (OUTSIDE, (), {"KX_ROOT_INSTALLER": "K:\\suite\r"}, REACHED, 3),
    # The last flag wins and is not cut back to the folder above "bin"; every
    # value is logged; the message is the format of msvcrt's printf, so "%%"
    # prints as "%" and a "%" before no conversion, as in "%U" or "%\", is dropped.
    (OUTSIDE, ("-kxRoot", "K:\\100%%", "-kxroot", "K:\\suite\\bin\\win64"), {"KX_ROOT": "Q:\\%USERNAME%\\kx"},
     message(OUTSIDE, "K:\\suite\\bin\\win64\\", "\n[-kxRoot flag: K:\\100%\\K:\\suite\\bin\\win64\\: invalid]"
             "\n[KX_ROOT_INSTALLER: : invalid]\n[appPath: K:\\outside\\: invalid]"
             "\n[KX_ROOT: Q:\\USERNAME\\kx\\: invalid]"), 1),
], ids=["inside", "root flag", "installer variable", "outside"])
def test_only_a_found_root_lets_the_options_be_reached(outside, exe, args, env, out, code):
    result = run_exe(exe, *args, *PROBE, env={**wine_env(), **env})
    assert (result.out, result.code, result.err) == (out, code, "")


def test_a_relink_file_held_open_stops_the_tool_with_the_typical_log(suite, drive):
    relink = suite / "sub" / "cfg_global" / "relink_win.cfg"
    relink.write_text("Root=K:\\suite\\\n")
    try:
        with held_open(drive.win(relink)):
            result = run_exe(INSIDE, *PROBE)
    finally:
        relink.unlink()
    log = "\n[-kxRoot flag: : invalid]\n[KX_ROOT_INSTALLER: : invalid]\n[appPath: K:\\suite\\]"
    assert (result.out, result.code) == (message(INSIDE, "", log), 1)


# Root discovery reads the argument after every -kxRoot or -loadstatus, so that
# argument is never the folder, wherever it stands, even after another root flag.
@pytest.mark.parametrize("args, cleaned", [
    (("-kxRoot", "K:\\suite", "<f>", "-do", "14"), True),
    (("<f>", "-do", "14", "-KXROOT", "K:\\suite"), True),
    (("-LoadStatus", "<status>", "-do", "14", "<f>"), True),
    (("<f>", "-do", "14", "-loadstatus", "<status>"), True),
    (("-kxRoot", "-kxRoot", "K:\\suite", "-do", "14"), False),
])
def test_root_flag_values_are_never_the_folder(tool, drive, work, suite, args, cleaned):
    old = 30 * DAY
    make_tree(work, {"target/old.txt": (old, 1), "target/new.txt": (60, 1), "status/old.txt": (old, 1)})
    make_tree(suite, {"canary/old.txt": (old, 1)})
    folder = drive.win(work / "target")
    result = tool(*(arg.replace("<f>", folder).replace("<status>", drive.win(work / "status")) for arg in args))
    expected = report(folder, 14, 1, 0) if cleaned else "Warning: directory  does not exist!\n"
    assert (masked(result.out), result.code) == (BANNER + expected, 0)
    left = ["target/new.txt"] if cleaned else ["target/new.txt", "target/old.txt"]
    assert tree(work) == ["status/", "status/old.txt", "target/", *left]
    assert tree(suite / "canary") == ["old.txt"]
