"""Prints when the Marigold cannot sail, from the table of tides."""

import csv
import sys

# The ferry's sailings; a sailing near low tide is cancelled.
SAILINGS = ["08:00", "11:30", "15:00", "18:30"]


def minutes(clock):
    hours, rest = clock.split(":")
    return int(hours) * 60 + int(rest)


def cancelled(row):
    low = minutes(row["low"])
    return [s for s in SAILINGS if abs(minutes(s) - low) < 60]


def main(path):
    with open(path, newline="") as table:
        for row in csv.DictReader(table):
            print(row["date"], *cancelled(row))


if __name__ == "__main__":
    main(sys.argv[1])
