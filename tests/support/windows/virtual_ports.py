#!/usr/bin/python3
"""virtual_ports.py COMMAND...: runs COMMAND with COM ports for the Windows programs that it starts, ends with its exit code.

A program asks for ports on 127.0.0.1, at the TCP port that QLX_VIRTUAL_PORTS names: one connection for each virtual port
that it plugs in, as tests/support/windows/VirtualPort.h does. A request is a line, maybe with bytes behind it; its answer
is a line with a number, maybe with as many bytes:

    plug NAME             0; the port is there, on a pty without line editing
    send COUNT, bytes     how many of the bytes the port took within a moment
    receive COUNT MS      at most COUNT bytes, fewer when nothing more came for MS milliseconds
    unplug                0; the port is gone, as it is at the end of the connection
"""

import os
import select
import socketserver
import subprocess
import sys
import threading
import tty
from pathlib import Path

MOMENT = 0.01


class Port:
    def __init__(self, name):
        self.device, self.kept = os.openpty()
        tty.setraw(self.kept)
        os.set_blocking(self.device, False)
        self.link = Path(os.environ["WINEPREFIX"], "dosdevices", name.lower())
        self.link.unlink(missing_ok=True)  # of a program that was killed
        self.link.symlink_to(os.ttyname(self.kept))

    def unplug(self):
        self.link.unlink()
        os.close(self.kept)
        os.close(self.device)

    def send(self, data):
        if not select.select([], [self.device], [], MOMENT)[1]:
            return 0
        try:
            return os.write(self.device, data)
        except BlockingIOError:
            return 0

    def receive(self, count, limit):
        data = b""
        while len(data) < count and select.select([self.device], [], [], limit)[0]:
            data += os.read(self.device, count - len(data))
        return data


class Connection(socketserver.StreamRequestHandler):
    def handle(self):
        port = None
        try:
            for line in self.rfile:
                request, *words = line.decode().split()
                data = b""
                if request == "plug":
                    port, count = Port(words[0]), 0
                elif request == "send":
                    count = port.send(self.rfile.read(int(words[0])))
                elif request == "receive":
                    data = port.receive(int(words[0]), int(words[1]) / 1000)
                    count = len(data)
                elif request == "unplug":
                    port, count = port.unplug(), 0
                self.wfile.write(b"%d\n" % count + data)
        finally:
            if port:
                port.unplug()


class Server(socketserver.ThreadingTCPServer):
    daemon_threads = True


def main():
    with Server(("127.0.0.1", 0), Connection) as server:
        threading.Thread(target=server.serve_forever, daemon=True).start()
        os.environ["QLX_VIRTUAL_PORTS"] = str(server.server_address[1])
        return subprocess.run(sys.argv[1:], check=False).returncode


if __name__ == "__main__":
    sys.exit(main())
