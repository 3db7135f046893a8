"""python3 -m zelmo.studies, which is what zelmo-study runs."""
import sys

from .command import main

if __name__ == "__main__":
    sys.exit(main())
