#!/usr/bin/env python3
"""How long after the save of an edited last step its picture is there, with `zelmo-batch --watch`.

    benchmarks/watch_latency.py [BUILD] [COLUMNS] [EDITS]

Takes the CMOS example of a build (default build/release) at a number of columns (1000), edits its
last step some times (10) and prints the milliseconds of each, and their median.
"""
import os
import shutil
import signal
import statistics
import subprocess
import sys
import tempfile
import time

BUILD = os.path.abspath(sys.argv[1] if len(sys.argv) > 1 else "build/release")
COLUMNS = sys.argv[2] if len(sys.argv) > 2 else "1000"
EDITS = int(sys.argv[3]) if len(sys.argv) > 3 else 10


def wait_for(condition):
    end = time.monotonic() + 300
    while not condition():
        if time.monotonic() > end:
            sys.exit("watch_latency: waited in vain")
        time.sleep(0.002)


def edited(process, number):
    """The process with another name for its last step."""
    lines = process.splitlines()
    last = max(i for i, line in enumerate(lines) if line.startswith("strip"))
    lines[last] = f"strip -name Last{number}"
    return "\n".join(lines) + "\n"


def main():
    with tempfile.TemporaryDirectory() as folder:
        layout, text = (os.path.join(folder, name) for name in ("a.gds", "a.txt"))
        pictures, errors = (os.path.join(folder, name) for name in ("pictures", "errors"))
        shutil.copy(os.path.join(BUILD, "examples/cmos_inverter.gds"), layout)
        with open(os.path.join(BUILD, "examples/cmos_inverter.txt"), encoding="utf-8") as file:
            process = file.read()

        def save(content):
            with open(text, "w", encoding="utf-8") as file:
                file.write(content)

        def runs():
            with open(errors, encoding="utf-8") as file:
                return file.read().count("watching")

        save(process)
        with open(errors, "w", encoding="utf-8") as stderr:
            program = subprocess.Popen(
                [os.path.join(BUILD, "zelmo-batch"), "--watch", "--no-notes", "--columns", COLUMNS,
                 "-o", pictures, layout, text], stdout=subprocess.DEVNULL, stderr=stderr)
            wait_for(lambda: runs() == 1)
            times = []
            for number in range(EDITS):
                time.sleep(0.5)
                done = runs()
                start = time.monotonic()
                save(edited(process, number))
                wait_for(lambda: any(f"Last{number} " in name for name in os.listdir(pictures)))
                times.append(1000 * (time.monotonic() - start))
                wait_for(lambda: runs() > done)
            program.send_signal(signal.SIGTERM)
            program.wait()
        print(" ".join(f"{t:.0f}" for t in times), "ms; median", round(statistics.median(times)))


main()
