"""What the shop understands of a request, and the reasons for which it refuses one."""

import re
from urllib.parse import parse_qsl

LARGEST = 2**31 - 1

# By error code: the HTTP status and the message.
REFUSALS = {
    900: (404, "There is nothing at this path"),
    901: (400, "A parameter is missing or wrong"),
    902: (404, "There is no such type or category"),
    903: (404, "There is no such good"),
    904: (403, "This device is not registered"),
    905: (403, "The token was not made of a time with the key of this device"),
    906: (403, "The clock of the device is off"),
    907: (403, "The token was used before"),
    908: (409, "This good is already owned, force buys it again"),
    909: (402, "The balance does not cover the price"),
    910: (405, "This path is asked with another method"),
    911: (411, "The Content-Length is missing"),
    912: (413, "The request is too large"),
    913: (415, "The body is not application/x-www-form-urlencoded"),
    999: (500, "The shop failed, its log says why"),
}


class Refusal(Exception):
    def __init__(self, code, detail=""):
        self.status, text = REFUSALS[code]
        self.code, self.message = code, text + (detail and f": {detail}")
        super().__init__(self.message)


def number(text, name, low, high):
    if not re.fullmatch("-?[0-9]{1,10}", text) or not low <= int(text) <= high:
        raise Refusal(901, f"{name} is a number from {low} to {high}")
    return int(text)


def fields(text, **limits):
    """The numbers of a query or form that has exactly the named fields, each once and within (low, high)."""
    pairs = parse_qsl(text, keep_blank_values=True)
    if sorted(name for name, _ in pairs) != sorted(limits):
        raise Refusal(901, "needed once each are " + ", ".join(limits))
    return {name: number(value, name, *limits[name]) for name, value in pairs}


def read_form(environ):
    if not environ.get("CONTENT_LENGTH", "").isdecimal():
        raise Refusal(911)
    if environ.get("CONTENT_TYPE", "").split(";")[0].strip().lower() != "application/x-www-form-urlencoded":
        raise Refusal(913)
    if int(environ["CONTENT_LENGTH"]) > 16384:
        raise Refusal(912)
    return environ["wsgi.input"].read(int(environ["CONTENT_LENGTH"])).decode("latin-1")
