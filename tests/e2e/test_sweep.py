"""Old files are deleted from the command line: reports, canaries and options."""

import re
import time

import pytest

from conftest import DAY, held_open, make_tree, tree
from test_command_line import BANNER

OLD = 30 * DAY
YOUNG = 60


def masked(out: str) -> str:
    """The output with every free-space figure, checked to be a grouped number, as <free>."""
    return re.sub(r"(  Done\. Free drive space in .* is )\d{1,4}(?: \d{3})*( MiB\n)", r"\1<free>\2", out)


def report(folder, days, count, kib, errors=None, log=None):
    text = (f"\nStarting to delete files in folder '{folder}', File have to be older than {days} days.\n"
            f"     ...{folder}...\n"
            f"  {count} files deleted ({kib} Kib). \n\n")
    if errors is not None:
        text += f"\nErrors:\n {errors} \n\n"
    if log is not None:
        text += f"\n{log}\n\n"
    return text + f"  Done. Free drive space in {folder} is <free> MiB\n\n"


def test_old_files_and_emptied_folders_go_young_files_and_the_start_folder_stay(tool, drive, work):
    make_tree(work, {
        "a.exr": (OLD, 2048), "b.exr": (OLD, 511), "new.exr": (YOUNG, 10),
        "shot/c.exr": (OLD, 1536), "shot/deep/d.exr": (OLD, 0), "keep/e.exr": (YOUNG, 1), "empty/": None,
    })
    folder = drive.win(work)
    result = tool("-do", "14", folder)
    assert masked(result.out) == BANNER + report(folder, 14, 4, 4)
    assert result.code == 0
    assert tree(work) == ["keep/", "keep/e.exr", "new.exr"]


def test_file_one_second_too_young_and_one_at_the_limit_survive(tool, drive, work):
    # The tool reads the clock itself: a run that starts and ends within the
    # second the tree was dated from has exactly that "now".
    for _ in range(30):
        now = int(time.time())
        make_tree(work, {"older.txt": (2 * DAY + 1, 1), "at_limit.txt": (2 * DAY, 1),
                         "too_young.txt": (2 * DAY - 1, 1)}, now=now)
        result = tool("-do", "2", drive.win(work))
        if int(time.time()) == now:
            assert tree(work) == ["at_limit.txt", "too_young.txt"]
            return
    pytest.fail("no run of the tool finished within a single second")


def test_everything_goes_with_zero_days_but_the_starting_folder(tool, drive, work):
    make_tree(work, {"x/y/z.tmp": (OLD, 5), "new.tmp": (0, 5)})
    result = tool("-do", "0", drive.win(work))
    assert "  2 files deleted (0 Kib). \n" in result.out
    assert work.is_dir() and tree(work) == []


def test_locked_file_reports_its_error_and_siblings_still_go(tool, drive, work):
    make_tree(work, {"jobs/a.exr": (OLD, 1024), "jobs/b.exr": (OLD, 1024), "jobs/c.exr": (OLD, 1024)})
    locked = drive.win(work / "jobs" / "b.exr")
    folder = drive.win(work)
    with held_open(locked):
        result = tool(folder, "-do", "14")
    assert result.code == 0
    assert tree(work) == ["jobs/", "jobs/b.exr"]
    error = re.escape(f"{locked}:Unable to delete file; Error 32: ") + r"[^\n]+\.\.\n"
    assert re.fullmatch(re.escape(BANNER + report(folder, 14, 2, 2, errors="@")).replace("@", error),
                        masked(result.out)), result.out


# The limit is whole days in 64 bits: no value wraps round to delete a new file.
@pytest.mark.parametrize("days, left", [
    ("24856", ["new.txt"]), ("30000", ["new.txt"]), ("1491309", ["new.txt", "y1901.txt"])])
def test_huge_age_limit_keeps_new_files(tool, drive, work, days, left):
    now = int(time.time())
    make_tree(work, {"new.txt": (0, 1), "y1901.txt": (now + 2145916800, 1)}, now=now)
    assert tool("-do", days, drive.win(work)).code == 0
    assert tree(work) == left


def test_options_ignore_case_and_take_negative_days(tool, drive, work):
    make_tree(work, {"new.txt": (YOUNG, 1)})
    folder = drive.win(work)
    # Base 10 always: a leading zero is no octal prefix.
    result = tool("-DO", "-010", "-V", folder)
    assert f"'{folder}', File have to be older than -10 days.\n" in result.out
    assert "\n     -del new.txt\n" in result.out
    assert tree(work) == []


def test_names_with_blanks_percent_and_accents_print_as_they_stand(tool, drive, work):
    name = "100% fertig \u00e9t\u00e9"
    make_tree(work, {name + "/%d %s.txt": (OLD, 1)})
    folder = drive.win(work / name)
    result = tool("-do", "14", folder, "-v")
    assert masked(result.out) == BANNER + report(folder, 14, 1, 0, log=f"   [{folder}]: \n     -del %d %s.txt\n")
    assert tree(work) == [name + "/"]
