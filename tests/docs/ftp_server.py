"""A small FTP server in a thread, for the example of clsFTP: one folder, files in memory."""

from __future__ import annotations

import contextlib
import socket
import socketserver
import threading
from typing import Iterator

FILES = {"cennik.txt": b"kawa;12,50\r\n" * 20, "stany.txt": b"kawa;7\r\n"}
CHANGED = "20240517083000"


class _Session(socketserver.StreamRequestHandler):
    """One client, served command by command."""

    def handle(self) -> None:
        self._data: socket.socket | None = None
        self._say("220 ready")
        while line := self.rfile.readline().decode("utf-8").rstrip("\r\n"):
            command, _, argument = line.partition(" ")
            answer = getattr(self, f"_on_{command.lower()}", None)
            self._say("502 not here" if answer is None else answer(argument))
            if command.upper() == "QUIT":
                break
        if self._data is not None:
            self._data.close()

    def _say(self, reply: str) -> None:
        self.wfile.write(f"{reply}\r\n".encode("utf-8"))

    def _send(self, contents: bytes) -> str:
        if self._data is None:
            return "425 no data connection"
        self._say("150 here it comes")
        connection, _ = self._data.accept()
        with connection:
            connection.sendall(contents)
        self._data.close()
        self._data = None
        return "226 done"

    def _on_user(self, _: str) -> str:
        return "331 a password, please"

    def _on_pass(self, _: str) -> str:
        return "230 logged in"

    def _on_type(self, _: str) -> str:
        return "200 binary"

    def _on_pwd(self, _: str) -> str:
        return '257 "/"'

    def _on_cwd(self, _: str) -> str:
        return "250 there is one folder"

    def _on_feat(self, _: str) -> str:
        return "211-\r\n MLST type*;size*;modify*;\r\n UTF8\r\n211 end"

    def _on_opts(self, _: str) -> str:
        return "200 as you like"

    def _on_epsv(self, _: str) -> str:
        self._data = socket.create_server((self.connection.getsockname()[0], 0))
        self._data.settimeout(10)
        return f"229 extended (|||{self._data.getsockname()[1]}|)"

    def _on_mlsd(self, _: str) -> str:
        lines = [f"type=file;size={len(contents)};modify={CHANGED}; {name}\r\n"
                 for name, contents in FILES.items()]
        return self._send("".join(lines).encode("utf-8"))

    def _on_retr(self, name: str) -> str:
        contents = FILES.get(name.removeprefix("/"))
        return "550 no such file" if contents is None else self._send(contents)

    def _on_quit(self, _: str) -> str:
        return "221 bye"


class _Server(socketserver.ThreadingTCPServer):
    allow_reuse_address = True
    daemon_threads = True


@contextlib.contextmanager
def serving(port: int) -> Iterator[str]:
    """Serves on the first address of 127.0.0.x where the port is free, and tells the address."""
    server = None
    for host in range(101, 200):
        with contextlib.suppress(OSError):
            server = _Server((f"127.0.0.{host}", port), _Session)
            break
    if server is None:
        raise OSError(f"port {port} is taken on every address")
    thread = threading.Thread(target=server.serve_forever, daemon=True)
    thread.start()
    try:
        yield str(server.server_address[0])
    finally:
        server.shutdown()
        thread.join()
        server.server_close()
