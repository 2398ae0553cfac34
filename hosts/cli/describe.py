#!/usr/bin/env python3
"""Makes the manual page and the shell completions of zenfo.

    describe.py SYSTEM PROGRAM FOLDER [RUNNER...]

The texts come from the `--help` of the built program, which is made from the
option definitions, so they cannot disagree.
RUNNER runs a program of another system. SYSTEM is Windows or Linux.

FOLDER receives these files, for Windows only the last one:
    man/man1/zenfo.1
    bash-completion/completions/zenfo
    zsh/site-functions/_zenfo
    fish/vendor_completions.d/zenfo.fish
    powershell/zenfo.ps1
"""

import re
import subprocess
import sys
from dataclasses import dataclass, field
from pathlib import Path

from completions import bash, fish, powershell, zsh


@dataclass
class Option:
    short: str  # "-i" or ""
    long: str  # "--ignore-case" or ""
    value: str  # "GLOB ...", "" for a flag
    help: str
    choices: list = field(default_factory=list)  # possible values
    several: bool = False  # values may be combined with commas

    def names(self):
        return [name for name in (self.short, self.long) if name]

    def takes_file(self):
        return self.value == "FILE"


@dataclass
class Command:
    name: str
    summary: str
    help: str = ""
    options: list = field(default_factory=list)


OPTION = re.compile(r"^  ((?:-\S+?)(?:,\s?--?[\w-]+)*)((?: [A-Z]\S*| \.\.\.)*)"
                    r"(?:\s{2,}(.*))?$")


def ask(run, *arguments):
    result = subprocess.run([*run, *arguments], capture_output=True, text=True,
                            check=True)
    return result.stdout.replace("\r\n", "\n")


def read_options(help_text):
    options = []
    for line in help_text.splitlines():
        if match := OPTION.match(line):
            names = [name.strip() for name in match[1].split(",")]
            short = next((n for n in names if not n.startswith("--")), "")
            long = next((n for n in names if n.startswith("--")), "")
            options.append(Option(short, long, match[2].strip(),
                                  (match[3] or "").strip()))
        elif options and re.match(r"^ {20,}\S", line):
            options[-1].help += " " + line.strip()
        elif not line.strip() or not line.startswith(" "):
            continue
    return options


def read_keys(help_text):
    """Returns the keys that follow "Keys:" or "Columns:" in a help text."""
    match = re.search(r"^(?:Columns|Keys): ([\w,\s]+)", help_text, re.M)
    keys = re.findall(r"\w+", match[1]) if match else []
    return [key for key in keys if key not in ("and", "all", "Keys")]


def read_choices(option, help_text):
    """Fills in the words of an option whose value is one of several words."""
    keys = read_keys(help_text)
    if option.value == "LIST":
        option.choices, option.several = keys, True
    elif option.value in ("KEY", "KEYS") and keys:
        option.choices, option.several = keys + ["all"], option.value == "KEYS"
    elif option.value == "WHEN":
        option.choices = re.findall(r"\w+", re.search(
            r"(?:\w+, )+\w+ or \w+", option.help)[0].replace(" or ", " "))
    else:
        return
    if len(option.choices) < 3:
        raise SystemExit(f"describe.py: no values read for {option.names()}")


def read_commands(run):
    overview = ask(run, "--help")
    commands = []
    block = overview.split("Commands:\n", 1)[1].split("\n\n", 1)[0]
    for line in block.splitlines():
        name, summary = line.strip().split(None, 1)
        command = Command(name, summary)
        if name != "help":
            command.help = ask(run, name, "--help")
            command.options = read_options(command.help)
            for option in command.options:
                read_choices(option, command.help)
            if not command.options:
                raise SystemExit(f"describe.py: no options read for {name}")
        commands.append(command)
    return overview, commands


def roff(text):
    text = text.replace("\\", "\\e").replace("-", "\\-")
    return re.sub(r"^([.'])", r"\\&\1", text, flags=re.M)


def manual_page(overview, commands, version):
    lines = [
        f'.TH ZENFO 1 "" "{version}" "User Commands"',
        ".SH NAME",
        "zenfo \\- find and replace text in many files at once",
        ".SH SYNOPSIS",
        ".B zenfo",
        ".I COMMAND",
        "[\\fIOPTIONS\\fR] [\\fIARGUMENTS\\fR]",
        ".SH DESCRIPTION",
        ".nf",
        roff(overview.strip()),
        ".fi",
    ]
    for command in commands:
        if command.help:
            lines += [f".SH ZENFO {command.name.upper()}", ".nf",
                      roff(command.help.strip()), ".fi"]
    return "\n".join(lines) + "\n"


def texts(run, system):
    overview, commands = read_commands(run)
    made = {"powershell/zenfo.ps1": powershell(commands)}
    if system != "Windows":
        version = ask(run, "--version").strip()
        made |= {
            "man/man1/zenfo.1": manual_page(overview, commands, version),
            "bash-completion/completions/zenfo": bash(commands),
            "zsh/site-functions/_zenfo": zsh(commands),
            "fish/vendor_completions.d/zenfo.fish": fish(commands),
        }
    return made


def main():
    system, program, folder, *runner = sys.argv[1:]
    for name, text in texts([*runner, program], system).items():
        path = Path(folder) / name
        path.parent.mkdir(parents=True, exist_ok=True)
        path.write_text(text)


if __name__ == "__main__":
    main()
