"""What the campaigns share: trees of files, runs of zenfo with a separate
store, the judge, and the line of figures.

A campaign is a program in this folder with a function run(campaign). It makes
runs until its time or its number of rounds is used up, disturbs each of them
in its own way and lets the judge check the files.
"""

import argparse
import os
import random
import re
import shutil
import signal
import subprocess
import sys
import tempfile
import time
from pathlib import Path
from typing import Callable, NamedTuple

ROOT = Path(__file__).resolve().parents[2]
SKIPPED = 77  # the exit status that means "skipped" to ctest
HANGS = 120  # seconds
MOST_TOLD = 8  # losses of a run that are reported


class Skip(Exception):
    """The system does not allow something that a campaign needs."""


class Command(NamedTuple):
    """A command that changes files, and the bytes it makes of a file."""
    name: str
    arguments: list
    new: Callable


def replacing(name, find, put, *options):
    return Command(name, ["replace", "-ry", "--include", "*.txt", *options,
                          find, put, "."],
                   lambda old: old.replace(find.encode(), put.encode()))


LONGER = replacing("longer", "plum", "a long text")
SHORTER = replacing("shorter", "plum", "", "--keep-date")
CASE = Command("case", ["case", "-ry", "--upper", "--include", "*.txt", "plum",
                        "."], lambda old: old.replace(b"plum", b"PLUM"))
COMMANDS = [LONGER, SHORTER, CASE]
# Runs without safe copies must leave each file whole, old or new.
NO_COPIES = replacing("without copies", "plum", "fig", "--no-backup")


class Result(NamedTuple):
    status: int  # below 0: killed by that signal
    out: str
    err: str


class World:
    """A tree of files and a store of safe copies."""

    def __init__(self, zenfo, folder):
        self.program = str(Path(zenfo).resolve())
        self.folder = Path(folder)
        self.tree = self.folder / "tree"
        self.state = self.folder / "state"
        self.old = {}

    def reset(self, files):
        """Makes the tree again from these names and bytes, and empties the
        store."""
        for folder in (self.tree, self.state):
            empty(folder)
        for name, text in files.items():
            path = self.tree / name
            path.parent.mkdir(parents=True, exist_ok=True)
            path.write_bytes(text)
        self.old = dict(files)

    def environment(self):
        return {**os.environ, "XDG_STATE_HOME": str(self.state),
                "HOME": str(self.folder), "TMPDIR": str(self.folder),
                "LC_ALL": "C.UTF-8"}

    def start(self, arguments, wrap=()):
        return subprocess.Popen(
            [*wrap, self.program, *arguments], cwd=self.tree,
            env=self.environment(), stdin=subprocess.DEVNULL,
            stdout=subprocess.PIPE, stderr=subprocess.PIPE,
            start_new_session=True)

    def zenfo(self, *arguments, wrap=()):
        return outcome(self.start(arguments, wrap))

    def bytes(self, name):
        try:
            return (self.tree / name).read_bytes()
        except OSError:
            return None

    def changed(self):
        """Returns the names of the files that differ from before."""
        return [name for name, old in self.old.items()
                if self.bytes(name) != old]

    def neither(self, new):
        """Returns the names of the files with neither their old nor their new
        bytes."""
        return [name for name in self.changed()
                if self.bytes(name) != new(self.old[name])]

    def lists(self):
        return sorted(self.state.glob("zenfo/runs/*/undo.txt"))

    def has_way_back(self, name):
        """Whether a list of safe copies names a copy with the old bytes."""
        path = os.fsencode(self.tree / name)
        for undo_list in self.lists():
            for line in undo_list.read_bytes().split(b"\r\n"):
                fields = line.split(b"\t")
                if os.path.normpath(fields[0]) != path or len(fields) < 2:
                    continue
                copy = Path(os.fsdecode(fields[1]))
                if copy.is_file() and copy.read_bytes() == self.old[name]:
                    return True
        return False

    def run_names(self):
        """Returns the names of all runs in the store, the newest first."""
        lines = self.zenfo("undo", "--list").out.splitlines()
        return [line.split()[0] for line in reversed(lines) if line.strip()]


def empty(folder):
    """Empties a folder, which may be a mount point."""
    folder.mkdir(parents=True, exist_ok=True)
    for entry in folder.iterdir():
        if entry.is_dir() and not entry.is_symlink():
            shutil.rmtree(entry, ignore_errors=True)
        else:
            entry.unlink()


def outcome(process):
    try:
        out, err = process.communicate(timeout=HANGS)
    except subprocess.TimeoutExpired:
        os.killpg(process.pid, signal.SIGKILL)  # strace and its child
        out, err = process.communicate()
        err += b"\nstill running after %d s" % HANGS
    return Result(process.returncode, out.decode(errors="replace"),
                  err.decode(errors="replace"))


# ---- trees -------------------------------------------------------------------


def small_tree(random_):
    """Makes a few files of every kind that rewriting treats differently."""
    large = b"a plum and a pear\n" * random_.randrange(3_000, 30_000)
    files = {"a.txt": b"plum", "large.txt": large, "none.txt": b"no fruit",
             "sub/a.txt": b"a plum, a pear\r\n", "left.dat": b"plum"}
    for i in range(random_.randrange(3, 12)):
        line = b"%d plum pear\n" % i
        files[f"sub/{i}.txt"] = line * random_.randrange(1, 300)
    return files


def wide_tree(random_, count):
    return {f"{i % 7}/{i}.txt":
            b"%d: plum, pear\n" % i * random_.randrange(1, 120)
            for i in range(count)}


# ---- the judge ---------------------------------------------------------------


class Verdict(NamedTuple):
    by_hand: list  # a text for each file that plain `undo` did not restore
    lost: list  # a text for each that has no copy on record either


def describe(world, names):
    def one(name):
        now = world.bytes(name)
        size = "gone" if now is None else f"{len(now)} bytes"
        return f"{name}: {size}, {len(world.old[name])} before"
    return [one(name) for name in names]


def take_back(world):
    """Undoes until every file has its old bytes. A file is lost if that fails
    and no list of safe copies names a copy with these bytes."""
    said = []
    for _ in range(4):
        if not world.changed():
            return Verdict([], [])
        said.append(world.zenfo("undo"))
    words = [f"undo said: {s.err.strip()[:500]}" for s in said]
    if not world.changed():
        return Verdict([], [])
    lost = [name for name in world.changed() if not world.has_way_back(name)]
    return Verdict(words + describe(world, world.changed()),
                   words + describe(world, lost) if lost else [])


def not_done(scene, world, result):
    """Returns the files that a command did not change despite status 0."""
    left = [name for name in scene.files
            if world.bytes(name) != scene.new(name)]
    if result.status != 0 or not left:
        return []
    return [f"status 0, but not done: {name}" for name in left] + \
        [result.out + result.err]


# ---- scenes ------------------------------------------------------------------


class Scene:
    """A tree, its earlier changes, and the command that is disturbed."""

    def __init__(self, random_, copies=True):
        self.files = small_tree(random_)
        self.earlier = copies and random_.random() < 0.3
        self.command = random_.choice(COMMANDS) if copies else NO_COPIES
        self.undo = random_.choice([None, None, ["undo"], ["undo", "a.txt"]]) \
            if copies else None
        self.arguments = self.undo or self.command.arguments

    def __str__(self):
        undo = f"{' '.join(self.undo)} of " if self.undo else ""
        return undo + self.command.name + (
            " behind an earlier run" if self.earlier else "")

    def prepare(self, world):
        world.reset(self.files)
        if self.earlier:
            world.zenfo("replace", "-ry", "--include", "*.txt", "pear",
                        "quince", ".")
        if self.undo:
            world.zenfo(*self.command.arguments)
        self.before = {name: world.bytes(name) for name in self.files}

    def new(self, name):
        """Returns the bytes that the finished command leaves in a file."""
        if not name.endswith(".txt"):
            return self.before[name]
        if not self.undo:
            return self.command.new(self.before[name])
        if len(self.undo) > 1 and name not in self.undo:
            return self.before[name]
        return self.files[name] if not self.earlier else \
            self.files[name].replace(b"pear", b"quince")

    def is_done(self, world):
        return all(world.bytes(name) == self.new(name) for name in self.files)

    def mixed(self, world):
        """Returns the files with neither their old nor their new bytes."""
        return [name for name in self.files
                if world.bytes(name) not in (self.before[name],
                                             self.new(name))]

    def touched(self, world):
        return any(world.bytes(name) != self.before[name]
                   for name in self.files)


# ---- strace ------------------------------------------------------------------


def need_strace():
    if shutil.which("strace") is None:
        raise Skip("strace is missing: scripts/install torture")
    tried = subprocess.run(["strace", "-o", os.devnull, "true"],
                           capture_output=True)
    if tried.returncode != 0:
        raise Skip("no process may trace another here")


def calls_of(world, arguments, names):
    """Returns the calls of a whole run after its first access to the tree,
    each as its name and its number among the calls of that name."""
    log = world.folder / "calls"
    world.zenfo(*arguments, wrap=["strace", "-f", "-qq", "-o", str(log), "-e",
                                  "trace=" + ",".join(names)])
    counts, calls, begun = {}, [], False
    for line in log.read_text(errors="replace").splitlines():
        call = re.match(r"\d+ +(\w+)\(", line)
        if not call:
            continue
        name = call[1]
        counts[name] = counts.get(name, 0) + 1
        begun = begun or str(world.folder) in line or ".txt" in line
        if begun:
            calls.append((name, counts[name]))
    return calls


def injecting(call, when, what):
    """Returns the words before a command that inject a fault into one call."""
    return ["strace", "-f", "-qq", "-o", os.devnull, "-e", f"trace={call}",
            "-e", f"inject={call}:{what}:when={when}"]


# System calls that change files or folders.
CHANGING = ["openat", "write", "writev", "pwrite64", "copy_file_range",
            "sendfile", "ftruncate", "fallocate", "rename", "renameat",
            "renameat2", "unlink", "unlinkat", "mkdir", "rmdir", "fchmod",
            "fchown", "utimensat", "flock", "fsync", "fdatasync", "syncfs",
            "close"]


def known_calls(names):
    """Returns the names that strace knows on this system."""
    def known(name):
        return subprocess.run(["strace", "-o", os.devnull, "-e",
                               "trace=" + name, "true"],
                              capture_output=True).returncode == 0
    return [name for name in names if known(name)]


# ---- a campaign --------------------------------------------------------------


class Campaign:
    """Counts events, until the time or the number of rounds is used up."""

    def __init__(self, name, options):
        self.name = name
        self.options = options
        self.random = random.Random(f"{name} {options.seed}")
        self.figures = {"runs": 0, "hit": 0, "by hand": 0, "losses": 0}
        self.end = time.monotonic() + options.seconds

    def going_on(self):
        return (time.monotonic() < self.end
                and self.figures["runs"] < self.options.rounds)

    def count(self, what, number=1):
        self.figures[what] = self.figures.get(what, 0) + number

    def judge(self, about, verdict, alone=True):
        """A run may need `undo --force` only if it was not alone: it notices
        the changes of the other."""
        self.count("by hand", int(bool(verdict.by_hand)))
        self.lose(about, verdict.lost or (verdict.by_hand if alone else []))

    def lose(self, about, lost):
        """Notes a run that lost something; the list may be empty."""
        if not lost:
            return
        self.count("losses")
        more = [f"and {len(lost) - MOST_TOLD} more"] * (len(lost) > MOST_TOLD)
        print(f"{self.name}: LOST: {about}", *lost[:MOST_TOLD], *more,
              sep="\n  ", flush=True)

    def line(self):
        told = ", ".join(f"{number} {what}"
                         for what, number in self.figures.items())
        return f"{self.name}: {told} (seed {self.options.seed})"


def options_of(name):
    today = time.strftime("%Y%m%d")
    parser = argparse.ArgumentParser(description=f"The campaign '{name}'.")
    parser.add_argument("--zenfo", default=str(ROOT / "build/native/bin/zenfo"))
    parser.add_argument("--seconds", type=float, default=60)
    parser.add_argument("--rounds", type=int, default=10 ** 9,
                        help="end after so many runs, too")
    parser.add_argument("--seed", default=today, help="default: the day")
    parser.add_argument("--summary", help="append the line of figures here")
    parser.add_argument("--folder", help="where trees and stores are made")
    return parser.parse_args()


def working_folder(options):
    """Returns a folder, in memory if possible, where flushing costs nothing."""
    folder = options.folder or ("/dev/shm" if os.access("/dev/shm", os.W_OK)
                                else None)
    return tempfile.TemporaryDirectory(prefix="zenfo-torture-", dir=folder)


def main(run):
    """Runs the campaign whose file was started."""
    name = Path(sys.argv[0]).stem
    options = options_of(name)
    # In the background of a shell this process and all that it starts would
    # ignore interrupts.
    signal.signal(signal.SIGINT, signal.default_int_handler)
    campaign = Campaign(name, options)
    try:
        with working_folder(options) as folder:
            run(campaign, World(options.zenfo, folder))
    except Skip as reason:
        finish(options, f"{name}: skipped: {reason}")
        sys.exit(SKIPPED)
    finish(options, campaign.line())
    if campaign.figures["losses"] or not campaign.figures["hit"]:
        sys.exit(1)


def finish(options, line):
    print(line, flush=True)
    if options.summary:
        with open(options.summary, "a") as summary:
            summary.write(line + "\n")
