import pytest
from conftest import spacer_study, write_toml
from zelmo.studies.errors import StudyError
from zelmo.studies.study_file import kept_name, read_study


def refusal(tables):
    with pytest.raises(StudyError) as told:
        read_study(tables, file="my.toml")
    assert str(told.value).startswith("my.toml: ")
    return str(told.value)


def values_of(folder, given, **study):
    tables = spacer_study(folder, study=study)
    tables["parameters"] = {"P": given}
    return list(read_study(tables).parameters["P"].values)


def test_ranges_have_both_ends_and_the_decimals_that_were_written(folder):
    assert values_of(folder, {"start": 0, "stop": 0.3, "step": 0.1}) == [0.0, 0.1, 0.2, 0.3]
    assert values_of(folder, {"start": 100, "stop": 40, "step": -20}) == [100, 80, 60, 40]
    assert values_of(folder, {"start": 1, "stop": 2, "count": 5}) == [1, 1.25, 1.5, 1.75, 2]
    assert values_of(folder, {"start": 1, "stop": 100, "count": 3, "scale": "log"}) == [1.0, 10.0, 100.0]
    assert all(isinstance(each, int) for each in values_of(folder, {"start": 1, "stop": 9, "step": 2}))


def test_parameters_make_a_grid_whose_last_values_change_fastest(folder):
    study = read_study(spacer_study(folder))
    assert len(study.variants) == 12
    assert study.variants[1] == {"THICKNESS": 60, "ETCH": 80}
    assert study.variants[4] == {"THICKNESS": 80, "ETCH": 60}


def test_zipped_values_go_side_by_side(folder):
    tables = spacer_study(folder, study={"zip": [["THICKNESS", "ETCH"]]}, parameters={
        "ETCH": [1, 2, 3], "columns": {"is": "columns", "values": [200, 300]}})
    del tables["study"]["columns"]
    study = read_study(tables)
    assert [(v["THICKNESS"], v["ETCH"], v["columns"]) for v in study.variants[:3]] == [
        (60, 1, 200), (60, 1, 300), (80, 2, 200)]
    tables["parameters"]["ETCH"] = [1, 2]
    assert "THICKNESS 3, ETCH 2" in refusal(tables)


def test_a_table_gives_values_side_by_side(folder):
    (folder / "table.csv").write_text("THICKNESS,ETCH\n60,70.5\n80,90\n")
    tables = spacer_study(folder, study={"table": str(folder / "table.csv")})
    tables["parameters"] = {}
    study = read_study(tables)
    assert study.variants == [{"THICKNESS": 60, "ETCH": 70.5}, {"THICKNESS": 80, "ETCH": 90}]
    (folder / "table.csv").write_text("THICKNESS,ETCH\n60\n")
    with pytest.raises(StudyError, match=r"table.csv:2: 1 fields for 2 names"):
        read_study(tables)


@pytest.mark.parametrize("change, told", [
    ({"study": {"layuot": "x"}}, "[study] layuot: nothing of this name is known here: did you mean layout?"),
    ({"parameters": {"P": []}}, "[parameters] P: the list is empty"),
    ({"parameters": {"P": [1, 1]}}, "a value comes twice"),
    ({"parameters": {"P": [True]}}, "neither a number nor a text"),
    ({"parameters": {"P": 5}}, "values are a list"),
    ({"parameters": {"P": ["a", "b\n"]}}, "'b\\n' has several lines"),
    ({"parameters": {"P": {"values": ["a\u2028b"]}}}, "has several lines"),
    ({"parameters": {"P": {"start": 1, "stop": 2, "step": 0}}}, "[parameters.P] step: it does not lead"),
    ({"parameters": {"P": {"start": 1, "stop": 2, "step": -1}}}, "let it be above 0"),
    ({"parameters": {"P": {"start": 1, "stop": 2}}}, "[parameters.P] count: it is missing"),
    ({"parameters": {"P": {"values": [1], "strat": 2}}}, "strat"),
    ({"parameters": {"C": {"is": "columns", "values": [0.5]}}}, "whole numbers"),
    ({"parameters": {"W": {"is": "window", "values": [[1, 2, 3]]}}}, "a window is [x, y, width, height]"),
    ({"parameters": {"P": {"start": 0, "stop": 1e9, "step": 1}}}, "at most"),
    ({"measures": {"m": "thickness(\"Spacer\", 1"}}, "[measures] m: at character"),
    ({"measures": {"m": "fooot + 1"}}, "did you mean foot"),
    ({"measures": {"m": {"function": "missing.py:f"}}}, "missing.py"),
    ({"measures": {"error": "1"}}, "the name means something else"),
    ({"set": {"ETCH": 5}}, "[set] ETCH: the parameter ETCH varies it"),
    ({"study": {"time_limit": -1}}, "time_limit"),
    ({"sections": [{"file": "a.svg", "from": [0, 0], "to": [1, 0]}]}, "would be that of variants 1 and 2"),
    ({"sections": [{"file": "../a {variant}.svg", "from": [0, 0], "to": [1, 0]}]}, "without a path"),
    ({"sections": [{"file": "{X}.svg", "from": [0, 0], "to": [1, 0]}]}, "{X} is no parameter"),
    ({"pictures": [{"file": "{variant}.bmp"}]}, ".png"),
    ({"pictures": [{"file": "plot {variant}.png"}]}, "one of the study's own"),
    ({"sections": [{"file": "results.csv", "from": [0, 0], "to": [1, 0], "variants": [1]}]}, "one of the study's own"),
    ({"pictures": [{"file": "{variant}.png", "variants": "ETCH > 1000"}]}, "no variant is chosen"),
    ({"plots": [{"measure": "fot"}]}, "did you mean foot"),
    ({"unknown": {}}, "unknown"),
])
def test_what_is_wrong_is_told_with_its_place(folder, change, told):
    assert told in refusal(spacer_study(folder, **change))


def test_texts_that_are_no_toml_and_files_that_are_not_there_are_told(folder):
    path = folder / "s.toml"
    path.write_text("[study\nlayout = 1")
    with pytest.raises(StudyError, match=r"s.toml: no TOML: .*line 1"):
        read_study(path)
    path.write_bytes(b"\xff\xfe\x00")
    with pytest.raises(StudyError, match="UTF-8"):
        read_study(path)
    with pytest.raises(StudyError, match="No such file"):
        read_study(folder / "none.toml")


def test_files_are_named_after_the_values_of_their_variants(folder):
    study = read_study(spacer_study(folder, sections=[
        {"file": "{THICKNESS} {ETCH}.svg", "variants": "ETCH == 120 and THICKNESS != 80",
         "from": [0, 0], "to": [1, 0]}]))
    kept, = study.kept
    assert [kept_name(kept, study, n) for n in sorted(kept.variants)] == ["60 120.svg", "100 120.svg"]


def test_a_file_gives_what_its_tables_give(folder):
    tables = spacer_study(folder)
    write_toml(folder / "s.toml", tables)
    from_file, from_tables = read_study(folder / "s.toml"), read_study(tables)
    assert from_file.variants == from_tables.variants
    assert from_file.digest == from_tables.digest
    assert from_file.output == str(folder / "s results")


def test_the_digest_changes_with_what_rows_depend_on_and_with_nothing_else(folder):
    def digest(**more):
        return read_study(spacer_study(folder, **more)).digest

    usual = digest()
    assert digest(parameters={"ETCH": [7]}) == usual
    assert digest(study={"title": "other"}) == usual
    assert digest(study={"columns": 201}) != usual
    assert digest(measures={"foot": "1"}) != usual
    assert digest(set={"X": 1}) != usual
