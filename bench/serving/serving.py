#!/usr/bin/python3
"""Pages a second, and how long one takes: the application server alone, the front with pages that it does not have and
that it has, and nginx with the same bytes as a file; then purchases. Run by ./dev bench serving [PICTURE.svg]."""

import base64
import getpass
import os
import statistics
import subprocess
import sys
import tempfile
import time
import urllib.request
from pathlib import Path

from cryptography.hazmat.primitives import serialization
from cryptography.hazmat.primitives.asymmetric import rsa

HERE = Path(__file__).resolve().parent
sys.path[:0] = [str(HERE.parents[1] / "tools/demo"), str(HERE.parents[1] / "deploy/shop")]
import engines
from request import Refusal
from scaled_shop import TYPE, Rush, ScaledShop
from till import check_token

FIRST, GOODS, KEPT = 10000, 40000, 100
SECONDS, ROUNDS, CONNECTIONS = 4, 5, 16


def add_goods(shop):
    shop.query("INSERT INTO good SELECT type, n, category, title, maker, price, added, description FROM good, "
               "generate_series(%s, %s) n WHERE type = %s AND id = 5", FIRST, FIRST + GOODS - 1, TYPE)


def file_server(folder, page):
    """nginx with one file for every path."""
    port, path = engines.free_port(), Path(folder) / "file.conf"
    (Path(folder) / "page.xml").write_bytes(page)
    path.write_text(f"user {getpass.getuser()}; worker_processes auto; pid {folder}/file.pid; events {{}} "
                    f"http {{ access_log off; server {{ listen 127.0.0.1:{port}; root {folder}; "
                    "location / { try_files /page.xml =404; } } }")
    return engines.Engine(folder, "file", ["nginx", "-c", str(path), "-e", "stderr", "-g", "daemon off;"], port)


def processor_seconds(masters):
    """What the processes have used: these, those in their groups, and their children."""
    ticks = 0
    for stat in Path("/proc").glob("[0-9]*/stat"):
        try:
            pid, rest = stat.parent.name, stat.read_text().rpartition(")")[2].split()
        except OSError:
            continue  # it has just ended
        if {int(pid), int(rest[1]), int(rest[2])} & set(masters):
            ticks += int(rest[11]) + int(rest[12])
    return ticks / os.sysconf("SC_CLK_TCK")


def measure(port, masters, first, count):
    """Answers pages a second, processor microseconds a page, and the latencies by percentile."""
    before = processor_seconds(masters)
    output = subprocess.run(["wrk", "-t1", f"-c{CONNECTIONS}", f"-d{SECONDS}s", "-s", str(HERE / "pages.lua"),
                             f"http://127.0.0.1:{port}", "--", str(first), str(count)],
                            check=True, stdout=subprocess.PIPE, text=True).stdout
    lines = [line.split() for line in output.splitlines()]
    rate, failed = next(map(float, words[1:]) for words in lines if words[:1] == ["RESULT"])
    if failed:
        sys.exit(f"{failed:.0f} requests failed:\n{output}")
    cost = (processor_seconds(masters) - before) * 1e6 / (rate * SECONDS)
    return rate, cost, {float(words[1]): float(words[2]) for words in lines if words[:1] == ["PERCENTILE"]}


def run(folder):
    with ScaledShop(folder, 20, 25, page_seconds=3600) as shop:
        add_goods(shop)
        with engines.application(folder, "alone", shop.database.url, workers=3) as alone:
            url = f"http://127.0.0.1:{shop.port}/shop/good?type={TYPE}&id={FIRST}"
            page = urllib.request.urlopen(url).read()
            with file_server(folder, page) as file:
                database = int((Path(folder) / "postgresql/data/postmaster.pid").read_text().split()[0])
                path = [engine.process.pid for engine in (shop.front, shop.balancer, *shop.servers)] + [database]
                ways = {"application": (alone.port, [alone.process.pid, database], lambda _: (FIRST, GOODS)),
                        "cold": (shop.port, path, lambda i: (FIRST + KEPT + i * GOODS // (ROUNDS + 1), GOODS)),
                        "warm": (shop.port, path, lambda _: (FIRST, KEPT)),
                        "file": (file.port, [file.process.pid], lambda _: (FIRST, KEPT))}
                measure(shop.port, path, FIRST, KEPT)  # so that it has them
                rounds = [{name: measure(port, masters, *goods(i)) for name, (port, masters, goods) in ways.items()}
                          for i in range(ROUNDS)]
                show(len(page), rounds)
                buy(shop, path)
                return rounds


def buy(shop, masters):
    rush, start, before = Rush(shop), time.monotonic(), processor_seconds(masters)
    rush.run()
    seconds, cost = time.monotonic() - start, processor_seconds(masters) - before
    print(f"{rush.bought / seconds:.0f} purchases a second, {cost / rush.bought * 1e3:.1f} ms of processor each")


def check_tokens(bits, count=500):
    """A number that is no token costs what a token costs, but for a few microseconds."""
    key = rsa.generate_private_key(65537, bits).public_key()
    pem = key.public_bytes(serialization.Encoding.PEM, serialization.PublicFormat.SubjectPublicKeyInfo).decode()
    token = base64.b64encode((key.public_numbers().n // 3).to_bytes(bits // 8, "big")).decode()
    start = time.process_time()
    for _ in range(count):
        try:
            check_token(token, pem, 300)
        except Refusal:
            pass
    print(f"a token of {bits} bits is judged in {(time.process_time() - start) / count * 1e6:.0f} us")


def show(size, rounds):
    print(f"a page of {size} bytes, {CONNECTIONS} connections at a time, medians of {ROUNDS} rounds of {SECONDS} s")
    print(f"{'':14}{'pages/s':>10}{'p50 ms':>10}{'p99 ms':>10}{'CPU us/page':>13}{'times the application, by CPU':>32}")

    def median(value):
        return statistics.median(map(value, rounds))

    for name in rounds[0]:
        rate, cost = median(lambda each: each[name][0]), median(lambda each: each[name][1])
        p50, p99 = (median(lambda each: each[name][2][p]) for p in (50, 99))
        faster = median(lambda each: each[name][0] / each["application"][0])
        cheaper = median(lambda each: each["application"][1] / each[name][1])
        print(f"{name:14}{rate:10.0f}{p50:10.2f}{p99:10.2f}{cost:13.0f}{faster:24.1f}{cheaper:8.1f}")
    faster, cheaper = (median(lambda each: each["file"][0] / each["warm"][0]),
                       median(lambda each: each["warm"][1] / each["file"][1]))
    print(f"nginx with a file is {faster:.2f} times as fast as the front with pages that it has, {cheaper:.2f} by CPU")


def draw(folder, rounds, picture):
    for name in rounds[0]:
        points = {p: statistics.median(each[name][2][p] for each in rounds) for p in rounds[0][name][2]}
        Path(folder, f"{name}.dat").write_text("".join(f"{p} {value}\n" for p, value in points.items()))
    subprocess.run(["gnuplot", "-e", f"data='{folder}'; picture='{picture}'", str(HERE / "distribution.gnuplot")],
                   check=True)


def main(picture=None):
    with tempfile.TemporaryDirectory(prefix="pavonix-") as folder:
        Path(folder).chmod(0o755)
        rounds = run(folder)
        for bits in (512, 1024, 1488):
            check_tokens(bits)
        if picture:
            draw(folder, rounds, Path(picture).resolve())


if __name__ == "__main__":
    main(*sys.argv[1:])
