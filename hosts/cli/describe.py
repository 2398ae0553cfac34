#!/usr/bin/env python3
"""Makes the manual page and the shell completions of zenfo.

    describe.py PROGRAM FOLDER [RUNNER...]

The texts come from what the built program says of itself: `--help` is made
from the option definitions, so what is made here cannot disagree with them.
RUNNER is what runs a program of another system.

FOLDER receives
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


@dataclass
class Option:
    short: str  # "-i" or ""
    long: str  # "--ignore-case" or ""
    value: str  # "GLOB ...", "" for a flag
    help: str

    def names(self):
        return [name for name in (self.short, self.long) if name]


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


def bash(commands):
    names = " ".join(c.name for c in commands)
    cases = []
    for command in commands:
        words = " ".join(n for o in command.options for n in o.names())
        cases.append(f"    {command.name}) words='{words}' ;;")
    return f"""# bash completion of zenfo
_zenfo() {{
  local current=${{COMP_WORDS[COMP_CWORD]}} words=
  if ((COMP_CWORD == 1)); then
    COMPREPLY=($(compgen -W '{names} --help --version' -- "$current"))
    return
  fi
  case ${{COMP_WORDS[1]}} in
{chr(10).join(cases)}
  esac
  if [[ $current == -* ]]; then
    COMPREPLY=($(compgen -W "$words" -- "$current"))
  else
    COMPREPLY=($(compgen -f -- "$current"))
  fi
}}
complete -o filenames -F _zenfo zenfo
"""


def quoted(text):
    return "'" + text.replace("'", "'\\''") + "'"


def zsh(commands):
    def spec(option):
        text = option.help.replace("[", "(").replace("]", ")").replace(":", ";")
        value = f":{option.value.split()[0].lower()}:_files" if option.value else ""
        return " ".join(quoted(f"*{n}[{text}]{value}") for n in option.names())

    described = "\n".join(
        f"    {quoted(c.name + ':' + c.summary.replace(':', ';'))}"
        for c in commands)
    cases = "\n".join(
        f"    {c.name}) _arguments {' '.join(spec(o) for o in c.options)} "
        "'*:file:_files' ;;" for c in commands if c.options)
    return f"""#compdef zenfo
_zenfo() {{
  local -a commands=(
{described}
  )
  if ((CURRENT == 2)); then
    _describe command commands
    return
  fi
  local command=$words[2]
  shift words
  ((CURRENT--))
  case $command in
{cases}
  esac
}}
_zenfo "$@"
"""


def fish(commands):
    lines = ["# fish completion of zenfo"]
    for command in commands:
        lines.append("complete -c zenfo -n __fish_use_subcommand -f "
                     f"-a {command.name} -d {quoted(command.summary)}")
        for option in command.options:
            words = ["complete -c zenfo -n",
                     quoted(f"__fish_seen_subcommand_from {command.name}")]
            if option.short:
                words.append(f"-s {option.short[1:]}")
            if option.long:
                words.append(f"-l {option.long[2:]}")
            if option.value:
                words.append("-r")
            lines.append(" ".join(words) + f" -d {quoted(option.help)}")
    return "\n".join(lines) + "\n"


def powershell(commands):
    def texts(values):
        return ", ".join("'" + v.replace("'", "''") + "'" for v in values)

    tables = "\n".join(
        f"    '{c.name}' = @({texts(n for o in c.options for n in o.names())})"
        for c in commands)
    return f"""# PowerShell completion of zenfo
Register-ArgumentCompleter -Native -CommandName zenfo -ScriptBlock {{
  param($word, $commandLine, $position)
  $options = @{{
{tables}
  }}
  $words = $commandLine.CommandElements
  $offered = if ($words.Count -lt 2 -or
      ($words.Count -eq 2 -and $word -ne '')) {{
    $options.Keys
  }} else {{ $options["$($words[1])"] }}
  $offered | Where-Object {{ $_ -clike "$word*" }} | Sort-Object |
    ForEach-Object {{ [System.Management.Automation.CompletionResult]::new($_) }}
}}
"""


def main():
    program, folder, *runner = sys.argv[1:]
    run = [*runner, program]
    version = ask(run, "--version").strip()
    overview, commands = read_commands(run)
    made = {
        "man/man1/zenfo.1": manual_page(overview, commands, version),
        "bash-completion/completions/zenfo": bash(commands),
        "zsh/site-functions/_zenfo": zsh(commands),
        "fish/vendor_completions.d/zenfo.fish": fish(commands),
        "powershell/zenfo.ps1": powershell(commands),
    }
    for name, text in made.items():
        path = Path(folder) / name
        path.parent.mkdir(parents=True, exist_ok=True)
        path.write_text(text)


if __name__ == "__main__":
    main()
