#!/usr/bin/env python3
"""Runs of replace, case and undo are killed, at one of their calls that change
files or at any moment. `zenfo undo` restores every file. A run without safe
copies leaves every file whole."""

import time

import common

SERIES = 12  # kills per scene


def kill_at_a_call(campaign, world, scene, calls):
    call, nth = campaign.random.choice(calls)
    scene.prepare(world)
    world.zenfo(*scene.arguments,
                wrap=common.injecting(call, nth, "signal=KILL"))
    return f"{scene}, at {call} {nth}"


def kill_at_any_moment(campaign, world, scene, length):
    scene.prepare(world)
    process = world.start(scene.arguments)
    moment = campaign.random.random() * length
    time.sleep(moment)
    process.kill()
    common.outcome(process)
    return f"{scene}, after {moment * 1000:.1f} ms"


def time_of(world, scene):
    scene.prepare(world)
    begin = time.monotonic()
    world.zenfo(*scene.arguments)
    return time.monotonic() - begin


def judge(campaign, world, scene, about):
    campaign.count("runs")
    campaign.count("hit", int(scene.touched(world)
                              and not scene.is_done(world)))
    if scene.command is common.NO_COPIES:
        campaign.lose(about, common.describe(world, scene.mixed(world)))
    else:
        campaign.judge(about, common.take_back(world))


def series(campaign, world, scene, calls):
    length = time_of(world, scene)
    for _ in range(SERIES):
        if not campaign.going_on():
            return
        if calls and campaign.random.random() < 0.7:
            about = kill_at_a_call(campaign, world, scene, calls)
        else:
            about = kill_at_any_moment(campaign, world, scene, length)
        judge(campaign, world, scene, about)


def run(campaign, world):
    common.need_strace()
    names = common.known_calls(common.CHANGING)
    while campaign.going_on():
        scene = common.Scene(campaign.random,
                             copies=campaign.random.random() < 0.85)
        scene.prepare(world)
        calls = common.calls_of(world, scene.arguments, names)
        series(campaign, world, scene, calls)


if __name__ == "__main__":
    common.main(run)
