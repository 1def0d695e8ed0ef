"""The installation-root check at start-up.

A bad "-do" value is the probe: exit code 3 with the conversion error proves
that the root was found and the options were reached; exit code 1 with the
root message proves that they were not.
"""

import shutil
import subprocess

import pytest

from conftest import STAGE, TEST_TOOLS, WINE_RUN, run_exe, wine_env
from test_command_line import BANNER

HEAD = "Unable to get KX Root path; This executable was not started from a KX directory.\n\n (Tried: '"
REACHED = BANNER + "Error: Unable to convert abc into a number!\n"
PROBE = ("C:\\temp", "-do", "abc")


@pytest.fixture(scope="session")
def outside(drive):
    """The staged exe in K:\\outside\\a\\b, in no installation."""
    folder = drive.root / "outside" / "a" / "b"
    shutil.copytree(STAGE, folder)
    exe = drive.win(folder / "kxDeleteOldFiles.exe")
    run = lambda *args, **kwargs: run_exe(exe, *args, **kwargs)  # noqa: E731
    run.exe = exe
    return run


def message(argv0, flag_value, root_log):
    return BANNER + HEAD + argv0 + "', '" + flag_value + "')\n" + root_log


def log_without_root(flag_values=""):
    return ("\n[-kxRoot flag: " + flag_values + ": invalid]\n[KX_ROOT_INSTALLER: : invalid]"
            "\n[appPath: K:\\outside\\: invalid]\n[KX_ROOT: : invalid]")


def test_inside_an_installation_the_options_are_reached(tool):
    result = tool(*PROBE)
    assert (result.out, result.code) == (REACHED, 3)


@pytest.mark.parametrize("args, env", [
    (("-kxRoot", "K:\\suite"), {}),
    (("-KXROOTDIR", "K:/suite/"), {}),
    ((), {"KX_ROOT": "K:/suite"}),
    ((), {"KX_ROOT_INSTALLER": "K:\\suite\r"}),
])
def test_root_flag_or_environment_makes_an_outside_exe_run(outside, args, env):
    result = outside(*args, *PROBE, env={**wine_env(), **env})
    assert (result.out, result.code) == (REACHED, 3)


@pytest.mark.parametrize("args, flag_value, flag_log", [
    ((), "", ""),
    # Not shortened to the folder above "bin".
    (("-kxRoot", "K:\\suite\\bin\\win64"), "K:\\suite\\bin\\win64\\", "K:\\suite\\bin\\win64\\"),
    (("-kxRoot", "K:\\one", "-kxroot", "K:\\two&amp;"), "K:\\two&\\", "K:\\one\\K:\\two&\\"),
    # The message is printf's format: "%%" prints as "%".
    (("-kxRoot", "K:\\100%%"), "K:\\100%\\", "K:\\100%\\"),
])
def test_outside_an_installation_only_the_message_is_printed(outside, args, flag_value, flag_log):
    result = outside(*args, *PROBE)
    assert result.out == message(outside.exe, flag_value, log_without_root(flag_log))
    assert result.code == 1
    assert result.err == ""


def test_relink_file_held_by_another_process_stops_the_tool(tool, suite, drive):
    """Shows the log of the typical start, which a found root never prints."""
    relink = suite / "sub" / "cfg_global" / "relink_win.cfg"
    relink.write_text("Root=K:\\suite\\\n")
    try:
        assert tool(*PROBE).code == 3
        holder = subprocess.Popen([str(WINE_RUN), str(TEST_TOOLS / "kxHoldFiles.exe"), drive.win(relink)],
                                  stdin=subprocess.PIPE, stdout=subprocess.PIPE, env=wine_env())
        try:
            assert holder.stdout.readline().strip() == b"held"
            result = tool(*PROBE)
        finally:
            holder.stdin.close()
            holder.wait(timeout=60)
    finally:
        relink.unlink()
    exe = drive.win(suite / "bin" / "win64" / "kxDeleteOldFiles.exe")
    log = "\n[-kxRoot flag: : invalid]\n[KX_ROOT_INSTALLER: : invalid]\n[appPath: K:\\suite\\]"
    assert (result.out, result.code) == (message(exe, "", log), 1)
