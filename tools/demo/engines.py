"""Starts the engines that deploy/ configures, on free loopback ports, with everything they write in one folder."""

import getpass
import os
import random
import re
import shutil
import signal
import socket
import subprocess
import time
from pathlib import Path

ROOT = Path(__file__).resolve().parents[2]
DEPLOY = ROOT / "deploy"
PYTHON = "/usr/bin/python3"  # the system's, which has Debian's modules


def free_port():
    """Below the range from which outgoing connections take theirs: a server that is started again needs it free."""
    while True:
        try:
            with socket.create_server(("127.0.0.1", random.randrange(15000, 32000))) as listener:
                return listener.getsockname()[1]
        except OSError:
            pass  # taken


def wait_until(ready, what, seconds=30):
    """Polls; a process that never gets there is an error that names it."""
    end = time.monotonic() + seconds
    while not ready():
        if time.monotonic() > end:
            raise TimeoutError(f"waited in vain for {what}")
        time.sleep(0.02)


def listens(port):
    with socket.socket() as probe:
        return probe.connect_ex(("127.0.0.1", port)) == 0


class Engine:
    """One process in a group of its own, so that its children end with it. Its output goes to NAME.log. It is up when
    it listens at its port, if it has one."""

    def __init__(self, folder, name, command, port, **options):
        self.name, self.command, self.port, self.options = name, command, port, options
        self.log = Path(folder) / f"{name}.log"
        self.start()

    def start(self):
        with open(self.log, "ab") as log:
            self.process = subprocess.Popen(self.command, stdin=subprocess.DEVNULL, stdout=log,
                                            stderr=subprocess.STDOUT, start_new_session=True, **self.options)
        try:
            wait_until(self._is_up, self.name)
        except Exception:
            self.stop()
            raise

    def _is_up(self):
        if self.process.poll() is not None:
            raise RuntimeError(f"{self.name} ended: {self.log.read_text(errors='replace')[-2000:]}")
        return self.port is None or listens(self.port)

    def signal(self, number):
        try:
            os.killpg(self.process.pid, number)
        except ProcessLookupError:
            pass

    def kill(self):
        self.signal(signal.SIGKILL)
        self.process.wait()
        # Its children hold the port a moment longer.
        wait_until(lambda: self.port is None or not listens(self.port), f"the end of {self.name}")

    def stop(self):
        self.signal(signal.SIGTERM)
        try:
            self.process.wait(3)
        except subprocess.TimeoutExpired:
            pass
        self.kill()

    def __enter__(self):
        return self

    def __exit__(self, *_):
        self.stop()


def front(folder, shop_port, page_seconds=10):
    """Varnish with deploy/front/pavonix.vcl before the port given; a page is fresh for page_seconds."""
    home, port = Path(folder) / "front", free_port()
    home.mkdir(exist_ok=True)
    (home / "backend.vcl").write_text(f'backend shop {{ .host = "127.0.0.1"; .port = "{shop_port}"; }}\n')
    main = (DEPLOY / "front/pavonix.vcl").read_text()
    (home / "main.vcl").write_text(main.replace("= 10s;", f"= {page_seconds}s;"))
    command = ["varnishd", "-F", "-j", "none", "-n", str(home / "run"), "-a", f"127.0.0.1:{port}",
               "-p", f"vcl_path={home}:{DEPLOY / 'front'}", "-f", "main.vcl", "-s", "malloc,128m"]
    return Engine(folder, "varnish", command, port)


def nginx_front(folder, shop_port):
    """nginx with deploy/front/nginx.conf before the port given."""
    port, path = free_port(), Path(folder) / "nginx.conf"
    (Path(folder) / "run").mkdir(exist_ok=True)
    text = (DEPLOY / "front/nginx.conf").read_text()
    text = text.replace("127.0.0.1:8081", f"127.0.0.1:{shop_port}").replace("listen 80;", f"listen 127.0.0.1:{port};")
    path.write_text(f"user {getpass.getuser()};\n{text}")
    return Engine(folder, "nginx", ["nginx", "-p", str(folder), "-c", str(path), "-e", "stderr", "-g", "daemon off;"],
                  port)


def balancer(folder, shop_ports, authority):
    """HAProxy with deploy/balance/haproxy.cfg before two application servers whose certificates come from authority."""
    port, path = free_port(), Path(folder) / "haproxy.cfg"
    text = (DEPLOY / "balance/haproxy.cfg").read_text()
    here = {"maxconn 20000": "maxconn 1000", "127.0.0.1:8081": f"127.0.0.1:{port}",
            "127.0.0.1:8443": f"127.0.0.1:{shop_ports[0]}", "127.0.0.1:8444": f"127.0.0.1:{shop_ports[1]}",
            "/etc/haproxy/shop-ca.pem": str(authority.certificate)}
    path.write_text(re.sub("|".join(map(re.escape, here)), lambda written: here[written[0]], text))
    return Engine(folder, "haproxy", ["haproxy", "-db", "-f", str(path)], port)


class Authority:
    """Signs the certificates of the application servers."""

    def __init__(self, folder, name="authority"):
        self.folder = Path(folder)
        self.certificate, self.key = self.folder / f"{name}.pem", self.folder / f"{name}.key"
        self._openssl("req", "-x509", "-subj", f"/CN={name}", "-keyout", self.key, "-out", self.certificate)

    def _openssl(self, *words):
        subprocess.run(["openssl", *map(str, words), "-newkey", "rsa:2048", "-noenc", "-days", "2"], check=True,
                       capture_output=True)

    def sign(self, name, host="shop.internal"):
        """Answers the files of a certificate for the host and of its key."""
        certificate, key = self.folder / f"{name}.pem", self.folder / f"{name}.key"
        self._openssl("req", "-x509", "-CA", self.certificate, "-CAkey", self.key, "-subj", f"/CN={host}", "-addext",
                      f"subjectAltName=DNS:{host}", "-keyout", key, "-out", certificate)
        return certificate, key


def application(folder, name, database, pair=None, workers=2, **environment):
    """gunicorn with deploy/shop on a port of its own; with TLS when it is given certificate and key."""
    port = free_port()
    command = [PYTHON, "-B", "-m", "gunicorn", "--bind", f"127.0.0.1:{port}", "--workers", str(workers)]
    command += ["--certfile", str(pair[0]), "--keyfile", str(pair[1])] if pair else []
    return Engine(folder, name, command, port, cwd=DEPLOY / "shop",
                  env={**os.environ, "PAVONIX_DATABASE": str(database), **environment})


class PostgreSQL:
    """A cluster of its own in the folder, reached through a socket there. As root, it runs as the user postgres."""

    PROGRAMS = sorted(Path("/usr/lib/postgresql").glob("*/bin"))

    def __init__(self, folder):
        self.home = Path(folder) / "postgresql"
        self.home.mkdir()
        if os.getuid() == 0:
            shutil.chown(self.home, "postgres")
            Path(folder).chmod(0o755)
        self.url = f"postgresql:///postgres?host={self.home}&user=shop"
        self._run("initdb", "--auth=trust", "--username=shop", "--encoding=UTF8", "--locale=C.UTF-8", "--no-sync",
                  "data")
        self._control("start")

    def _run(self, program, *words):
        command = [str(self.PROGRAMS[-1] / program), *words]
        user = {"user": "postgres", "group": "postgres", "extra_groups": []} if os.getuid() == 0 else {}
        subprocess.run(command, cwd=self.home, check=True, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL, **user)

    def _control(self, *words):
        self._run("pg_ctl", "-D", "data", "-w", "-l", "server.log", "-o",
                  f"-c listen_addresses='' -c unix_socket_directories='{self.home}'", *words)

    def start(self):
        self._control("start")

    def restart(self):
        """As after a loss of power: nobody is asked to finish first."""
        self._control("restart", "-m", "immediate")

    def stop(self):
        self._control("stop", "-m", "immediate")

    def __enter__(self):
        return self

    def __exit__(self, *_):
        try:
            self.stop()
        except subprocess.CalledProcessError:
            pass  # it was stopped before
