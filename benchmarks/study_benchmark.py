#!/usr/bin/python3
"""How much a study saves: 100 values of one late step of the CMOS example at 600 columns, beside 100
separate runs. PYTHONPATH=build/release/python benchmarks/study_benchmark.py build/release/examples

The scheduler and its workers are started before the time is taken. Separate runs are executed one after
the other on all cores, some of them, and counted for 100. The processor's seconds, of the scheduler and
of the workers as well, tell the same on a machine that others use.
"""
import argparse
import pathlib
import re
import tempfile
import time

import psutil
import zelmo
from zelmo.studies import cluster, running
from zelmo.studies.study_file import read_study


def process_with_variable(path):
    """The text of the example, with the depth of its pad etch as a variable."""
    text = path.read_text()
    text, count = re.subn(r"(etch -name Pad .*-depth )700", r"\g<1>${DEPTH}", text)
    assert count == 1
    return text


def processor_seconds():
    """Of this process and of all that it started."""
    found = [psutil.Process(), *psutil.Process().children(recursive=True)]
    return sum(sum(each.cpu_times()[:2]) for each in found)


def main():
    parser = argparse.ArgumentParser(description=__doc__.split("\n")[0])
    parser.add_argument("examples", type=pathlib.Path)
    parser.add_argument("--workers", type=int, default=2)
    parser.add_argument("--values", type=int, default=100)
    parser.add_argument("--separate", type=int, default=10, help="how many runs are executed by themselves")
    parser.add_argument("--columns", type=int, default=600)
    options = parser.parse_args()
    text = process_with_variable(options.examples / "cmos_inverter.txt")
    layout = options.examples / "cmos_inverter.gds"

    begun, used = time.perf_counter(), processor_seconds()
    for n in range(options.separate):
        run = zelmo.Run(zelmo.Layout(layout), text, set={"DEPTH": 600 + n}, columns=options.columns).run()
        run.numbers()
    separate = (time.perf_counter() - begun) / options.separate * options.values
    separate_used = (processor_seconds() - used) / options.separate * options.values
    print(f"separate runs: {separate:.1f} s for {options.values}, {separate_used:.1f} s of a processor, "
          f"{run.nbytes / 2**20:.0f} MiB a state")

    with tempfile.TemporaryDirectory() as folder, cluster.local_client(options.workers, None) as client:
        study = read_study({
            "study": {"layout": str(layout), "process": text, "columns": options.columns},
            "parameters": {"DEPTH": {"start": 600, "stop": 600 + options.values - 1, "step": 1}},
            "measures": {"open": 'area("TopNitride")', "left": 'volume("TopNitride")'},
        }, output=folder)
        begun, used = time.perf_counter(), processor_seconds()
        result = running.run_study(study, scheduler=client.scheduler.address, quiet=True, page=False)
        taken, used = time.perf_counter() - begun, processor_seconds() - used
        assert result.failed == 0 and result.frame.left.nunique() > 1
    print(f"study: {taken:.1f} s on {options.workers} workers, {taken / separate:.3f} of separate runs; {used:.1f} s of a "
          f"processor, {used / separate_used:.3f}")


if __name__ == "__main__":
    main()
