"""The balancer and TLS beside the shop, as deploy/ configures them."""

import datetime
import os
import pwd
import socket
import ssl
import subprocess
import sys
import tempfile
import time
import unittest
from pathlib import Path

from cryptography import x509
from cryptography.hazmat.primitives import hashes, serialization

sys.path.insert(0, str(Path(__file__).resolve().parents[2] / "tools/demo"))
import engines
from awkward_shop import PAGE, AwkwardShop
from front_test import ask


def age(certificate, authority):
    """Signs the certificate in the file again, for a time that is over."""
    old = x509.load_pem_x509_certificate(certificate.read_bytes())
    key = serialization.load_pem_private_key(certificate.read_bytes(), None)
    signer = serialization.load_pem_private_key(authority.folder.joinpath("shop-ca.key").read_bytes(), None)
    now = datetime.datetime.now(datetime.timezone.utc)
    new = x509.CertificateBuilder(old.issuer, old.subject, old.public_key(), 1, now - datetime.timedelta(9),
                                  now - datetime.timedelta(1), list(old.extensions)).sign(signer, hashes.SHA256())
    certificate.write_bytes(new.public_bytes(serialization.Encoding.PEM) + key.private_bytes(
        serialization.Encoding.PEM, serialization.PrivateFormat.PKCS8, serialization.NoEncryption()))


class BalancerTest(unittest.TestCase):
    def setUp(self):
        self.folder = Path(self.enterContext(tempfile.TemporaryDirectory()))
        self.authority = engines.Authority(self.folder)

    def balancer(self, *ports):
        return self.enterContext(engines.balancer(self.folder, ports, self.authority))

    def shops(self, count=2, **how):
        context = ssl.SSLContext(ssl.PROTOCOL_TLS_SERVER)
        context.load_cert_chain(self.authority.sign("server"))
        return [self.enterContext(AwkwardShop(context, **how)) for _ in range(count)]

    def up(self, port):
        engines.wait_until(lambda: ask(port, "/good")[1] == PAGE, "the servers")

    def post(self, port, name):
        with socket.create_connection(("127.0.0.1", port), timeout=50) as connection:
            connection.sendall(b"POST /%s HTTP/1.1\r\nHost: h\r\nContent-Length: 1\r\n\r\n1" % name)
            return int((connection.recv(1024) or b"- 0").split()[1])

    def test_pages_are_repeated_and_purchases_are_not(self):
        shops = self.shops()
        port = self.balancer(*[shop.port for shop in shops]).port
        self.up(port)

        def asked(method):
            start = method + b" /no_words"
            return len([request for shop in shops for request in shop.requests if request.startswith(start)])

        failed = (0, 502, 503)  # HAProxy hangs up, or says so
        self.assertIn(self.post(port, b"no_words"), failed)
        self.assertEqual(asked(b"POST"), 1)
        self.assertIn(ask(port, "/no_words")[0], failed)
        self.assertGreater(asked(b"GET"), 1)

    def test_it_runs_as_an_operator_expects(self):
        """As a user of its own, with a log, a console and metrics; and a slow server is no dead one."""
        balancer = self.balancer(*[shop.port for shop in self.shops(seconds_to_begin=1.5)])
        self.up(balancer.port)
        owner = pwd.getpwuid(Path(f"/proc/{balancer.process.pid}").stat().st_uid).pw_name
        self.assertEqual(owner, "haproxy" if os.getuid() == 0 else pwd.getpwuid(os.getuid()).pw_name)
        time.sleep(4)  # the time of a check
        self.assertEqual(self.post(balancer.port, b"sold"), 200, balancer.log.read_text())
        self.post(balancer.port, b"no_words")
        engines.wait_until(lambda: "POST /no_words" in balancer.log.read_text(), "the failure in the log")
        self.assertNotIn("POST /sold", balancer.log.read_text())
        metrics = ask(balancer.port_of_metrics, "/metrics")[1].decode()
        self.assertIn('haproxy_server_status{proxy="catalogue",server="one",state="UP"} 1', metrics)
        self.assertIn("one,", self.console("show servers state catalogue").replace(" ", ","))

    def console(self, command):
        with socket.socket(socket.AF_UNIX) as connection:
            connection.connect(str(self.folder / "haproxy.sock"))
            connection.sendall(command.encode() + b"\n")
            return b"".join(iter(lambda: connection.recv(65536), b"")).decode()

    def test_certificates_are_verified_on_both_sides(self):
        shop = self.enterContext(AwkwardShop())
        certificate = self.authority.sign("one")
        tls = self.enterContext(engines.tls(self.folder, "one", shop.port, self.authority))
        port = self.balancer(tls.port, tls.port).port
        self.up(port)
        stranger = engines.Authority(self.folder, "stranger")
        faults = {"wrong authority": lambda: certificate.write_bytes(stranger.sign("one").read_bytes()),
                  "wrong name": lambda: engines.Authority(self.folder, host="other.internal").sign("one"),
                  "expired": lambda: age(self.authority.sign("one"), self.authority)}
        for name, change in faults.items():
            with self.subTest(name):
                tls.kill()
                change()
                tls.start()
                shop.requests.clear()
                replies = [ask(port, "/good")[0], self.post(port, b"sold")]
                self.assertEqual((replies, shop.requests), ([503, 503], []))
                tls.kill()
                self.authority.sign("one")
                tls.start()
                self.up(port)
        clients = {"none": [], "a stranger's": ["-cert", stranger.folder / "balancer.pem"],
                   "the balancer's": ["-cert", self.authority.folder / "balancer.pem"]}
        shop.requests.clear()
        for name, words in clients.items():
            done = subprocess.run(["openssl", "s_client", "-quiet", "-connect", f"127.0.0.1:{tls.port}", *words],
                                  input=b"GET /no_length HTTP/1.1\r\n\r\n", capture_output=True, timeout=50)
            self.assertEqual(b"<goods>" in done.stdout, name == "the balancer's", (name, done.stderr[-300:]))

    def test_without_the_shop_a_purchase_goes_to_another_server(self):
        shops = [self.enterContext(AwkwardShop()) for _ in range(2)]
        ports = [self.enterContext(engines.tls(self.folder, name, shop.port, self.authority)).port
                 for name, shop in zip(("one", "two"), shops) if self.authority.sign(name)]
        port = self.balancer(*ports).port
        self.up(port)
        shops[0].stop()
        self.post(port, b"sold")  # may meet the fault first
        self.post(port, b"sold")
        self.assertEqual([self.post(port, b"sold") for _ in range(10)], [200] * 10)
        shops[0].start()


if __name__ == "__main__":
    unittest.main()
