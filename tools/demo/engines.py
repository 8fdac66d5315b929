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


def free_port():
    """A port below those of outgoing connections, so that a server that is restarted finds it free."""
    while True:
        try:
            with socket.create_server(("127.0.0.1", random.randrange(15000, 32000))) as listener:
                return listener.getsockname()[1]
        except OSError:
            pass  # taken


def wait_until(ready, what, seconds=30):
    """Polls until ready() is true; raises an error that names what it waited for."""
    end = time.monotonic() + seconds
    while not ready():
        if time.monotonic() > end:
            raise TimeoutError(f"timed out waiting for {what}")
        time.sleep(0.02)


def listens(port):
    with socket.socket() as probe:
        return probe.connect_ex(("127.0.0.1", port)) == 0


class Engine:
    """One process in a group of its own, so that its children end with it. Its output goes to NAME.log. It is up when
    it listens on its port, if it has one."""

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
        # Its children may keep the port a moment longer.
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


def unit_command(name, here):
    """The command line of a systemd unit of deploy/, with the texts in `here` replaced."""
    unit = (DEPLOY / f"systemd/{name}.service").read_text().replace("\\\n", "")
    return replace(re.search("^ExecStart=(.*)$", unit, re.M)[1], here).split()


def replace(text, here):
    """Fails if a text is not there, so that no test runs with an address that it did not choose."""
    for word in here:
        if word not in text:
            raise ValueError(f"{word} is no longer in the file")
    return re.sub("|".join(map(re.escape, here)), lambda written: here[written[0]], text)


def front(folder, shop_port, page_seconds=10, limits=None):
    """Varnish as pavonix-front.service starts it, before the shop at a port; a page is fresh for page_seconds."""
    home, port = Path(folder) / "front", free_port()
    (home / "run").mkdir(parents=True, exist_ok=True)
    state = "/var/lib/pavonix-front"
    site = replace((DEPLOY / "front/site.vcl").read_text(), {'"8081"': f'"{shop_port}"'})
    if limits:
        site = re.sub("(?m)^    # (if|    |})", r"    \1", replace(site, limits))
    (home / "site.vcl").write_text(site)
    (home / "pavonix.vcl").write_text(replace((DEPLOY / "front/pavonix.vcl").read_text(), {
        state: str(home / "run"), "= 10s;": f"= {page_seconds}s;"}))
    command = unit_command("pavonix-front", {
        state: str(home / "run"), ":80": f"127.0.0.1:{port}", "/etc/pavonix/front:/usr/share/pavonix-shop-server": str(home),
        "malloc,1g": "malloc,128m"})
    return Engine(folder, "varnish", command, port)


def nginx_front(folder, shop_port, page_seconds=10):
    """nginx with deploy/front/nginx.conf, before the shop at a port."""
    port, path = free_port(), Path(folder) / "nginx.conf"
    (Path(folder) / "run").mkdir(exist_ok=True)
    text = replace((DEPLOY / "front/nginx.conf").read_text(), {
        "127.0.0.1:8081": f"127.0.0.1:{shop_port}", "listen 80;": f"listen 127.0.0.1:{port};",
        "200 10s;": f"200 {page_seconds}s;"})
    path.write_text(f"user {getpass.getuser()};\n{text}")
    return Engine(folder, "nginx", ["nginx", "-p", str(folder), "-c", str(path), "-e", "stderr", "-g", "daemon off;"],
                  port)


def haproxy(folder, name, file, port, here):
    """HAProxy with a file of deploy/. Its log is NAME.log, and its statistics are at NAME.sock."""
    path = Path(folder) / f"{name}.cfg"
    here |= {"/dev/log": "stdout format raw", "/run/haproxy/admin.sock": str(Path(folder) / f"{name}.sock")}
    if os.getuid() != 0:  # only root can change to another user
        here |= {f"    {line}\n": "" for line in ("user haproxy", "group haproxy", "chroot /var/lib/haproxy")}
    path.write_text(replace((DEPLOY / file).read_text(), here))
    return Engine(folder, name, ["haproxy", "-db", "-f", str(path)], port)


def balancer(folder, shop_ports, authority):
    """The balancer before two servers with certificates of the authority; its metrics are at port_of_metrics."""
    port, metrics = free_port(), free_port()
    engine = haproxy(folder, "haproxy", "haproxy/balancer.cfg", port, {
        "maxconn 20000": "maxconn 1000", "127.0.0.1:8081": f"127.0.0.1:{port}", "127.0.0.1:8405": f"127.0.0.1:{metrics}",
        "127.0.0.1:8443": f"127.0.0.1:{shop_ports[0]}", "127.0.0.1:8444": f"127.0.0.1:{shop_ports[1]}",
        "/etc/haproxy": str(authority.folder)})
    engine.port_of_metrics = metrics
    return engine


def tls(folder, name, shop_port, authority):
    """TLS beside the shop at a port, with the certificate NAME.pem."""
    port = free_port()
    return haproxy(folder, f"tls-{name}", "haproxy/tls.cfg", port, {
        ":8443": f"127.0.0.1:{port}", "127.0.0.1:8080": f"127.0.0.1:{shop_port}",
        "/etc/haproxy/shop.pem": str(authority.folder / f"{name}.pem"), "/etc/haproxy/shop-ca": f"{authority.folder}/shop-ca"})


class Authority:
    """The certificates of the machines, made by the operator's script."""

    def __init__(self, folder, name="certificates", host="shop.internal"):
        self.folder, self.host = Path(folder) / name, host
        self.certificate = self.folder / "shop-ca.pem"
        self.sign("balancer")

    def sign(self, name):
        """Returns the file with certificate and key."""
        script = (DEPLOY / "pavonix-certificates").read_text().replace("shop.internal", self.host)
        subprocess.run(["sh", "-c", script, "pavonix-certificates", str(self.folder), name], check=True,
                       capture_output=True)
        return self.folder / f"{name}.pem"


def shop(folder, name, database, *options):
    """pavonix-shop as pavonix-shop.service starts it, on a port of its own."""
    port = free_port()
    command = unit_command("pavonix-shop", {
        "/usr/bin": str(ROOT / "build/linux"), "${PAVONIX_DB}": str(database), "8080": str(port),
        "$PAVONIX_OPTIONS": " ".join(map(str, options))})
    return Engine(folder, name, command, port)


class PostgreSQL:
    """A cluster in the folder, with a socket there. If started by root, it runs as the user postgres."""

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
        """As after a loss of power: without a clean shutdown."""
        self._control("restart", "-m", "immediate")

    def stop(self):
        self._control("stop", "-m", "immediate")

    def __enter__(self):
        return self

    def __exit__(self, *_):
        try:
            self.stop()
        except subprocess.CalledProcessError:
            pass  # it had been stopped
