#!/usr/bin/env python3
"""Makes the files that the benchmarks work on, the same for the same seed.

  tree       20,000 small files in nested folders, 250 MB: prose and source-like
             text, sizes log-normal, some files with CR LF
  big        200 files of 5 MB
  log        one log of 1 GB, CR LF
  paths.txt  1,000,000 paths, CR LF, one in fifty of them a duplicate
  texts      lists of 10, 1,000 and 100,000 words to search for, LF; a part of
             them occurs in the others

Words come by Zipf's law from a list of common words and made-up ones. Text is
cut from a pool of lines rather than written word by word, the log repeats
blocks with fresh times and numbers: so all of it takes well under a minute. A
few texts are planted in known numbers of places; PLANTS tells them. Parts that
are there already are left alone.

Another seed gives other words, sizes, folders and orders; what is searched for,
and in how many files it is, stays the same. Each seed has a folder of its own,
seed-N.

  bench/corpus.py [--dir DIR] [--seed N] [--scale F] [tree] [big] [log] [paths]
                  [texts]
"""

import argparse
import hashlib
import random
import shutil
import sys
import time
from bisect import bisect_left
from itertools import accumulate
from pathlib import Path

ROOT = Path(__file__).resolve().parent.parent
DEFAULT_DIR = ROOT / "build" / "bench" / "corpus"
DEFAULT_SEED = 1
MB = 1_000_000

# Stem, line that holds it, and how many of the 20,000 files get the line. No
# generated word contains a stem.
PLANTS = [
    ("harpsichord", "A harpsichord stood in the hall below.", 20),
    ("harpsichord", "HARPSICHORD and Harpsichord, both with a capital.", 20),
    ("harpsichord", "Two harpsichords were sold to the town.", 20),
    ("lantern", "She lifted the lantern and went on.", 800),
    ("lantern", "All lanterns were out by then, lanternlike moon or not.", 800),
    ("gondolier", "The gondolier sang of water.", 15),
    ("marzipan", "Nobody had asked for marzipan.", 15),
    ("obelisk", "Behind the obelisk lay the garden.", 15),
    ("overture", "The overture began late.\nNobody minded.\nThe finale came.",
     200),
    ("overture", "An overture without an end.", 200),
]
ABSENT = "quarterdeck"  # never planted

COMMON = """the of and to in a is that it was for on with as he be at by his
this had not are but from or have an they which one you were her all she there
would their we him been has when who will more no if out so said what up its
about into than them can only other new some could time these two may then do
first any my now such like our over man me even most made after also did many
before must through back years where much your way well down should because
each just those people how too little state good very make world still own see
men work long get here between both life being under never day same another
know while last might us great old year off come since against go came right
used take three""".split()
ODD = "café naïve façade jalapeño São Zürich".split()
ONSETS = "b c d f g h l m n p r s t v w s t r d l m n c p br ch cl cr dr fl gr \
pl pr qu sh sl sp st str th tr j k y".split()
NUCLEI = "a e i o u a e i o e e ai ea ee ie io ou".split()
CODAS = "n r s t l d m   n r s t    ck ct ll nd ng nt st x".split(" ")


def invent_word(rng):
    syllables = rng.choice((1, 1, 2, 2, 2, 3, 3))
    return "".join(rng.choice(ONSETS) + rng.choice(NUCLEI) + rng.choice(CODAS)
                   for _ in range(syllables))


def make_words(rng, count):
    stems = {stem for stem, _, _ in PLANTS} | {ABSENT, "finale"}
    words = dict.fromkeys(COMMON)
    while len(words) < count:
        word = invent_word(rng)
        if len(word) > 2 and not any(stem in word for stem in stems):
            words[word] = None
    return [*words, *ODD]


class Text:
    """Text drawn word by word: slow, and so used for the pools only."""

    def __init__(self, rng):
        self.rng = rng
        self.words = make_words(rng, 8000)
        weights = [1 / (rank + 2.7) for rank in range(1, len(self.words) + 1)]
        self.word_weights = list(accumulate(weights))
        tokens = [(form, weight * share)
                  for word, weight in zip(self.words, weights)
                  for form, share in self.forms(word)]
        self.tokens = [form for form, _ in tokens]
        self.token_weights = list(accumulate(weight for _, weight in tokens))

    def forms(self, word):
        rng = self.rng
        yield word, 0.85
        yield word + ",", 0.06
        yield f"{word}. {rng.choice(self.words[:200]).capitalize()}", 0.06
        yield f"{word} {rng.randrange(1, 3000)}", 0.01
        yield f"{word} ({rng.choice(self.words)})", 0.01
        yield word.capitalize(), 0.01

    def draw(self, count):
        return self.rng.choices(self.words, cum_weights=self.word_weights,
                                k=count)

    def phrase(self, count):
        return " ".join(self.rng.choices(
            self.tokens, cum_weights=self.token_weights, k=count))

    def prose_line(self):
        kind = self.rng.random()
        if kind < 0.06:
            return ""
        if kind < 0.09:  # a paragraph on one line
            return self.phrase(self.rng.randrange(40, 140)) + "."
        if kind < 0.12:
            return f"{self.phrase(3)}: {self.rng.randrange(1, 900)} ms"
        return self.phrase(self.rng.randrange(4, 15))

    def source_line(self):
        rng = self.rng
        a, b, c, d = self.draw(4)
        return rng.choice((
            f"static int {a}_{b}(const char* {c}, unsigned {d}) {{",
            f"  if ({a} > {rng.randrange(100)}) return {b}_{c}({d});",
            f"  {a}->{b} = {c}[{rng.randrange(10)}] + {d};",
            f"  for (int {a} = 0; {a} < {b}_count; ++{a}) {c}({a}, {d});",
            f"    log_line(\"{a} {b} took %d ms\", {c});",
            f"#include \"{a}/{b}.h\"",
            "}", "", "  // " + self.phrase(rng.randrange(4, 11))))


class Pool:
    """Lines in one block, from which runs of whole lines are cut."""

    def __init__(self, rng, make_line, size):
        self.rng = rng
        lines, length = [], 0
        while length < size:
            lines.append(make_line().encode() + b"\n")
            length += len(lines[-1])
        self.bytes = b"".join(lines)
        self.ends = list(accumulate(map(len, lines)))

    def line_end(self, offset):
        return self.ends[bisect_left(self.ends, max(offset, 1))]

    def cut(self, size):
        size = min(size, len(self.bytes) // 2)
        start = self.line_end(self.rng.randrange(len(self.bytes) - size - 9000))
        return self.bytes[start:self.line_end(start + size)]


def plant(rng, data, line):
    """Puts a line between two lines in the second half of the data."""
    at = data.find(b"\n", rng.randrange(len(data) // 2, len(data))) + 1
    return data[:at] + line.encode() + b"\n" + data[at:]


def choose_plants(rng, files, scale):
    planted = [[] for _ in range(files)]
    for _, line, count in PLANTS:
        for index in rng.sample(range(files), max(1, int(count * scale))):
            planted[index].append(line)
    return planted


def log_normal_sizes(rng, count, total):
    sizes = [min(rng.lognormvariate(0, 1), 40) for _ in range(count)]
    unit = total / sum(sizes)
    return [max(200, int(size * unit)) for size in sizes]


def make_folders(rng, words, count):
    folders = [Path()]
    while len(folders) < count:
        near = folders[-300:] if rng.random() < 0.7 else folders
        parent = rng.choice(near)
        if len(parent.parts) < 6:
            folders.append(parent / f"{rng.choice(words)}{len(folders)}")
    return folders


def make_tree(folder, rng, scale):
    text = Text(rng)
    prose = Pool(rng, text.prose_line, max(MB, int(24 * MB * scale)))
    source = Pool(rng, text.source_line, max(MB, int(8 * MB * scale)))
    files = int(20_000 * scale)
    names = [word for word in text.words if word.isascii()]
    folders = make_folders(rng, names, max(4, files // 16))
    for sub in folders:
        (folder / sub).mkdir(parents=True, exist_ok=True)
    planted = choose_plants(rng, files, scale)
    sizes = log_normal_sizes(rng, files, int(250 * MB * scale))
    for index, size in enumerate(sizes):
        is_source = rng.random() < 0.25
        data = (source if is_source else prose).cut(size)
        for line in planted[index]:
            data = plant(rng, data, line)
        if not is_source and rng.random() < 0.4:
            data = data.replace(b"\n", b"\r\n")
        kinds = ("c", "h", "py", "js") if is_source else ("txt", "md", "log")
        name = f"{rng.choice(names)}{index}.{rng.choice(kinds)}"
        (folder / rng.choice(folders) / name).write_bytes(data)


def make_big(folder, rng, scale):
    folder.mkdir(parents=True)
    text = Text(rng)
    pool = Pool(rng, text.prose_line, max(MB, int(16 * MB * scale)))
    for index in range(200):
        size = int(5 * MB * scale)
        data = b"".join(pool.cut(200_000) for _ in range(-(-size // 200_000)))
        data = data[:data.rfind(b"\n", 0, size) + 1]
        if index % 10 == 7:
            data = plant(rng, data, PLANTS[0][1])
        (folder / f"{text.words[300 + index]}{index:03}.txt").write_bytes(data)


MINUTE = b"@@@@-@@-@@ @@:@@"  # replaced block by block
NUMBER = b"########"


def log_line(text, second):
    rng = text.rng
    level = rng.choice(("INFO ", "INFO ", "INFO ", "DEBUG", "WARN ", "ERROR"))
    message = text.phrase(rng.randrange(5, 14))
    took = f" took {rng.randrange(1, 900)} ms" if rng.random() < 0.06 else ""
    line = (f"{MINUTE.decode()}:{second:06.3f} {level} "
            f"[worker-{rng.randrange(32):02}] {message}{took} "
            f"id={NUMBER.decode()}{rng.randrange(1000):03}\r\n")
    return line.encode()


def make_log(folder, rng, scale):
    folder.mkdir(parents=True)
    text = Text(rng)
    lines = 8000
    blocks = [b"".join(log_line(text, line * 60 / lines)
                       for line in range(lines)) for _ in range(8)]
    size = int(1000 * MB * scale)
    with open(folder / "server.log", "wb") as out:
        number = 0
        while out.tell() < size:
            days, minutes = divmod(number, 1440)
            stamp = f"2024-03-{1 + days:02} {minutes // 60:02}:{minutes % 60:02}"
            block = rng.choice(blocks).replace(MINUTE, stamp.encode())
            out.write(block.replace(NUMBER, b"%08d" % (number * 7919)))
            number += 1
        out.write(stamp.encode() + b":59.999 INFO  [worker-00] "
                  + PLANTS[0][1].encode() + b"\r\n")


def make_paths(file, rng, scale):
    words = [w for w in make_words(rng, 4000) if w.isascii()]
    folders = [str(folder) for folder in make_folders(rng, words, 20_000)]
    kinds = ("txt", "c", "h", "html", "doc", "TXT", "log", "md")
    paths = []
    for index in range(int(1_000_000 * scale)):
        if paths and rng.random() < 0.02:
            paths.append(rng.choice(paths))
            continue
        name = rng.choice(words)
        if rng.random() < 0.2:
            name = name.capitalize()
        paths.append(f"/srv/archive/{rng.choice(folders)}/{name}"
                     f"{index % 10_007}.{rng.choice(kinds)}")
    file.write_text("\r\n".join(paths) + "\r\n", newline="")


def make_texts(folder, rng, scale):
    folder.mkdir()
    # Words without those that are in every line.
    words = make_words(rng, 100_000 + len(COMMON))[len(COMMON):-len(ODD)]
    for count in (10, 1_000, 100_000):
        planted = list(dict.fromkeys(stem for stem, _, _ in PLANTS))
        chosen = planted + rng.sample(words, count - len(planted))
        (folder / str(count)).write_text("\n".join(chosen) + "\n")


PARTS = {  # name: what makes it, and the file or folder it makes
    "tree": (make_tree, "tree"),
    "big": (make_big, "big"),
    "log": (make_log, "log"),
    "paths": (make_paths, "paths.txt"),
    "texts": (make_texts, "texts"),
}


def describe(seed, scale):
    """What a stamp holds: a change of the generator makes everything anew."""
    source = hashlib.sha256(Path(__file__).read_bytes()).hexdigest()
    return f"seed {seed} scale {scale} generator {source}\n"


def remove(target):
    if target.is_dir():
        shutil.rmtree(target)
    else:
        target.unlink(missing_ok=True)


def make_part(base, part, seed, scale):
    make, name = PARTS[part]
    target, stamp = base / name, base / f"{part}.stamp"
    wanted = describe(seed, scale)
    if stamp.exists() and stamp.read_text() == wanted:
        return
    if target.exists() and not stamp.exists():
        sys.exit(f"corpus.py: {target} is there but was not made here; "
                 "remove it or choose another --dir")
    start = time.monotonic()
    base.mkdir(parents=True, exist_ok=True)
    stamp.write_text("unfinished\n")
    remove(target)
    make(target, random.Random(f"{seed} {part}"), scale)
    stamp.write_text(wanted)
    print(f"corpus: {name} made in {time.monotonic() - start:.1f} s",
          file=sys.stderr)


def folder_of(base, seed):
    """The folder with the files of a seed."""
    return base / f"seed-{seed}"


def make_parts(base, parts, seed, scale):
    for part in parts:
        make_part(folder_of(base, seed), part, seed, scale)


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("parts", nargs="*", metavar="PART",
                        help="tree, big, log, paths, texts; default: all")
    parser.add_argument("--dir", type=Path, default=DEFAULT_DIR)
    parser.add_argument("--seed", type=int, default=DEFAULT_SEED)
    parser.add_argument("--scale", type=float, default=1.0,
                        help="share of the full size, for trying things out")
    options = parser.parse_args()
    for part in options.parts or PARTS:
        if part not in PARTS:
            parser.error(f"no part named '{part}'")
    make_parts(options.dir, options.parts or PARTS, options.seed, options.scale)


if __name__ == "__main__":
    main()
