#!/usr/bin/env python3
"""Draws exchange.svg: a download and a purchase, message by message.

Usage: draw_exchange.py > exchange.svg
"""
from xml.sax.saxutils import escape

WIDTH, DEVICE, SERVER = 1180, 330, 870
ROW = 30

# (kind, text): ">" device to server, "<" back, "d" and "s" a step of device or server alone, "=" a heading
STEPS = [
    ("=", "A download: GetGoodListXml, GetOneGoodXml"),
    ("d", "force is 0 and the file exists: 1"),
    ("d", "reads the profile, imports its keys"),
    (">", "connect"),
    (">", "GET /shop/list?type=1&... with User-Serial, User-ID"),
    ("<", "head and first body bytes, in one segment of at least 1024 bytes or all of it"),
    ("d", "one receive: status, Content-Length"),
    ("d", "a status other than 200: returns it"),
    ("d", "makes the last folder, deletes an old file"),
    ("<", "the rest of the body, Content-Length bytes in all"),
    ("d", "writes the received bytes; returns 200"),
    ("=", "A purchase: GetBuyGood"),
    ("d", "reads the profile, imports its keys"),
    ("d", "token: the local time, OAEP, private key, base64"),
    (">", "connect"),
    (">", "POST /shop/buy with User-Serial, User-ID, User-Cert, and type=1&id=7&force=0"),
    ("s", "opens the token with the public key, checks"),
    ("s", "its time, refuses it if it was seen; sells"),
    ("<", "200, or another status with X-Error-Code, X-Error-Message (906: X-Server-Timestamp)"),
    ("d", "fills the record unless 200; returns the status"),
]


def text(x, y, words, anchor="middle", extra=""):
    return f'<text x="{x}" y="{y}" text-anchor="{anchor}" {extra}>{escape(words)}</text>'


def arrow(y, rightward, words):
    start, end = (DEVICE, SERVER) if rightward else (SERVER, DEVICE)
    return (text((DEVICE + SERVER) / 2, y - 5, words, extra='class="message"') +
            f'<line x1="{start}" y1="{y}" x2="{end}" y2="{y}" marker-end="url(#head)"/>')


def step(y, kind, words):
    if kind == "=":
        return text(20, y, words, "start", 'class="heading"')
    if kind in "<>":
        return arrow(y, kind == ">", words)
    if kind == "d":
        return text(DEVICE - 10, y, words, "end")
    return text(SERVER + 10, y, words, "start")


def lifelines(top, bottom):
    names = text(DEVICE, top - 10, "device") + text(SERVER, top - 10, "server")
    lines = "".join(f'<line class="life" x1="{x}" y1="{top}" x2="{x}" y2="{bottom}"/>' for x in (DEVICE, SERVER))
    return names + lines


def picture():
    body, y, top = [], 0, None
    for kind, words in STEPS:
        if kind == "=":
            if top:
                body.append(lifelines(top, y))
            y += 1.5 * ROW
            body.append(step(y, kind, words))
            y += 1.5 * ROW
            top = y - ROW / 3
        else:
            y += ROW * (1 if kind in "<>" else 0.7)
            body.append(step(y, kind, words))
    body.append(lifelines(top, y + ROW / 2))
    return (f'<svg xmlns="http://www.w3.org/2000/svg" viewBox="0 0 {WIDTH} {y + ROW}" '
            'font-family="sans-serif" font-size="13">\n'
            "<style>line{stroke:#333;stroke-width:1.3}.life{stroke:#999;stroke-dasharray:4 4}"
            "text{fill:#222}.heading{font-weight:bold;font-size:16px}.message{font-size:11.5px}</style>\n"
            '<defs><marker id="head" markerWidth="9" markerHeight="8" refX="8" refY="4" orient="auto">'
            '<path d="M0,0 L9,4 L0,8 z" fill="#333"/></marker></defs>\n'
            f'<rect width="{WIDTH}" height="{y + ROW}" fill="#fff"/>\n' + "\n".join(body) + "\n</svg>\n")


print(picture(), end="")
