#!/usr/bin/env python3
"""The disk of the tree, or of the store, is full at any byte. No file is torn
without a safe copy, what was not done is reported, and with space again `zenfo
undo` restores every file. Needs the right to mount (root)."""

import os
import subprocess

import common

SIZE = 4 << 20
PAGE = 4096


class Disk:
    """A small disk in a folder."""

    def __init__(self, folder):
        self.folder = folder
        folder.mkdir(parents=True, exist_ok=True)

    def __enter__(self):
        mount = subprocess.run(["mount", "-t", "tmpfs", "-o", f"size={SIZE}",
                                "none", str(self.folder)], capture_output=True)
        if mount.returncode != 0:
            raise common.Skip("no disk may be mounted here")
        return self

    def __exit__(self, *_):
        subprocess.run(["umount", "-l", str(self.folder)], check=False)

    def fill(self, free):
        """Leaves this many bytes free."""
        facts = os.statvfs(self.folder)
        left = facts.f_bavail * facts.f_frsize - free
        (self.folder / "filler").write_bytes(bytes(max(0, left)))

    def make_room(self):
        (self.folder / "filler").unlink(missing_ok=True)


def round_(campaign, world, disk):
    scene = common.Scene(campaign.random,
                         copies=campaign.random.random() < 0.85)
    disk.make_room()
    scene.prepare(world)
    free = campaign.random.choice([PAGE * campaign.random.randrange(20),
                                   campaign.random.randrange(SIZE // 4)])
    disk.fill(free)
    result = world.zenfo(*scene.arguments)
    disk.make_room()
    about = f"{scene}, {free} bytes free in {disk.folder.name}"
    campaign.count("runs")
    campaign.count("hit", int(result.status == 2))
    judge(campaign, world, scene, about, result)


def judge(campaign, world, scene, about, result):
    if result.status < 0:
        campaign.lose(about, [f"ended by {result.status}: {result.err}"])
    campaign.lose(about, common.not_done(scene, world, result))
    if scene.command is common.NO_COPIES:
        campaign.lose(about, common.describe(world, scene.mixed(world)))
    else:
        campaign.judge(about, common.take_back(world))


def rounds(campaign, world, folder, number):
    with Disk(folder) as disk:
        for _ in range(number):
            if campaign.going_on():
                round_(campaign, world, disk)


def run(campaign, world):
    while campaign.going_on():
        rounds(campaign, world, world.tree, 10)
        rounds(campaign, world, world.state, 10)


if __name__ == "__main__":
    common.main(run)
