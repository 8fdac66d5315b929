"""The till: checks who buys, and sells once, whatever happens meanwhile and on whichever server."""

import base64
import datetime
import time
import xml.etree.ElementTree as ElementTree
from functools import lru_cache

from cryptography.hazmat.primitives.serialization import load_pem_public_key

from request import LARGEST, Refusal, fields, number, read_form
from verify_token import NotGenuine, open_token, parse_time


def time_text(moment=None):
    t = moment or datetime.datetime.now()
    return f"{t.year}-{t.month}-{t.day} {t.hour}:{t.minute}:{t.second}.{t.microsecond // 1000:03}"


@lru_cache(100_000)
def key_numbers(pem):
    """Kept, for reading a key takes four times as long as opening a token with it."""
    numbers = load_pem_public_key(pem.encode()).public_numbers()
    return numbers.n, numbers.e


def check_token(token, pem, max_skew):
    """Answers the bytes that name the token, however its base64 is spelled."""
    try:
        made = parse_time(open_token(token, *key_numbers(pem)))
    except NotGenuine:
        raise Refusal(905) from None
    if abs((made - datetime.datetime.now().replace(microsecond=0)).total_seconds()) > max_skew:
        raise Refusal(906)
    return base64.b64decode(token)


def sell(database, environ, max_skew):
    """Answers the receipt. Token, balance and purchase are one transaction; a refusal uses the token up as well."""
    form = fields(read_form(environ), type=(1, LARGEST), id=(1, LARGEST), force=(-LARGEST - 1, LARGEST))
    headers = [environ.get("HTTP_" + name) for name in ("USER_SERIAL", "USER_ID", "USER_CERT")]
    if None in headers:
        raise Refusal(901, "needed are the headers User-Serial, User-ID and User-Cert")
    device = headers[0], number(headers[1], "User-ID", -LARGEST - 1, LARGEST)
    key = database.run(lambda query: query("SELECT public_key FROM device WHERE serial = ? AND user_id = ?",
                                           *device).fetchone())
    if not key:
        raise Refusal(904)
    ciphertext = check_token(headers[2], key[0], max_skew)

    def work(query):
        if query("INSERT INTO token (ciphertext, seen_at) VALUES (?, ?) ON CONFLICT DO NOTHING", ciphertext,
                 int(time.time())).rowcount == 0:
            raise Refusal(907)
        try:
            return book(query, device, form)
        except Refusal as refusal:
            return refusal

    receipt = database.run(work)
    if isinstance(receipt, Refusal):
        raise receipt
    return receipt


def book(query, device, form):
    """Writes nothing before it is sure of the sale."""
    good = form["type"], form["id"]
    # Holds the device's row until the commit: its purchases come one after the other.
    query("UPDATE device SET balance = balance WHERE serial = ? AND user_id = ?", *device)
    price = query("SELECT price FROM good WHERE type = ? AND id = ?", *good).fetchone()
    if not price:
        raise Refusal(903)
    owned = "SELECT 1 FROM purchase WHERE serial = ? AND user_id = ? AND type = ? AND id = ?"
    if form["force"] == 0 and query(owned, *device, *good).fetchone():
        raise Refusal(908)
    if query("UPDATE device SET balance = balance - ? WHERE serial = ? AND user_id = ? AND balance >= ?", price[0],
             *device, price[0]).rowcount == 0:
        raise Refusal(909)
    at = time_text()
    sold = query("INSERT INTO purchase (serial, user_id, type, id, price, bought_at) VALUES (?, ?, ?, ?, ?, ?) "
                 "RETURNING number", *device, *good, price[0], at).fetchone()[0]
    return ElementTree.Element("purchase", number=str(sold), type=str(good[0]), id=str(good[1]), price=str(price[0]),
                               at=at)
