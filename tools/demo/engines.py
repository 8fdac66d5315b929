"""Starts the engines that deploy/ configures, on free loopback ports, with everything they write in one folder."""

import getpass
import os
import signal
import socket
import subprocess
import time
from pathlib import Path

ROOT = Path(__file__).resolve().parents[2]
DEPLOY = ROOT / "deploy"
PYTHON = "/usr/bin/python3"  # the system's, which has Debian's modules


def free_port():
    with socket.create_server(("127.0.0.1", 0)) as listener:
        return listener.getsockname()[1]


def wait_until(ready, what, seconds=30):
    """Polls; a process that never gets there is an error that names it."""
    end = time.monotonic() + seconds
    while not ready():
        if time.monotonic() > end:
            raise TimeoutError(f"{what} did not come up")
        time.sleep(0.02)


def listens(port):
    with socket.socket() as probe:
        return probe.connect_ex(("127.0.0.1", port)) == 0


class Engine:
    """One process in a group of its own, so that its children end with it. Its output goes to NAME.log."""

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
        return listens(self.port)

    def signal(self, number):
        try:
            os.killpg(self.process.pid, number)
        except ProcessLookupError:
            pass

    def kill(self):
        self.signal(signal.SIGKILL)
        self.process.wait()

    def stop(self):
        self.signal(signal.SIGTERM)
        try:
            self.process.wait(10)
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
    return Engine(folder, "varnish", ["varnishd", "-F", "-j", "none", "-n", str(home / "run"), "-a", f"127.0.0.1:{port}",
                                      "-p", f"vcl_path={home}:{DEPLOY / 'front'}", "-f", "main.vcl",
                                      "-s", "malloc,128m"], port)


def nginx_front(folder, shop_port):
    """nginx with deploy/front/nginx.conf before the port given."""
    port, path = free_port(), Path(folder) / "nginx.conf"
    (Path(folder) / "run").mkdir(exist_ok=True)
    text = (DEPLOY / "front/nginx.conf").read_text()
    text = text.replace("127.0.0.1:8081", f"127.0.0.1:{shop_port}").replace("listen 80;", f"listen 127.0.0.1:{port};")
    path.write_text(f"user {getpass.getuser()};\n{text}")
    return Engine(folder, "nginx", ["nginx", "-p", str(folder), "-c", str(path), "-e", "stderr", "-g", "daemon off;"],
                  port)
