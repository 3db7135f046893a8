"""The examples of docs/python.md, executed one after the other as a reader would."""
import pathlib
import re
import shutil

DOCUMENT = pathlib.Path(__file__).parents[2] / "docs" / "python.md"


def test_the_examples_of_the_document_work(build, tmp_path, monkeypatch):
    for name in ("cmos_inverter.gds", "cmos_inverter.txt"):
        shutil.copy(build / "examples" / name, tmp_path)
    monkeypatch.chdir(tmp_path)
    text = DOCUMENT.read_text(encoding="utf-8")
    examples = list(re.finditer(r"^```python\n(.*?)^```$", text, re.MULTILINE | re.DOTALL))
    assert len(examples) >= 8
    names = {}
    for example in examples:
        line = text[:example.start()].count("\n") + 1
        code = "\n" * line + example.group(1)
        exec(compile(code, str(DOCUMENT), "exec"), names)  # pylint: disable=exec-used
    assert {"cut.svg", "stack.png", "stack.glb", "gates.html"} <= {
        path.name for path in tmp_path.iterdir()}
