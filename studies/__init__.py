"""Studies: a process in many variants, on Dask. `zelmo.study` and the program zelmo-study."""
from .errors import StudyError
from .run_numbers import RunNumbers
from .running import StudyResult, study

__all__ = ["RunNumbers", "StudyError", "StudyResult", "study"]
