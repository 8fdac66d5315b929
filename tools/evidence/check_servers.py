#!/usr/bin/env python3
"""Runs "pavonix doctor" against web servers of Debian, then against those with faults after one of the suggested fixes
was applied, and writes a table. Ends with 1 if a diagnosis is wrong or a fix does not help.

    tools/evidence/check_servers.py [--runs 10] [NAME...]

Servers that are not installed are named and left out: nginx-light lighttpd apache2-bin nodejs php-cli php-fpm gunicorn
python3-{flask,uvicorn,hypercorn,waitress,aiohttp,cheroot,tornado,twisted} varnish varnish-modules haproxy caddy h2o
mini-httpd webfs starman.
"""

import argparse
import contextlib
import getpass
import glob
import json
import os
import shutil
import subprocess
import sys
import tempfile

ROOT = os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "..")
sys.path.insert(0, os.path.join(ROOT, "tools", "demo"))
import engines
from engines import Engine, free_port

PROGRAMS = os.environ.get("PAVONIX_PROGRAMS", os.path.join(ROOT, "build", "linux"))
PAGE = "<goods>" + "<good>something to play with</good>" * 85 + "</goods>\n"
APART, CHUNKS, CASE = {"head-alone"}, {"chunked"}, {"length-case"}
FOLLOWS = {"file-not-whole"}  # from other errors, now and then

NGINX = """daemon off; pid {folder}/nginx{port}.pid; error_log {folder}/nginx.log; events {{}}
http {{ access_log off; {lines} client_body_temp_path {folder}/b; proxy_temp_path {folder}/p;
fastcgi_temp_path {folder}/f; uwsgi_temp_path {folder}/u; scgi_temp_path {folder}/s; types {{ text/xml xml; }}
server {{ listen 127.0.0.1:{port}; location / {{ {inside} }} }} }}"""
LIGHTTPD = """server.document-root = "{folder}"
server.bind = "127.0.0.1"
server.port = {port}
mimetype.assign = (".xml" => "text/xml")"""
APACHE = """LoadModule mpm_event_module {modules}/mod_mpm_event.so
LoadModule authz_core_module {modules}/mod_authz_core.so
LoadModule alias_module {modules}/mod_alias.so
LoadModule cgid_module {modules}/mod_cgid.so
LoadModule buffer_module {modules}/mod_buffer.so
LoadModule proxy_module {modules}/mod_proxy.so
LoadModule proxy_http_module {modules}/mod_proxy_http.so
ScriptSock {folder}/cgi.sock
ServerName localhost
Listen 127.0.0.1:{port}
PidFile {folder}/apache.pid
ErrorLog {folder}/apache.log
DocumentRoot {folder}
{lines}"""
NODE = """const fs = require('fs'), body = fs.readFileSync('{folder}/page.xml');
require('http').createServer((q, r) => {{ {reply} }}).listen({port}, '127.0.0.1');"""
APPLICATIONS = """import asyncio
body = open({folder!r} + "/page.xml", "rb").read()
headers = [("Content-Type", "text/xml"), ("Content-Length", str(len(body)))]
def wsgi(environ, start_response):
    start_response("200 OK", headers)
    return [body]
def wsgi_with(*more):
    return lambda environ, start_response: (start_response("200 OK", [*more, *headers]), [body])[1]
long_head = wsgi_with(("X-Long", "x" * 1000))
exposing = wsgi_with(("Access-Control-Expose-Headers", "Content-Length"))
async def asgi(scope, receive, send):
    if scope["type"] == "http":
        raw = [(name.lower().encode(), value.encode()) for name, value in headers]
        await send(dict(type="http.response.start", status=200, headers=raw))
        await send(dict(type="http.response.body", body=body))
def serve_aiohttp(port):
    from aiohttp import web
    app = web.Application()
    app.add_routes([web.get("/page.xml", lambda request: reply(web))])
    web.run_app(app, host="127.0.0.1", port=port)
async def reply(web):
    return web.Response(body=body, content_type="text/xml")
def serve_cheroot(port):
    from cheroot import wsgi as server
    server.Server(("127.0.0.1", port), wsgi).start()
def serve_tornado(port):
    from tornado import httpserver, ioloop, wsgi as tornado_wsgi
    httpserver.HTTPServer(tornado_wsgi.WSGIContainer(wsgi)).listen(port, "127.0.0.1")
    ioloop.IOLoop.current().start()
def serve_http_server(port):
    from http import server
    class Handler(server.SimpleHTTPRequestHandler):
        wbufsize = 2 ** 20
    server.ThreadingHTTPServer(("127.0.0.1", port), Handler).serve_forever()
def serve_flask(port):
    import flask
    app = flask.Flask(__name__)
    app.add_url_rule("/page.xml", "page", lambda: flask.Response(body, mimetype="text/xml"))
    app.run(port=port)
"""
HAPROXY = """global
    {global_lines}
defaults
    mode http
    timeout connect 5s
    timeout client 5s
    timeout server 5s
    {lines}
frontend devices
    bind 127.0.0.1:{port}
    default_backend shop
backend shop
    server shop 127.0.0.1:{behind}
"""
PHP_FPM = """[global]
error_log = {folder}/fpm.log
daemonize = no
[www]
listen = 127.0.0.1:{port}
user = {user}
pm = static
pm.max_children = 2
"""
H2O = """listen: {{host: 127.0.0.1, port: {port}}}
user: {user}
hosts: {{default: {{paths: {{/: {{file.dir: {folder}}}}}}}}}
"""
PYTHON = "/usr/bin/python3"  # the system's, which has Debian's modules


class Servers:
    """Starts servers in a folder of their own; ends them all with the context."""

    def __init__(self, folder):
        self.folder = folder
        self.ends = contextlib.ExitStack()
        self.write("page.xml", PAGE)
        self.write("applications.py", APPLICATIONS.format(folder=folder))

    def write(self, name, text, mode=0o644):
        path = os.path.join(self.folder, name)
        with open(path, "w") as file:
            file.write(text)
        os.chmod(path, mode)
        return path

    def start(self, port, *words):
        environment = {**os.environ, "HOME": self.folder, "PYTHONPATH": self.folder}
        name = f"{os.path.basename(words[0])}{port}"
        return self.ends.enter_context(Engine(self.folder, name, words, port, cwd=self.folder, env=environment)).port

    def configured(self, program, template, *options, **values):
        port = free_port()
        text = template.format(folder=self.folder, port=port, user=getpass.getuser(), **values)
        return self.start(port, program, *options, self.write(f"{os.path.basename(program)}{port}.conf", text))

    def nginx(self, lines="", inside=None):
        return self.configured("nginx", NGINX, "-e", "stderr", "-p", self.folder, "-c", lines=lines,
                               inside=inside or f"root {self.folder};")

    def nginx_before(self, behind, lines=""):
        return self.nginx(lines, f"proxy_pass http://127.0.0.1:{behind};")

    def front(self, behind):
        return self.ends.enter_context(engines.front(self.folder, behind)).port

    def apache(self, lines=""):
        return self.configured("apache2", APACHE, "-X", "-d", self.folder, "-f", lines=lines,
                               modules="/usr/lib/apache2/modules")

    def apache_cgi(self, lines=""):
        self.write("page.cgi", f"#!/bin/sh\necho Content-Type: text/xml; echo; cat {self.folder}/page.xml\n", 0o755)
        return self.apache(f"ScriptAlias /page.xml {self.folder}/page.cgi\n{lines}")

    def apache_before(self, behind, lines=""):
        return self.apache(f"ProxyPass / http://127.0.0.1:{behind}/\n{lines}")

    def node(self, reply):
        return self.configured("node", NODE, reply=reply)

    def php(self, lines):
        router = self.write("router.php", f"<?php header('Content-Type: text/xml'); "
                            f"$page = file_get_contents('{self.folder}/page.xml'); {lines} echo $page;")
        port = free_port()
        return self.start(port, "php", "-S", f"127.0.0.1:{port}", router)

    def php_fpm(self):
        self.php("header('Content-Length: ' . strlen($page));")
        fpm = self.configured(glob.glob("/usr/sbin/php-fpm*")[0], PHP_FPM, "-R", "-F", "-y")
        return self.nginx("", f"fastcgi_param SCRIPT_FILENAME {self.folder}/router.php; "
                          f"fastcgi_param REQUEST_METHOD GET; fastcgi_pass 127.0.0.1:{fpm};")

    def application(self, *words):
        port = free_port()
        return self.start(port, *(word.replace("{port}", str(port)) for word in words))

    def python(self, name):
        return self.application(PYTHON, "-c", f"import applications; applications.serve_{name}({{port}})")

    def http_server(self):
        return self.application(PYTHON, "-m", "http.server", "--bind", "127.0.0.1", "{port}")

    def gunicorn(self, name="wsgi"):
        return self.application("gunicorn", "-b", "127.0.0.1:{port}", "applications:" + name)

    def uvicorn(self):
        return self.application(PYTHON, "-m", "uvicorn", "--port", "{port}", "applications:asgi")

    def hypercorn(self):
        return self.application("hypercorn", "-b", "127.0.0.1:{port}", "applications:asgi")

    def waitress(self):
        return self.application("waitress-serve", "--listen=127.0.0.1:{port}", "applications:wsgi")

    def haproxy(self, behind, global_lines="", lines=""):
        return self.configured("haproxy", HAPROXY, "-f", behind=behind, global_lines=global_lines, lines=lines)

    def shop(self):
        return self.application(os.path.join(PROGRAMS, "pavonix-shop"), "--port", "{port}", "--db", self.folder + "/shop.db")


LENGTH = "r.setHeader('Content-Length', body.length);"
ADJUST = "h1-case-adjust content-length Content-Length"
SUB = ("sub_filter_types text/xml; sub_filter_once on;", "root {0}; sub_filter nothing something;")
S = Servers


def before(front, server):
    return lambda s: front(s, server(s))


# name, program that must be there, how to start it, the errors; for a server with errors a suggested fix and how to
# start it then
TABLE = [
    ("pavonix-shop", None, S.shop, set()),
    ("nginx, files", "nginx", S.nginx, set()),
    ("nginx, files, sendfile on", "nginx", lambda s: s.nginx("sendfile on;"), APART,
     "tcp_nopush on", lambda s: s.nginx("sendfile on; tcp_nopush on;")),
    ("nginx, sub_filter", "nginx", lambda s: s.nginx(SUB[0], SUB[1].format(s.folder)), CHUNKS,
     "sub_filter off", S.nginx),
    ("nginx before gunicorn, proxy_buffering off", "gunicorn",
     lambda s: s.nginx_before(s.gunicorn(), "proxy_buffering off;"), APART,
     "proxy_buffering on", before(S.nginx_before, S.gunicorn)),
    ("nginx before gunicorn, a header of 1000 bytes", "gunicorn", lambda s: s.nginx_before(s.gunicorn("long_head")),
     {"head-too-long"}, "proxy_hide_header",
     lambda s: s.nginx_before(s.gunicorn("long_head"), "proxy_hide_header X-Long;")),
    ("gunicorn, another header names the length", "gunicorn", lambda s: s.gunicorn("exposing"),
     APART | {"length-hidden"}, "nginx before it", lambda s: s.nginx_before(s.gunicorn("exposing"))),
    ("nginx, return 301", "nginx", lambda s: s.nginx("", "return 301 https://$host$request_uri;"), {"redirect"},
     "no return 301", S.nginx),
    ("lighttpd, files", "lighttpd", lambda s: s.configured("lighttpd", LIGHTTPD, "-D", "-f"), set()),
    ("Apache, files", "apache2", S.apache, set()),
    ("Apache, CGI", "apache2", S.apache_cgi, CHUNKS | APART, "SetOutputFilter BUFFER",
     lambda s: s.apache_cgi("SetOutputFilter BUFFER")),
    ("Apache before waitress, now and then", "waitress-serve", before(S.apache_before, S.waitress), APART, "nginx in its place",
     before(S.nginx_before, S.waitress)),
    ("Node, end(body)", "node", lambda s: s.node(LENGTH + "r.end(body);"), set()),
    ("Node, write, end, with a length", "node", lambda s: s.node(LENGTH + "r.write(body); r.end();"), set()),
    ("Node, a stream piped, with a length", "node",
     lambda s: s.node(LENGTH + f"fs.createReadStream('{s.folder}/page.xml').pipe(r);"), set()),
    ("Node, write, end, without a length", "node", lambda s: s.node("r.write(body); r.end();"), CHUNKS,
     "one end(body)", lambda s: s.node("r.end(body);")),
    ("PHP's own server, echo", "php", lambda s: s.php(""), APART | {"length-missing"},
     "PHP-FPM behind nginx, a length", S.php_fpm),
    ("PHP's own server, with a length", "php", lambda s: s.php("header('Content-Length: ' . strlen($page));"), APART,
     "PHP-FPM behind nginx", S.php_fpm),
    ("gunicorn", "gunicorn", S.gunicorn, APART, "nginx before it", before(S.nginx_before, S.gunicorn)),
    ("Flask's own server", "flask", lambda s: s.python("flask"), APART, "nginx before it",
     before(S.nginx_before, lambda s: s.python("flask"))),
    ("Python's http.server", None, S.http_server, APART, "wbufsize = 2 ** 20", lambda s: s.python("http_server")),
    ("uvicorn", None, S.uvicorn, APART | CASE, "nginx before it", before(S.nginx_before, S.uvicorn)),
    ("hypercorn", "hypercorn", S.hypercorn, CASE | APART, "the front", before(S.front, S.hypercorn)),
    ("waitress", "waitress-serve", S.waitress, APART, "nginx before it", before(S.nginx_before, S.waitress)),
    ("aiohttp", None, lambda s: s.python("aiohttp"), APART, "nginx before it",
     before(S.nginx_before, lambda s: s.python("aiohttp"))),
    ("cheroot", None, lambda s: s.python("cheroot"), APART, "nginx before it",
     before(S.nginx_before, lambda s: s.python("cheroot"))),
    ("tornado", None, lambda s: s.python("tornado"), set()),
    ("twisted, files", "twistd3",
     lambda s: s.application("twistd3", "-n", "--pidfile=", "web", "--listen=tcp:{port}:interface=127.0.0.1",
                             "--path=" + s.folder), set()),
    ("starman", "starman",
     lambda s: s.application("starman", "--listen", "127.0.0.1:{port}", "--workers", "1", "-e",
                             f"sub {{ open my $f, '<', '{s.folder}/page.xml'; local $/; my $b = <$f>; "
                             "[200, ['Content-Type', 'text/xml', 'Content-Length', length $b], [$b]] }"), APART,
     "the front", None),
    ("h2o, files", "h2o", lambda s: s.configured("h2o", H2O, "-c"), set()),
    ("mini_httpd, files", "mini_httpd",
     lambda s: s.application("mini_httpd", "-D", "-h", "127.0.0.1", "-p", "{port}", "-d", s.folder), set()),
    ("webfs, files", "webfsd",
     lambda s: s.application("webfsd", "-F", "-i", "127.0.0.1", "-p", "{port}", "-r", s.folder), set()),
    ("Caddy, files", "caddy",
     lambda s: s.application("caddy", "file-server", "--listen", "127.0.0.1:{port}", "--root", s.folder), APART,
     "the front", None),
    ("HAProxy before nginx", "haproxy", before(S.haproxy, S.nginx), CASE, "h1-case-adjust",
     lambda s: s.haproxy(s.nginx(), ADJUST, "option h1-case-adjust-bogus-client")),
    ("the front before http.server", "varnishd", before(S.front, S.http_server), set()),
]


def examine(port, path):
    done = subprocess.run([os.path.join(PROGRAMS, "pavonix"), "doctor", f"http://127.0.0.1{path}", "--port", str(port),
                           "--json"], capture_output=True, text=True, timeout=120)
    findings = [finding for point in json.loads(done.stdout)["points"] for finding in point["findings"]]
    return {finding["rule"] for finding in findings if finding["severity"] == "error"} - FOLLOWS, findings


def diagnose(start, expected, runs, path="/page.xml"):
    """How many runs found just the expected errors; the findings with their numbers; the last fixes of each."""
    right, said, fixes = 0, {}, []
    with tempfile.TemporaryDirectory() as folder:
        os.chmod(folder, 0o755)
        servers = Servers(folder)
        with servers.ends:
            port = start(servers)
            for _ in range(runs):
                errors, findings = examine(port, path)
                right += errors == expected
                for finding in findings:
                    said[finding["rule"]] = said.get(finding["rule"], 0) + 1
                    fixes = fixes + [fix for fix in finding["fixes"] if fix not in fixes]
    words = ", ".join(rule + (f" ({times})" if times < runs else "") for rule, times in said.items())
    return right, words or "no fault found", fixes


def row(name, start, expected, runs, fix=None, fixed=None):
    right, words, fixes = diagnose(start, expected, runs, "/shop/list" if name == "pavonix-shop" else "/page.xml")
    cells = [name, f"{right} of {runs}", words]
    all_right = right == runs
    if fix:
        right, words, _ = diagnose(fixed or before(S.front, start), set(), runs)
        all_right = all_right and right == runs
        cells += [fix, words + f", {right} of {runs}"]
    return "| " + " | ".join(cells + [""] * (5 - len(cells))) + " |", all_right, fixes


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--runs", type=int, default=10)
    parser.add_argument("--fixes", action="store_true", help="also print all fixes that were suggested")
    parser.add_argument("names", nargs="*", help="only servers whose name contains one of these")
    options = parser.parse_args()
    print("| server | right | doctor | fix | doctor then |\n|---|---|---|---|---|", flush=True)
    missing, all_right = [], True
    for name, program, start, expected, *fix in TABLE:
        if options.names and not any(word in name for word in options.names):
            continue
        if program and shutil.which(program) is None:
            missing.append(f"{name} ({program})")
            continue
        try:
            line, right, fixes = row(name, start, expected, options.runs, *fix)
        except RuntimeError as failure:
            line, right, fixes = f"{name}: {failure}", False, []
        print(line, *(["  " + fix for fix in fixes] if options.fixes else []), sep="\n", flush=True)
        all_right = all_right and right
    if missing:
        print("not installed, left out: " + ", ".join(missing), file=sys.stderr)
    return 0 if all_right else 1


if __name__ == "__main__":
    sys.exit(main())
