#!/usr/bin/env python3
"""The power fails after any call of a run: only what was flushed is certain to
be on disk. The recorded calls of replace, case and undo are replayed on a
model of the disk; after each of them every file must certainly have its old
bytes, or a certain safe copy with its line.

Then runs that do not flush are replayed: they must be detected, or the model
has missed something and the campaign fails.
"""

import os
import re

import common

CALLS = ["openat", "openat2", "creat", "write", "writev", "pwrite64",
         "copy_file_range", "sendfile", "ftruncate", "fallocate", "lseek",
         "rename", "renameat", "renameat2", "unlink", "unlinkat", "link",
         "linkat", "close", "syncfs", "fsync", "fdatasync", "sync", "ioctl",
         "dup", "dup2", "dup3", "fcntl", "pwritev", "pwritev2", "truncate",
         "mmap"]
# Calls that only read, or copy descriptors, which the model would miss.
IGNORED = {"ioctl", "fcntl", "mmap"}
LINE = re.compile(r"\d+ +(\w+)\((.*)\) += (-?\w+)(?:<(.*?)>)?.*$")
TEXT = re.compile(r'"((?:\\x[0-9a-f]{2})*)"(?:\.\.\.)?')


class File:
    """The file that a name means: its bytes now, and those that are certain."""

    def __init__(self, data=b"", certain=None):
        self.now = bytearray(data)
        self.certain = certain  # None: not even the name is certain
        self.cut = False  # certain bytes were overwritten later

    def flush(self):
        self.certain = bytes(self.now)
        self.cut = False

    def possible(self):
        """Returns the bytes of a file after a power cut: unknown for a torn
        file, at least the certain ones for a file that only grew."""
        return None if self.cut else self.certain


class Disk:
    """The names and files now, and the certain ones."""

    def __init__(self, root):
        self.names = {}
        self.certain = {}  # path: the files it may mean after a power cut
        for folder, _, names in os.walk(root):
            for name in names:
                path = os.path.join(folder, name)
                with open(path, "rb") as file:
                    data = file.read()
                self.names[path] = File(data, data)
                self.certain[path] = [self.names[path]]
        self.open = {}

    def may_be(self, path, file):
        self.certain.setdefault(path, [None]).append(file)

    def make(self, path):
        self.names[path] = File()
        self.may_be(path, self.names[path])

    def remove(self, path):
        self.names.pop(path, None)
        self.may_be(path, None)

    def rename(self, old, new):
        file = self.names.pop(old, None)
        if file is None:
            return
        self.names[new] = file
        self.may_be(new, file)
        self.may_be(old, None)

    def change(self, file, offset, data):
        end = offset + len(data)
        if file.certain is not None and offset < len(file.certain):
            file.cut = True
        file.now[len(file.now):] = bytes(max(0, offset - len(file.now)))
        file.now[offset:end] = data

    def truncate(self, file, size):
        if file.certain is not None and size < len(file.certain):
            file.cut = True
        file.now[size:] = bytes(max(0, size - len(file.now)))

    def flush_all(self):
        for file in set(self.names.values()):
            file.flush()
        self.certain = {path: [file] for path, file in self.names.items()}

    def flush_one(self, path):
        file = self.names.get(path)
        if file is not None:
            file.flush()
            self.certain[path] = [file]

    # The possible contents of a path after a power cut: bytes, or None for
    # unknown, missing or torn.
    def outcomes(self, path):
        return [file.possible() if file is not None else None
                for file in self.certain.get(path, [None])]


class Handle:
    def __init__(self, file, offset, append, path):
        self.file, self.offset = file, offset
        self.append, self.path = append, path


class Replay:
    """Replays the recorded calls one by one."""

    def __init__(self, disk, folder):
        self.disk = disk
        self.folder = folder

    def take(self, line):
        """Returns whether the disk may have changed."""
        call = LINE.match(line)
        if not call or call[3].startswith("-") or call[3] == "?":
            return False
        name, arguments, answer, path = call.groups()
        action = getattr(self, "on_" + name, None)
        if action is None:
            if name in IGNORED:
                return False
            raise ValueError(f"no model of this call: {line}")
        number = int(answer, 0)
        return action(arguments, number, decoded(path)) is not False

    def texts(self, arguments):
        return [bytes.fromhex(text.replace("\\x", "")) for text in
                TEXT.findall(arguments)]

    def paths(self, arguments):
        return [os.path.normpath(os.path.join(self.folder, os.fsdecode(text)))
                for text in self.texts(arguments)]

    def at_paths(self, arguments):
        """Returns the paths of the ...at calls, each joined to its folder."""
        pairs = re.findall(r"(AT_FDCWD(?:<[^>]*>)?|\d+<([^>]*)>), "
                           r'"((?:\\x[0-9a-f]{2})*)"', arguments)
        return [os.path.normpath(os.path.join(
            decoded(base) if base else self.folder,
            os.fsdecode(bytes.fromhex(text.replace("\\x", "")))))
                for _, base, text in pairs]

    def handle(self, arguments, nth=0):
        found = re.findall(r"(?:^|, )(\d+)<", arguments)
        return self.disk.open.get(int(found[nth])) if len(found) > nth else None

    def on_openat(self, arguments, number, path):
        disk = self.disk
        disk.open.pop(number, None)
        if path is None or "O_DIRECTORY" in arguments \
                or "O_PATH" in arguments:
            return False
        if path not in disk.names:
            if "O_CREAT" not in arguments or "O_TMPFILE" in arguments:
                return False
            disk.make(path)
        file = disk.names[path]
        disk.open[number] = Handle(file, 0, "O_APPEND" in arguments, path)
        if "O_TRUNC" in arguments:
            disk.truncate(file, 0)
            return True
        return "O_CREAT" in arguments

    on_openat2 = on_openat

    def on_close(self, arguments, _number, _path):
        self.disk.open.pop(int(re.match(r"\d+", arguments)[0]), None)
        return False

    def put(self, handle, data):
        if handle is None:
            return False
        if handle.append:
            handle.offset = len(handle.file.now)
        self.disk.change(handle.file, handle.offset, data)
        handle.offset += len(data)
        return True

    def on_write(self, arguments, number, _path):
        data = b"".join(self.texts(arguments))
        return self.put(self.handle(arguments), data[:number])

    on_writev = on_write

    def on_pwrite64(self, arguments, number, _path):
        handle = self.handle(arguments)
        if handle is None:
            return False
        offset = int(arguments.rsplit(", ", 1)[1])
        self.disk.change(handle.file, offset,
                         b"".join(self.texts(arguments))[:number])
        return True

    def on_copy_file_range(self, arguments, number, _path):
        source, target = self.handle(arguments), self.handle(arguments, 1)
        if source is None or target is None or number == 0:
            return False
        data = bytes(source.file.now[source.offset:source.offset + number])
        source.offset += number
        return self.put(target, data)

    def on_sendfile(self, arguments, number, _path):
        target, source = self.handle(arguments), self.handle(arguments, 1)
        if source is None or target is None or number == 0:
            return False
        data = bytes(source.file.now[source.offset:source.offset + number])
        source.offset += number
        return self.put(target, data)

    def on_ftruncate(self, arguments, _number, _path):
        handle = self.handle(arguments)
        if handle is None:
            return False
        self.disk.truncate(handle.file, int(arguments.rsplit(", ", 1)[1]))
        return True

    def on_fallocate(self, _arguments, _number, _path):
        return False  # Only reserves space; the contents are written later.

    def on_lseek(self, arguments, number, _path):
        handle = self.handle(arguments)
        if handle is not None:
            handle.offset = number
        return False

    def on_rename(self, arguments, _number, _path):
        self.disk.rename(*self.paths(arguments))

    def on_renameat(self, arguments, _number, _path):
        self.disk.rename(*self.at_paths(arguments))

    on_renameat2 = on_renameat

    def on_unlink(self, arguments, _number, _path):
        self.disk.remove(self.paths(arguments)[0])

    def on_unlinkat(self, arguments, _number, _path):
        self.disk.remove(self.at_paths(arguments)[0])

    def on_syncfs(self, _arguments, _number, _path):
        self.disk.flush_all()

    on_sync = on_syncfs

    def on_fsync(self, arguments, _number, _path):
        handle = self.handle(arguments)
        if handle is not None:
            self.disk.flush_one(handle.path)

    on_fdatasync = on_fsync


def decoded(text):
    r"""Decodes a path that strace shows after a descriptor, "\x2f\x74" or
    plain."""
    if text is None:
        return None
    if "\\x" in text:
        return os.fsdecode(bytes.fromhex(text.replace("\\x", "")))
    return text


# ---- the judge ---------------------------------------------------------------


def lines_of(text):
    """Returns original and copy of each line of an undo list."""
    lines = {}
    for line in text.split(b"\r\n"):
        fields = line.split(b"\t")
        if len(fields) >= 3:
            lines[os.path.normpath(os.fsdecode(fields[0]))] = \
                os.path.normpath(os.fsdecode(fields[1]))
    return lines


def certain_copies(disk):
    """Returns each original and its old bytes if its line and copy are
    certain."""
    copies = {}
    for path in list(disk.certain):
        if os.path.basename(path) != "undo.txt":
            continue
        outcomes = disk.outcomes(path)
        if None in outcomes:
            continue
        lists = [lines_of(text) for text in outcomes]
        for original, copy in lists[0].items():
            if all(known.get(original) == copy for known in lists[1:]):
                bytes_ = disk.outcomes(copy)
                if len(set(bytes_)) == 1 and bytes_[0] is not None:
                    copies[original] = bytes_[0]
    return copies


def lost(disk, world):
    """Returns the files with neither certain old bytes nor a certain copy."""
    copies = None
    names = []
    for name, old in world.old.items():
        path = str(world.tree / name)
        if all(data == old for data in disk.outcomes(path)):
            continue
        if copies is None:
            copies = certain_copies(disk)
        if copies.get(path) != old:
            names.append(name)
    return names


# ---- the campaign ------------------------------------------------------------


def unflushed(arguments):
    """Returns the same command with an option that disables flushing."""
    return arguments[:1] + ["--no-sync"] + arguments[1:]


def record(world, arguments):
    """Records the calls of a run, with all bytes written and all paths."""
    log = world.folder / "calls"
    result = world.zenfo(*arguments, wrap=[
        "strace", "-f", "-qq", "-y", "-xx", "-s", "10000000", "-o", str(log),
        "-e", "signal=none", "-e",
        "trace=" + ",".join(common.known_calls(CALLS))])
    if result.status != 0:
        raise RuntimeError(f"{arguments}: {result}")
    return log.read_text().splitlines()


def replay(campaign, world, arguments):
    """Returns the files lost at the worst moment, and the call before it."""
    disk = Disk(world.folder)
    played = Replay(disk, str(world.tree))
    worst = []
    for line in record(world, arguments):
        if not played.take(line):
            continue
        campaign.count("runs")
        campaign.count("hit", int(any(f.cut for f in disk.names.values())))
        names = lost(disk, world)
        if len(names) + 1 > len(worst) and names:
            worst = names + [f"behind {line[:300]}"]
    check_model(disk, world)
    return worst


def check_model(disk, world):
    """Checks that the model followed every byte; else it proves nothing."""
    for path, file in disk.names.items():
        if path == str(world.folder / "calls"):
            continue
        with open(path, "rb") as real:
            if real.read() != bytes(file.now):
                raise AssertionError(f"the model is wrong about {path}")


def replay_command(campaign, world, command):
    world.reset(common.wide_tree(campaign.random, 30))
    name = campaign.random.choice(sorted(world.old))
    for arguments in (command.arguments, ["undo", name], ["undo"]):
        about = f"{command.name}: {' '.join(arguments)}"
        campaign.lose(about, replay(campaign, world, arguments))


def find_out_unflushed(campaign, world, command):
    world.reset(common.wide_tree(campaign.random, 30))
    for arguments in (command.arguments, ["undo"]):
        found = replay(campaign, world, unflushed(arguments))
        campaign.count("found unflushed", int(bool(found)))
        if not found:
            campaign.lose(f"unflushed {arguments}", ["the model saw nothing"])


def run(campaign, world):
    common.need_strace()
    while campaign.going_on():
        for command in common.COMMANDS:
            replay_command(campaign, world, command)
        find_out_unflushed(campaign, world,
                           campaign.random.choice(common.COMMANDS))


if __name__ == "__main__":
    common.main(run)
