#!/usr/bin/env python3
"""Compares zenfo with the best similar tools; called by scripts/bench.

For every row of rows.py all sides must first give the same answer, or the run
ends with an error. Then the sides run in turns, so that noise affects all of
them equally, and the shortest time counts: whole processes, warm cache. Output
goes to memory, because some tools stop early when nobody can read it. Rows can be
run with the files of several seeds, so that nothing is fitted to one.
"""

import argparse
import datetime
import hashlib
import json
import os
import platform
import re
import shlex
import shutil
import subprocess
import sys
import time
from collections import Counter
from pathlib import Path

import corpus
from rows import ROWS

ROOT = Path(__file__).resolve().parent.parent
LEAST_ROUNDS = 3
RECORD_SEEDS = [corpus.DEFAULT_SEED, 2]
ENVIRONMENT = {**os.environ, "LC_ALL": "C"}


class Disagreement(Exception):
    """A side failed, or the sides answer differently: nothing is timed."""


# --- Running a command --------------------------------------------------------

class Capture:
    """A file in memory for the output of one run."""

    def __init__(self, name):
        self.fd = os.memfd_create(name)

    def clear(self):
        os.ftruncate(self.fd, 0)
        os.lseek(self.fd, 0, os.SEEK_SET)

    def read(self):
        return os.pread(self.fd, os.fstat(self.fd).st_size, 0)


OUTPUT, ERRORS = Capture("output"), Capture("errors")


def execute(argv):
    """Runs a command and returns its cost and exit status."""
    OUTPUT.clear()
    ERRORS.clear()
    actions = [(os.POSIX_SPAWN_DUP2, OUTPUT.fd, 1),
               (os.POSIX_SPAWN_DUP2, ERRORS.fd, 2)]
    start = time.perf_counter()
    child = os.posix_spawnp(argv[0], argv, ENVIRONMENT, file_actions=actions)
    _, status, usage = os.wait4(child, 0)
    seconds = time.perf_counter() - start
    cost = {"ms": round(seconds * 1000, 3),
            "cpu_ms": round((usage.ru_utime + usage.ru_stime) * 1000, 3),
            "faults": usage.ru_minflt}
    return cost, os.waitstatus_to_exitcode(status)


class Bench:
    """Knows where things are; turns a row's command into an argument list."""

    def __init__(self, options, seed):
        self.zenfo = str(options.zenfo)
        self.programs = options.programs
        self.corpus = corpus.folder_of(options.corpus, seed)
        self.seed, self.clock = seed, options.clock
        self.copy = options.copies / "copy"
        self.state = options.copies / "state"  # where zenfo keeps safe copies
        ENVIRONMENT["XDG_STATE_HOME"] = str(self.state)
        self.places = {part: self.corpus / part
                       for part in ("tree", "big", "log", "texts")}
        self.places |= {"paths": self.corpus / "paths.txt",
                        "copy": self.copy, "copy_of_log": self.copy}

    def argv(self, command):
        if "|" in re.sub(r"'[^']*'|\"[^\"]*\"", "", command):
            return ["sh", "-c", command.format(**self.places)]
        words = [word.format(**self.places) for word in shlex.split(command)]
        return [self.zenfo if word == "zenfo" else word for word in words]

    def refresh_copy(self, command):
        """Makes a fresh copy, all on disk, for a command that changes files."""
        source = "log" if "{copy_of_log}" in command else "tree"
        if "{copy" not in command:
            return
        self.remove_copies()
        self.copy.parent.mkdir(parents=True, exist_ok=True)
        subprocess.run(["cp", "-r", self.places[source], self.copy],
                       check=True)
        os.sync()

    def remove_copies(self):
        shutil.rmtree(self.copy, ignore_errors=True)
        shutil.rmtree(self.state, ignore_errors=True)

    def run(self, command):
        self.refresh_copy(command)
        return execute(self.argv(command))


# --- What must be equal: each check turns one side's answer into a value ------

def lines(output, _):
    return sorted(output.splitlines())


def shown_lines(output, _):
    """Lines without their carriage returns, which zenfo leaves out."""
    return sorted(line.removesuffix(b"\r") for line in output.split(b"\n"))


COLOURS = re.compile(rb"((?:\x1b\[[0-9;]*m)+)")


def marked(line):
    """A line with ESC < and ESC > around what is red, without other colours."""
    text, *rest = COLOURS.split(line.replace(b"\x1b[K", b""))
    red = False
    for colours, follows in zip(rest[::2], rest[1::2]):
        now = bool(re.search(rb"[\[;]31[;m]", colours))
        if now != red:
            text += b"\x1b<" if now else b"\x1b>"
        text, red = text + follows, now
    return text


def coloured_lines(output, _):
    """Lines with their matches marked, and without carriage returns."""
    return sorted(marked(line).removesuffix(b"\r")
                  for line in output.split(b"\n"))


def counts(output, _):
    """file:count lines with a count above 0, or one bare count."""
    counted = [line.rpartition(b":") for line in output.splitlines()]
    return sorted(int(count) for _, _, count in counted if int(count) > 0)


def last_words(output, _):
    return [closing_number(output, b"words", 1)]


def last_words_and_lines(output, _):
    return [closing_number(output, b"words", 1),
            closing_number(output, b"lines", 0)]


def closing_number(output, unit, place):
    """Returns a number from the last line: of zenfo's JSON object, or of wc."""
    closing = output.splitlines()[-1]
    named = re.search(rb'"%b":(\d+)' % unit, closing)
    return int(named[1] if named else closing.split()[place])


def shown_size(number, unit):
    """Returns a size as zenfo shows it; a peer gives the number of bytes."""
    if unit in (b"B", b"KB"):
        return number + b" " + unit
    size = int(number)
    return (b"%.1f KB" % (size / 1024)) if size > 1024 else b"%d B" % size


def paths_and_sizes(output, bench):
    """Returns the path and the size in each line; other lines are headings."""
    root = os.fsencode(bench.places["tree"]) + b"/"
    fields = (line.split() for line in output.splitlines())
    return sorted((row[0], shown_size(*row[1:3])) for row in fields
                  if row and row[0].startswith(root))


def copies(_, bench):
    """Returns a digest of all files below the copy except backups."""
    digest = hashlib.sha256()
    for path in sorted(bench.copy.rglob("*")):
        if path.is_file() and path.suffix != ".bak":
            digest.update(bytes(path.relative_to(bench.copy)))
            digest.update(hashlib.sha256(path.read_bytes()).digest())
    return digest.hexdigest()


CHECKS = {check.__name__: check for check in
          (lines, shown_lines, coloured_lines, counts, last_words, last_words_and_lines,
           paths_and_sizes, copies)}


def answer(bench, row, side, command):
    _, status = bench.run(command)
    errors = ERRORS.read().decode(errors="replace").strip()
    if status not in (0, 1) or errors:
        raise Disagreement(f"{row.name}: {side} ends with {status}: {command}"
                           f"\n{errors[:500]}")
    return CHECKS[row.check](OUTPUT.read(), bench)


def first_difference(ours, theirs):
    if not isinstance(ours, list):
        return f"{ours} and {theirs}"
    only_ours, only_theirs = ours, theirs
    if all(isinstance(item, (bytes, int, tuple)) for item in ours + theirs):
        only_ours = list((Counter(ours) - Counter(theirs)).elements())
        only_theirs = list((Counter(theirs) - Counter(ours)).elements())
    return (f"{len(ours)} and {len(theirs)} items; only ours "
            f"{only_ours[:3]}, only theirs {only_theirs[:3]}")


def prove(bench, row):
    """Raises unless all sides agree; returns how many items they agree on."""
    ours = answer(bench, row, "ours", row.ours)
    for name, command in row.peers.items():
        theirs = answer(bench, row, name, command)
        if ours != theirs:
            raise Disagreement(f"{row.name}: ours and {name} differ: "
                               + first_difference(ours, theirs))
    return len(ours) if isinstance(ours, list) else 1


# --- Measuring -----------------------------------------------------------------

def sides_of(row):
    return {"ours": row.ours, **row.peers}


def measure(bench, row, options):
    """Runs all sides in turns; returns the cost of each run of each side."""
    results = {side: [] for side in sides_of(row)}
    deadline = time.monotonic() + options.seconds
    for turn in range(options.runs):
        if turn >= LEAST_ROUNDS and time.monotonic() > deadline:
            break
        for side, command in sides_of(row).items():
            results[side].append(bench.run(command)[0])
    return results


def measure_program(bench, row):
    """Both sides from one benchmark program, which proves them equal."""
    program = bench.programs / row.ours.partition(":")[0]
    sides = {side: command.partition(":")[2]
             for side, command in sides_of(row).items()}
    wanted = "|".join(f"^{name}$" for name in sides.values())
    done = subprocess.run(
        [program, f"--benchmark_filter={wanted}", "--benchmark_format=json",
         "--benchmark_repetitions=3", "--benchmark_min_time=0.05",
         "--benchmark_enable_random_interleaving=true"],
        capture_output=True, text=True, check=True,
        env={**ENVIRONMENT, "ZENFO_CORPUS": str(bench.corpus)})
    runs = [run for run in json.loads(done.stdout)["benchmarks"]
            if run["run_type"] == "iteration"]
    for run in runs:
        if run.get("error_occurred"):
            raise Disagreement(f"{row.name}: {run['error_message']}")
    return {side: [{"ms": round(run["real_time"], 3),
                    "cpu_ms": round(run["cpu_time"], 3)}
                   for run in runs if run["run_name"] == name]
            for side, name in sides.items()}


def verdict(bench, row, results):
    least = {side: min(run[bench.clock] for run in runs)
             for side, runs in results.items()}
    ours = least.pop("ours")
    peer = min(least, key=least.get)
    ratio = ours / least[peer]
    return {"seed": bench.seed, "row": row.name, "about": row.about, "ours_ms": ours,
            "peer": peer, "peer_ms": least[peer], "ratio": round(ratio, 3),
            "aim": row.aim, "ok": ratio <= row.aim, "sides": results,
            "commands": sides_of(row)}


def do_row(bench, row, options):
    if row.check == "by_program":
        return verdict(bench, row, measure_program(bench, row))
    if row.all_processors:
        ENVIRONMENT.pop("ZENFO_THREADS", None)
    else:
        ENVIRONMENT["ZENFO_THREADS"] = "1"
    agreed = prove(bench, row)
    results = measure(bench, row, options)
    return verdict(bench, row, results) | {"agreed": agreed}


def parts_for(rows):
    """The parts of the corpus that the rows work on."""
    if any(row.check == "by_program" for row in rows):
        return list(corpus.PARTS)
    named = " ".join(command for row in rows
                     for command in sides_of(row).values())
    named = named.replace("{copy}", "{tree}").replace("{copy_of_log}", "{log}")
    return [part for part in corpus.PARTS if f"{{{part}}}" in named]


def rows_at(scale, rows):
    """Without the programs, which need the full list of paths."""
    return [row for row in rows if scale == 1 or row.check != "by_program"]


def do_seed(seed, rows, options):
    corpus.make_parts(options.corpus, parts_for(rows), seed, options.scale)
    bench = Bench(options, seed)
    print(f"seed {seed}\n{HEADING}", flush=True)
    results = []
    for row in rows:
        results.append(do_row(bench, row, options))
        print(table_line(results[-1]), flush=True)
    bench.remove_copies()
    return results


# --- Reporting -----------------------------------------------------------------

HEADING = (f"{'row':<24} {'ours ms':>8} {'peer ms':>8}  {'best peer':<15} "
           f"{'ratio':>5} {'aim':>5}")


def table_line(result):
    return (f"{result['row']:<24} {result['ours_ms']:8.1f} "
            f"{result['peer_ms']:8.1f}  {result['peer']:<15} "
            f"{result['ratio']:5.2f} {result['aim']:5.2f}  "
            f"{'ok' if result['ok'] else 'over'}")


def version_of(program):
    done = subprocess.run([program, "--version"], capture_output=True,
                          text=True, check=False)
    return next((line for line in done.stdout.splitlines() if line), "")


def peers_in(rows):
    named = {word for row in rows for command in row.peers.values()
             for word in re.findall(r"\b(rg|grep|ugrep|find|wc|sed|sd|perl)\b ",
                                    command)}
    return sorted(named)


def conditions(rows, options):
    return {"date": datetime.date.today().isoformat(),
            "clock": ("processor time" if options.clock == "cpu_ms"
                      else "elapsed time"),
            "scale": options.scale,
            "system": f"{platform.system()} {platform.machine()}, "
                      f"{os.cpu_count()} processors",
            "versions": {peer: version_of(peer) for peer in peers_in(rows)}}


def record_text(told, results):
    versions = "".join(f"- {v}\n" for v in told["versions"].values() if v)
    return (f"# {told['date']}, {told['system']}\n\nLeast {told['clock']} of "
            "interleaved runs, warm cache, one thread but for rows that\n"
            f"end in -all{scale_text(told)}; see ../README.md.\n\n"
            f"{tables(results)}Beside:\n\n{versions}")


def scale_text(told):
    scale = told["scale"]
    return "" if scale == 1 else f", files at {scale} of their size"


def tables(results):
    """A table for each seed."""
    text = ""
    for seed in dict.fromkeys(result["seed"] for result in results):
        of_seed = [result for result in results if result["seed"] == seed]
        table = "\n".join([HEADING, *map(table_line, of_seed)])
        text += f"Seed {seed}:\n\n```\n{table}\n```\n\n"
    return text


def choose_rows(names):
    known = {row.name: row for row in ROWS}
    unknown = [name for name in names if name not in known]
    if unknown:
        sys.exit(f"bench: no row named {', '.join(unknown)}; there are: "
                 + ", ".join(known))
    return [known[name] for name in names] or ROWS


def parse(arguments):
    parser = argparse.ArgumentParser(prog="scripts/bench",
                                     description=__doc__.splitlines()[0])
    parser.add_argument("rows", nargs="*", metavar="ROW")
    parser.add_argument("--zenfo", type=Path,
                        default=ROOT / "build/native/bin/zenfo")
    parser.add_argument("--programs", type=Path,
                        default=ROOT / "build/native/bin",
                        help="where the benchmark programs are")
    parser.add_argument("--corpus", type=Path, default=corpus.DEFAULT_DIR,
                        help="where the generated files are, or are put")
    parser.add_argument("--seed", type=int, action="append", dest="seeds",
                        metavar="N",
                        help="of the generated files; may be repeated "
                             f"(default: {corpus.DEFAULT_SEED})")
    parser.add_argument("--scale", type=float, default=1.0,
                        help="share of the files' full size, to try rows out")
    parser.add_argument("--copies", type=Path, default=ROOT / "build/bench",
                        help="where the copies for replace rows are put")
    parser.add_argument("--cpu", dest="clock", action="store_const",
                        const="cpu_ms", default="ms",
                        help="judge by processor time, for a machine that has "
                             "other things to do")
    parser.add_argument("--runs", type=int, default=15,
                        help="turns a row, at most")
    parser.add_argument("--seconds", type=float, default=20,
                        help="time a row, about; at least 3 turns are run")
    parser.add_argument("--json", type=Path,
                        default=ROOT / "build/bench/result.json")
    parser.add_argument("--record", action="store_true",
                        help="also write bench/record/DATE.md; with seeds "
                             "1 and 2 if no --seed is given")
    options = parser.parse_args(arguments)
    options.seeds = options.seeds or (RECORD_SEEDS if options.record
                                      else [corpus.DEFAULT_SEED])
    return options


def main():
    options = parse(sys.argv[1:])
    rows = rows_at(options.scale, choose_rows(options.rows))
    results = []
    for seed in options.seeds:
        results += do_seed(seed, rows, options)
    told = conditions(rows, options)
    options.json.parent.mkdir(parents=True, exist_ok=True)
    options.json.write_text(json.dumps(
        told | {"rows": results}, indent=1) + "\n")
    if options.record and results:
        record = ROOT / "bench" / "record" / f"{told['date']}.md"
        record.parent.mkdir(exist_ok=True)
        record.write_text(record_text(told, results))


if __name__ == "__main__":
    try:
        main()
    except Disagreement as fault:
        sys.exit(f"bench: {fault}")
