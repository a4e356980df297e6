"""The site of the documentation; scripts/docs builds it and hands over what is not constant."""

from pygments.lexers.basic import VBScriptLexer

project = "Vorquill21"
author = "the developers of Vorquill21"
project_copyright = author

extensions = ["breathe", "myst_parser"]
source_suffix = {".md": "markdown"}
myst_enable_extensions = ["colon_fence"]
myst_heading_anchors = 3  # links to headings are those of the pages read on their own

breathe_projects = {project: "../../build/docs/xml"}
breathe_default_project = project
breathe_show_enumvalue_initializer = True
breathe_show_include = False
breathe_default_members = ("members", "undoc-members")
smartquotes = False  # quoted texts are word for word
highlight_language = "text"

html_theme = "furo"
html_title = project
html_static_path = ["static"]
html_css_files = ["outputs.css"]
html_copy_source = False
html_show_sphinx = False
html_theme_options = {"navigation_with_keys": True}

# Pages of the repository's root that the site has, too.
FROM_ROOT = {"(../CONTRIBUTING.md": "(site/contributing.md", "(../CHANGELOG.md": "(site/changelog.md"}


def redirect_to_site(_app, _page, source) -> None:
    for link, page in FROM_ROOT.items():
        source[0] = source[0].replace(link, page)


def setup(app) -> None:
    app.add_lexer("vb", VBScriptLexer)
    app.connect("source-read", redirect_to_site)
