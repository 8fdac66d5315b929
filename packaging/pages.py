"""Renders Markdown pages as HTML that needs no network."""

import pathlib
import posixpath
import re

from markdown_it import MarkdownIt
from mdit_py_plugins.anchors import anchors_plugin

MARKDOWN = MarkdownIt("commonmark").enable("table").use(anchors_plugin, max_level=6)
STYLE = """body{font:16px/1.5 sans-serif;max-width:52em;margin:2em auto;padding:0 1em;color:#222;background:#fff}
pre,code{font-family:monospace;background:#f4f4f4}pre{padding:.8em;white-space:pre-wrap;overflow-wrap:anywhere}
table{border-collapse:collapse}td,th{border:1px solid #ccc;padding:.3em .6em;text-align:left;vertical-align:top}
img{max-width:100%}"""


def with_version(text, version):
    return re.sub(r"\b(pavonix-|Pavonix )VERSION\b", r"\g<1>" + version, text)


def _point_into_the_kit(link, page, place, places):
    """Adapts a link to the kit; if its target is not in the kit, only its words stay."""
    target, _, anchor = link.attrs["href"].partition("#")
    if not target or re.match("[a-z]+:", target):
        return
    source = posixpath.normpath(posixpath.join(posixpath.dirname(page), target))
    if source in places:
        relative = posixpath.relpath(places[source], posixpath.dirname(place))
        link.attrs["href"] = f"{relative}#{anchor}" if anchor else relative
    else:
        del link.attrs["href"]


def render(source_tree, page, place, places, version):
    """Returns the HTML of `page`, a path in the source tree, and the pictures in it. place: where the page is in the
    kit; places: the same for the source path of everything that a link may lead to."""
    tokens = MARKDOWN.parse(with_version(pathlib.Path(source_tree, page).read_text(), version))
    inline = [child for token in tokens for child in token.children or []]
    for token in inline:
        if token.type == "link_open":
            _point_into_the_kit(token, page, place, places)
    name, title = f"Pavonix {version}", tokens[1].content  # the text of the first heading
    title = name if title == "Pavonix" else f"{title} - {name}"
    body = MARKDOWN.renderer.render(tokens, MARKDOWN.options, {})
    return (f'<!DOCTYPE html>\n<html lang="en"><head><meta charset="utf-8"><title>{title}</title>\n'
            f'<meta name="viewport" content="width=device-width"><style>{STYLE}</style></head>\n<body>\n'
            f'<p><a href="index.html">{name}</a></p>\n{body}</body></html>\n',
            [token.attrs["src"] for token in inline if token.type == "image"])
