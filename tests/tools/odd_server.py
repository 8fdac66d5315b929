"""A server that sends scripted bytes."""

import re
import socket
import struct
import threading
import time


def reset(connection):
    connection.setsockopt(socket.SOL_SOCKET, socket.SO_LINGER, struct.pack("ii", 1, 0))
    connection.close()


def read_request(connection):
    """Reads the whole request, because closing with a byte unread would reset the connection."""
    request = b""
    while b"\r\n\r\n" not in request and (piece := connection.recv(65536)):
        request += piece
    length = re.search(rb"\r\nContent-Length: (\d+)", request)
    size = request.find(b"\r\n\r\n") + 4 + (int(length[1]) + 2 if length else 0)  # CR LF after the form is not counted
    while length and len(request) < size and (piece := connection.recv(65536)):
        request += piece
    return request.decode("latin-1")


class OddServer:
    """Sends the same pieces on each connection: bytes are sent, numbers are seconds to sleep, functions are called with
    the connection."""

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
                threading.Thread(target=self.converse, args=(connection,), daemon=True).start()
        except OSError:
            pass  # the test is over

    def converse(self, connection):
        connection.setsockopt(socket.IPPROTO_TCP, socket.TCP_NODELAY, 1)
        try:
            self.requests.append(read_request(connection))
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
