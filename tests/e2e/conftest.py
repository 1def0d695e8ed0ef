"""Runs the staged kxDeleteOldFiles.exe under Wine on real folder trees.

Every test works below one Wine drive, K:, which points at a scratch folder of
the session. A sample installation of the suite sits at K:\\suite, with the
staged exe in its bin\\win64 folder, so the tool runs as it would on a render
node.
"""

import os
import shutil
import subprocess
import time
from pathlib import Path, PureWindowsPath

import pytest

TOP = Path(__file__).resolve().parents[2]
BUILD = Path(os.environ.get("KX_BUILD_DIR", TOP / "build"))
STAGE = BUILD / "win64" / "stage" / "bin" / "win64"
TEST_TOOLS = BUILD / "win64" / "test-tools"
WINE_RUN = TOP / "scripts" / "wine-run"
WINEPREFIX = Path(os.environ.get("WINEPREFIX", BUILD / "wineprefix"))
DRIVE = "K:"
DAY = 24 * 60 * 60


def wine_env():
    env = dict(os.environ)
    env["WINEPREFIX"] = str(WINEPREFIX)
    env["WINEDEBUG"] = "-all"
    env["KX_BUILD_DIR"] = str(BUILD)
    for name in ("KX_ROOT", "KX_ROOT_INSTALLER"):
        env.pop(name, None)
    return env


class Drive:
    """The scratch folder behind K:, with path conversions."""

    def __init__(self, root: Path):
        self.root = root

    def win(self, path: Path) -> str:
        relative = Path(path).relative_to(self.root)
        text = str(PureWindowsPath(*relative.parts)) if relative.parts else ""
        return DRIVE + "\\" + text


@pytest.fixture(scope="session")
def drive(tmp_path_factory):
    root = tmp_path_factory.mktemp("drive")
    link = WINEPREFIX / "dosdevices" / DRIVE.lower()
    if link.is_symlink() or link.exists():
        link.unlink()
    link.symlink_to(root)
    yield Drive(root)
    link.unlink()


@pytest.fixture(scope="session")
def suite(drive):
    """A sample installation with the staged exe in bin\\win64."""
    root = drive.root / "suite"
    shutil.copytree(STAGE, root / "bin" / "win64")
    (root / "sub" / "cfg_global").mkdir(parents=True)
    return root


@pytest.fixture
def work(drive, request):
    """An empty folder of this test's own on K:."""
    folder = drive.root / "work" / request.node.name[:40]
    if folder.exists():
        shutil.rmtree(folder)
    folder.mkdir(parents=True)
    return folder


class Result:
    def __init__(self, completed):
        self.code = completed.returncode
        self.out = completed.stdout.decode("latin-1").replace("\r\n", "\n")
        self.err = completed.stderr.decode("latin-1")


def run_exe(exe: str, *args, env=None, cwd=None) -> Result:
    completed = subprocess.run(
        [str(WINE_RUN), exe, *args],
        stdin=subprocess.DEVNULL,
        capture_output=True,
        env=env or wine_env(),
        cwd=cwd,
        timeout=300,
    )
    return Result(completed)


@pytest.fixture
def tool(suite, drive):
    """Runs the tool from the sample installation."""
    exe = drive.win(suite / "bin" / "win64" / "kxDeleteOldFiles.exe")

    def run(*args, **kwargs):
        return run_exe(exe, *args, **kwargs)

    return run


def make_tree(root: Path, files: dict, now=None):
    """Creates files from {relative path: (age in seconds, size in bytes)}.

    A path ending in "/" is an empty folder.
    """
    now = int(time.time()) if now is None else now
    for relative, shape in files.items():
        path = root / relative
        if relative.endswith("/"):
            path.mkdir(parents=True, exist_ok=True)
            continue
        age, size = shape
        path.parent.mkdir(parents=True, exist_ok=True)
        path.write_bytes(b"x" * size)
        os.utime(path, (now - age, now - age))
    return now


def tree(root: Path):
    """Everything left below root, as sorted relative paths; folders end in "/"."""
    found = []
    for path in root.rglob("*"):
        relative = path.relative_to(root).as_posix()
        found.append(relative + "/" if path.is_dir() else relative)
    return sorted(found)
