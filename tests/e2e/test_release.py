"""The release zip of scripts/release: what it holds, its checksum, the version
resource of its exe, and the tool run from an installation unpacked from it
the way the README's scheduled task runs it."""

import hashlib
import re
import subprocess
import zipfile
from pathlib import Path

import pytest

from conftest import BANNER, BUILD, TEST_TOOLS, TOP, Model, held_open, make_tree, masked, run_exe, tree, wine_env

VERSION = re.search(r"^\. kxDeleteOldFiles  (\S+)$", BANNER, re.MULTILINE).group(1)
BIN = ["Qt6Core.dll", "kxDeleteOldFiles.exe", "libgcc_s_seh-1.dll", "libstdc++-6.dll", "libwinpthread-1.dll"]
MONITORING = ["monitoring/kxdeleteoldfiles-dashboard.json", "monitoring/kxdeleteoldfiles.rules.yml"]
DOCS = ["docs/command-line.md", "docs/differences.md", "docs/monitoring.md", "docs/safety.md"]


@pytest.fixture(scope="module")
def release():
    subprocess.run([str(TOP / "scripts" / "release")], stdin=subprocess.DEVNULL, capture_output=True,
                   env=wine_env(), timeout=600, check=True)
    return BUILD / "release"


@pytest.fixture(scope="module")
def node(release, drive):
    """An installation root with the zip unpacked into it, as on a render node."""
    root = drive.root / "node"
    with zipfile.ZipFile(release / f"kxDeleteOldFiles-{VERSION}-win64.zip") as archive:
        archive.extractall(root)
    (root / "sub" / "cfg_global").mkdir(parents=True)
    (root / "logs").mkdir()
    return root


def test_zip_named_after_the_banner_version_holds_the_stripped_exe_its_dlls_their_licences_and_monitoring(release):
    name = f"kxDeleteOldFiles-{VERSION}-win64.zip"
    digest = hashlib.sha256((release / name).read_bytes()).hexdigest()
    assert (release / "SHA256SUMS").read_text() == f"{digest}  {name}\n"
    with zipfile.ZipFile(release / name) as archive:
        assert sorted(archive.namelist()) == ["README.txt", "THIRD-PARTY-NOTICES.txt", *(f"bin/win64/{f}" for f in BIN),
                                              *DOCS, *MONITORING]
        assert all(archive.read(f) == (TOP / f).read_bytes() for f in MONITORING)
        assert all(archive.read(f).replace(b"\r\n", b"\n") == (TOP / f).read_bytes() for f in DOCS)
        notices = archive.read("THIRD-PARTY-NOTICES.txt").decode("utf-8").replace("\r\n", "\n")
        readme = archive.read("README.txt").decode("utf-8").replace("\r\n", "\n")
        # Stripped: no debug sections are left to name.
        assert not any(b".debug_" in archive.read(f"bin/win64/{f}") for f in BIN)
    assert all(dll in notices for dll in BIN if dll.endswith(".dll"))
    # The zip's README is the admin part of the project's, not a copy that drifts; links show as their text.
    admin = (TOP / "README.md").read_text().split("## Command line")[1].split("## Differences")[0]
    admin = re.sub(r"\[([^]]*)\]\([^)]*\)", r"\1", admin)
    assert admin in readme and "scripts/" not in readme
    assert all(Path("/usr/share/common-licenses", licence).read_text() in notices for licence in ("LGPL-3", "GPL-3"))


def test_exe_version_resource_shows_the_banner_version(node, drive):
    result = run_exe(str(TEST_TOOLS / "kxVersionInfo.exe"), drive.win(node / "bin" / "win64" / "kxDeleteOldFiles.exe"))
    numbers = ".".join(str(int(part)) for part in VERSION.split(".")) + ".0"
    assert dict(line.split("=", 1) for line in result[1].splitlines()) == {
        "FileVersionNumber": numbers, "ProductVersionNumber": numbers,
        "FileVersion": VERSION, "ProductVersion": VERSION, "ProductName": "kxDeleteOldFiles",
        "FileDescription": "KX render farm suite: deletes old files and emptied folders",
    }


def test_scheduled_command_appends_each_report_to_the_node_log_that_another_run_holds(node, drive, work):
    # The task's command as the README's /TR gives it, run twice, the second time while another run holds the log.
    make_tree(work, "old.tmp=o2048, young.tmp=y10")
    args = ["-do", "14", drive.win(work), "-log", drive.win(node / "logs" / "NODE01.log")]
    exe = drive.win(node / "bin" / "win64" / "kxDeleteOldFiles.exe")
    reports = []
    for holder in ([], ["-share", "rwd", args[-1]]):
        reports.append(BANNER + Model(drive, args).out())
        with held_open(*holder):
            assert run_exe(exe, *args)[0] == 0
    log = (node / "logs" / "NODE01.log").read_bytes().decode("utf-8").replace("\r\n", "\n")
    assert masked(log) == "".join(reports)
    assert tree(work) == ["young.tmp"]
