"""A shop that breaks the rules that the devices need kept, one by the name of each path. A reply is a list of pieces
that leave apart from each other, or a function that makes one from the request."""

import gzip
import re
import socket
import threading
import time
import urllib.parse

PAGE = b"<?xml version=\"1.0\"?>\n<goods>" + b"".join(b"<good id=\"%d\"/>" % i for i in range(300)) + b"</goods>\n"
LENGTH = b"Content-Length: %d\r\n" % len(PAGE)
OK = b"HTTP/1.1 200 OK\r\n"
HEAD = OK + LENGTH + b"\r\n"
CHUNKED = OK + b"Transfer-Encoding: chunked\r\n"
PAUSE = 0.03  # seconds between two pieces
GZIPPED = gzip.compress(PAGE)


def chunks(body, size=700):
    pieces = [body[i:i + size] for i in range(0, len(body), size)] + [b""]
    return [b"%x\r\n%s\r\n" % (len(piece), piece) for piece in pieces]


def refusal(headers, body=b"no", length=b"Content-Length"):
    return [b"HTTP/1.1 403 No\r\n" + headers + length + b": %d\r\n\r\n" % len(body) + body]


def redirection(location):
    return [b"HTTP/1.1 302 Found\r\nLocation: " + location + b"\r\nContent-Length: 0\r\n\r\n"]


def echo(request):
    """A page made of the request, with the header that its query names."""
    header = urllib.parse.unquote_to_bytes(request.split(b" ")[1].split(b"?")[1])
    return [OK + header + b"\r\nContent-Length: %d\r\n\r\n" % len(request) + request]


def drips(request):
    yield HEAD
    for i in range(len(PAGE)):
        yield PAGE[i:i + 1]


def stalls(request):
    """Sleeps longer than any client waits."""
    yield HEAD + PAGE[:2000]
    time.sleep(60)


def silence(request):
    time.sleep(60)
    yield b""


PAGES = {
    "good": [HEAD + PAGE],
    "health": [HEAD + PAGE],
    "head_apart": [HEAD, PAGE],
    "head_in_two": [HEAD[:30], HEAD[30:] + PAGE],
    "in_pieces": [OK + b"Vary: Cookie\r\n" + LENGTH + b"\r\n" + PAGE[:10],
                  *[PAGE[i:i + 700] for i in range(10, len(PAGE), 700)]],
    "chunked": [CHUNKED + b"\r\n", *chunks(PAGE)],
    "chunked_at_once": [CHUNKED + b"\r\n" + b"".join(chunks(PAGE))],
    "no_length": [OK + b"\r\n" + PAGE],
    "lower_case_names": [HEAD.lower().replace(b"http", b"HTTP").replace(b"ok", b"OK") + PAGE],
    "name_in_another_header": [OK + b"Access-Control-Expose-Headers: Content-Length\r\n" + LENGTH + b"\r\n" + PAGE],
    "compressed": [OK + b"Content-Encoding: gzip\r\nContent-Length: %d\r\n\r\n" % len(GZIPPED) + GZIPPED],
    "compressed_in_chunks": [CHUNKED + b"Content-Encoding: gzip\r\n\r\n", *chunks(GZIPPED, 100)],
    "long_head": [OK + b"X-Policy: " + b"p" * 1200 + b"\r\n" + LENGTH + b"\r\n" + PAGE],
    "head_of_8_kb": [OK + b"".join(b"X-Policy-%d: %s\r\n" % (i, b"p" * 400) for i in range(20)) + LENGTH + b"\r\n" +
                     PAGE],
    "many_headers": [OK + b"X-A: 1\r\n" * 50 + LENGTH + b"\r\n" + PAGE],
    "cookies": [OK + b"Set-Cookie: a=%s\r\nVary: *\r\n" % (b"c" * 900) + LENGTH + b"\r\n" + PAGE],
    "redirect": redirection(b"http://127.0.0.1/good?type=1&id=1"),
    "redirect_relative": redirection(b"good?a/b"),
    "a/b/redirect_upwards": redirection(b".././../good"),
    "redirect_by_host": redirection(b"//h/good"),
    "redirect_query": lambda request: [HEAD + PAGE] if b"?a=1 " in request else redirection(b"?a=1"),
    "redirect_to_itself": redirection(b"https://h/redirect_to_itself"),
    "redirect_elsewhere": redirection(b"ftp://h/good"),
    "of_20_mb": [OK + b"Content-Length: 20971520\r\n\r\n" + b"<a>" + b"x" * (20971520 - 7) + b"</a>"],
    "interim": [b"HTTP/1.1 103 Early Hints\r\nLink: </a>\r\n\r\n", HEAD + PAGE],
    "empty": [OK + b"Content-Length: 0\r\n\r\n"],
    "empty_in_chunks": [CHUNKED + b"\r\n0\r\n\r\n"],
    "empty_compressed": [OK + b"Content-Encoding: gzip\r\nContent-Length: 20\r\n\r\n" + gzip.compress(b"")],
    "other_coding": [OK + b"Content-Encoding: br\r\n" + LENGTH + b"\r\n" + PAGE],
    "cut": [HEAD + PAGE[:2000]],
    "not_http": [b"hello\r\n\r\n"],
    "no_words": [],
    "failed": [b"HTTP/1.1 500 Oops\r\nContent-Length: 4\r\n\r\noops"],
    "missing": [b"HTTP/1.1 404 None\r\nContent-Length: 4\r\n\r\nnone"],
    "echo": echo,
    "drips": drips,
    "stalls": stalls,
    "silent": silence,
}
VERDICTS = {
    "sold": [b"HTTP/1.1 200 OK\r\nContent-Length: 4\r\n\r\nsold"],
    "sold_apart": [OK, b"X-A: 1\r\n", b"content-length: 4\r\n\r\nsold"],
    "lower_case_names": refusal(b"x-error-code: 906\r\nx-error-message: clock\r\nx-server-timestamp: 2026\r\n",
                                length=b"content-length"),
    "overlong": refusal(b"X-Error-Message: %s\r\nX-Server-Timestamp: %s\r\nX-Error-Code: 906\r\n" %
                        (b"m" * 300, b"t" * 300)),
    "names_in_the_message": refusal(b"X-Error-Message: no X-Error-Code: 7\r\nX-Error-Code: 8\r\n"),
    "windows_1252": refusal(b"X-Error-Code: 17\r\nX-Error-Message: %s\r\n" % "Grüße, 5 €".encode("cp1252")),
    "html": refusal(b"Content-Type: text/html\r\n", b"<html>" + b"x" * 2000),
    "short_html": refusal(b"Content-Type: text/html\r\n", b"<html>closed today</html>"),
    "short_body": refusal(b"", b"closed today"),
    "redirect": [b"HTTP/1.1 302 Found\r\nLocation: /sold\r\nContent-Length: 0\r\n\r\n"],
    "no_words": [],
}


class AwkwardShop:
    """Serves until the with statement ends, with TLS when it is given a context, which can be slow to begin. requests
    holds what came, as bytes."""

    def __init__(self, context=None, seconds_to_begin=0):
        self.port, self.requests, self.context, self.seconds_to_begin = 0, [], context, seconds_to_begin
        self.start()

    def start(self):
        self.listener = socket.create_server(("127.0.0.1", self.port), backlog=50)
        self.port = self.listener.getsockname()[1]
        self.connections = []
        threading.Thread(target=self._accept, daemon=True).start()

    def stop(self):
        """Leaves every connection."""
        self.listener.shutdown(socket.SHUT_RDWR)
        self.listener.close()
        for connection in self.connections:
            try:
                connection.shutdown(socket.SHUT_RDWR)
            except OSError:
                pass  # it ended before

    def __enter__(self):
        return self

    def __exit__(self, *_):
        self.stop()

    def _accept(self):
        try:
            while True:
                connection, _ = self.listener.accept()
                self.connections.append(connection)
                threading.Thread(target=self._serve, args=(connection,), daemon=True).start()
        except OSError:
            pass  # stopped

    def _read_request(self, connection):
        request = b""
        while b"\r\n\r\n" not in request:
            if not (piece := connection.recv(65536)):
                return b""
            request += piece
        head, body = request.split(b"\r\n\r\n", 1)
        length = re.search(rb"(?i)\r\ncontent-length: *(\d+)", head)
        while length and len(body) < int(length[1]):
            body += connection.recv(65536)
        return head + b"\r\n\r\n" + body

    def _serve(self, connection):
        """Keeps the connection open, as every server of today, unless its end is the end of the reply."""
        try:
            if self.context:
                time.sleep(self.seconds_to_begin)
                connection = self.context.wrap_socket(connection, server_side=True)
            with connection:
                connection.setsockopt(socket.IPPROTO_TCP, socket.TCP_NODELAY, 1)
                while request := self._read_request(connection):
                    self.requests.append(request)
                    method, target = request.split(b" ", 2)[:2]
                    name = target.decode().lstrip("/").split("?")[0]
                    reply = (VERDICTS if method == b"POST" else PAGES)[name]
                    self._send(connection, reply(request) if callable(reply) else reply)
                    if name in ("no_length", "cut", "not_http", "no_words"):
                        break
        except OSError:
            pass  # the client left

    @staticmethod
    def _send(connection, pieces):
        for i, piece in enumerate(pieces):
            if i:
                time.sleep(PAUSE)
            connection.sendall(piece)
