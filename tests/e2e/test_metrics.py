"""-prom: the run's figures in a .prom file, checked by Prometheus' own tools: promtool, and a Prometheus
server scraping two tasks' files through node_exporter's textfile collector for the shipped dashboard."""

import contextlib
import json
import math
import os
import re
import socket
import subprocess
import time
import urllib.parse
import urllib.request

from conftest import TOP, held_open, make_tree, tree


@contextlib.contextmanager
def serving(command, ready):
    """A server of Prometheus' on a loopback port of its own, under a time limit; yields the port."""
    with socket.socket() as probe:
        probe.bind(("127.0.0.1", 0))
        port = probe.getsockname()[1]
    server = subprocess.Popen(["timeout", "120", *command, f"--web.listen-address=127.0.0.1:{port}"],
                              stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL, stderr=subprocess.PIPE, text=True)
    try:
        next(line for line in server.stderr if ready in line)
        yield port
    finally:
        server.terminate()
        server.wait(timeout=30)


def test_figures_add_up_over_runs_keep_the_last_success_and_survive_a_reader_holding_the_file(tool, drive, work):
    def samples():
        return {name: float(value) for name, value in re.findall(r"^kxdeleteoldfiles_(\w+)\{.*\} (\S+)$", prom.read_text(), re.M)}
    make_tree(work, "users/a/Temp/old.tmp=o2048, users/a/Temp/new.tmp=y, users/b/Temp/held.tmp=o, users/c/")
    prom = work.parent / "kx.prom"
    prom.unlink(missing_ok=True)
    args = ["-do", "14", drive.win(work / "users") + "\\*\\Temp", "-prom", drive.win(prom)]
    before = tree(work)
    assert tool(*args, "-dryrun")[0] == 0 and not prom.exists() and tree(work) == before
    with held_open(drive.win(work / "users" / "b" / "Temp" / "held.tmp")):
        assert tool(*args)[0] == 0
    raw = prom.read_bytes()
    assert raw.endswith(b"\n") and b"\r" not in raw and not raw.startswith(b"\xef\xbb\xbf") and b',task="kx"} ' in raw
    assert subprocess.run(["promtool", "check", "metrics"], input=raw, capture_output=True).returncode == 0
    first = samples()
    assert first["last_success_timestamp_seconds"] == first["last_run_timestamp_seconds"] > 0
    assert {name: first[name] for name in ("exit_code", "folders", "deleted_files", "deleted_bytes", "errors")} == {
        "exit_code": 0, "folders": 2, "deleted_files": 1, "deleted_bytes": 2048, "errors": 1}
    assert first["free_bytes"] > 0 and "free_goal_met" not in first
    # A goal no drive meets: exit code 4, the file's last success (set long ago) stays, bytes and misses add up.
    prom.write_bytes(re.sub(rb"(last_success_timestamp_seconds\{.*\}) \d+", rb"\1 1000000000", raw))
    assert tool(*args, "-minfree", "99%")[0] == 4
    second = samples()
    volume = os.statvfs(work)
    assert (second["exit_code"], second["last_success_timestamp_seconds"], second["deleted_bytes_total"]) == (4, 1000000000, 2049)
    assert (second["free_goal_met"], second["free_goal_bytes"], second["free_goal_missed_runs"]) == (0, math.ceil(0.99 * volume.f_blocks * volume.f_frsize), 1)
    assert tool(*args, "-minfree", "99%")[0] == 4 and samples()["free_goal_missed_runs"] == 2
    # Held by its reader without delete sharing for the whole run: exit code 5, and the file stays whole.
    kept = prom.read_bytes()
    with held_open("-share", "rw", drive.win(prom)):
        code, out, _ = tool(*args)
    assert code == 5 and re.search(rf"\nError writing metrics file {re.escape(drive.win(prom))}:[^\n]+\n$", out), out
    assert prom.read_bytes() == kept and not prom.with_suffix(".prom.tmp").exists()
    # A wildcard base that another program holds: exit code 5, and the last success stays the file's.
    with held_open(drive.win(work / "users")):
        assert tool(*args)[0] == 5
    assert samples()["last_success_timestamp_seconds"] == 1000000000
    # A goal whose volume cannot be read is a missed goal.
    assert tool("-do", "14", drive.win(work / "absent"), "-minfree", "1M", "-prom", drive.win(prom))[0] == 4
    assert (samples()["free_goal_met"], samples()["free_goal_missed_runs"]) == (0, 1)


def test_two_tasks_on_one_folder_reach_prometheus_and_every_dashboard_query_and_rule_answers(tool, drive, work):
    make_tree(work, "cache/old.tmp=o2048, cache/new.tmp=y, textfiles/")
    args = ["-do", "14", drive.win(work / "cache"), "-prom"]
    assert tool(*args, drive.win(work / "textfiles" / "kx_age.prom"))[0] == 0
    assert tool(*args, drive.win(work / "textfiles" / "kx_free.prom"), "-minfree", "1M")[0] == 0
    dashboard = json.loads((TOP / "monitoring" / "kxdeleteoldfiles-dashboard.json").read_text())
    queries = [target["expr"].replace("$node", ".*") for panel in dashboard["panels"] for target in panel["targets"]]
    with serving(["prometheus-node-exporter", "--collector.disable-defaults", "--collector.textfile",
                  f"--collector.textfile.directory={work / 'textfiles'}"], "Listening on") as target:
        (work / "prometheus.yml").write_text("global: {scrape_interval: 1s}\nscrape_configs: [{job_name: node, "
                                             f"static_configs: [{{targets: ['127.0.0.1:{target}']}}]}}]\n")
        with serving(["prometheus", f"--config.file={work / 'prometheus.yml'}", f"--storage.tsdb.path={work / 'data'}"],
                     "Server is ready") as port:
            def answer(query):
                url = f"http://127.0.0.1:{port}/api/v1/query?" + urllib.parse.urlencode({"query": query})
                with urllib.request.urlopen(url, timeout=30) as response:
                    return json.loads(response.read())["data"]["result"]
            deadline = time.monotonic() + 60
            while silent := [query for query in queries if not answer(query)]:
                assert time.monotonic() < deadline, f"no series for {silent}"
                time.sleep(0.2)
            assert sorted(series["metric"]["task"] for series in answer("kxdeleteoldfiles_exit_code")) == ["kx_age", "kx_free"]
            assert [series["value"][1] for series in answer("node_textfile_scrape_error")] == ["0"]
    for check, file in ("check", "kxdeleteoldfiles.rules.yml"), ("test", "kxdeleteoldfiles.rules.test.yml"):
        assert subprocess.run(["promtool", check, "rules", file], cwd=TOP / "monitoring", capture_output=True).returncode == 0
