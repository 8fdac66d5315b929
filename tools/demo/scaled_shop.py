"""A shop of several machines on one: PostgreSQL, two servers, HAProxy, Varnish; and devices that buy."""

import contextlib
import http.client
import itertools
import re
import socket
import subprocess
import threading
import time
from collections import Counter
from pathlib import Path

import psycopg2

import engines
from caller import BUILD, Caller

BUY = "http://127.0.0.1/shop/buy"
PRICE, TYPE, FIRST_GOOD = 100, 3, 1001
SERVER = ("--max-skew", 3600)
TRY_AGAIN = (0, 500, 502, 503, 504)


def post(port, headers, form):
    """Posts a purchase straight to a server; returns its error code, None for a sale."""
    connection = http.client.HTTPConnection("127.0.0.1", port, timeout=30)
    with contextlib.closing(connection):
        connection.request("POST", "/shop/buy", form, {**headers, "Content-Type": "application/x-www-form-urlencoded"})
        code = connection.getresponse().headers["X-Error-Code"]
        return code and int(code)


class ScaledShop(contextlib.ExitStack):
    """Runs until the with statement ends. Its goods FIRST_GOOD and on, of TYPE, cost PRICE each."""

    def __init__(self, folder, devices, goods, page_seconds=10):
        super().__init__()
        self.page_seconds = page_seconds
        self.folder, self.goods = Path(folder), range(FIRST_GOOD, FIRST_GOOD + goods)
        self.devices = {f"PX-{i}": self.folder / f"PX-{i}.profile" for i in range(1, devices + 1)}
        self.balance = goods * PRICE + 7

    def __enter__(self):
        super().__enter__()
        try:
            self._start()
        except BaseException:
            self.close()
            raise
        return self

    def _start(self):
        self.database = self.enter_context(engines.PostgreSQL(self.folder))
        for serial, profile in self.devices.items():
            device = ["--serial", serial, "--user-id", "1", "--public-key", f"{profile}.key"]
            self._run("pavonix", "profile", "new", "--out", profile, *device)
            self._run("pavonix-shop", "--db", self.database.url, "device", "add", *device, "--balance", self.balance)
        for good in self.goods:
            self.query("INSERT INTO good SELECT type, %s, category, title, maker, %s, added, description FROM good "
                       "WHERE type = %s AND id = 5", good, PRICE, TYPE)
        self.authority = engines.Authority(self.folder)
        self.servers = [self.enter_context(engines.shop(self.folder, name, self.database.url, *SERVER))
                        for name in ("one", "two")]
        tls = []
        for server in self.servers:
            self.authority.sign(server.name)
            tls.append(self.enter_context(engines.tls(self.folder, server.name, server.port, self.authority)))
        self.balancer = self.enter_context(
            engines.balancer(self.folder, [engine.port for engine in tls], self.authority))
        self.tls = tls
        self.front = self.enter_context(engines.front(self.folder, self.balancer.port, self.page_seconds))
        self.port = self.front.port
        # An independent record of what the devices sent and received.
        self.log = self.folder / "exchanges.log"
        self.enter_context(engines.Engine(self.folder, "varnishncsa", [
            "varnishncsa", "-n", str(self.folder / "front/run"), "-w", str(self.log),
            "-q", "ReqURL eq '/shop/buy'", "-F", "%s %{User-Serial}i %{User-ID}i %{User-Cert}i"], None))
        engines.wait_until(self.is_open, "the shop")
        engines.wait_until(self.is_logged, "the log")

    def _run(self, program, *words):
        subprocess.run([str(BUILD / "linux" / program), *map(str, words)], check=True, stdout=subprocess.DEVNULL)

    def query(self, sql, *values):
        with contextlib.closing(psycopg2.connect(self.database.url)) as connection, connection:
            with connection.cursor() as cursor:
                cursor.execute(sql, values)
                return cursor.fetchall() if cursor.description else []

    def is_logged(self):
        """Whether the log has this purchase, of no device: varnishncsa makes its file before it logs."""
        post(self.port, {}, "")
        return self.log.exists() and self.log.stat().st_size > 0

    def exchanges(self):
        """A line for each purchase of a device at the front: status, serial, user id and token."""
        return [line for line in self.log.read_text().splitlines() if line.split(" ")[1] != "-"]

    def is_open(self):
        """Whether /health, which is never cached, returns 200."""
        connection = http.client.HTTPConnection("127.0.0.1", self.port, timeout=30)
        with contextlib.closing(connection):
            connection.request("GET", "/health")
            return connection.getresponse().status == 200

    def restart_in_turn(self):
        """Restarts one server after the other, each without requests, so that no purchase fails."""
        for server in self.servers:
            names = [f"{backend}/{server.name}" for backend in ("catalogue", "purchases")]
            self.console("; ".join(f"set server {name} state drain" for name in names))
            time.sleep(1)
            server.stop()
            server.start()
            self.console("; ".join(f"set server {name} state ready" for name in names))
            engines.wait_until(lambda: "UP" in self.state_of(server), "the server")

    def state_of(self, server):
        line = re.search(f"^catalogue,{server.name},.*$", self.console("show stat"), re.M)
        return line[0].split(",")[17]

    def console(self, command):
        with socket.socket(socket.AF_UNIX) as connection:
            connection.connect(str(self.folder / "haproxy.sock"))
            connection.sendall(command.encode() + b"\n")
            return b"".join(iter(lambda: connection.recv(65536), b"")).decode()


class Rush:
    """Every device buys every good, all devices at once, each in a process of its own. A purchase that fails is repeated
    without force, as an application should. results has all results of a purchase in order: status, or code."""

    def __init__(self, shop, flavours=("linux",)):
        self.shop, self.lock, self.failures = shop, threading.Lock(), []
        self.results = {(serial, good): [] for serial in shop.devices for good in shop.goods}
        self.bought = 0
        self.threads = [threading.Thread(target=self._device, args=(flavour, serial))
                        for flavour, serial in zip(itertools.chain(flavours, itertools.repeat("linux")), shop.devices)]

    def _device(self, flavour, serial):
        try:
            with Caller(flavour, self.shop.devices[serial]) as device:
                for good in self.shop.goods:
                    self._buy(device, serial, good)
        except Exception as failure:  # raised again by run
            self.failures.append(f"{serial}: {failure!r}")

    def _buy(self, device, serial, good):
        end = time.monotonic() + 120
        while time.monotonic() < end:
            status, record = device.buy(BUY, self.shop.port, (TYPE, good))
            self.results[serial, good].append(200 if status == 200 else record.code if status not in TRY_AGAIN else status)
            if status not in TRY_AGAIN:
                with self.lock:
                    self.bought += 1
                return
            time.sleep(0.1)
        raise TimeoutError(f"good {good} could not be bought")

    def run(self, *faults):
        """Causes the faults one after the other while the devices buy."""
        for thread in self.threads:
            thread.start()
        for i, cause in enumerate(faults, 1):
            while self.bought < len(self.results) * i / (len(faults) + 1) and any(t.is_alive() for t in self.threads):
                time.sleep(0.01)
            cause()
        for thread in self.threads:
            thread.join()
        if self.failures:
            raise RuntimeError("; ".join(self.failures))


def examine(shop):
    """Has pavonix doctor examine the front; it ends with 0 if it finds no error."""
    return subprocess.run([BUILD / "linux/pavonix", "doctor", "http://127.0.0.1/shop/list", "--port", str(shop.port),
                           "--profile", next(iter(shop.devices.values()))], capture_output=True, text=True)


def replay(shop):
    """Sends each token that the front received to each server again, for a good that does not exist. Returns their
    number, and a line for each that was accepted."""
    wrong, lines = [], shop.exchanges()
    for line in lines:
        status, serial, user, token = line.split(" ")
        headers = {"User-Serial": serial, "User-ID": user, "User-Cert": token}
        codes = [post(server.port, headers, f"type={TYPE}&id=999999&force=0") for server in shop.servers]
        # The token of a failed purchase may not have been used: then the first server uses it now.
        unused = [903, 907] if int(status) in TRY_AGAIN else None
        if codes not in ([905, 905], [906, 906], [907, 907], unused):
            wrong.append(f"a token of {serial}, with status {status}, now gives {codes}")
    return len(lines), wrong


def audit(shop, rush):
    """Compares the devices' results with the database. Returns a line for each difference."""
    rows = Counter((serial, good) for serial, good in shop.query("SELECT serial, id FROM purchase"))
    wrong = [f"{key} was sold {count} times" for key, count in rows.items() if count != 1]
    for key, results in rush.results.items():
        sold_unseen = results[-1] == 908 and any(status in TRY_AGAIN for status in results)
        if not (results[-1] == 200 or sold_unseen) or not set(results[:-1]) <= set(TRY_AGAIN):
            wrong.append(f"{key} had the results {results}")
        if key not in rows:
            wrong.append(f"{key} had the results {results} and is not in the database")
    left = shop.balance - len(shop.goods) * PRICE
    wrong += [f"{serial} has {balance} left, not {left}"
              for serial, balance in shop.query("SELECT serial, balance FROM device") if balance != left]
    return wrong
