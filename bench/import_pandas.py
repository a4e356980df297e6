#!/usr/bin/env python3
"""Reads the file of import_bench.cpp with pandas and prints the time of one value."""

import os
import statistics
import tempfile
import time

import pandas

ROWS = 1_000_000
COLUMNS = 8
REPETITIONS = 5


class Random:
    """The generator of the C++ benchmark; within a row it is asked in the same order."""

    def __init__(self):
        self.state = 1

    def __call__(self, count):
        self.state = (self.state * 1664525 + 1013904223) & 0xFFFFFFFF
        return (self.state >> 8) % count


def write_sample(file):
    random = Random()
    file.write(b"Row\tTime\tStrain\tAngle\tPosition\tCurrent\tLoad\tTemperature\r\n")
    for row in range(ROWS):
        file.write(b"%d\t%d.%03d\t0.%05d\t-%d.%02d\t%d.%07d%07d\t%d.%05dE-%02d\t%d\t%d.%02d\r\n" % (
            row, row // 1000, row % 1000, random(100000), random(90), random(100), 1 + random(9),
            random(10000000), random(10000000), 1 + random(9), random(100000), 1 + random(20), random(1000000),
            random(300), random(100)))


def main():
    handle, path = tempfile.mkstemp(suffix=".txt")
    try:
        with os.fdopen(handle, "wb") as file:
            write_sample(file)
        times = []
        for _ in range(REPETITIONS):
            start = time.process_time()
            table = pandas.read_csv(path, sep="\t", engine="c")
            times.append(time.process_time() - start)
            assert table.shape == (ROWS, COLUMNS)
        print(f"Import 1e6 x {COLUMNS}/pandas: {statistics.median(times) / (ROWS * COLUMNS) * 1e9:.2f} ns")
    finally:
        os.remove(path)


if __name__ == "__main__":
    main()
