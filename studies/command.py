"""The program zelmo-study."""
import argparse
import os
import sys

from .errors import Cut, ExitStatus, StudyError

DESCRIPTION = """\
Runs a process on a layout in many variants, measures each and writes a row of numbers for it. Steps
that variants have in common are executed once. A study that was cut off, at any moment, goes on where
it was with the same command."""

FOOTER = """\
A study, STUDY.toml:

  [study]
  layout = "spacer.gds"
  process = "spacer.txt"             # with ${THICKNESS} and ${ETCH:-200} in it

  [parameters]
  THICKNESS = [60, 80, 100]
  ETCH = {start = 100, stop = 300, step = 20}

  [measures]
  width = 'width("Spacer", 0, 1, 2, 1, at=100)'

Results are in the folder "STUDY results" beside it: results.csv with a row a variant, index.html with
plots, and the pictures and sections that the study asks for. docs/studies.md tells the rest.

Exit status: 0 all variants are done (those that failed have the reason in their row), 1 wrong usage,
2 the layout did not load, 3 the study or the process file was refused, 4 the page could not be made,
5 anything else; 130 cut off by Ctrl-C, 143 by a request to end."""


class _Parser(argparse.ArgumentParser):
    def error(self, message):
        raise StudyError(f"{message}; --help lists the options", ExitStatus.USAGE)


def _count(text):
    if not text.isdigit() or not 1 <= int(text) <= 4096:
        raise argparse.ArgumentTypeError(f"\"{text}\" is no number from 1 to 4096")
    return int(text)


def _memory(text):
    from .cluster import bytes_of
    size = bytes_of(text)
    if not size or size < 2**26:
        raise argparse.ArgumentTypeError(f"\"{text}\" is no size of 64 MiB or more, such as 4GiB")
    return size


def _part(text):
    number, slash, count = text.partition("/")
    if not slash or not number.isdigit() or not count.isdigit() or not 1 <= int(number) <= int(count):
        raise argparse.ArgumentTypeError(f"\"{text}\" is no part such as 3/10")
    return int(number), int(count)


def _parser():
    import zelmo
    parser = _Parser(prog="zelmo-study", description=DESCRIPTION, epilog=FOOTER, allow_abbrev=False,
                     formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("study", metavar="STUDY.toml", help="The study")
    parser.add_argument("--version", action="version", version=f"zelmo-study {zelmo.__version__}")
    parser.add_argument("-o", "--output", metavar="DIR", help="Folder for the results, in place of the study's")
    parser.add_argument("--dry-run", action="store_true",
                        help="Tell how many steps would run and how long that takes; one variant is executed for that")
    parser.add_argument("--workers", metavar="N", type=_count,
                        help="Processes on this machine (default: one a core)")
    parser.add_argument("--memory", metavar="SIZE", type=_memory,
                        help="What all of them may take together, such as 4GiB (default: three quarters of "
                        "the machine's)")
    parser.add_argument("--scheduler", metavar="ADDRESS",
                        help="A Dask scheduler, such as tcp://host:8786, whose workers are used in place of "
                        "processes of this machine")
    parser.add_argument("--part", metavar="I/N", type=_part,
                        help="Run the I-th of N parts of the variants; its results go to a folder of its own")
    parser.add_argument("--retry-errors", action="store_true", help="Run variants again that failed earlier")
    parser.add_argument("--overwrite", action="store_true", help="Replace results of another study in the folder")
    parser.add_argument("--no-page", action="store_true", help="Make no plots and no page")
    parser.add_argument("--quiet", action="store_true", help="Write only errors")
    return parser


def _run(arguments):
    from . import running
    from .study_file import read_study, take_part
    options = _parser().parse_args(arguments)
    if options.scheduler and (options.workers or options.memory):
        raise StudyError("--scheduler has workers and memory of its own: leave --workers and --memory out",
                         ExitStatus.USAGE)
    if not os.path.exists(options.study):
        raise StudyError(f"{options.study}: no such file: give the path of a study", ExitStatus.USAGE)
    study = read_study(options.study, output=options.output)
    if options.part:
        take_part(study, *options.part)
    if options.dry_run:
        for line in running.dry_run(study, options.workers or os.cpu_count() or 1):
            print(line)
        return ExitStatus.SUCCESS
    result = running.run_study(study, options.scheduler, options.workers, options.memory, options.overwrite,
                               options.retry_errors, options.quiet, page=not options.no_page)
    if not options.quiet:
        failed = f", {result.failed} of them failed (see the column error)" if result.failed else ""
        print(f"{result.variants} variants done{failed}")
        print(f"Results in {result.output}")
    return ExitStatus.SUCCESS


def main(arguments=None):
    """Runs the program. Returns its exit status."""
    try:
        return int(_run(sys.argv[1:] if arguments is None else arguments))
    except StudyError as error:
        print(f"zelmo-study: {error}", file=sys.stderr)
        return int(error.status)
    except Cut as cut:
        print(f"zelmo-study: {cut}", file=sys.stderr)
        return int(cut.status)
    except KeyboardInterrupt:
        print("zelmo-study: ended before the variants began: the same command goes on", file=sys.stderr)
        return int(ExitStatus.INTERRUPTED)
    except BrokenPipeError:
        return int(ExitStatus.OTHER)
    except Exception as error:  # nobody is helped by where in the code it was
        print(f"zelmo-study: {type(error).__name__}: {error}", file=sys.stderr)
        return int(ExitStatus.OTHER)
