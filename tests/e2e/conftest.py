"""Runs the staged kxDeleteOldFiles.exe under Wine on real folder trees below the drive K:, a scratch
folder of the session, from a sample installation at K:\\suite, as on a render node; and derives from
the tree what a run must print and leave behind."""

import contextlib
import os
import re
import shutil
import stat
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
OLD, YOUNG = 30 * DAY, 60
EXE = "K:\\suite\\bin\\win64\\kxDeleteOldFiles.exe"
# Stands for the system's text of an error code, which differs between systems.
MESSAGE = "<message>"

BANNER = (
    ".----------------------------------------------------------------\n"
    ". kxDeleteOldFiles  8.4.02\n"
    ". Part of the KX render farm suite. Removes old files and emptied folders.\n"
    ".----------------------------------------------------------------\n"
)


def wine_env():
    env = dict(os.environ, WINEPREFIX=str(WINEPREFIX), WINEDEBUG="-all", KX_BUILD_DIR=str(BUILD))
    return {name: value for name, value in env.items() if name not in ("KX_ROOT", "KX_ROOT_INSTALLER")}


class Drive:
    def __init__(self, root: Path):
        self.root = root

    def win(self, path) -> str:
        return "K:\\" + "\\".join(Path(path).relative_to(self.root).parts)


@pytest.fixture(scope="session")
def drive(tmp_path_factory):
    root = tmp_path_factory.mktemp("drive")
    link = WINEPREFIX / "dosdevices" / "k:"
    link.unlink(missing_ok=True)
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


def run_exe(exe: str, *args, env=None, cwd=None):
    """The exit code, standard output and standard error of a run. Wine now and then fails to start a
    program at all; a run that printed nothing, not even the banner that comes first, is started once
    more, and must then match."""
    for _ in range(2):
        done = subprocess.run([str(WINE_RUN), exe, *args], stdin=subprocess.DEVNULL, capture_output=True,
                              env=env or wine_env(), cwd=cwd, timeout=300)
        if done.stdout:
            break
    return done.returncode, done.stdout.decode("latin-1").replace("\r\n", "\n"), done.stderr.decode("latin-1")


def mounted(*command):
    if subprocess.run(["mount", *command], capture_output=True).returncode:
        pytest.skip("mounts are refused here")


@pytest.fixture
def drive_t(tmp_path, suite):
    """T:, a tmpfs of 64 MiB of the test's own."""
    root = tmp_path / "t"
    root.mkdir()
    mounted("-t", "tmpfs", "-o", "size=64m", "tmpfs", str(root))
    link = WINEPREFIX / "dosdevices" / "t:"
    link.unlink(missing_ok=True)
    link.symlink_to(root)
    yield root
    link.unlink()
    subprocess.run(["umount", "-l", str(root)], check=True)


@pytest.fixture
def tool(suite):
    return lambda *args, **kwargs: run_exe(EXE, *args, **kwargs)


def wait_for(condition, what, seconds=60):
    """Polls until condition() holds, failing the test after seconds."""
    deadline = time.monotonic() + seconds
    while not condition():
        if time.monotonic() > deadline:
            pytest.fail(f"waited {seconds} s for {what}")


@contextlib.contextmanager
def held_open(*paths):
    """Holds the Windows paths open without sharing in another process, as a running job would."""
    holder = subprocess.Popen(["timeout", "300", str(WINE_RUN), str(TEST_TOOLS / "kxHoldFiles.exe"), *paths],
                              stdin=subprocess.PIPE, stdout=subprocess.PIPE, env=wine_env())
    try:
        assert holder.stdout.readline().strip() == b"held"
        yield
    finally:
        holder.stdin.close()
        holder.wait(timeout=60)


def make_tree(root: Path, layout: str):
    """Makes a tree from "path=<age><size>[r], folder/[=o], link->target, name=>file, ...": the age o(ld),
    y(oung), n(ow) or a (file of 1901), a size in bytes (1 when none is given), r for read-only, -> a
    link to a folder, => a second name of a file; a folder's =o dates it old once its content is made."""
    now = int(time.time())
    old_folders = []
    for relative, shape in (entry.partition("=")[::2] for entry in layout.split(", ")):
        path = root / relative.split("->")[0]
        path.parent.mkdir(parents=True, exist_ok=True)
        if "->" in relative:
            os.symlink(root / relative.split("->")[1], path, target_is_directory=True)
        elif relative.endswith("/"):
            path.mkdir(exist_ok=True)
            old_folders += [path] if shape == "o" else []
        elif shape.startswith(">"):
            os.link(root / shape[1:], path)
        else:
            age, size, flags = re.fullmatch(r"([oyna])(\d*)(r?)", shape).groups()
            age = {"o": OLD, "y": YOUNG, "n": 0, "a": now + 2145916800}[age]
            path.write_bytes(b"x" * int(size or 1))
            os.utime(path, (now - age, now - age))
            if flags:
                os.chmod(path, stat.S_IRUSR)
    for path in old_folders:
        os.utime(path, (now - OLD, now - OLD))


def tree(root: Path):
    """Everything left below root, sorted; folders end in "/"."""
    return sorted(p.relative_to(root).as_posix() + ("/" if p.is_dir() else "") for p in root.rglob("*"))


def snapshot(root: Path):
    """Every file below root with its mode, size and modification time."""
    return {p: (p.lstat().st_mode, p.lstat().st_size, p.lstat().st_mtime_ns)
            for p in root.rglob("*") if not p.is_dir()}


def masked(out: str) -> str:
    """The output with every free-space figure, checked to be a grouped number, as <free>. The stand-in
    for a drive whose free space cannot be read, 1000, stays: no drive here has exactly that much."""
    return re.sub(r"(  Done\. Free drive space in .* is )(?!1000 MiB)\d{1,4}(?: \d{3})*( MiB\n)", r"\1<free>\2", out)


def grouped(number: int) -> str:
    return str(number) if number <= 1000 else grouped(number // 1000) + " %03d" % (number % 1000)


def matches_keep(name: str, pattern: str) -> bool:
    wanted = "".join(".*" if c == "*" else "." if c == "?" else re.escape(c) for c in pattern)
    return re.fullmatch(wanted, name, re.IGNORECASE | re.DOTALL) is not None


class Model:
    """What a run must print and leave, derived from the tree as it stands before
    the run: which files are old, the counts, the -v log in the order the file
    system lists (names compared upper-cased), the wildcard's matches and warnings."""

    def __init__(self, drive, args, held=()):
        self.drive, self.args, self.held, self.now = drive, args, {Path(p) for p in held}, time.time()
        self.days, self.verbose, self.dry, self.keep, self.folder, self.removed, self.first = 14, False, False, [], "", set(), True
        self.newest = False

    def read_options(self):
        options = iter(self.args)
        for arg in options:
            option = arg.lower()
            if option == "-do":
                self.days = int(next(options), 10)
            elif option in ("-kxroot", "-loadstatus", "-log"):
                next(options)
            elif option == "-keep":
                self.keep.append(next(options))
            elif option == "-age":
                self.newest = next(options).lower() == "newest"
            elif option in ("-v", "-dryrun"):
                self.verbose, self.dry = self.verbose or option == "-v", self.dry or option == "-dryrun"
            else:
                self.folder = arg

    def local(self, folder: str) -> Path:
        """The folder on this side of Wine, below K:."""
        return self.drive.root / folder[3:].replace("\\", "/")

    def out(self) -> str:
        self.read_options()
        if "*" not in self.folder:
            if not self.local(self.folder).is_dir():
                return f"Warning: directory {self.folder} does not exist!\n"
            return self.report(self.folder, self.local(self.folder))
        search = f"Searching for folders matching '{self.folder}'."
        base, component, *names = re.match(r"(.*?\\)([^\\]*\*[^\\]*)(.*)", self.folder.replace("/", "\\")).groups()
        if not self.local(base).is_dir():
            return search + f"Warning: directory {base[:-1]} does not exist!\n"
        if self.local(base) in self.held:
            return search + f"Error: directory {base[:-1]} cannot be read:Error 32: {MESSAGE}\n"
        runs = self.expand(base, self.local(base), component, names[0].split("\\")[1:])
        return search + (runs or f"\nWarning: no folder matches '{self.folder}'!\n")

    def expand(self, shown: str, local: Path, component: str, names) -> str:
        found = sorted((e for e in os.scandir(local) if e.is_dir() and not e.is_symlink()
                        and matches_keep(e.name, component)), key=lambda e: e.name.upper())
        return "".join(self.follow(shown + e.name, Path(e.path), names) for e in found)

    def follow(self, shown: str, local: Path, names) -> str:
        """The run a match leads to, or its warning. A folder on the way that cannot be held is
        reported by the run it leads to; below a later "*" it matches nothing."""
        for i, name in enumerate([*names, None]):
            concrete = "" if any("*" in later for later in names[i:]) else "\\".join([shown, *names[i:]])
            if name is None or local in self.held:
                return self.report(concrete, local) if concrete else ""
            if "*" in name:
                return self.expand(shown + "\\", local, name, names[i + 1:])
            shown += "\\" + name
            if name in ("", "."):
                continue
            # The exact name first, as Wine opens it.
            inner = sorted((e for e in os.scandir(local) if e.name.upper() == name.upper()), key=lambda e: e.name != name)
            if inner and inner[0].is_symlink():
                return f"Warning: directory {concrete or shown} is reached through a link, skipped!\n"
            if not inner or not inner[0].is_dir():
                return f"Warning: directory {concrete} does not exist!\n" if concrete else ""
            local = Path(inner[0].path)

    def report(self, shown: str, local: Path) -> str:
        self.count, self.kib, self.errors, self.log = 0, 0, "", ""
        # Only the first folder of a run shows progress: the next line is due only seconds later.
        progress = f"     ...{shown}...\n" if self.first else ""
        self.first = False
        self.sweep(shown, local, False)
        text = (f"\nDry run in folder '{shown}': files older than {self.days} days are only listed, nothing is deleted.\n"
                if self.dry else
                f"\nStarting to delete files in folder '{shown}', File have to be older than {self.days} days.\n")
        text += progress + f"  {self.count} files {'would be ' if self.dry else ''}deleted ({grouped(self.kib)} Kib). \n\n"
        text += f"\nErrors:\n {self.errors} \n\n" if self.errors else ""
        text += f"\n{self.log}\n\n" if self.verbose else ""
        return text + f"  Done. Free drive space in {shown} is <free> MiB\n\n"

    def young(self, listed) -> bool:
        """Not old enough: by the last write, or with -age newest by the newer of it and the change."""
        written = max(listed.st_mtime, listed.st_ctime) if self.newest else listed.st_mtime
        return self.days > 0 and self.now - written <= self.days * DAY

    def sweep(self, shown: str, local: Path, removable: bool, listed=None) -> bool:
        """Logs and counts one folder as the tool does; true when something is left in it. An emptied
        folder goes when the run emptied something in it or, listed, it is old enough itself."""
        self.log += f"   [{shown}]: \n"
        if local in self.held:
            self.errors += f"Error reading folder {shown}:Error 32: {MESSAGE}\n"
            return True
        prefix = shown.replace("/", "\\").rstrip("\\") + "\\"
        left = emptied = False
        for entry in sorted(os.scandir(local), key=lambda e: e.name.upper()):
            name, path = entry.name, Path(entry.path)
            pattern = next((p for p in self.keep if matches_keep(name, p)), None)
            if pattern is not None:
                self.log += f"     -keep {f'[{name}]' if entry.is_dir() else name}   '{pattern}'\n"
            elif entry.is_symlink():
                self.log += f"     -lnk [{name}]\n"
            elif entry.is_dir():
                self.log += f"     -dir [{name}]\n"
                if not self.sweep(prefix + name, path, True, entry.stat()):
                    emptied = True
                    continue
            elif self.young(entry.stat()):
                self.log += f"     -ignT {name}\n"
            else:
                self.log += f"     -del {name}\n"
                if path in self.held and not self.dry:
                    self.errors += f"{prefix}{name}:Unable to delete file; Error 32: {MESSAGE}.\n"
                else:
                    self.count += 1
                    self.kib += (entry.stat().st_size + 512) // 1024
                    self.removed.add(path)
                    emptied = True
                    continue
            left = True
        stays = left or (removable and not emptied and self.young(listed))
        if removable and not stays:
            self.removed.add(local)
        return stays

    def left(self, root: Path):
        """What remains below root after the run; what was removed through a link is gone where it is."""
        gone = {path.resolve() for path in self.removed}
        return [p for p in tree(root) if self.dry or not gone.intersection([q := (root / p).resolve(), *q.parents])]


def pattern(expected: str) -> str:
    """The expected output as a pattern: a system message stands for any text, and a progress line of any
    folder may follow any line, since a slow machine prints more of them."""
    progress = r"(?:     \.\.\.[^\n]*\.\.\.\n)*"
    return re.escape(expected).replace(re.escape(MESSAGE), r"[^\n]+").replace("\n", "\n" + progress)


def expect_run(tool, drive, work, args, out=None, code=0, held=(), cwd=None, env=None):
    """Runs the tool with held paths held open, and checks its exact output and exit code, and that
    what is left below work is what the model derives, each file that stays unchanged."""
    model = Model(drive, args, held)
    before = snapshot(work)
    # The tool prints Latin-1, with "?" for what it cannot show.
    expected = BANNER + (model.out() if out is None else out).encode("latin-1", "replace").decode("latin-1")
    wanted = model.left(work)
    with held_open(*(drive.win(path) for path in held)) if held else contextlib.nullcontext():
        result = tool(*args, cwd=cwd, env=env)
    assert re.fullmatch(pattern(expected), masked(result[1])), result[1]
    assert (result[0], result[2]) == (code, "")
    assert tree(work) == wanted
    after = snapshot(work)
    assert after == {path: before.get(path) for path in after}
