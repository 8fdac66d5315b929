"""A device that runs the command-line client, and servers that behave in odd ways."""

import json
import os
import socket
import struct
import threading
import time

from shop_fixture import PROGRAMS, Key, ShopTest, run

KEY = Key()


def reset(connection):
    connection.setsockopt(socket.SOL_SOCKET, socket.SO_LINGER, struct.pack("ii", 1, 0))
    connection.close()


class OddServer:
    """Returns each connection with pieces: bytes are sent, numbers waited for, functions called with the connection."""

    def __init__(self, test, *pieces):
        self.pieces = pieces
        self.requests = []
        self.listener = socket.create_server(("127.0.0.1", 0))
        self.port = self.listener.getsockname()[1]
        threading.Thread(target=self.serve, daemon=True).start()
        test.addCleanup(self.listener.close)

    def serve(self):
        try:
            while True:
                connection, _ = self.listener.accept()
                threading.Thread(target=self.answer, args=(connection,), daemon=True).start()
        except OSError:
            pass  # the test is over

    def answer(self, connection):
        connection.setsockopt(socket.IPPROTO_TCP, socket.TCP_NODELAY, 1)
        try:
            self.requests.append(connection.recv(65536).decode("latin-1"))
            for piece in self.pieces:
                if callable(piece):
                    piece(connection)
                elif isinstance(piece, bytes):
                    connection.sendall(piece)
                else:
                    time.sleep(piece)
            connection.close()
        except OSError:
            pass  # the client has left


class ClientTest(ShopTest):
    def setUp(self):
        super().setUp()
        self.profile = self.write("device.profile", self.profile_text())
        self.target = os.path.join(self.folder, "stored.xml")

    def profile_text(self, serial="PX-1", user=42):
        return (f"User-Agent: Test/1\nUser-Serial: {serial}\nUser-Id: {user}\n"
                f"Public-Key: {KEY.public_xml()}\nPrivate-Key: {KEY.private_xml()}\n")

    def write(self, name, text):
        path = os.path.join(self.folder, name)
        with open(path, "w", newline="") as file:
            file.write(text)
        return path

    def register(self, balance):
        public_key = self.write("device.pub", KEY.public_xml())
        run(f"{PROGRAMS}/pavonix-shop", "device", "add", "--db", self.database_file, "--serial", "PX-1",
            "--user-id", "42", "--public-key", public_key, "--balance", str(balance))

    def call(self, command, *arguments, url=None, port=None, profile=None):
        """Runs the client; returns its exit code and all that it wrote."""
        url = url or f"http://127.0.0.1/shop/{command}"
        done = run(f"{PROGRAMS}/pavonix", command, "--url", url, "--port", str(port or self.port),
                   "--profile", profile or self.profile, *arguments)
        return done.returncode, done.stdout + done.stderr

    def good(self, *arguments, out=None, **options):
        return self.call("good", "--type", "3", "--id", "5", "--out", out or self.target, *arguments, **options)

    def buy(self, *arguments, **options):
        return self.call("buy", "--type", "1", "--id", "7", *arguments, **options)

    def diagnosed(self, command, **options):
        """Returns the exit code and the JSON object of a good or a purchase."""
        code, output = getattr(self, command)("--json", *(["--force"] if command == "good" else []), **options)
        return code, json.loads(output)

    def read_target(self):
        with open(self.target, "rb") as file:
            return file.read()
