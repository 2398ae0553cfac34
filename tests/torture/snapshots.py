#!/usr/bin/env python3
"""The power fails while replace, case or undo works on a separate disk, or up
to some seconds later. The contents of the disk at that moment are copied,
mounted (which replays its journal) and judged: every file must be whole with
its old bytes, or with its new ones and the old ones on record; `zenfo undo`
restores them. Needs the right to mount (root).

A copy only counts if the disk did not change meanwhile: it is read twice and
must be the same. It can be taken at any moment between two writes."""

import os
import re
import subprocess
import time

import common

SIZE = 24 << 20
FILES = 300
DELAY = 3000  # microseconds after each write, so that commits fall between
LENGTH = 2.5  # approximate seconds that a command then takes
OPTIONS = "loop,commit=1,noatime"


def quietly(*words):
    done = subprocess.run(words, capture_output=True, text=True)
    return done.returncode == 0


class Image:
    """A file with a file system, mounted in a folder."""

    def __init__(self, file, folder):
        self.file, self.folder = file, folder
        folder.mkdir(exist_ok=True)

    def format(self):
        with open(self.file, "wb") as file:
            file.truncate(SIZE)
        if not quietly("mkfs.ext4", "-q", "-F", "-E",
                       "lazy_itable_init=0,lazy_journal_init=0",
                       str(self.file)):
            raise common.Skip("mkfs.ext4 is missing or failed")

    def __enter__(self):
        if not quietly("mount", "-o", OPTIONS, str(self.file),
                       str(self.folder)):
            raise common.Skip("no loop device may be mounted here")
        return self

    def __exit__(self, *_):
        quietly("umount", str(self.folder)) or \
            quietly("umount", "-l", str(self.folder))


def still_copy(source, target):
    """Copies a file as it was at one moment; false if it kept changing."""
    for _ in range(50):
        first = source.read_bytes()
        if source.read_bytes() == first:
            target.write_bytes(first)
            return True
    return False


def slowed():
    """Returns the words before a command that slow down its writes."""
    calls = "write,copy_file_range"
    return ["strace", "-f", "-qq", "-o", os.devnull, "-e", f"trace={calls}",
            "-e", f"inject={calls}:delay_exit={DELAY}"]


def flush_of_another(campaign, folder):
    """Sometimes lets another program flush everything, finished or not."""
    if campaign.random.random() < 0.5:
        subprocess.Popen(["sync", "-f", str(folder)]).wait()


def snapshots_of(campaign, image, command, process, length, number):
    """Copies the disk at random moments; returns the copies, each with whether
    the command had ended."""
    moments = sorted(campaign.random.random() * length
                     for _ in range(number - 1))
    moments.append(length + campaign.random.random() * 3)
    begin = time.monotonic()
    copies = []
    for moment in moments:
        time.sleep(max(0, begin + moment - time.monotonic()))
        ended = process.poll() is not None
        flush_of_another(campaign, image.folder)
        copy = image.file.with_name(f"copy{len(copies)}")
        if still_copy(image.file, copy):
            after = time.monotonic() - begin
            copies.append((copy, ended, f"{command}, after {after:.3f} s"))
    return copies


def start_system_anew(world):
    """The power is back: makes the journals of runs name an earlier boot."""
    for journal in world.state.glob("zenfo/runs/*.journal"):
        written = journal.stat()
        journal.write_bytes(re.sub(rb"(?m)^boot\t.*$", b"boot\tearlier",
                                   journal.read_bytes()))
        os.utime(journal, ns=(written.st_atime_ns, written.st_mtime_ns))


def judge(campaign, world, command, ended, about):
    """`world` is that of a mounted copy."""
    start_system_anew(world)
    campaign.count("runs")
    campaign.count("after the end", int(ended))
    torn = [name for name in world.old if world.bytes(name) not in
            (world.old[name], command.new(world.old[name]))]
    campaign.count("torn, with a way back", int(bool(torn)))
    campaign.count("hit", int(bool(world.changed())))
    if ended:
        campaign.lose(about + ", had ended", common.describe(world, torn))
    campaign.judge(about, common.take_back(world))


def at_end(world, command, undone):
    """Checks what a finished command promised."""
    left = world.changed() if undone else [
        name for name in world.old
        if world.bytes(name) != command.new(world.old[name])]
    return common.describe(world, left)


def round_(campaign, world, image):
    command = campaign.random.choice(common.COMMANDS)
    undone = campaign.random.random() < 0.4
    arguments = ["undo"] if undone else command.arguments
    image.format()
    with image:
        world.reset(common.wide_tree(campaign.random, FILES))
        if undone:
            world.zenfo(*command.arguments)
        quietly("sync", "-f", str(image.folder))
        process = world.start(arguments, wrap=slowed())
        about = f"{'undo of ' if undone else ''}{command.name}"
        copies = snapshots_of(campaign, image, about, process, LENGTH, 9)
        common.outcome(process)
    for copy, ended, about in copies:
        # Mounted in place of the disk, because the lists contain full paths.
        with Image(copy, image.folder):
            if ended:
                campaign.lose(about + ", not durable",
                              at_end(world, command, undone))
            judge(campaign, world, command, ended, about)
        copy.unlink()


def run(campaign, world):
    common.need_strace()
    if os.geteuid() != 0:
        raise common.Skip("only root may mount")
    disk = common.World(world.program, world.folder / "disk")
    image = Image(world.folder / "image", disk.folder)
    while campaign.going_on():
        round_(campaign, disk, image)


if __name__ == "__main__":
    common.main(run)
