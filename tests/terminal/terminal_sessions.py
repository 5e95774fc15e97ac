#!/usr/bin/env python3
"""What people see: sessions in a terminal, played and looked at through tmux.

terminal_sessions.py BIN_DIR SOURCE_DIR [CASE...]; the status is 77 where there is no tmux.
"""
import concurrent.futures
import os
import pathlib
import re
import shutil
import signal
import stat
import subprocess
import sys
import tempfile
import traceback

sys.dont_write_bytecode = True  # the tree stays as it is

from terminal import Terminal, framed, processes_naming

BAR = "[█░]"
CASES = []


def case(function):
    CASES.append(function)
    return function


def check(condition, what, screen=""):
    if not condition:
        raise AssertionError(what + ("\n" + framed(screen) if screen else ""))


class Place:
    """A folder with reads, the programs, and a launcher whose analysis goes on only when told."""

    def __init__(self, folder, programs, source):
        self.folder = folder
        self.programs = programs
        self.temporary = folder / "tmp"
        self.held = folder / "held"
        self.temporary.mkdir()
        self.held.mkdir()
        for name in ("control.fastq", "treated.fastq.gz"):
            shutil.copy(source / "examples" / name, folder)
        launcher = self.held / "statisticspython3.sh"
        script = pathlib.Path(__file__).with_name("held_analysis.py")
        launcher.write_text(
            f"#!/bin/sh\nexport GENOSTAT_HELD='{self.held}'\n"
            f"exec '{sys.executable}' '{script}' '{programs}/genostat-analysis' \"$@\"\n")
        launcher.chmod(launcher.stat().st_mode | stat.S_IXUSR)

    def terminal(self, columns=80, rows=24, **environment):
        path = f"{self.programs}:/usr/bin:/bin"
        return Terminal(self.folder, columns, rows, {"PATH": path, "TMPDIR": str(self.temporary), **environment})

    def go_on(self):
        (self.held / "go").touch()

    def check_nothing_is_left(self):
        files = sorted(str(path) for path in self.temporary.rglob("*"))
        check(not files, f"left in the temporary folder: {files}")
        check(not processes_naming(self.held), f"still running: {processes_naming(self.held)}")


QC = "genostat qc control.fastq treated.fastq.gz"


@case
def progress_appears_and_is_gone(place):
    with place.terminal() as terminal:
        terminal.type(f'{QC} --home held; echo "[status $?]"')
        screen = terminal.wait_for(r"0 of 2 samples +\d+ % .* left")
        lines = screen.split("\n")
        check(any(re.match(rf"  control +{BAR}+ +\d+ %", line) for line in lines), "a line of the sample", screen)
        check(any(re.match(rf"  treated +{BAR}+ +\d+ %", line) for line in lines), "a line of the other", screen)
        place.go_on()
        check(terminal.wait_for_status() == 0, "the job succeeds")
        everything = terminal.everything()
        check(not re.search(rf"{BAR}| left|samples  ", everything), "nothing of it remains", everything)
        check("job 'Genomic_analysis_job_1' finished" in everything, "notices stay", everything)
        place.check_nothing_is_left()


@case
def progress_follows_the_width(place):
    with place.terminal(columns=60) as terminal:
        terminal.type(f'{QC} --home held; echo "[status $?]"')
        def one_line_each(screen):
            return all(len(re.findall(rf"^{name} .*\d+ %", screen, re.MULTILINE)) == 1
                       for name in (r"Geno\S*", "  control", "  treated"))

        def reads(screen):
            return re.search(r"^  control .* (\S+) reads", screen, re.MULTILINE)[1]

        for columns in (60, 100, 40, 72):
            terminal.resize(columns, 24)
            wanted = f"one line of the job and of each sample in {columns} columns"
            before = reads(terminal.wait_until(one_line_each, wanted))
            # The lines may be those from before the resize: what has gone on since is drawn for the new width.
            screen = terminal.wait_until(lambda screen: one_line_each(screen) and reads(screen) != before, wanted)
            check(max(map(len, screen.split("\n"))) <= columns, "lines fit", screen)
        place.go_on()
        check(terminal.wait_for_status() == 0, "the job succeeds")
        screen = terminal.everything()
        check(not re.search(rf"{BAR}|\d %", screen.split("finished")[0]), "nothing of it remains", screen)


@case
def progress_makes_room(place):
    jobs = "".join(f"GENOSTAT\n  /JOB NAME='{name}' FILE='control.fastq' 'treated.fastq.gz'.\n" for name in "abc")
    (place.folder / "jobs.syntax").write_text(jobs + "UNKNOWN.\n")
    with place.terminal(rows=12) as terminal:
        terminal.type("clear; genostat run jobs.syntax --home held > tables.txt")
        screen = terminal.wait_for(r"^a  .*\n  control .*\n  treated .*\n2 more jobs wait")
        check("error" not in screen.split("\na  ")[1], "what went wrong stands above", screen)
        terminal.resize(80, 4)
        screen = terminal.wait_for(r"^a  .*\n  and 2 more samples\n2 more jobs wait")
        terminal.resize(80, 12)
        terminal.keys("C-z")
        screen = terminal.wait_until(lambda screen: "Stopped" in screen and screen.endswith("\n$"), "a prompt")
        check(not re.search(rf"{BAR}|more jobs", screen), "nothing is in the prompt's way", screen)
        terminal.type("bg")
        terminal.wait_for(r"jobs.syntax .*&")
        terminal.type('fg; echo "[status $?]"')
        terminal.wait_for(r"^a  .*\n  control .*\n  treated .*\n2 more jobs wait")
        place.go_on()
        check(terminal.wait_for_status() == 1, "the status reports the wrong command")
        screen = terminal.everything()
        check(not re.search(rf"{BAR}|more jobs", screen), "nothing of it remains", screen)
        place.check_nothing_is_left()


@case
def cancelled_in_the_middle(place):
    with place.terminal() as terminal:
        terminal.type(f'{QC} --home held --csv qc.csv --html qc.html; echo "[status $?]"')
        terminal.wait_for(r"0 of 2 samples")
        check(len(processes_naming(place.held)) > 0, "it runs")
        terminal.keys("C-c")
        check(terminal.wait_for_status() == 130, "the status of an interrupted program")
        screen = terminal.everything()
        check(not re.search(rf"{BAR}|of 2 samples", screen), "the progress is gone", screen)
        check("cancelled" in screen, "it says so", screen)
        place.check_nothing_is_left()
        check(not list(place.folder.glob("qc.*")), "no output is left")


@case
def nothing_lively_without_a_terminal(place):
    command = [f"{place.programs}/genostat", "qc", "control.fastq", "treated.fastq.gz", "--home", "held"]
    job = subprocess.Popen(command, cwd=place.folder, stdout=subprocess.PIPE, stderr=subprocess.PIPE, text=True,
                           env={"TMPDIR": str(place.temporary), "LC_ALL": "C.UTF-8", "TERM": "xterm"})
    try:
        while not list(place.temporary.rglob("*.progress")):
            check(job.poll() is None, "the job runs")
        place.go_on()
        out, err = job.communicate(timeout=60)
    finally:
        job.kill()
    check(err == "".join(f"job 'Genomic_analysis_job_1' {state}\n" for state in ("queued", "running", "finished")),
          "notices only", err)
    check("\x1b" not in out and "\r" not in out, "no escape sequences", out)


@case
def colours_only_where_they_are_wanted(place):
    for environment, coloured in (({}, True), ({"NO_COLOR": "1"}, False), ({"TERM": "dumb"}, False)):
        with place.terminal(**environment) as terminal:
            terminal.run("clear; genostat qc treated.fastq.gz --adapter illumina")
            screen = terminal.screen(escapes=True)
            check(("\x1b[3" in screen) == coloured, f"colours with {environment}", screen)


@case
def lines_fit_sixty_columns(place):
    with place.terminal(columns=60, rows=200) as terminal:
        for command in (f"{QC} --adapter illumina --descriptives GC,qc_score --no-such-option", "genostat qc --help",
                        f"{QC} --adapter illumina --descriptives GC,qc_score", "genostat run --help",
                        "genostat-analysis qc --help", "genostat --help"):
            terminal.clear()
            terminal.run(command)
            # All but the command itself, which is longer.
            whole, seen = ([line.rstrip() for line in text.split("\n")]
                           for text in (terminal.everything(), terminal.screen()))
            check(len(whole) > 3, "there is something to see", terminal.screen())
            check(whole[1:] == seen[1 - len(whole):], "the terminal breaks none of the lines of " + command, terminal.screen())


@case
def analyser_tells_its_progress(place):
    with place.terminal(columns=50) as terminal:
        terminal.type("(cat control.fastq; while [ ! -e held/go ]; do sleep 0.1; done; cat control.fastq) | "
                      'genostat-analysis qc --csv qc.csv -; echo "[status $?]"')
        terminal.wait_for(r"MB/s .*stdin")
        place.go_on()
        check(terminal.wait_for_status() == 0, "it succeeds")
        screen = terminal.everything()
        check(not re.search(r"MB/s .*stdin", screen), "the line is gone", screen)
        check("stdin,NONE,500," in (place.folder / "qc.csv").read_text(), "the table")


@case
def data_on_a_terminal_steers_nothing(place):
    (place.folder / "\x1b[2J\u009b2Jreads.fq").write_text("@a\nG\n+\n5\n")
    with place.terminal(columns=200, rows=60) as terminal:
        for command in ("genostat-analysis qc", "genostat-analysis qc --json -", "genostat qc --print-syntax",
                        "genostat qc --output json"):
            terminal.clear()
            check(terminal.run(command + " *reads.fq") == 0, command, terminal.screen())
            check(r"\x9B2Jreads" in terminal.everything(), "the name can be read: " + command, terminal.screen())


PROMPT = r"^genostat> ?\Z"
JOB = "GENOSTAT /JOB NAME='check' FILE='control.fastq'."


def last_line(screen):
    return screen.split("\n")[-1].rstrip()


@case
def shell_completes_and_remembers(place):
    state = {"XDG_STATE_HOME": str(place.folder / "state")}
    with place.terminal(rows=80, **state) as terminal:
        terminal.type("genostat shell")
        terminal.wait_for(PROMPT)
        # Commands and names of variables get a blank after them.
        for typed, completed in (("GENO", "GENOSTAT"), ("/JO", "GENOSTAT /JOB"),
                                 (" NAME='check' FILE='con", "GENOSTAT /JOB NAME='check' FILE='control.fastq'")):
            terminal.type(typed, enter=False)
            terminal.keys("Tab")
            terminal.wait_until(lambda screen: last_line(screen) == "genostat> " + completed, completed)
        terminal.type(".")
        terminal.wait_for("job 'check' finished")
        terminal.wait_for("Imported Data")
        terminal.wait_for(PROMPT)
        terminal.type("DESCRIPTIVES qc_s", enter=False)
        terminal.keys("Tab")
        terminal.wait_until(lambda screen: last_line(screen) == "genostat> DESCRIPTIVES qc_score", "a variable's name")
        terminal.type(".")
        terminal.wait_for("Descriptive Statistics")
        terminal.type("quit")
        terminal.wait_for(r"^\$\Z")
    with place.terminal(**state) as terminal:
        terminal.type("genostat shell")
        terminal.wait_for(PROMPT)
        for remembered in ("quit", "DESCRIPTIVES qc_score .", JOB):
            terminal.keys("Up")
            terminal.wait_until(lambda screen: last_line(screen) == "genostat> " + remembered, remembered)
        terminal.keys("C-c")
        terminal.wait_for(PROMPT)
        terminal.keys("C-d")
        terminal.wait_for(r"^\$\Z")


@case
def shell_notices_leave_the_line_whole(place):
    with place.terminal(rows=50) as terminal:
        terminal.type("genostat shell --home held --no-history")
        terminal.wait_for(PROMPT)
        terminal.type(JOB)
        terminal.wait_for("job 'check' running")
        terminal.wait_for(PROMPT)
        terminal.type("DESCRIP", enter=False)
        terminal.wait_until(lambda screen: last_line(screen) == "genostat> DESCRIP", "what is typed")
        place.go_on()
        screen = terminal.wait_for("^job 'check' finished")
        terminal.wait_until(lambda screen: last_line(screen) == "genostat> DESCRIP", "what was typed")
        check("Imported Data" not in screen, "results wait", screen)
        terminal.keys("C-u")
        terminal.wait_for("Imported Data")
        terminal.wait_for(PROMPT)
        check("DESCRIP" not in terminal.screen(), "nothing of it stays", terminal.screen())
        terminal.type("FREQUENCIES\nadapter_content.")
        terminal.wait_for("Cumulative Percent")
        terminal.type("quit")
        check_status(terminal, 0)


def check_status(terminal, wanted):
    terminal.wait_for(r"^\$\Z")
    terminal.type('echo "[status $?]"')
    status = terminal.wait_for_status()
    check(status == wanted, f"status {status} instead of {wanted}", terminal.screen())


@case
def shell_asks_before_it_drops_jobs(place):
    with place.terminal() as terminal:
        terminal.type("genostat shell --home held --no-history")
        terminal.wait_for(PROMPT)
        terminal.type(JOB)
        terminal.wait_for("job 'check' running")
        terminal.wait_for(PROMPT)
        terminal.type("jobs")
        terminal.wait_for("check .*running")
        terminal.type("quit")
        terminal.wait_for(r"\[w/c/g\]")
        terminal.type("g")
        terminal.wait_for(PROMPT)
        terminal.type("quit")
        terminal.wait_until(lambda screen: screen.count("[w/c/g]") == 2, "the question again")
        terminal.type("c")
        terminal.wait_for(r"^\$\Z")
        screen = terminal.everything()
        check("job 'check' cancelled" in screen, "it says so", screen)
        place.check_nothing_is_left()


@case
def shell_keeps_keys_and_words_whole(place):
    with place.terminal(columns=50) as terminal:
        terminal.type("genostat shell --home held --no-history")
        terminal.wait_for(PROMPT)
        terminal.keys("a", "b", "C-c", "d", "e")
        screen = terminal.wait_for(r"^genostat> de\Z")
        check("genostat> ab^C\n" in screen, "Ctrl-C keeps its place among the keys", screen)
        terminal.keys("C-u")
        terminal.type("run 'con'", enter=False)
        terminal.keys("Left", "Tab")
        terminal.wait_for(r"^genostat> run 'control.fastq'\Z")
        terminal.keys("C-e", "C-u")
        # A name that no line can hold is none to complete; the word stays.
        open(bytes(place.folder) + b"/odd\xff.syntax", "wb").close()
        terminal.type("run odd", enter=False)
        terminal.keys("Tab")
        terminal.type("x")
        screen = terminal.wait_for(PROMPT)
        check("genostat> run oddx\n" in screen, "what was typed stays", screen)
        terminal.type("GENOSTAT /JOB NAME='a long name of a job, longer than a row' FILE='x' /NONE.")
        screen = terminal.wait_for("DELETE\n" + PROMPT)
        shown = screen[screen.index("<shell>:1:", screen.index("/NONE.")):]
        check(shown.startswith("""<shell>:1:72: error: unknown subcommand "NONE"
  \u2026e of a job, longer than a row' FILE='x' /NONE.
                                            ^~~~
  expected JOB, DESCRIPTIVES, FREQUENCIES,
  CORRELATIONS, REGRESSION, PRINT or DELETE
"""), "no word is broken, and the caret stands below its place", screen)
        terminal.type(JOB)
        terminal.wait_for("job 'check' running")
        terminal.type("wait")
        terminal.wait_for(BAR)
        terminal.keys("C-z")
        terminal.wait_for("Stopped")
        screen = terminal.wait_for(r"^\$\Z")
        check(not re.search(BAR, screen), "nothing of the progress stays", screen)
        terminal.type("fg")
        terminal.wait_for(BAR)
        place.go_on()
        terminal.wait_for("Quality Overview")
        terminal.wait_for(PROMPT)
        terminal.type("quit")
        check_status(terminal, 0)
        place.check_nothing_is_left()


@case
def shell_that_cannot_edit_waits_at_the_end(place):
    for ending in ((JOB, ), (JOB[:-1], ), (JOB, "quit")):
        with place.terminal(rows=50, TERM="dumb") as terminal:
            terminal.type("genostat shell --home held --no-history")
            terminal.wait_for(PROMPT)
            for line in ending:
                terminal.type(line)
            if "quit" in ending:
                terminal.wait_for(r"\[w/c/g\]")
            terminal.keys("C-d")
            terminal.wait_for("job 'check' running")
            check(processes_naming(place.held), "the job goes on", terminal.screen())
            place.go_on()
            terminal.wait_for("Quality Overview")
            check_status(terminal, 0)
            screen = terminal.everything()
            check("cancelled" not in screen and ("[w/c/g]" in screen) == ("quit" in ending), "it waits", screen)
        (place.held / "go").unlink()
        place.check_nothing_is_left()


@case
def shell_restores_the_terminal_when_told_to_end(place):
    with place.terminal() as terminal:
        # A shell that does not set the terminal back by itself.
        terminal.type(f"sh -c 'stty -g >before; genostat shell --home {place.held}; echo [$?]; stty -g >after'")
        terminal.wait_for(PROMPT)
        shell = [id for id, command in processes_naming(place.held) if command.startswith("genostat")]
        os.kill(shell[0], signal.SIGQUIT)
        terminal.wait_for(r"^\[130\]\n\$\Z")
        check((place.folder / "before").read_text() == (place.folder / "after").read_text(), "the terminal as it was")


def play(function, programs, source):
    with tempfile.TemporaryDirectory(prefix="genostat-") as name:
        try:
            function(Place(pathlib.Path(name), programs, source))
            return None
        except Exception as error:
            return "".join(traceback.format_exception(error))


def main():
    if not shutil.which("tmux"):
        print("skipped: there is no tmux; scripts/setup test installs it")
        return 77
    programs, source = (pathlib.Path(path).resolve() for path in sys.argv[1:3])
    for program in ("genostat", "genostat-analysis"):
        if not (programs / program).exists():
            print(f"there is no {programs / program}")
            return 1
    chosen = [function for function in CASES if not sys.argv[3:] or function.__name__ in sys.argv[3:]]
    failed = 0
    # They mostly wait.
    with concurrent.futures.ThreadPoolExecutor(4) as pool:
        results = {pool.submit(play, function, programs, source): function.__name__ for function in chosen}
        for result in concurrent.futures.as_completed(results):
            problem = result.result()
            failed += problem is not None
            print(f"{'FAILED' if problem else 'ok'}  {results[result]}" + (f"\n{problem}" if problem else ""), flush=True)
    print(f"{len(chosen) - failed} of {len(chosen)} sessions went well")
    return 1 if failed or not chosen else 0


if __name__ == "__main__":
    sys.exit(main())
