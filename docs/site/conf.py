# Settings of Sphinx, which reads them in the folder that stage.py lays out.
import os

from pygments.lexer import RegexLexer
from pygments.token import Comment, Keyword, Name, Number, Text

project = "Zelmo"
version = release = os.environ["ZELMO_VERSION"]
extensions = ["myst_parser"]
myst_heading_anchors = 4
html_theme = "alabaster"
html_theme_options = {
    "font_family": "sans-serif", "head_font_family": "sans-serif", "page_width": "1180px",
    "sidebar_width": "270px", "show_powered_by": False,
    "show_relbars": True,
}
html_sidebars = {"**": ["searchbox.html", "navigation.html"]}
html_static_path = ["guide.css"]
html_css_files = ["guide.css"]
html_title = f"Zelmo {version}"
html_copy_source = False
html_show_sphinx = False
html_show_copyright = False
# A page read from the disk may not load other pages to show pieces of them.
html_show_search_summary = False
nitpicky = True
smartquotes = False


class ProcessFileLexer(RegexLexer):
    name = "Zelmo process file"
    aliases = ["zelmo"]
    tokens = {"root": [
        (r"^#.*$", Comment),
        (r"^\w+", Keyword),
        (r" -[A-Za-z]\w*", Name.Attribute),
        (r"-?\d[\w.]*", Number),
        (r"[^\s]+", Text),
        (r"\s", Text),
    ]}


def setup(app):
    app.add_lexer("zelmo", ProcessFileLexer)
