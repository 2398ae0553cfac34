#!/usr/bin/env python3
"""System calls of replace, case and undo fail, one of them or all from one on,
with the errors that they can have. What was not done must be reported (the
status is not 0), and `zenfo undo` without faults must restore every file."""

import common

SERIES = 12  # faults per scene
DISK = ["EIO", "ENOSPC"]
OPENING = ["EMFILE", "ENFILE", "ENOMEM", "EACCES", "EIO"]
ERRORS = {
    "openat": OPENING, "openat2": OPENING, "read": ["EIO", "EINTR"],
    "write": [*DISK, "EINTR"], "writev": DISK, "pread64": ["EIO"],
    "close": ["EIO", "ENOSPC"], "rename": DISK, "renameat": DISK,
    "renameat2": DISK, "ftruncate": [*DISK, "EINTR"], "fallocate": DISK,
    "copy_file_range": [*DISK, "ENOMEM"], "sendfile": DISK,
    "syncfs": DISK, "fsync": DISK, "fdatasync": DISK,
    "flock": ["EINTR", "EWOULDBLOCK", "ENOLCK"], "unlink": ["EIO", "EBUSY"],
    "unlinkat": ["EIO", "EBUSY"], "mkdir": DISK, "rmdir": ["EIO"],
    "newfstatat": ["EIO", "ENOMEM"], "fstat": ["EIO"], "statx": ["EIO"],
    "lseek": ["EIO"], "getdents64": ["EIO"], "mmap": ["ENOMEM"],
    "fchmod": ["EIO", "EPERM"], "fchown": ["EPERM"],
    "utimensat": ["EIO"], "readlink": ["EIO"]}


def fault(campaign, world, scene, calls):
    call, nth = campaign.random.choice(calls)
    error = campaign.random.choice(ERRORS[call])
    # A call that is always interrupted is rightly repeated forever.
    once = error == "EINTR" or campaign.random.random() < 0.7
    lasting = "" if once else "+"
    scene.prepare(world)
    result = world.zenfo(*scene.arguments, wrap=common.injecting(
        call, f"{nth}{lasting}", f"error={error}"))
    about = f"{scene}, {error} at {call} {nth}{lasting}"
    campaign.count("runs")
    campaign.count("hit", int(result.status != 0))
    # A date that was not set looks like a change by others.
    judge(campaign, world, scene, about, result, dated=call != "utimensat")


def judge(campaign, world, scene, about, result, dated):
    if result.status < 0 or "still running" in result.err:
        campaign.lose(about, [f"ended by {result.status}: {result.err}"])
    campaign.lose(about, common.not_done(scene, world, result))
    if scene.command is common.NO_COPIES:
        campaign.lose(about, common.describe(world, scene.mixed(world)))
    else:
        campaign.judge(about, common.take_back(world), alone=dated)


def run(campaign, world):
    common.need_strace()
    names = common.known_calls(ERRORS)
    while campaign.going_on():
        scene = common.Scene(campaign.random,
                             copies=campaign.random.random() < 0.85)
        scene.prepare(world)
        calls = common.calls_of(world, scene.arguments, names)
        for _ in range(SERIES):
            if campaign.going_on():
                fault(campaign, world, scene, calls)


if __name__ == "__main__":
    common.main(run)
