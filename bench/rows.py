"""The rows of the speed table: what is measured against what, and the aim.

A row consists of the commands of both sides. In them, {tree}, {big}, {log},
{texts} and {paths} mean the generated files, and {copy} a fresh copy of the
tree. The first word of ours, zenfo, is the built program. A command with a pipe
runs in sh. All run in the C locale, and with one thread unless `all_processors` says
that both sides use their defaults.

`check` says what must be equal before anything is timed; run.py defines the
kinds. `aim` is the highest accepted ratio ours / best peer, of whole processes.

Rows for work on lists have no other program to compare with: both sides come
from one benchmark program, as PROGRAM:BENCHMARK.
"""

from dataclasses import dataclass

RG = "rg --no-config -j1 -uu"  # -uu: all files, whatever .gitignore says
RG_ALL = "rg --no-config -uu"
UGREP = "ugrep -J1 -r"

ABSENT = "quarterdeck"
FOUR = ("harpsichord", "gondolier", "marzipan", "obelisk")


@dataclass(frozen=True)
class Row:
    name: str
    ours: str
    peers: dict
    check: str
    aim: float
    about: str = ""
    all_processors: bool = False  # both sides use as many threads as they like


def names_of_files(text, folder, ours="", grep="", rg="", ugrep=""):
    """The two sides of a row that lists the files with a text."""
    return {
        "ours": f"zenfo find -rl {ours} {text} {{{folder}}}",
        "peers": {
            "rg": f"{RG} -lF {rg or grep} {text} {{{folder}}}",
            "grep": f"grep -rlF {grep} {text} {{{folder}}}",
            "ugrep": f"{UGREP} -lF {ugrep or grep} {text} {{{folder}}}",
        },
        "check": "lines",
    }


def names_with_threads(text, folder):
    """A row that lists the files with a text, all sides with their threads."""
    return {
        "ours": f"zenfo find -rl {text} {{{folder}}}",
        "peers": {"rg": f"{RG_ALL} -lF {text} {{{folder}}}",
                  "ugrep": f"ugrep -r -lF {text} {{{folder}}}"},
        "check": "lines",
    }


def counts_of_files(pattern, folder):
    """Peers of a row that counts the matching lines of every file."""
    return {
        "rg": f"{RG} -c --include-zero '{pattern}' {{{folder}}}",
        "grep": f"grep -rcE '{pattern}' {{{folder}}}",
        "ugrep": f"{UGREP} -cE '{pattern}' {{{folder}}}",
    }


def shown_lines(text, folder, rg=RG, ugrep=UGREP):
    """The two sides of a row that shows the lines with a text."""
    return {
        "ours": f"zenfo find -rn {text} {{{folder}}}",
        "peers": {
            "rg": f"{rg} -nF {text} {{{folder}}}",
            "grep": f"grep -rnF {text} {{{folder}}}",
            "ugrep": f"{ugrep} -nF {text} {{{folder}}}",
        },
        "check": "shown_lines",
    }


def coloured_lines(text, folder):
    """The two sides of a row that shows lines with their matches coloured."""
    return {
        "ours": f"zenfo find -rn --color always {text} {{{folder}}}",
        "peers": {
            "rg": f"{RG} -nF --color always {text} {{{folder}}}",
            "grep": f"grep -rnF --color=always {text} {{{folder}}}",
            "ugrep": f"{UGREP} -nF --color=always {text} {{{folder}}}",
        },
        "check": "coloured_lines",
    }


def counts_with_threads(text, folder):
    """A row that counts matching lines, all sides with their threads."""
    return {
        "ours": f"zenfo find -rc {text} {{{folder}}}",
        "peers": {"rg": f"{RG_ALL} -c --include-zero {text} {{{folder}}}",
                  "ugrep": f"ugrep -r -cE {text} {{{folder}}}"},
        "check": "counts",
    }


def lines_with_threads(text, folder):
    """A row that shows lines, all sides with their threads."""
    return shown_lines(text, folder, rg=RG_ALL, ugrep="ugrep -r")


def lines_with_texts(count):
    """The two sides of a row that shows the lines with any of many texts."""
    listed = f"-f {{texts}}/{count} {{tree}}"
    return {
        "ours": f"zenfo find -rn {listed}",
        "peers": {"rg": f"{RG} -nF {listed}", "grep": f"grep -rnF {listed}"},
        "check": "shown_lines",
    }


def many_texts(count):
    """The two sides of a row that counts the lines with any of many texts."""
    listed = f"-f {{texts}}/{count} {{tree}}"
    return {
        "ours": f"zenfo find -rc {listed}",
        "peers": {
            "rg": f"{RG} -cF --include-zero {listed}",
            "grep": f"grep -rcF {listed}",
        },
        "check": "counts",
    }


DIGITS = "'0|1|2|3|4|5|6|7|8|9'"  # one or more
RUN = f"{DIGITS} ms"  # and a unit
CLASS_RUN = {
    "ours": f'zenfo find -rc --pattern "{RUN}"',
    "check": "counts",
}
CLASS_PAIR = {
    "ours": f'zenfo find -rc --pattern "{DIGITS}-{DIGITS}"',
    "check": "counts",
}

# Replacements on a fresh copy, which is made before every run and not timed.
CHANGE_MOST = "zenfo replace -ry {keep} the THE {{copy}}"
CHANGE_FEW = "zenfo replace -ry --no-backup lantern candle {copy}"

ROWS = [
    # --- Names of files with a text ----------------------------------------
    Row("tree-rare", aim=0.80, about="20 files of 20,000",
        **names_of_files("harpsichord", "tree")),
    Row("tree-frequent", aim=0.65, about="nearly every file, near its start",
        **names_of_files("the", "tree")),
    Row("tree-none", aim=0.80, about="no file at all",
        **names_of_files(ABSENT, "tree")),
    Row("tree-ignore-case", aim=0.80, about="rare, case ignored",
        **names_of_files("harpsichord", "tree", ours="-i", grep="-i")),
    Row("tree-word", aim=0.60, about="as many files hold only the plural",
        **names_of_files("lantern", "tree", ours="-w", grep="-w")),
    Row("big-rare", aim=1.00, about="20 files of 200",
        **names_of_files("harpsichord", "big")),
    Row("log-rare", aim=1.00, about="in the last line of 1 GB",
        **names_of_files("harpsichord", "log")),

    # --- Lines shown, with numbers -------------------------------------------
    Row("tree-lines-few", aim=0.75, about="40 lines of 40 files",
        **shown_lines("harpsichord", "tree")),
    Row("tree-lines-many", aim=0.75, about="several lines of nearly every file",
        **shown_lines("was", "tree")),
    Row("tree-lines-most", aim=0.70, about="nearly every other line",
        **shown_lines("the", "tree")),
    Row("big-lines-many", aim=0.75, about="hundreds of lines of every file",
        **shown_lines("between", "big")),
    Row("big-lines-most", aim=0.75, about="nearly every other line",
        **shown_lines("the", "big")),
    Row("log-lines-few", aim=0.80, about="the last line of 1 GB",
        **shown_lines("harpsichord", "log")),
    Row("log-lines-many", aim=0.80, about="one line in a hundred",
        **shown_lines("between", "log")),
    Row("log-lines-most", aim=0.80, about="nearly every other line",
        **shown_lines("the", "log")),

    # --- Lines shown, with numbers and colours -------------------------------
    Row("tree-colours-few", aim=0.75, about="as tree-lines-few",
        **coloured_lines("harpsichord", "tree")),
    Row("tree-colours-many", aim=0.75, about="as tree-lines-many",
        **coloured_lines("was", "tree")),
    Row("tree-colours-most", aim=0.70, about="as tree-lines-most",
        **coloured_lines("the", "tree")),
    Row("big-colours-many", aim=0.75, about="as big-lines-many",
        **coloured_lines("between", "big")),
    Row("big-colours-most", aim=0.75, about="as big-lines-most",
        **coloured_lines("the", "big")),

    # --- All processors ------------------------------------------------------
    Row("tree-rare-all", aim=0.90, about="as tree-rare",
        all_processors=True, **names_with_threads("harpsichord", "tree")),
    Row("tree-frequent-all", aim=0.90, about="as tree-frequent",
        all_processors=True, **names_with_threads("the", "tree")),
    Row("big-rare-all", aim=0.90, about="as big-rare",
        all_processors=True, **names_with_threads("harpsichord", "big")),
    Row("big-frequent-all", aim=1.50, about="names of 5 MB files, found at once",
        all_processors=True, **names_with_threads("the", "big")),
    Row("tree-count-all", aim=0.90, about="as tree-frequent-count",
        all_processors=True, **counts_with_threads("the", "tree")),
    Row("big-count-all", aim=0.90, about="the same, 5 MB files",
        all_processors=True, **counts_with_threads("the", "big")),
    Row("tree-lines-few-all", aim=0.90, about="as tree-lines-few",
        all_processors=True, **lines_with_threads("harpsichord", "tree")),
    Row("tree-lines-all", aim=0.90, about="as tree-lines-many",
        all_processors=True, **lines_with_threads("was", "tree")),
    Row("big-lines-all", aim=0.90, about="as big-lines-most",
        all_processors=True, **lines_with_threads("the", "big")),

    # --- Patterns -----------------------------------------------------------
    Row("tree-frequent-count", "zenfo find -rc the {tree}",
        counts_of_files("the", "tree"), "counts", 0.65,
        "matching lines of every file"),
    Row("tree-alternatives",
        "zenfo find -rl " + " ".join(f"-e {t}" for t in FOUR) + " {tree}",
        {"rg": f"{RG} -l '{'|'.join(FOUR)}' {{tree}}",
         "grep": f"grep -rlE '{'|'.join(FOUR)}' {{tree}}",
         "ugrep": f"{UGREP} -lE '{'|'.join(FOUR)}' {{tree}}"},
        "lines", 0.75, "any of four texts"),
    Row("tree-class-run", CLASS_RUN["ours"] + " {tree}",
        counts_of_files("[0-9]+ ms", "tree"), CLASS_RUN["check"], 0.75,
        "digits and a unit, counted"),
    Row("big-class-run", CLASS_RUN["ours"] + " {big}",
        counts_of_files("[0-9]+ ms", "big"), CLASS_RUN["check"], 0.45,
        "the same, 5 MB files"),
    Row("log-class-run", CLASS_RUN["ours"] + " {log}",
        counts_of_files("[0-9]+ ms", "log"), CLASS_RUN["check"], 0.85,
        "the same, one 1 GB file"),
    Row("tree-class-pair", CLASS_PAIR["ours"] + " {tree}",
        counts_of_files("[0-9]+-[0-9]+", "tree"), CLASS_PAIR["check"], 0.55,
        "digits, a dash, digits, counted"),
    Row("big-class-pair", CLASS_PAIR["ours"] + " {big}",
        counts_of_files("[0-9]+-[0-9]+", "big"), CLASS_PAIR["check"], 0.35,
        "the same, 5 MB files"),
    Row("log-class-pair", CLASS_PAIR["ours"] + " {log}",
        counts_of_files("[0-9]+-[0-9]+", "log"), CLASS_PAIR["check"], 0.30,
        "the same, one 1 GB file"),
    Row("tree-two-literals",
        "zenfo find -rl --between overture finale {tree}",
        {"grep": "grep -rlPz '(?s)overture.*finale' {tree}",
         "rg": f"{RG} -lU '(?s)overture.*finale' {{tree}}"},
        "lines", 0.55, "any run between"),

    # --- Many texts ---------------------------------------------------------
    Row("tree-texts-10", aim=0.75, about="lines with any of 10 texts",
        **many_texts(10)),
    Row("tree-texts-1000", aim=0.75, about="any of 1,000",
        **many_texts(1000)),
    Row("tree-texts-100000", aim=0.75, about="any of 100,000",
        **many_texts(100000)),
    Row("tree-texts-10-lines", aim=0.75, about="as tree-texts-10, lines shown",
        **lines_with_texts(10)),
    Row("tree-texts-1000-lines", aim=0.75, about="any of 1,000, lines shown",
        **lines_with_texts(1000)),
    Row("tree-texts-100000-lines", aim=0.75, about="any of 100,000, lines shown",
        **lines_with_texts(100000)),

    # --- Counts -------------------------------------------------------------
    Row("tree-words", "zenfo count -r --total --json {tree}",
        {"wc": "find {tree} -type f -print0 | wc -lw --files0-from=-"},
        "last_words", 0.10,
        "words (ours counts CR LF only, so lines are not compared)"),
    Row("log-words", "zenfo count --total --json {log}/server.log",
        {"wc": "wc -lw {log}/server.log"},
        "last_words_and_lines", 0.04,
        "words and lines, every line ends in CR LF"),

    # --- Names and facts ----------------------------------------------------
    Row("files-names", "zenfo files -r {tree}",
        {"find": "find {tree} -type f"}, "lines", 1.00,
        "names of 20,000 files"),
    Row("files-facts", "zenfo files -r --columns path,size,modified {tree}",
        {"find": r"find {tree} -type f -printf '%p  %s  %TY-%Tm-%Td %TT\n'"},
        "paths_and_sizes", 0.85,
        "path, size and time of each"),

    # --- Lists --------------------------------------------------------------
    Row("sort-paths", "list_ops_bench:sort/list/1000000",
        {"std::sort": "list_ops_bench:sort/vector/1000000"}, "by_program",
        0.75, about="1,000,000 paths, case ignored"),
    Row("duplicate-paths", "list_ops_bench:duplicates/list/1000000",
        {"std::sort": "list_ops_bench:duplicates/vector/1000000"},
        "by_program", 0.65, about="duplicates among them"),
    Row("load-list", "list_ops_bench:load/list/1000000",
        {"one string each": "list_ops_bench:load/strings/1000000"},
        "by_program", 0.30, about="a list file of 1,000,000 paths"),

    # --- Replacing ----------------------------------------------------------
    Row("replace-most", CHANGE_MOST.format(keep="--no-backup"),
        {"sd": "find {copy} -type f -print0 | xargs -0 sd -s the THE",
         "sed": f"{RG} -l0F the {{copy}} | xargs -0 sed -i s/the/THE/g",
         "perl": f"{RG} -l0F the {{copy}} | xargs -0 perl -pi -e s/the/THE/g"},
        "copies", 0.25, "nearly every file changes"),
    Row("replace-few", CHANGE_FEW,
        {"sed": f"{RG} -l0F lantern {{copy}}"
                " | xargs -0 sed -i s/lantern/candle/g"},
        "copies", 0.75, "one file in fourteen changes"),
    Row("replace-most-kept", CHANGE_MOST.format(keep=""),
        {"sed": f"{RG} -l0F the {{copy}} | xargs -0 sed -i.bak s/the/THE/g"},
        "copies", 0.45, "with safe copies"),
    Row("replace-most-kept-no-sync", CHANGE_MOST.format(keep="--no-sync"),
        {"synced": CHANGE_MOST.format(keep=""),
         "sed": f"{RG} -l0F the {{copy}} | xargs -0 sed -i.bak s/the/THE/g"},
        "copies", 1.00, "the same without waiting for the disk"),
    Row("replace-log", "zenfo replace -y --no-backup the THE {copy_of_log}/server.log",
        {"sd": "sd -s the THE {copy_of_log}/server.log"},
        "copies", 0.20, "one 1 GB file"),
]
