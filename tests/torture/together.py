#!/usr/bin/env python3
"""Two programs work on the same files at once: two replaces, a replace and an
undo, two undos, a replace and a growing log, a replace or an undo and an
editor that renames, a replace and files that become links. No file is mixed,
nothing that the other program wrote is lost without a message, and the old
bytes of every file are in it or on record.

Writers that take a lock lose nothing. Those that take none can lose what they
write between the last check of a file and its rewriting; such lines are
counted as "in the gap"."""

import fcntl
import os
import threading
import time

import common

FILES = 120
PLUM = ["replace", "-ry", "plum", "fig", "."]
PEAR = ["replace", "-ry", "pear", "a long word", "."]


def plum(text):
    return text.replace(b"plum", b"fig")


def pear(text):
    return text.replace(b"pear", b"a long word")


def at_once(campaign, world, first, second):
    """Runs two commands, the second started at any moment of the first."""
    processes = [world.start(first)]
    time.sleep(campaign.random.random() * 0.03)
    processes.append(world.start(second))
    results = [common.outcome(process) for process in processes]
    return [f"{' '.join(words)} ended by {result.status}: {result.err}"
            for words, result in zip((first, second), results)
            if result.status < 0]


def judge_files(campaign, world, about, possible):
    """Every file must be a possible one, with its old bytes in it or on
    record."""
    mixed = [name for name in world.old
             if world.bytes(name) not in possible(world.old[name])]
    campaign.lose(about + ", mixed", common.describe(world, mixed))
    campaign.count("hit", int(bool(world.changed())))
    campaign.judge(about, common.take_back(world), alone=False)


def two_replaces(campaign, world):
    world.reset(common.wide_tree(campaign.random, FILES))
    about = "two replaces"
    campaign.lose(about, at_once(campaign, world, PLUM, PEAR))
    judge_files(campaign, world, about, lambda old: (
        old, plum(old), pear(old), pear(plum(old))))


def replace_and_undo(campaign, world):
    world.reset(common.wide_tree(campaign.random, FILES))
    about = "a replace and its undo"
    if campaign.random.random() < 0.5:
        about = "a replace and the undo of one before"
        world.zenfo(*PEAR)
    campaign.lose(about, at_once(campaign, world, PLUM, ["undo"]))
    judge_files(campaign, world, about, lambda old: (
        old, plum(old), pear(old), pear(plum(old))))


def two_undos(campaign, world):
    world.reset(common.wide_tree(campaign.random, FILES))
    world.zenfo(*PLUM)
    campaign.count("hit")
    about = "two undos"
    campaign.lose(about, at_once(campaign, world, ["undo"], ["undo"]))
    campaign.judge(about, common.take_back(world))


# ---- other programs ----------------------------------------------------------


class Other(threading.Thread):
    """Another program that works on files of the tree until told to end."""

    def __init__(self, campaign, world):
        super().__init__()
        self.random = campaign.random
        self.world = world
        self.ended = threading.Event()
        self.written = {name: [] for name in world.old}

    def run(self):
        number = 0
        while not self.ended.wait(0.0002):
            name = self.random.choice(list(self.written))
            number += 1
            self.work(name, b"line %d of another\n" % number)

    def end(self):
        self.ended.set()
        self.join()


class Log(Other):
    """Appends lines, with or without a lock on the file."""

    def __init__(self, campaign, world, locks):
        super().__init__(campaign, world)
        self.locks = locks

    def work(self, name, line):
        log = os.open(self.world.tree / name, os.O_WRONLY | os.O_APPEND)
        if self.locks:
            fcntl.flock(log, fcntl.LOCK_EX)
        os.write(log, line)
        os.close(log)
        self.written[name].append(line)


class Editor(Other):
    """Writes a new file beside each file and renames it."""

    def work(self, name, line):
        path = self.world.tree / name
        fresh = self.world.folder / "fresh"
        text = b"plum, edited: " + line
        fresh.write_bytes(text)
        os.rename(fresh, path)
        self.written[name].append(text)


class Swapper(Other):
    """Replaces a file by a link to a file outside the tree, and back."""

    def work(self, name, line):
        path = self.world.tree / name
        aside = self.world.folder / "aside"
        os.rename(path, aside)
        os.symlink(self.world.folder / "outside", path)
        self.written[name].append(line)
        self.ended.wait(0.0002)
        os.rename(aside, path)


def beside(world, other, arguments=PLUM):
    other.start()
    time.sleep(0.003)
    result = world.zenfo(*arguments)
    other.end()
    return result


def log_that_grows(campaign, world, locks):
    world.reset(common.wide_tree(campaign.random, FILES))
    log = Log(campaign, world, locks)
    result = beside(world, log)
    missing = []
    for name, lines in log.written.items():
        now = (world.bytes(name) or b"").splitlines(keepends=True)
        missing += [f"{name}: {line.decode().strip()}"
                    for line in set(lines) - set(now)]
    lines = sum(map(len, log.written.values()))
    campaign.count("lines of logs", lines)
    campaign.count("hit", int(result.status == 2))
    if locks:
        campaign.lose("a log whose writer locks", missing)
    else:
        campaign.count("in the gap", len(missing))


def editor(campaign, world):
    world.reset(common.wide_tree(campaign.random, FILES))
    other = Editor(campaign, world)
    beside(world, other)
    # What the editor wrote last must be there, unchanged or with replacements.
    gone = [name for name, texts in other.written.items() if texts
            and world.bytes(name) not in (texts[-1], plum(texts[-1]))]
    campaign.count("files edited",
                   sum(bool(texts) for texts in other.written.values()))
    campaign.lose("an editor", common.describe(world, gone))


def editor_during_undo(campaign, world):
    world.reset(common.wide_tree(campaign.random, FILES))
    world.zenfo(*PLUM)
    other = Editor(campaign, world)
    beside(world, other, ["undo"])
    gone = [name for name, texts in other.written.items()
            if texts and world.bytes(name) != texts[-1]]
    campaign.count("files edited",
                   sum(bool(texts) for texts in other.written.values()))
    campaign.count("in the gap", len(gone))
    # A few changes fall between the last check of a file and its restoring,
    # more on a busy machine. Without the check there would be dozens.
    if len(gone) > 15:
        campaign.lose("an editor during undo", common.describe(world, gone))


def swapped_links(campaign, world):
    world.reset(common.wide_tree(campaign.random, FILES))
    outside = world.folder / "outside"
    outside.write_bytes(b"plum outside\n")
    swapper = Swapper(campaign, world)
    beside(world, swapper)
    swaps = sum(map(len, swapper.written.values()))
    campaign.count("swaps", swaps)
    if outside.read_bytes() != b"plum outside\n":
        campaign.lose("links that are put in the place of files",
                      ["the file outside was changed"])
    judge_files(campaign, world, "swapped links", lambda old: (old, plum(old)))


# ------------------------------------------------------------------------------

ROUNDS = [two_replaces, replace_and_undo, two_undos, editor,
          editor_during_undo, swapped_links,
          lambda campaign, world: log_that_grows(campaign, world, True),
          lambda campaign, world: log_that_grows(campaign, world, False)]


def run(campaign, world):
    while campaign.going_on():
        for round_ in ROUNDS:
            if campaign.going_on():
                campaign.count("runs")
                round_(campaign, world)


if __name__ == "__main__":
    common.main(run)
