"""What the tests of studies share: a small study of the spacer example, and a cluster of two worker
processes that all of them use."""
import os
import pathlib
import shutil

import pytest

BUILD = pathlib.Path(os.environ["ZELMO_BUILD"])
EXAMPLES = BUILD / "examples" / "studies"


def spacer_study(folder, **more):
    """The tables of a study of 3 films and 4 etches on a coarse grid, with its files in `folder`."""
    for name in ("spacer.gds", "spacer.txt"):
        shutil.copy(EXAMPLES / name, folder)
    tables = {
        "study": {"layout": str(folder / "spacer.gds"), "process": str(folder / "spacer.txt"),
                  "columns": 200},
        "parameters": {"THICKNESS": [60, 80, 100], "ETCH": {"start": 60, "stop": 120, "step": 20}},
        "measures": {"foot": 'width("Spacer", 1, 0.2, 2, 0.2, at=20)',
                     "left_over": 'thickness("Spacer", 1.9, 0.2)'},
    }
    for name, table in more.items():
        if isinstance(table, dict):
            tables[name] = {**tables.get(name, {}), **table}
        else:
            tables[name] = table
    return tables


def write_toml(path, tables):
    """Writes tables as TOML: plain tables of numbers, texts, lists and inline tables."""
    import json

    def value(each):
        if isinstance(each, dict):
            return "{" + ", ".join(f"{key} = {value(item)}" for key, item in each.items()) + "}"
        return json.dumps(each)

    text = ""
    for name, table in tables.items():
        for each in table if isinstance(table, list) else [table]:
            text += f"[[{name}]]\n" if isinstance(table, list) else f"[{name}]\n"
            text += "".join(f"{key} = {value(item)}\n" for key, item in each.items())
    path.write_text(text)


@pytest.fixture
def folder(tmp_path):
    return tmp_path


@pytest.fixture(scope="session")
def scheduler():
    """The address of a Dask scheduler with two workers."""
    from zelmo.studies import cluster
    cluster.START_SECONDS = 600  # on a machine that is busy with other tests
    with cluster.local_client(2, 2 * 2**30) as client:
        yield client.scheduler.address
