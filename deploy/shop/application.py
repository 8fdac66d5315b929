"""A shop to begin from, for any WSGI server; gunicorn.conf.py beside it runs it.

PAVONIX_DATABASE is the file of SQLite (shop.db) or the URL of PostgreSQL, PAVONIX_MAX_SKEW the seconds by which a
device's clock may be off (300). TZ is the time zone of the devices.
"""

import logging
import os
import xml.etree.ElementTree as ElementTree
from http import HTTPStatus

from catalogue import good_list, one_good
from database import Database
from request import Refusal
from till import sell, time_text

database = Database(os.environ.get("PAVONIX_DATABASE", "shop.db"))
max_skew = int(os.environ.get("PAVONIX_MAX_SKEW", "300"))


def page(make):
    return lambda environ: database.run(lambda query: make(query, environ.get("QUERY_STRING", "")))


# Whoever balances the load asks for the health: a server without its database is no use.
ROUTES = {
    "/shop/list": ("GET", page(good_list)),
    "/shop/good": ("GET", page(one_good)),
    "/shop/buy": ("POST", lambda environ: sell(database, environ, max_skew)),
    "/health": ("GET", page(lambda query, _: ElementTree.Element("healthy", goods=str(
        query("SELECT count(*) FROM type").fetchone()[0])))),
}


def answer(environ):
    method, handler = ROUTES.get(environ["PATH_INFO"], (None, None))
    if handler is None:
        raise Refusal(900)
    if environ["REQUEST_METHOD"] != method:
        raise Refusal(910, f"it is {method}")
    return handler(environ)


def application(environ, start_response):
    status, headers = 200, []
    try:
        root = answer(environ)
    except Exception as failure:  # whatever it is, the device gets its code
        if not isinstance(failure, Refusal):
            logging.exception("%s failed", environ["PATH_INFO"])
        refusal = failure if isinstance(failure, Refusal) else Refusal(999)
        status, message = refusal.status, refusal.message[:254]
        headers = [("X-Error-Code", str(refusal.code)), ("X-Error-Message", message)]
        if refusal.code == 906:
            headers.append(("X-Server-Timestamp", time_text()))
        root = ElementTree.Element("error", code=str(refusal.code))
        root.text = message
    ElementTree.indent(root)
    body = ElementTree.tostring(root, encoding="UTF-8", xml_declaration=True) + b"\n"
    start_response(f"{status} {HTTPStatus(status).phrase}",
                   [("Content-Type", "text/xml; charset=utf-8"), ("Content-Length", str(len(body))), *headers])
    return [body]
