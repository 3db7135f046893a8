"""The page of a study's results: its plots, its pictures and its rows, for a browser."""
import html
import os
import urllib.parse

from .errors import ExitStatus, StudyError
from .parameters import text_of
from .results import ROWS, write_file
from .study_file import kept_name

PAGE = "index.html"
MOST_ROWS = 200
MOST_FILES = 120
STYLE = """\
body { font: 15px/1.45 system-ui, sans-serif; color: #1f2933; max-width: 1180px; margin: 2em auto; padding: 0 1em }
h1 { font-size: 1.6em } h2 { font-size: 1.15em; margin-top: 2em }
img { max-width: 100% } figure { margin: 0 } figcaption { color: #52606d; font-size: 0.85em }
.files { display: grid; grid-template-columns: repeat(auto-fill, minmax(260px, 1fr)); gap: 14px }
.files img { border: 1px solid #e4e7eb; border-radius: 4px; width: 100% }
.table { overflow: auto; max-height: 32em; border: 1px solid #e4e7eb; border-radius: 4px }
table { border-collapse: collapse; font-size: 0.85em; width: 100% }
th, td { padding: 3px 10px; text-align: right; white-space: nowrap; border-bottom: 1px solid #e4e7eb }
th { position: sticky; top: 0; background: #f5f7fa } td.error { text-align: left; color: #ba2525 }
"""


def write_page(study, result):
    """Writes the plots and the page into the folder of results; the page's path. Raises StudyError."""
    from .plots import make_plots
    path = os.path.join(study.output, PAGE)
    try:
        frame = result.frame
        names = []
        for number, (title, data) in enumerate(make_plots(study, frame), 1):
            name = f"plot {number}.png"
            write_file(os.path.join(study.output, name), data)
            names.append((title, name))
        write_file(path, _page(study, result, frame, names).encode("utf-8", "replace"))
    except OSError as error:
        raise StudyError(f"{error.filename or path}: {error.strerror}: the rows are written; make room, and the "
                         "same command makes the page", ExitStatus.PICTURE) from None
    return path


def _page(study, result, frame, plots):
    parts = ["<!DOCTYPE html><html lang=\"en\"><meta charset=\"utf-8\">",
             f"<title>{html.escape(study.title)}</title><style>{STYLE}</style>",
             f"<h1>{html.escape(study.title)}</h1>"]
    parts += [f"<p>{html.escape(each)}</p>" for each in study.text.split("\n\n") if each.strip()]
    failed = f", {result.failed} of them failed" if result.failed else ""
    parts.append(f"<p>{result.variants} variants{failed}: <a href=\"{ROWS}\">{ROWS}</a></p>")
    for title, name in plots:
        parts.append(f"<h2>{html.escape(title)}</h2><img src=\"{_link(name)}\" alt=\"{html.escape(title)}\">")
    parts += _files(study)
    parts += _rows(study, frame)
    return "\n".join(parts) + "\n"


def _link(name):
    return html.escape(urllib.parse.quote(name))


def _files(study):
    """The pictures and sections that the study keeps, with the values of their variants."""
    shown, others = [], []
    for kept in study.kept:
        for number in sorted(kept.variants):
            name = kept_name(kept, study, number)
            if os.path.exists(os.path.join(study.output, name)):
                (others if kept.kind == "csv" else shown).append((number, name))
    if shown:
        yield "<h2>Pictures</h2><div class=\"files\">"
        for number, name in shown[:MOST_FILES]:
            values = ", ".join(f"{key} {text_of(value)}" for key, value in study.variants[number - 1].items())
            yield (f"<figure><a href=\"{_link(name)}\"><img loading=\"lazy\" src=\"{_link(name)}\" alt=\"\"></a>"
                   f"<figcaption>{number}: {html.escape(values)}</figcaption></figure>")
        yield "</div>"
    if len(shown) > MOST_FILES:
        yield f"<p>{len(shown) - MOST_FILES} more are in the folder.</p>"
    if others:
        links = ", ".join(f"<a href=\"{_link(name)}\">{html.escape(name)}</a>" for _, name in others[:MOST_FILES])
        yield f"<p>Sections as numbers: {links}</p>"


def _rows(study, frame):
    """The first rows as a table; all of them are in the file."""
    titles = ["variant", *[each.title for each in study.parameters.values()],
              *[each.title for each in study.measures], "error"]
    yield "<h2>Rows</h2><div class=\"table\"><table><tr>"
    yield "".join(f"<th>{html.escape(each)}</th>" for each in titles) + "</tr>"
    for row in frame.head(MOST_ROWS).itertuples(name=None):
        cells = "".join(f"<td>{html.escape(_cell(value))}</td>" for value in row[:-1])
        yield f"<tr>{cells}<td class=\"error\">{html.escape(str(row[-1]))}</td></tr>"
    yield "</table></div>"
    if len(frame) > MOST_ROWS:
        yield f"<p>The first {MOST_ROWS} of {len(frame)} rows.</p>"


def _cell(value):
    if isinstance(value, float):
        return "" if value != value else f"{value:.6g}"
    return str(value)
