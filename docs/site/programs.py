"""The reference of programs and of the Python module, made from what they say of themselves."""
import ast
import os
import subprocess

from sandbox import PROGRAMS, ROOT

MODULE = ROOT / "python/zelmo"


def page_names():
    return [f"programs/{name}" for name in PROGRAMS] + ["programs/python-module"]


def help_text(build, name):
    return subprocess.run([build / name, "--help"], text=True, check=True, stdout=subprocess.PIPE,
                          env=dict(os.environ, LC_ALL="C.UTF-8", COLUMNS="100")).stdout


def public_names():
    """What `from zelmo import *` gives."""
    for node in ast.parse((MODULE / "__init__.py").read_text()).body:
        if isinstance(node, ast.Assign) and node.targets[0].id == "__all__":
            return ast.literal_eval(node.value)
    raise ValueError("the module has no __all__")


def definitions():
    """The classes and functions of the module by their names."""
    found = {}
    for path in sorted(MODULE.glob("*.py")):
        for node in ast.parse(path.read_text()).body:
            if isinstance(node, (ast.ClassDef, ast.FunctionDef)):
                found.setdefault(node.name, node)
    return found


def signature(node):
    if any(getattr(mark, "id", "") == "property" for mark in node.decorator_list):
        result = f": {ast.unparse(node.returns)}" if node.returns else ""
        return node.name + result
    result = f" -> {ast.unparse(node.returns)}" if node.returns else ""
    return f"{node.name}({ast.unparse(node.args)}){result}"


def told(node):
    """Its signature and its text, both as they stand in the source."""
    text = ast.get_docstring(node)
    return ["```python", signature(node), "```", "", "```text", text, "```", ""] if text else \
        ["```python", signature(node), "```", ""]


def is_public(node):
    return isinstance(node, ast.FunctionDef) and \
        (not node.name.startswith("_") or node.name == "__init__")


def module_page():
    known = definitions()
    lines = ["# The module zelmo", "", "All names of the package with their own texts. "
             "[Zelmo in Python](../python.md) has examples.", ""]
    for name in public_names():
        node = known[name]
        lines += [f"## {name}", ""]
        if isinstance(node, ast.FunctionDef):
            lines += told(node)
            continue
        if ast.get_docstring(node):
            lines += ["```text", ast.get_docstring(node), "```", ""]
        for member in node.body:
            if is_public(member):
                lines += told(member)
            elif isinstance(member, ast.AnnAssign) and not member.target.id.startswith("_"):
                lines += ["```python", ast.unparse(member), "```", ""]
    return "\n".join(lines)


def write_pages(build, source):
    (source / "programs").mkdir(parents=True)
    for name in PROGRAMS:
        text = help_text(build, name)
        (source / f"programs/{name}.md").write_text(
            f"# {name}\n\nWhat `{name} --help` says.\n\n```text\n{text.rstrip()}\n```\n")
    (source / "programs/python-module.md").write_text(module_page())
