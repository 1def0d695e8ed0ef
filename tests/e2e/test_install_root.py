"""The installation-root check at start-up. The probe, a bad "-do" value, exits
with code 3 once the options are reached and is never examined otherwise. Root
flags beside a folder are rows of test_runs."""

import shutil

import pytest

from conftest import BANNER, EXE, STAGE, held_open, run_exe, wine_env

OUTSIDE = "K:\\outside\\a\\b\\kxDeleteOldFiles.exe"
RENDER = "\u0420\u0435\u043d\u0434\u0435\u0440"
PROBE = ("C:\\temp", "-do", "abc")
REACHED = BANNER + "Error: Unable to convert abc into a number!\n"


def message(exe, flag_value, root_log):
    return (BANNER + "Unable to get KX Root path; This executable was not started from a KX directory.\n\n"
            " (Tried: '" + exe + "', '" + flag_value + "')\n" + root_log)


@pytest.fixture(scope="session")
def outside(drive, suite):
    """The staged exe in no installation, and the sample installation beside it."""
    shutil.copytree(STAGE, drive.root / "outside" / "a" / "b")
    (drive.root / RENDER / "sub" / "cfg_global").mkdir(parents=True)
    shutil.copytree(STAGE, drive.root / RENDER / "bin" / "win64")


@pytest.mark.parametrize("exe, args, env, out, code", [
    (EXE, (), {}, REACHED, 3),
    (OUTSIDE, ("-kxRoot", "K:\\suite"), {}, REACHED, 3),
    (OUTSIDE, (), {"KX_ROOT_INSTALLER": "K:\\suite\r"}, REACHED, 3),
    # Arguments are read in UTF-16, so a root below any folder name is found.
    (OUTSIDE, ("-kxRoot", "K:\\" + RENDER), {}, REACHED, 3),
    # So is the executable's own path: started by its bare name, argv[0] holds no folder.
    ("cmd", ("/c", "cd", "/d", f"K:\\{RENDER}\\bin\\win64", "&&", "kxDeleteOldFiles.exe"), {}, REACHED, 3),
    # The last flag wins and is not cut back to the folder above "bin"; every
    # value is logged; the message is printed as it stands, "%" signs included.
    (OUTSIDE, ("-kxRoot", "K:\\100%s", "-kxroot", "K:\\suite\\bin\\win64"), {"KX_ROOT": "Q:\\%USERNAME%\\kx"},
     message(OUTSIDE, "K:\\suite\\bin\\win64\\", "\n[-kxRoot flag: K:\\100%s\\K:\\suite\\bin\\win64\\: invalid]"
             "\n[KX_ROOT_INSTALLER: : invalid]\n[appPath: K:\\outside\\: invalid]"
             "\n[KX_ROOT: Q:\\%USERNAME%\\kx\\: invalid]"), 1),
], ids=["inside", "root flag", "installer variable", "cyrillic root flag", "cyrillic installation", "outside"])
def test_only_a_found_root_lets_the_options_be_reached(outside, exe, args, env, out, code):
    result = run_exe(exe, *args, *PROBE, env={**wine_env(), **env})
    assert result == (code, out, "")


def test_a_relink_file_held_open_stops_the_tool_with_the_typical_log(suite, drive):
    relink = suite / "sub" / "cfg_global" / "relink_win.cfg"
    relink.write_text("Root=K:\\suite\\\n")
    try:
        with held_open(drive.win(relink)):
            result = run_exe(EXE, *PROBE)
    finally:
        relink.unlink()
    log = "\n[-kxRoot flag: : invalid]\n[KX_ROOT_INSTALLER: : invalid]\n[appPath: K:\\suite\\]"
    assert result[:2] == (1, message(EXE, "", log))
