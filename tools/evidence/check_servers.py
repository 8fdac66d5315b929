#!/usr/bin/env python3
"""Runs "pavonix doctor" against web servers as Debian has them and writes a table: was each judged right, each time?

    python3 tools/evidence/check_servers.py [--runs 20] [NAME...]

Servers that are not installed are named and left out: nginx-light lighttpd apache2-bin nodejs php-cli gunicorn
python3-flask varnish gcc.
"""

import argparse
import contextlib
import json
import os
import shutil
import socket
import subprocess
import sys
import tempfile
import time

PROGRAMS = os.environ.get("PAVONIX_PROGRAMS",
                          os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "..", "build", "linux"))
PAGE = "<goods>" + "<good>something to play with</good>" * 85 + "</goods>\n"
APART = {"head-alone"}

NGINX = """daemon off; pid {folder}/nginx.pid; error_log {folder}/nginx.log; events {{}}
http {{ access_log off; {lines} client_body_temp_path {folder}/b; proxy_temp_path {folder}/p;
fastcgi_temp_path {folder}/f; uwsgi_temp_path {folder}/u; scgi_temp_path {folder}/s;
server {{ listen 127.0.0.1:{port}; location / {{ {inside} }} }} }}"""
LIGHTTPD = """server.document-root = "{folder}"
server.bind = "127.0.0.1"
server.port = {port}
mimetype.assign = (".xml" => "text/xml")"""
APACHE = """LoadModule mpm_event_module /usr/lib/apache2/modules/mod_mpm_event.so
LoadModule authz_core_module /usr/lib/apache2/modules/mod_authz_core.so
ServerName localhost
Listen 127.0.0.1:{port}
PidFile {folder}/apache.pid
ErrorLog {folder}/apache.log
DocumentRoot {folder}"""
NODE = """const fs = require('fs'), body = fs.readFileSync('{folder}/page.xml');
require('http').createServer((q, r) => {{ {answer} }}).listen({port}, '127.0.0.1');"""
FLASK = """import flask
app = flask.Flask(__name__)
@app.route("/page.xml")
def page():
    return flask.Response(open({folder!r} + "/page.xml").read(), mimetype="text/xml")
"""
VARNISH = """vcl 4.1;
backend shop {{ .host = "127.0.0.1"; .port = "{behind}"; }}
sub vcl_backend_response {{ set beresp.do_stream = false; }}
sub vcl_deliver {{ unset resp.http.Via; }}"""


def free_port():
    with socket.create_server(("127.0.0.1", 0)) as listener:
        return listener.getsockname()[1]


class Servers:
    """Starts servers in a folder of their own; ends them all with the context."""

    def __init__(self, folder):
        self.folder = folder
        self.ends = contextlib.ExitStack()
        self.write("page.xml", PAGE)
        self.write("flask_page.py", FLASK.format(folder=folder))

    def write(self, name, text):
        path = os.path.join(self.folder, name)
        with open(path, "w") as file:
            file.write(text)
        return path

    def start(self, port, *words, cwd=None):
        with open(os.path.join(self.folder, "output.log"), "a") as log:
            process = subprocess.Popen(words, stdout=log, stderr=log, cwd=cwd or self.folder)
        self.ends.callback(process.wait)
        self.ends.callback(process.terminate)
        for _ in range(300):
            with contextlib.suppress(OSError):
                socket.create_connection(("127.0.0.1", port)).close()
                return port
            time.sleep(0.05)
        raise RuntimeError(f"{words[0]} did not start, see {log.name}")

    def nginx(self, lines="", inside=None):
        port = free_port()
        text = NGINX.format(folder=self.folder, lines=lines, port=port, inside=inside or f"root {self.folder};")
        return self.start(port, "nginx", "-e", "stderr", "-p", self.folder, "-c", self.write("nginx.conf", text))

    def nginx_before(self, behind, lines=""):
        return self.nginx(lines, f"proxy_pass http://127.0.0.1:{behind};")

    def lighttpd(self):
        port = free_port()
        return self.start(port, "lighttpd", "-D", "-f",
                          self.write("lighttpd.conf", LIGHTTPD.format(folder=self.folder, port=port)))

    def apache(self):
        port = free_port()
        return self.start(port, "apache2", "-X", "-d", self.folder, "-f",
                          self.write("apache.conf", APACHE.format(folder=self.folder, port=port)))

    def node(self, answer):
        port = free_port()
        return self.start(port, "node", self.write("serve.js", NODE.format(folder=self.folder, port=port, answer=answer)))

    def php(self, lines):
        port = free_port()
        router = self.write("router.php", f"<?php header('Content-Type: text/xml'); {lines} echo $page;")
        return self.start(port, "php", "-S", f"127.0.0.1:{port}", router)

    def gunicorn(self):
        port = free_port()
        return self.start(port, "gunicorn", "-b", f"127.0.0.1:{port}", "flask_page:app")

    def flask(self):
        port = free_port()
        return self.start(port, "flask", "--app", "flask_page", "run", "--port", str(port))

    def python(self):
        port = free_port()
        return self.start(port, sys.executable, "-m", "http.server", "--bind", "127.0.0.1", str(port))

    def varnish(self):
        port = free_port()
        vcl = self.write("front.vcl", VARNISH.format(behind=self.python()))
        return self.start(port, "varnishd", "-F", "-a", f"127.0.0.1:{port}", "-f", vcl, "-n", f"{self.folder}/varnish",
                          "-s", "malloc,1m")

    def shop(self):
        port = free_port()
        return self.start(port, os.path.join(PROGRAMS, "pavonix-shop"), "--port", str(port), "--db",
                          f"{self.folder}/shop.db")


READ_PAGE = "$page = file_get_contents('page.xml');"
LENGTH = "r.setHeader('Content-Length', body.length);"
# name, program that must be there, how to start it, the rules that it breaks
TABLE = [
    ("pavonix-shop", None, Servers.shop, set()),
    ("nginx, files, as it comes (sendfile off)", "nginx", Servers.nginx, set()),
    ("nginx, files, sendfile on, tcp_nopush on", "nginx", lambda s: s.nginx("sendfile on; tcp_nopush on;"), set()),
    ("nginx, files, sendfile on", "nginx", lambda s: s.nginx("sendfile on;"), APART),
    ("nginx before gunicorn, as it comes", "gunicorn", lambda s: s.nginx_before(s.gunicorn()), set()),
    ("nginx before gunicorn, proxy_buffering off", "gunicorn",
     lambda s: s.nginx_before(s.gunicorn(), "proxy_buffering off;"), APART),
    ("lighttpd, files", "lighttpd", Servers.lighttpd, set()),
    ("Apache, files", "apache2", Servers.apache, set()),
    ("Node, end(body)", "node", lambda s: s.node("r.end(body);"), set()),
    ("Node, end(body) with a length", "node", lambda s: s.node(LENGTH + "r.end(body);"), set()),
    ("Node, write, end, with a length", "node", lambda s: s.node(LENGTH + "r.write(body); r.end();"), set()),
    ("Node, write, end, without a length", "node", lambda s: s.node("r.write(body); r.end();"), {"chunked"}),
    ("Node, a stream piped, with a length", "node",
     lambda s: s.node(LENGTH + f"fs.createReadStream('{s.folder}/page.xml').pipe(r);"), set()),
    ("PHP's own server, echo", "php", lambda s: s.php(READ_PAGE), APART | {"length-missing"}),
    ("PHP's own server, with a length", "php",
     lambda s: s.php(READ_PAGE + "header('Content-Length: ' . strlen($page));"), APART),
    ("gunicorn with Flask", "gunicorn", Servers.gunicorn, APART),
    ("Flask's own server", "flask", Servers.flask, APART),
    ("Python's http.server", None, Servers.python, APART),
    ("Varnish before Python's http.server", "varnishd", Servers.varnish, set()),
]


def examine(port, path):
    done = subprocess.run([os.path.join(PROGRAMS, "pavonix"), "doctor", f"http://127.0.0.1{path}", "--port", str(port),
                           "--json"], capture_output=True, text=True, timeout=120)
    report = json.loads(done.stdout)
    findings = {f["rule"]: f for point in report["points"] for f in point["findings"]}
    shown = {point["point"]: point["shown"] for point in report["points"]}
    return {rule for rule, finding in findings.items() if finding["severity"] == "error"}, findings, shown


def row(name, start, expected, runs):
    right, said, whole, files, first = 0, {}, 0, 0, ""
    with tempfile.TemporaryDirectory() as folder:
        os.chmod(folder, 0o755)
        servers = Servers(folder)
        with servers.ends:
            port = start(servers)
            for _ in range(runs):
                errors, findings, shown = examine(port, "/shop/list" if name == "pavonix-shop" else "/page.xml")
                right += errors == expected
                for rule in findings:
                    said[rule] = said.get(rule, 0) + 1
                library = shown["through the library"].split("; ")[-1].split(" ")
                whole, files = whole + int(library[0]), files + int(library[2])
                first = findings["head-alone"]["seen"].split(" came")[0] if "head-alone" in findings else first
    words = ", ".join(f"{rule}" + (f" ({times})" if times < runs else "") for rule, times in said.items())
    return (f"| {name} | {'will not do' if expected else 'will do'} | {right} of {runs} | {words or 'nothing wrong'} "
            f"| {first or 'all'} | {whole} of {files} |"), right == runs


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--runs", type=int, default=20)
    parser.add_argument("names", nargs="*", help="only servers whose name holds one of these")
    options = parser.parse_args()
    print("| server | | judged right | doctor said | came first | files whole through the library |\n"
          "|---|---|---|---|---|---|", flush=True)
    missing, all_right = [], True
    for name, program, start, expected in TABLE:
        if options.names and not any(word in name for word in options.names):
            continue
        if program and shutil.which(program) is None:
            missing.append(f"{name} ({program})")
            continue
        line, right = row(name, start, expected, options.runs)
        print(line, flush=True)
        all_right = all_right and right
    if missing:
        print("not installed, left out: " + ", ".join(missing), file=sys.stderr)
    return 0 if all_right else 1


if __name__ == "__main__":
    sys.exit(main())
