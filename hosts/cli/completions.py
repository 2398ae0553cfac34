"""The completions of zenfo for bash, zsh, fish and PowerShell.

Each function takes the commands and returns the text of a shell's file. The
shells complete file names themselves, because they know how to quote them.

Tested by tests/cli/check_completions
"""


def quoted(text):
    return "'" + text.replace("'", "'\\''") + "'"


def names_of(commands):
    return " ".join(c.name for c in commands)


def valued(command):
    return [option for option in command.options if option.value]


# --- bash -------------------------------------------------------------------

def bash_case(command, option):
    pattern = "|".join(quoted(f"{command.name} {n}") for n in option.names())
    if option.choices:
        offer = "_zenfo_list" if option.several else "_zenfo_words"
        action = f"{offer} {' '.join(option.choices)}; return"
    else:
        action = "_zenfo_files; return" if option.takes_file() else "return"
    return f"    {pattern}) {action} ;;"


def bash(commands):
    names = names_of(commands)
    options = "\n".join(
        f"    {c.name}) options='{' '.join(n for o in c.options for n in o.names())}' ;;"
        for c in commands)
    values = "\n".join(bash_case(c, o) for c in commands for o in valued(c))
    return f"""# bash completion of zenfo

# Offers those of the words that begin as the current one does.
_zenfo_words() {{
  local word
  for word; do
    [[ $word != "$current"* ]] || COMPREPLY+=("$prefix$word")
  done
}}

# The same for the last part of a list with commas.
_zenfo_list() {{
  if [[ $current == *,* ]]; then
    prefix+=${{current%,*}},
    current=${{current##*,}}
  fi
  _zenfo_words "$@"
}}

# Leaves it to bash, which quotes the names of files.
_zenfo_files() {{
  compopt -o default
}}

# RUN may stand in front of all files.
_zenfo_runs() {{
  local i run rest
  for ((i = 2; i < COMP_CWORD; ++i)); do
    [[ ${{COMP_WORDS[i]}} == -* ]] || return
  done
  while read -r run rest; do
    _zenfo_words "$run"
  done < <("${{COMP_WORDS[0]}}" undo --list 2>/dev/null)
}}

_zenfo() {{
  local current=${{COMP_WORDS[COMP_CWORD]}} command=${{COMP_WORDS[1]}}
  local option=${{COMP_WORDS[COMP_CWORD - 1]}} options= prefix=
  COMPREPLY=()
  if ((COMP_CWORD == 1)); then
    _zenfo_words {names} --help --version
    return
  fi
  # "--color=a" is one word or three.
  if [[ $current == = ]]; then
    current=
  elif [[ $option == = ]]; then
    option=${{COMP_WORDS[COMP_CWORD - 2]}}
  elif [[ $current == --*=* ]]; then
    option=${{current%%=*}}
    prefix=$option=
    current=${{current#*=}}
  fi
  case "$command $option" in
{values}
  esac
  case $command in
{options}
  esac
  if [[ $command == help ]]; then
    _zenfo_words {names}
  elif [[ $current == -* && " ${{COMP_WORDS[*]:2:COMP_CWORD-2}} " != *' -- '* ]]; then
    _zenfo_words $options
  else
    [[ $command != undo ]] || _zenfo_runs
    _zenfo_files
  fi
}}
complete -F _zenfo zenfo
"""


# --- zsh --------------------------------------------------------------------

def zsh_text(text):
    return text.replace("[", "(").replace("]", ")").replace(":", ";")


def zsh_value(option):
    """What follows the description: one message and action for each value."""
    if option.choices:
        words = " ".join(option.choices)
        action = (f"_values -s , {option.value.lower()} {words}"
                  if option.several else f"({words})")
        return f":{option.value.lower()}:{action}"
    action = "_files" if option.takes_file() else " "
    return "".join(f":{word.lower()}:{action}"
                   for word in option.value.replace("...", "").split())


def zsh_name(name, option):
    if not option.value or " " in option.value:
        return name
    return name + ("=" if name.startswith("--") else "+")


def zsh_specs(option):
    return " ".join(
        quoted(f"*{zsh_name(n, option)}[{zsh_text(option.help)}]{zsh_value(option)}")
        for n in option.names())


def zsh_case(command):
    arguments = ["'*:file:_files'"]
    if command.name == "undo":
        arguments.insert(0, "'1:run or file:_zenfo_runs'")
    specs = [zsh_specs(o) for o in command.options]
    return f"    {command.name}) _arguments {' '.join(specs + arguments)} ;;"


def zsh(commands):
    described = "\n".join(f"    {quoted(c.name + ':' + zsh_text(c.summary))}"
                          for c in commands)
    cases = "\n".join(zsh_case(c) for c in commands if c.options)
    return f"""#compdef zenfo
_zenfo_runs() {{
  local -a runs=(${{${{(f)"$(_call_program runs zenfo undo --list 2>/dev/null)"}}%% *}})
  compadd -a runs
  _files
}}
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
    help) _describe command commands ;;
  esac
}}
_zenfo "$@"
"""


# --- fish -------------------------------------------------------------------

def fish_value(option):
    if not option.value:
        return []
    if option.several:
        words = " ".join(option.choices)
        return ["-x", "-a",
                f'"(__fish_complete_list , \'string split \\" \\" \\"{words}\\"\')"']
    if option.choices:
        return ["-x", "-a", quoted(" ".join(option.choices))]
    return ["-r", "-F"] if option.takes_file() else ["-x"]


def fish_option(command, option):
    words = ["complete -c zenfo -n",
             quoted(f"__fish_seen_subcommand_from {command.name}")]
    if option.short:
        words.append(f"-s {option.short[1:]}")
    if option.long:
        words.append(f"-l {option.long[2:]}")
    return " ".join(words + fish_value(option) + ["-d", quoted(option.help)])


def fish(commands):
    lines = ["# fish completion of zenfo"]
    for command in commands:
        lines.append("complete -c zenfo -n __fish_use_subcommand -f "
                     f"-a {command.name} -d {quoted(command.summary)}")
        lines += [fish_option(command, option) for option in command.options]
    lines += [
        "complete -c zenfo -n '__fish_seen_subcommand_from help' -f "
        f"-a {quoted(names_of(commands))}",
        "complete -c zenfo -n '__fish_seen_subcommand_from undo' "
        "-a '(zenfo undo --list 2>/dev/null | string split -f 1 \" \")'",
    ]
    return "\n".join(lines) + "\n"


# --- PowerShell -------------------------------------------------------------

def powershell_list(values):
    return ", ".join("'" + v.replace("'", "''") + "'" for v in values)


def powershell(commands):
    tables = "\n".join(
        f"    '{c.name}' = @({powershell_list(n for o in c.options for n in o.names())})"
        for c in commands)
    values = "\n".join(
        f"    '{c.name} {n}' = @({powershell_list(o.choices)})"
        for c in commands for o in c.options if o.choices for n in o.names())
    lists = powershell_list(f"{c.name} {n}" for c in commands
                            for o in c.options if o.several for n in o.names())
    return f"""# PowerShell completion of zenfo
# Where nothing is offered, PowerShell offers the names of files.
Register-ArgumentCompleter -Native -CommandName zenfo -ScriptBlock {{
  param($word, $commandLine, $position)
  $options = [ordered]@{{
{tables}
  }}
  $values = @{{
{values}
  }}
  $lists = @({lists})
  $words = @($commandLine.CommandElements | ForEach-Object {{ "$_" }})
  # The words in front of the one that is completed.
  $before = @($words | Select-Object -First ($words.Count - [int]($word -ne '')))
  $command = "$($before[1])"
  $option = "$command $($before[-1])"
  $start = ''
  $rest = $word
  if ($word -match '^(--[^=]+)=(.*)$') {{
    $option = "$command $($Matches[1])"
    $start = $Matches[1] + '='
    $rest = $Matches[2]
  }}
  if ($lists -ccontains $option -and $rest -match '^(.*,)(.*)$') {{
    $start += $Matches[1]
    $rest = $Matches[2]
  }}
  $offered = if ($before.Count -lt 2) {{ $options.Keys }}
    elseif ($values.ContainsKey($option)) {{ $values[$option] }}
    elseif ($command -eq 'help') {{ $options.Keys }}
    elseif ($rest -like '-*') {{ $options[$command] }}
    elseif ($command -eq 'undo' -and $before.Count -eq 2) {{
      zenfo undo --list 2>$null | ForEach-Object {{ ($_ -split ' ')[0] }}
    }}
  $offered | Where-Object {{ $_ -clike "$([WildcardPattern]::Escape($rest))*" }} |
    ForEach-Object {{
      [System.Management.Automation.CompletionResult]::new($start + $_)
    }}
}}
"""
