"""Markdown pages as HTML that reads without a network."""

import html.parser
import pathlib
import posixpath
import re
import subprocess

STYLE = """body{font:16px/1.5 sans-serif;max-width:52em;margin:2em auto;padding:0 1em;color:#222;background:#fff}
pre,code{font-family:monospace;background:#f4f4f4}pre{padding:.8em;white-space:pre-wrap;overflow-wrap:anywhere}
table{border-collapse:collapse}td,th{border:1px solid #ccc;padding:.3em .6em;text-align:left;vertical-align:top}
img{max-width:100%}"""


class Links(html.parser.HTMLParser):
    """Collects what a page refers to."""

    def __init__(self, text):
        super().__init__()
        self.targets, self.anchors = [], set()
        self.feed(text)

    def handle_starttag(self, tag, attributes):
        values = dict(attributes)
        self.targets += [values[name] for name in ("href", "src") if name in values]
        self.anchors |= {values["id"]} if "id" in values else set()


def is_outside(target):
    return re.match(r"[a-z]+:", target) is not None


def _anchors_on_headings(body):
    def with_id(found):
        words = re.sub(r"<[^>]+>|[^\w\s-]", "", found[2]).strip().lower()
        return f'<h{found[1]} id="{re.sub(r"[ ]", "-", words)}">{found[2]}</h{found[1]}>'
    return re.sub(r"<h([1-6])>(.*?)</h\1>", with_id, body)


def _title(source_tree, page):
    return re.search(r"(?m)^# (.*)", pathlib.Path(source_tree, page).read_text())[1]


def _keep_link(source_tree, page, kit_name, pages):
    """A link inside the kit, adapted; the bare words of one that leads to what the kit lacks. A page that is linked
    by its file's name is called by its title."""
    def adapt(found):
        target, _, anchor = found[1].partition("#")
        if is_outside(found[1]) or not target:
            return found[0]
        source = posixpath.normpath(posixpath.join(posixpath.dirname(page), target))
        if source not in pages:
            return found[2].removesuffix(".md")
        words = _title(source_tree, source) if re.fullmatch(r"[\w/-]+\.md", found[2]) else found[2]
        relative = posixpath.relpath(pages[source], posixpath.dirname(kit_name) or ".")
        return f'<a href="{relative}{"#" + anchor if anchor else ""}">{words}</a>'
    return adapt


def with_version(text, version):
    return re.sub(r"\b(pavonix-|Pavonix )VERSION\b", r"\g<1>" + version, text)


def render(source_tree, page, kit_name, pages, version):
    """The HTML of `page`, a path in the source tree, as it is at kit_name. pages: source path to place in the
    kit, of everything that a link may lead to."""
    text = with_version(pathlib.Path(source_tree, page).read_text(), version)
    body = subprocess.run(["cmark-gfm", "--unsafe", "-e", "table"], input=text, text=True, check=True,
                          stdout=subprocess.PIPE).stdout
    body = re.sub(r'<a href="([^"]*)">(.*?)</a>', _keep_link(source_tree, page, kit_name, pages),
                  _anchors_on_headings(body), flags=re.DOTALL)
    name = f"Pavonix {version}"
    title = _title(source_tree, page)
    title = name if title == "Pavonix" else f"{title} - {name}"
    return (f'<!DOCTYPE html>\n<html lang="en"><head><meta charset="utf-8"><title>{title}</title>\n'
            f'<meta name="viewport" content="width=device-width"><style>{STYLE}</style></head>\n<body>\n'
            f'<p><a href="index.html">{name}</a></p>\n{body}</body></html>\n')
