#!/usr/bin/env python3
"""Runs of replace, case and undo are told to stop (SIGINT), at any of their
calls. They end between two files: none is mixed, and `zenfo undo` restores
every file."""

import signal

import common

SERIES = 12  # stops per scene
ENDS = (0, 1, 2, 130, -signal.SIGINT)


def stop(campaign, world, scene, calls):
    call, nth = campaign.random.choice(calls)
    scene.prepare(world)
    result = world.zenfo(*scene.arguments,
                         wrap=common.injecting(call, nth, "signal=INT"))
    about = f"{scene}, at {call} {nth}"
    campaign.count("runs")
    campaign.count("hit", int(result.status == 130))
    campaign.lose(about, common.describe(world, scene.mixed(world)))
    if result.status not in ENDS:
        campaign.lose(about, [f"status {result.status}: {result.err}"])
    campaign.lose(about, common.not_done(scene, world, result))
    if scene.command is not common.NO_COPIES:
        campaign.judge(about, common.take_back(world))


def run(campaign, world):
    common.need_strace()
    names = common.known_calls(common.CHANGING + ["read", "newfstatat"])
    while campaign.going_on():
        scene = common.Scene(campaign.random,
                             copies=campaign.random.random() < 0.85)
        scene.prepare(world)
        calls = common.calls_of(world, scene.arguments, names)
        for _ in range(SERIES):
            if campaign.going_on():
                stop(campaign, world, scene, calls)


if __name__ == "__main__":
    common.main(run)
