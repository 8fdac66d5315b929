#!/usr/bin/python3
"""Pages a second and their processor time: the shop alone, the front with pages that are not cached and that are, and
nginx with a file; then purchases with one key and with a thousand. Run by ./dev bench serving [PICTURE.svg]."""

import getpass
import os
import statistics
import subprocess
import sys
import tempfile
import urllib.request
from concurrent.futures import ThreadPoolExecutor
from pathlib import Path

from cryptography.hazmat.primitives import serialization
from cryptography.hazmat.primitives.asymmetric import rsa

HERE = Path(__file__).resolve().parent
sys.path[:0] = [str(HERE.parents[1] / "tools/demo"), str(HERE.parents[1] / "tests/tools")]
import engines
from scaled_shop import SERVER, TYPE, ScaledShop, post
from shop_fixture import Key, time_text

GOODS, PAGES = 40000, 1000  # the catalogue, and the number of different pages that are requested repeatedly
SECONDS, ROUNDS, CONNECTIONS, PURCHASES = 4, 3, 16, 1000


class DeviceKey(Key):
    """A key made in this process, because there are many."""

    def __init__(self):
        private = rsa.generate_private_key(65537, 1024)
        numbers = private.private_numbers()
        self.n, self.d, self.size = numbers.public_numbers.n, numbers.d, 128
        self.pem = private.public_key().public_bytes(
            serialization.Encoding.PEM, serialization.PublicFormat.SubjectPublicKeyInfo).decode()


def fill(shop):
    shop.query("INSERT INTO good SELECT type, n, category, title || n, maker, n %% 977, added, description FROM good, "
               "generate_series(10000, %s) n WHERE type = %s AND id = 5", 10000 + GOODS - 1, TYPE)
    shop.query("ANALYZE")


def file_server(folder, page):
    """nginx with one file for every path."""
    port, path = engines.free_port(), Path(folder) / "file.conf"
    (Path(folder) / "page.xml").write_bytes(page)
    path.write_text(f"user {getpass.getuser()}; worker_processes auto; pid {folder}/file.pid; events {{}} "
                    f"http {{ access_log off; server {{ listen 127.0.0.1:{port}; root {folder}; "
                    "location / { try_files /page.xml =404; } } }")
    return engines.Engine(folder, "file", ["nginx", "-c", str(path), "-e", "stderr", "-g", "daemon off;"], port)


def processor_seconds(parts):
    """The processor time that each part has used: its processes, their groups and children."""
    used = dict.fromkeys(parts, 0)
    for stat in Path("/proc").glob("[0-9]*/stat"):
        try:
            pid, rest = stat.parent.name, stat.read_text().rpartition(")")[2].split()
        except OSError:
            continue  # it has just ended
        for name, masters in parts.items():
            if {int(pid), int(rest[1]), int(rest[2])} & set(masters):
                used[name] += (int(rest[11]) + int(rest[12])) / os.sysconf("SC_CLK_TCK")
    return used


def cost(parts, work):
    """Returns the work's result, and the processor microseconds of each part for each thing that the work counts."""
    before = processor_seconds(parts)
    result, count = work()
    after = processor_seconds(parts)
    return result, {name: (after[name] - before[name]) * 1e6 / count for name in parts}


def load(port, *words):
    """Returns pages a second, the latencies by percentile, and the number of pages."""
    output = subprocess.run(["wrk", "-t1", f"-c{CONNECTIONS}", f"-d{SECONDS}s", "-s", str(HERE / "pages.lua"),
                             f"http://127.0.0.1:{port}", "--", *map(str, words)],
                            check=True, stdout=subprocess.PIPE, text=True).stdout
    lines = [line.split() for line in output.splitlines()]
    rate, failed = next(map(float, words[1:]) for words in lines if words[:1] == ["RESULT"])
    if failed:
        sys.exit(f"{failed:.0f} requests failed:\n{output}")
    return (rate, {float(words[1]): float(words[2]) for words in lines if words[:1] == ["PERCENTILE"]}), rate * SECONDS


def measure_pages(shop, alone, file, parts):
    """Measures each way once in each round. Pages that are not cached differ between rounds."""
    def cold(i):
        return PAGES + i * (GOODS - PAGES) // ROUNDS, (GOODS - PAGES) // ROUNDS

    ways = {"shop, goods": (alone.port, lambda i: (*cold(i), "good")),
            "shop, lists": (alone.port, lambda i: (*cold(i), "list")),
            "shop, deep": (alone.port, lambda i: (*cold(i), "deep")),
            "application": (alone.port, lambda i: (*cold(i), "both")),
            "cold": (shop.port, lambda i: (*cold(i), "both")),
            "warm": (shop.port, lambda _: (0, PAGES, "both")),
            "file": (file.port, lambda _: (0, PAGES, "both"))}
    load(shop.port, 0, PAGES, "both")  # so that the front has them
    return [{name: cost(parts, lambda: load(port, *words(i))) for name, (port, words) in ways.items()}
            for i in range(ROUNDS)]


def show_pages(size, rounds):
    print(f"a file of {size} bytes, {CONNECTIONS} connections at a time, medians of {ROUNDS} rounds of {SECONDS} s")
    parts = rounds[0]["cold"][1]
    print(f"{'':14}{'pages/s':>9}{'p50 ms':>8}{'p99 ms':>8}   CPU us/page: {'all':>6}" +
          "".join(f"{name:>10}" for name in parts))
    for name in rounds[0]:
        def median(value):
            return statistics.median(value(*each[name]) for each in rounds)

        print(f"{name:14}{median(lambda load, _: load[0]):9.0f}{median(lambda load, _: load[1][50]):8.2f}"
              f"{median(lambda load, _: load[1][99]):8.2f}{'':16}{median(lambda _, used: sum(used.values())):6.0f}" +
              "".join(f"{median(lambda _, used: used[part]):10.0f}" for part in parts))


def measure_purchases(shop, port, parts):
    keys = [DeviceKey() for _ in range(PURCHASES)]
    for i, key in enumerate(keys):
        shop.query("INSERT INTO device VALUES (%s, 1, %s, 10000000)", f"K-{i}", key.pem)

    def buy(number):
        headers = {"User-Serial": f"K-{number}", "User-ID": "1", "User-Cert": keys[number].token(time_text())}
        return headers, f"type={TYPE}&id={shop.goods[0]}&force=1"

    def each_key():
        return [buy(number) for number in range(PURCHASES)]

    for way, to, requests in (("the shop, each key for the first time", port, each_key()),
                              ("the shop, a thousand keys", port, each_key()),
                              ("the shop, one key", port, [buy(0) for _ in range(PURCHASES)]),
                              ("the whole path, a thousand keys", shop.port, each_key())):
        def work():
            with ThreadPoolExecutor(CONNECTIONS) as pool:
                codes = list(pool.map(lambda request: post(to, *request), requests))
            return [code for code in codes if code], len(codes)

        refused, used = cost(parts, work)
        if refused:
            sys.exit(f"{len(refused)} purchases were refused, one of them with {refused[0]}")
        print(f"a purchase from {way}: {sum(used.values()):.0f} us (" +
              ", ".join(f"{part} {time:.0f}" for part, time in used.items()) + ")")


def draw(folder, rounds, picture):
    for name in rounds[0]:
        points = {p: statistics.median(each[name][0][1][p] for each in rounds) for p in rounds[0][name][0][1]}
        Path(folder, f"{name}.dat").write_text("".join(f"{p} {value}\n" for p, value in points.items()))
    subprocess.run(["gnuplot", "-e", f"data='{folder}'; picture='{picture}'", str(HERE / "distribution.gnuplot")],
                   check=True)


def run(folder, picture):
    with ScaledShop(folder, 1, 1) as shop, \
            engines.shop(folder, "alone", shop.database.url, *SERVER) as alone:
        fill(shop)
        url = f"http://127.0.0.1:{shop.port}/shop/list?type={TYPE}&category=0&sort=0&start=50&max=10"
        page = urllib.request.urlopen(url).read()
        with file_server(folder, page) as file:
            database = int((Path(folder) / "postgresql/data/postmaster.pid").read_text().split()[0])
            parts = {"shop": [engine.process.pid for engine in (alone, *shop.servers)], "database": [database],
                     "balancer": [engine.process.pid for engine in (shop.balancer, *shop.tls)],
                     "front": [shop.front.process.pid, file.process.pid]}
            rounds = measure_pages(shop, alone, file, parts)
            show_pages(len(page), rounds)
            measure_purchases(shop, alone.port, parts)
            if picture:
                draw(folder, rounds, Path(picture).resolve())


def main(picture=None):
    with tempfile.TemporaryDirectory(prefix="pavonix-") as folder:
        Path(folder).chmod(0o755)
        run(folder, picture)


if __name__ == "__main__":
    main(*sys.argv[1:])
