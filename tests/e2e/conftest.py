"""Runs the staged kxDeleteOldFiles.exe under Wine on real folder trees.

Every test works below the Wine drive K:, a scratch folder of the session. A
sample installation of the suite sits at K:\\suite with the staged exe in its
bin\\win64 folder, so the tool runs as it would on a render node.
"""

import contextlib
import os
import re
import shutil
import subprocess
import time
from pathlib import Path

import pytest

TOP = Path(__file__).resolve().parents[2]
BUILD = Path(os.environ.get("KX_BUILD_DIR", TOP / "build"))
STAGE = BUILD / "win64" / "stage" / "bin" / "win64"
TEST_TOOLS = BUILD / "win64" / "test-tools"
WINE_RUN = TOP / "scripts" / "wine-run"
WINEPREFIX = Path(os.environ.get("WINEPREFIX", BUILD / "wineprefix"))
DAY = 24 * 60 * 60


def wine_env():
    env = dict(os.environ, WINEPREFIX=str(WINEPREFIX), WINEDEBUG="-all", KX_BUILD_DIR=str(BUILD))
    for name in ("KX_ROOT", "KX_ROOT_INSTALLER"):
        env.pop(name, None)
    return env


class Drive:
    def __init__(self, root: Path):
        self.root = root

    def win(self, path) -> str:
        """The Windows form of a path below the drive: K:\\a\\b."""
        return "K:\\" + "\\".join(Path(path).relative_to(self.root).parts)


@pytest.fixture(scope="session")
def drive(tmp_path_factory):
    root = tmp_path_factory.mktemp("drive")
    link = WINEPREFIX / "dosdevices" / "k:"
    if link.is_symlink():
        link.unlink()
    link.symlink_to(root)
    yield Drive(root)
    link.unlink()


@pytest.fixture(scope="session")
def suite(drive):
    root = drive.root / "suite"
    shutil.copytree(STAGE, root / "bin" / "win64")
    (root / "sub" / "cfg_global").mkdir(parents=True)
    return root


@pytest.fixture
def work(drive, request):
    """An empty folder of this test's own on K:."""
    folder = drive.root / "work" / re.sub(r"\W", "_", request.node.name)
    shutil.rmtree(folder, ignore_errors=True)
    folder.mkdir(parents=True)
    return folder


class Result:
    def __init__(self, completed):
        self.code = completed.returncode
        self.out = completed.stdout.decode("latin-1").replace("\r\n", "\n")
        self.err = completed.stderr.decode("latin-1")


def run_exe(exe: str, *args, env=None, cwd=None) -> Result:
    return Result(subprocess.run([str(WINE_RUN), exe, *args], stdin=subprocess.DEVNULL, capture_output=True,
                                 env=env or wine_env(), cwd=cwd, timeout=300))


@pytest.fixture
def tool(suite, drive):
    """Runs the tool from the sample installation."""
    exe = drive.win(suite / "bin" / "win64" / "kxDeleteOldFiles.exe")
    return lambda *args, **kwargs: run_exe(exe, *args, **kwargs)


@contextlib.contextmanager
def held_open(*paths):
    """Holds the Windows paths open without sharing in another process, as a running job would."""
    holder = subprocess.Popen([str(WINE_RUN), str(TEST_TOOLS / "kxHoldFiles.exe"), *paths],
                              stdin=subprocess.PIPE, stdout=subprocess.PIPE, env=wine_env())
    try:
        assert holder.stdout.readline().strip() == b"held"
        yield
    finally:
        holder.stdin.close()
        holder.wait(timeout=60)


def make_tree(root: Path, files: dict, now=None):
    """Files from {relative path: (age in seconds, size)}; a path ending in "/" is an empty folder."""
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


def tree(root: Path):
    """Everything left below root, sorted; folders end in "/"."""
    return sorted(p.relative_to(root).as_posix() + ("/" if p.is_dir() else "") for p in root.rglob("*"))
