"""-prom: the run's figures in a .prom file, checked by Prometheus' own tools:
promtool's linter, and node_exporter's textfile collector serving the file."""

import re
import shutil
import socket
import subprocess
import urllib.request

from conftest import held_open, make_tree, tree

LAYOUT = "users/a/Temp/old.tmp=o2048, users/a/Temp/new.tmp=y, users/b/Temp/held.tmp=o, users/c/"


def served(folder):
    """The kxdeleteoldfiles samples that node_exporter serves from the folder's .prom files."""
    with socket.socket() as probe:
        probe.bind(("127.0.0.1", 0))
        port = probe.getsockname()[1]
    # At most a minute, even if it never says that it listens.
    exporter = subprocess.Popen(
        ["timeout", "60", "prometheus-node-exporter", "--collector.disable-defaults", "--collector.textfile",
         f"--collector.textfile.directory={folder}", f"--web.listen-address=127.0.0.1:{port}"],
        stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL, stderr=subprocess.PIPE, text=True)
    try:
        for line in exporter.stderr:
            if "Listening on" in line:
                break
        with urllib.request.urlopen(f"http://127.0.0.1:{port}/metrics", timeout=30) as response:
            text = response.read().decode()
    finally:
        exporter.terminate()
        exporter.wait(timeout=30)
    return {name: float(value) for name, value in re.findall(r"^kxdeleteoldfiles_(\w+)\{[^}]*\} (\S+)$", text, re.M)}


def test_figures_reach_the_exporter_and_a_failed_goal_keeps_the_last_success(tool, drive, work):
    make_tree(work, LAYOUT)
    textfiles = work.parent / f"{work.name}_textfiles"
    shutil.rmtree(textfiles, ignore_errors=True)
    textfiles.mkdir()
    prom = textfiles / "kx.prom"
    args = ["-do", "14", drive.win(work / "users") + "\\*\\Temp", "-prom", drive.win(prom)]
    before = tree(work)
    assert tool(*args, "-dryrun")[0] == 0 and not prom.exists() and tree(work) == before
    with held_open(drive.win(work / "users" / "b" / "Temp" / "held.tmp")):
        assert tool(*args)[0] == 0
    raw = prom.read_bytes()
    assert raw.endswith(b"\n") and b"\r" not in raw and not raw.startswith(b"\xef\xbb\xbf")
    assert subprocess.run(["promtool", "check", "metrics"], input=raw, capture_output=True).returncode == 0
    first = served(textfiles)
    assert first["last_success_timestamp_seconds"] == first["last_run_timestamp_seconds"] > 0
    assert {name: first[name] for name in ("exit_code", "folders", "deleted_files", "deleted_bytes", "errors")} == {
        "exit_code": 0, "folders": 2, "deleted_files": 1, "deleted_bytes": 2048, "errors": 1}
    assert first["free_bytes"] > 0 and "free_goal_met" not in first
    # A goal no drive here can meet: exit code 4, and the last success stays the
    # one the file held, here dated long before any run of this test.
    prom.write_bytes(re.sub(rb"(last_success_timestamp_seconds\{.*\}) \d+", rb"\1 1000000000", raw))
    assert tool(*args, "-minfree", "100T")[0] == 4
    second = served(textfiles)
    assert (second["exit_code"], second["last_success_timestamp_seconds"]) == (4, 1000000000)
    assert (second["free_goal_met"], second["free_goal_bytes"]) == (0, 100 * 2 ** 40)
    dry = prom.read_bytes()
    assert tool(*args, "-dryrun", "-minfree", "100T")[0] == 4 and prom.read_bytes() == dry
