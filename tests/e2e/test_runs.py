"""One row per run: a tree, the arguments, and, where the model cannot derive it,
the expected output. Every row checks the exact output and exit code, the tree
left behind, and that each file that stays is unchanged. {w} is the test's
folder on K:."""

import os

import pytest

from conftest import expect_run, make_tree, tree, wine_env

USAGE = (
    "\nUsage:\n\n  kxDeleteOldFiles   directory  [-do <days_old>]  [-age write|newest]  [-v]\n\n"
    "  directory: The directory to remove files from.\n"
    "             Subfolders are automatically searched as well. Empty subfolders are deleted.\n"
    "             The directory can contain a folder with a * wildcard to be replaced by ALL folder found\n"
    "  -do <days_old>: This tool does not delete files if they are not older than <days_old> days. Default: 14 days\n"
    "  -age write|newest: Age counts from the last write (default), or from the newest of it and the change time.\n"
    "  -v: Enable verbose messages.\n  -dryrun: List what would be deleted, and delete nothing.\n"
    "  -keep <pattern>: Never delete files or folders whose name matches <pattern> (* and ? wildcards, repeatable).\n"
    "  -log <file>: Append this report to <file>, in UTF-8.\n"
    "  -minfree <size>: Then delete the oldest files until the drive has <size> free (50G, 15%).\n"
    "  -freeto <size>: Once below the -minfree goal, delete until the drive has <size> free.\n"
    "  -minage <days>: Never delete files younger than this to free space. Default: 1 day\n"
    "  -prom <file>: Write this run's figures to <file> for Prometheus (textfile collector).\n"
    "  -check: Only tell whether the -minfree goal is met (exit code 4 if not); delete and write nothing.\n"
    "Note: There is no required order for the commandline flags\n\n\nExample commandlines: \n"
    "   Delete files from folder C:\\temp \n       kxDeleteOldFiles C:\\temp -do 7  \n\n"
    "   Delete files from the temp folder of all users\n"
    "       kxDeleteOldFiles -do 14 c:\\Users\\*\\AppData\\Local\\Temp    \n\n"
    "   Delete files from the temp folder of all users starting with 'm'\n"
    "       kxDeleteOldFiles -do 14 c:\\Users\\m*\\AppData\\Local\\Temp \n\n\n"
)

CANARY = "old.txt=o, sub/old.txt=o"
BAD_KEEP = "Error: -keep needs a name pattern without a folder separator, not '%s'!\n"
DEEP = "/".join("level_%04d" % i for i in range(330))
ODD = ("old.=o, old=y, sp =o, sp=y, ...=o, nul=o, aux=or, con.txt=o, com1.log=o, dir./a.txt=o2048r, dir/b.txt=y, "
       "dir/c.txt=o")
STARS = ("jobs/j1/a.tmp=o, jobs/j2/, jobs/file.txt=o, deep/a/x/t/, deep/a/y/t/, deep/b/x/t/, Users/alpha/tmp/, "
         "Users/ab/tmp/, Users/zb/tmp/")
SLASHED = ("Users/alice/AppData/Local/Temp/old.tmp=o, Users/alice/Documents/thesis.doc=o, Users/bob/AppData/, "
           "Users/bob/AppData/Local->shared, shared/Temp/canary.tmp=o")
KEPT = ("tree/a.lic=o, tree/new.LIC=y, tree/a.lic.bak=o, tree/cache1.tmp=o, tree/cache10.tmp=o, tree/v1x0.exr=o, "
        "tree/[ab].txt=o, tree/a.txt=o, tree/job/frame.lic=o, tree/job/old.exr=o, tree/ShaderCache/x.bin=o, "
        "tree/ShaderCache/sub/y.bin=o, tree/shadercache_old/z.bin=o, library/canary.old=o, tree/cachelink->library")
KEPT_USERS = ("Users/anna/Temp/x.lic=o, Users/anna/Temp/old.tmp=o, Users/anna/Temp/shadercache/a.bin=o, "
              "Users/bob/Temp/sub/w.LIC=o, Users/bob/Temp/sub/z.tmp=o, Users/shadercache/Temp/old.tmp=o")
ROOTS = "root/sub/cfg_global/, root/canary.txt=o, target/old.txt=o, target/new.txt=y, status/old.txt=o"
LINKED_USERS = ("Users/alice/AppData/Local/Temp/old.tmp=o, elsewhere/AppData/Local/Temp/canary.tmp=o, Users/bob/, "
                "shared/Local/Temp/canary.tmp=o, Users/linked->elsewhere, Users/bob/AppData->shared")
FOLDERS = "new/, nested/a/b/, old/=o, emptied/f.tmp=o, young/old/=o"
NAMED_LINK = ("target/jobs/j1/old.tmp=o, target/jobs/j1/new.tmp=y, target/direct/old.tmp=o, "
              "target/direct/sub/old.tmp=o, named->target")


def row(name, layout, args, out=None, code=0, held="", stays="", here=False):
    """stays names, in words of its own, what must still be there afterwards, whatever the model says;
    here runs the tool in the test's folder."""
    if layout.startswith(CANARY):
        stays = "old.txt, sub/old.txt"
    return pytest.param(layout, args, out, code, held, stays, here, id=name)


ROWS = [
    # Old files and emptied subfolders go; young files and the named folder stay.
    *(row(name, "a.exr=o2048, b.exr=o511, new.exr=y10, shot/c.exr=o1536, shot/deep/d.exr=o0, keep/e.exr=y, empty/",
          f"{dry}-do 14 {{w}}", stays="new.exr, keep/e.exr") for name, dry in (("sweep", ""), ("sweep dry run", "-dryrun "))),
    row("zero days", "x/y/z.tmp=o5, new.tmp=n5", "-do 0 {w}"),
    # An emptied folder goes when the run emptied it or it is old itself: a job's new folders stay.
    row("young folders", FOLDERS, "-do 7 -v {w}", stays="new/, nested/a/b/"),
    row("folders zero days", FOLDERS, "-do 0 -age write {w}"),
    # Linux renews the change time when a test sets a time: every file and folder here arrived now.
    row("age newest", FOLDERS + ", old.txt=o, new.txt=n", "-age Newest -do 7 -v {w}", stays="old.txt, old/"),
    # Options in any case, days in base 10.
    row("options", "new.txt=y, old.txt=o", "-DO 010 -V {w}", stays="new.txt"),
    # The limit is whole days in 64 bits: no value wraps round to delete a new file.
    *(row(f"{days} days", "new.txt=n, y1901.txt=a", f"-do {days} {{w}}", stays="new.txt") for days in (24856, 1491309)),
    # Names print as they stand; each entry goes by its own name, whatever Win32 makes of it.
    row("blanks and percent", "100% fertig \u00e9t\u00e9/%d %s.txt=o", ("-do", "14", "{w}\\100% fertig \u00e9t\u00e9", "-v")),
    row("odd names", ODD, "-v -do 14 {w}", stays="old, sp, dir/b.txt"),
    row("outside latin-1", "\u041a\u044d\u0448/old.exr=o, \u041a\u044d\u0448/new.exr=y", "-do 14 {w}\\\u041a\u044d\u0448"),
    # Paths of over 3,300 units.
    row("deep tree", ", ".join([f"{DEEP}/young.txt=y", DEEP.replace("level", "other") + "/old.txt=o",
                                *("/".join(DEEP.split("/")[:depth]) + "/old.txt=o" for depth in range(1, 331))]),
        "-do 14 {w}"),
    # A held file gives its error line, everything else still goes; Errors come before the -v log.
    row("held file", "jobs/a.exr=o1024, jobs/b.exr=o1024, jobs/c.exr=o1024, new.txt=y", "{w} -do 14 -v",
        held="jobs/b.exr", stays="jobs/b.exr, new.txt"),
    row("held hard links", "outside/free.txt=or, outside/held.txt=or, tree/plain.txt=o, "
        "tree/free.lnk=>outside/free.txt, tree/held.lnk=>outside/held.txt", "-do 14 {w}\\tree", held="tree/held.lnk",
        stays="outside/free.txt, outside/held.txt, tree/held.lnk"),
    # A folder that cannot be read is reported and kept: named, below it, matched (in its run), or a
    # wildcard's base; only what was below the named folder leaves the run complete.
    row("held named folder", "named/a.tmp=o", "-do 14 {w}\\named", code=5, held="named", stays="named/a.tmp"),
    row("held subfolder", "tree/clean/b.tmp=o, tree/held/c.tmp=o, tree/held/=o", "-v -do 14 {w}\\tree", held="tree/held",
        stays="tree/held/c.tmp"),
    row("held match", "users/bob/Temp/d.tmp=o, users/eve/Temp/e.tmp=o", "-do 14 {w}\\users\\*\\Temp", code=5,
        held="users/bob", stays="users/bob/Temp/d.tmp"),
    row("held base", "users/bob/Temp/d.tmp=o", "-do 14 {w}\\users\\*\\Temp", code=5, held="users",
        stays="users/bob/Temp/d.tmp"),
    # Links below the named folder are kept and never entered; those the command line names are followed.
    row("link in the tree", "tree/a.old=o, tree/sub/b.old=o, library/canary.old=o, tree/cache->library",
        "-do 14 -v {w}\\tree", stays="library/canary.old, tree/cache"),
    row("wildcard and links", LINKED_USERS, "-do 14 {w}\\Users\\*\\AppData\\Local\\Temp",
        stays="elsewhere/AppData/Local/Temp/canary.tmp, shared/Local/Temp/canary.tmp, Users/linked, Users/bob/AppData"),
    row("link beside its name in capitals", "Users/bob/APPDATA/Local/Temp/old.tmp=o, Users/bob/AppData->elsewhere, "
        "elsewhere/Local/Temp/canary.tmp=o", "-do 14 {w}\\Users\\*\\AppData\\Local\\Temp",
        stays="elsewhere/Local/Temp/canary.tmp, Users/bob/APPDATA/Local/Temp/old.tmp"),
    row("named link", NAMED_LINK, "-do 14 {w}\\named\\direct", stays="named, target/jobs/j1/old.tmp"),
    row("named link before a star", NAMED_LINK, "-do 14 {w}\\named\\jobs\\*",
        stays="named, target/jobs/j1/new.tmp, target/direct/old.tmp"),
    # One report per match, in the order the file system lists, matched
    # ignoring case; a star component matches whole names; slashes separate folders.
    row("m star", "Users/mary/AppData/Local/Temp/a.tmp=o, Users/Mike/AppData/Local/Temp/sub/c.tmp=o, "
        "Users/mona/Documents/, Users/bob/AppData/Local/Temp/d.tmp=o", "-do 14 {w}\\Users\\m*\\appdata\\LOCAL\\temp"),
    row("trailing dot match", "Users/bob/Temp/new.tmp=y, Users/bob./Temp/old.tmp=o", "-do 14 {w}\\Users\\*\\Temp",
        stays="Users/bob/Temp/new.tmp"),
    row("missing below a match", "Users/anna/", "{w}\\Users\\*\\Temp -do 1"),
    row("star last", STARS, "-do 14 {w}\\jobs\\*"),
    row("star and backslash", STARS, "-do 14 {w}\\jobs\\*\\"),
    row("two stars", STARS, "-do 14 {w}\\deep\\*\\*\\t"),
    row("text after a star", STARS, "-do 14 {w}\\Users\\a*b\\tmp"),
    row("no match", STARS, "-do 14 {w}\\Users\\q*"),
    row("a*b", "x/ab/o.tmp=o, x/axb/o.tmp=o, x/abc/o.tmp=o", "-do 14 {w}\\x\\A*B", stays="x/abc/o.tmp"),
    row("missing base", STARS, "-do 14 {w}\\nonexist\\*\\Temp"),
    row("slashes", SLASHED, "-do 14 {w}/Users/*/AppData\\Local/Temp",
        stays="Users/alice/Documents/thesis.doc, shared/Temp/canary.tmp, Users/bob/AppData/Local"),
    # -keep: whole names, any case, before age and links; never the cleaned folder or a "*" match.
    row("keep", KEPT, "-v -keep cache?.tmp -KEEP *.lic {w}\\tree -Keep shadercache -do 14 -keep v1.0.exr "
        "-keep [ab].txt -keep *link -keep frame.*",
        stays="tree/a.lic, tree/cache1.tmp, tree/[ab].txt, tree/job/frame.lic, tree/ShaderCache/x.bin, "
        "tree/ShaderCache/sub/y.bin, tree/cachelink, library/canary.old"),
    row("keep below matches", KEPT_USERS, "-dryrun -do 14 {w}\\Users\\*\\Temp -keep *.lic -keep shadercache -keep TEMP -v"),
    # A root flag's value is never the folder, wherever it stands.
    row("root flag first", ROOTS, "-kxRoot {w}\\root {w}\\target -do 14",
        stays="root/canary.txt, status/old.txt, target/new.txt"),
    row("root flag last", ROOTS, "{w}\\target -do 14 -KXROOT {w}\\root"),
    row("status flag", ROOTS, "-LoadStatus {w}\\status -do 14 {w}\\target", stays="status/old.txt, root/canary.txt"),
    row("root flag twice", ROOTS, "-kxRoot -kxRoot {w}\\root -do 14", "Error: -kxRoot needs a value!\n", 2),
    # Fewer than three arguments print the usage; the first bad argument ends the run untouched.
    row("no arguments", CANARY, (), USAGE, 255),
    row("two arguments", CANARY, "{w} -v", USAGE, 255),
    row("no folder", CANARY, "-do 7 -v", "Error: no folder given!\n", 2),
    row("missing folder", CANARY, "{w}\\absent -do 1", "Warning: directory {w}\\absent does not exist!\n"),
    row("file as folder", CANARY, "{w}\\old.txt -do 1", "Warning: directory {w}\\old.txt does not exist!\n"),
    row("-do last", CANARY, "{w} -v -do", "Error: -do needs a value!\n", 2),
    *(row(f"{option} last", CANARY, f"{{w}} -do 14 {option}", f"Error: {option} needs a value!\n", 2)
      for option in ("-KXROOT", "-loadstatus", "-keep")),
    *(row(f"-do {days}", CANARY, ("{w}", "-do", days), f"Error: Unable to convert {days} into a number!\n", 3)
      for days in ("abc", "\uff15", "+5", " 5")),
    # A forgotten value never swallows an option, -dryrun least of all.
    *(row(f"{option} -dryrun", CANARY, f"{{w}} -do 14 {option} -dryrun", f"Error: {option} needs a value!\n", 2)
      for option in ("-keep", "-kxRoot", "-LOADSTATUS", "-log", "-age")),
    # Nor does a value that an editor's autocorrect began with another dash.
    *(row(f"-keep {dash}dryrun", CANARY, f"{{w}} -do 14 -keep {dash}dryrun", "Error: -keep needs a value!\n", 2)
      for dash in "\u2010\u2013\u2212\ufe63\uff0d"),
    row("-do -dryrun", CANARY, "-do -dryrun {w}", "Error: -do needs a value!\n", 2),
    *(row(f"-do {days}", CANARY, f"{{w}} -do {days}", f"Error: -do needs a number of days of 0 or more, not '{days}'!\n", 3)
      for days in ("-14", "-0")),
    row("-do twice", CANARY, "-do 30 {w} -do 3", "Error: -do given twice!\n", 2),
    row("-age twice", CANARY, "-age write {w} -do 14 -age newest", "Error: -age given twice!\n", 2),
    row("-age ctime", CANARY, "{w} -age ctime", "Error: -age needs write or newest, not 'ctime'!\n", 2),
    row("-log twice", CANARY, "-log {w}\\a.log {w} -LOG {w}\\b.log", "Error: -LOG given twice!\n", 2),
    row("-minfree -dryrun", CANARY, "{w} -do 14 -minfree -dryrun", "Error: -minfree needs a value!\n", 2),
    *(row(f"-minfree {size}", CANARY, f"{{w}} -minfree {size}",
          f"Error: -minfree needs a size such as 50G or 15%, not '{size}'!\n", 2)
      for size in ("50", "0G", "100%", "16777216T", "\uff15G")),
    *(row(f"-minage {args}", CANARY, f"{{w}} -do 14 {args}",
          f"Error: -minage needs a number of days and -minfree, not '{args.split()[-1]}'!\n", 2)
      for args in ("-minage 2", "-minfree 5G -minage 2d", "-minfree 5G -minage \uff15", "-minfree 5G -minage \u0665")),
    *(row(f"-freeto {args}", CANARY, f"{{w}} -do 14 {args}",
          f"Error: -freeto needs a size such as 50G or 15% and -minfree, not '{args.split()[-1]}'!\n", 2)
      for args in ("-freeto 5G", "-minfree 5G -freeto 100%")),
    row("-freeto below", CANARY, "{w} -freeto 10% -minfree 20%", "Error: -freeto is below the -minfree goal!\n", 2),
    row("-check alone", CANARY, "{w} -do 14 -check", "Error: -check needs -minfree!\n", 2),
    row("-check -dryrun", CANARY, "{w} -check -minfree 5G -dryrun", "Error: -check and -dryrun do not go together!\n", 2),
    # A size goal above the volume's is told once the volume is read, after the age run.
    row("goal above the volume", CANARY, "-do 100 {w} -minfree 1000T",
        "\nStarting to delete files in folder '{w}', File have to be older than 100 days.\n  0 files deleted (0 Kib). \n\n"
        "  Done. Free drive space in {w} is <free> MiB\n\n"
        "Error: the free space goal is larger than the volume of {w} (<message> MiB)!\n", 2),
    row("prom folder missing", CANARY, "{w} -do 14 -prom {w}\\absent\\kx.prom",
        "Error: the folder of the -prom file {w}\\absent\\kx.prom does not exist!\n", 2),
    row("log folder missing", CANARY, "{w} -do 14 -log {w}\\absent\\x.log",
        "Error: Unable to open log file {w}\\absent\\x.log:<message>\n", 2),
    # The classic quoting slip: \" is a quote, and the rest of the line joins the folder.
    row("quoting slip", CANARY, ("-do", "14", '{w}\\render cache\\*" -dryrun -v'),
        "Error: '{w}\\render cache\\*\" -dryrun -v' cannot be a folder name!\n", 2),
    # A relative folder is never completed from the current folder, whatever it holds.
    *(row(f"relative {folder}", CANARY + ", shot/x/cache/a.tmp=o, shot01/cache/a.tmp=o", f"-do 14 {folder}",
          f"Error: the folder {folder} is not a full path, and a scheduled task's current folder is "
          "C:\\Windows\\System32!\n", 2, here=True)
      for folder in ("shot*\\cache", "\\shot*", "*", "K:shot*", "shot01\\cache", ".", "\\")),
    row("-do7", CANARY, "{w} -do7 -verbose", "Error: Unknown option -do7!\n", 2),
    row("\u2013dryrun", CANARY, "\u2013dryrun {w} -do 14", "Error: Unknown option \u2013dryrun!\n", 2),
    row("--dryrun", CANARY, "--dryrun {w} -do abc", "Error: Unknown option --dryrun!\n", 2),
    row("/dryrun", CANARY, "/dryrun {w} -do 14", "Error: More than one folder given: /dryrun and {w}!\n", 2),
    row("-keep empty", CANARY, ("-keep", "", "{w}", "-do", "14"), BAD_KEEP % "", 2),
    row("-keep folder", CANARY, "-keep {w} -do 14", BAD_KEEP % "{w}", 2),
    row("-keep slash", CANARY, "{w} -do 14 -KEEP \u00e9t\u00e9/*", BAD_KEEP % "\u00e9t\u00e9/*", 2),
]


@pytest.mark.parametrize("layout, args, out, code, held, stays, here", ROWS)
def test_run(tool, drive, work, layout, args, out, code, held, stays, here):
    make_tree(work, layout)
    folder = drive.win(work)
    args = [arg.replace("{w}", folder) for arg in (args.split(" ") if isinstance(args, str) else args)]
    expect_run(tool, drive, work, args, out and out.replace("{w}", folder), code,
               [work / path for path in held.split(", ") if path], cwd=work if here else None)
    assert [path for path in stays.split(", ") if path and not os.path.lexists(work / path)] == []


SCRIPTS = "\u0142\u00f3d\u017a_cache/a.tmp=o, \u041a\u044d\u0448/b.tmp=o, \u7f13\u5b58/c.tmp=o, xyz/d.tmp=o"
KEPT_SCRIPTS = "\u0142\u00f3d\u017a_cache/a.tmp, \u041a\u044d\u0448/b.tmp, \u7f13\u5b58/c.tmp"


# Arguments never pass through the 8-bit code page, whichever it is: each
# pattern keeps its folder, ignoring case, and "xyz", as long as the patterns
# would be with every letter a "?", is cleaned.
@pytest.mark.parametrize("lang", ["C.UTF-8", "ru_RU.UTF-8"])
def test_keep_patterns_in_any_script(tool, drive, work, lang):
    make_tree(work, SCRIPTS)
    args = ["-do", "14", drive.win(work), "-keep", "\u0141\u00d3D\u0179*", "-keep", "\u043a\u044d\u0448*",
            "-keep", "\u7f13\u5b58*", "-v"]
    expect_run(tool, drive, work, args, env={**wine_env(), "LANG": lang})
    assert tree(work) == sorted(["\u0142\u00f3d\u017a_cache/", "\u041a\u044d\u0448/", "\u7f13\u5b58/",
                                 *KEPT_SCRIPTS.split(", ")])


def test_log_appends_each_report_whole(tool, drive, work):
    make_tree(work, SCRIPTS + ", \U0001f39e/e.tmp=o, J\u00fcrgen.txt=y")
    # A relative name long enough to need the long-path form is taken from the current folder.
    log = work.parent / f"{work.name}_{'L' * 210}.log"
    runs = [tool("-v", "-do", "14", drive.win(work), "-LOG", log.name, cwd=work.parent) for _ in range(2)]
    raw = log.read_bytes()
    assert not raw.startswith(b"\xef\xbb\xbf") and b"\n" not in raw.replace(b"\r\n", b"")
    text = raw.decode("utf-8").replace("\r\n", "\n")
    # With what Latin-1 lacks as "?", the log is the console's output of both runs.
    assert [code for code, _, _ in runs] == [0, 0]
    assert text.encode("latin-1", "replace").decode("latin-1") == runs[0][1] + runs[1][1]
    assert all(f"     -dir [{name.split('/')[0]}]\n" in text for name in (*KEPT_SCRIPTS.split(", "), "\U0001f39e/"))
    assert tree(work) == ["J\u00fcrgen.txt"]
