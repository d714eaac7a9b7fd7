"""A local update service, and a replacement for the user's browser."""

import http.server
import os
import socket
import threading
from unittest import mock

from waiting import wait_for


class Reply:
    """The service's reply to one request.

    With `held` it waits until the test calls `resume`: at the beginning, or after the part `first` of the body.
    """

    def __init__(self, body=b"", status=200, headers=(), held=False, first=b""):
        self.body, self.status, self.headers, self.first = body, status, headers, first
        self.may_resume = threading.Event()
        if not held:
            self.may_resume.set()
        self.is_over = threading.Event()

    def resume(self):
        self.may_resume.set()

    def wait_until_over(self):
        wait_for(self.is_over.is_set, "end of a reply")

    def send(self, handler):
        if self.first:
            self.send_head(handler)
            handler.wfile.write(self.first)
        self.may_resume.wait()
        if not self.first:
            self.send_head(handler)
        handler.wfile.write(self.body)

    def send_head(self, handler):
        handler.send_response(self.status)
        for name, value in self.headers:
            handler.send_header(name, value)
        handler.send_header("Content-Length", str(len(self.first) + len(self.body)))
        handler.end_headers()


class UnwantedReply(Reply):
    """Sends the rest of its body only after the client has closed the connection in the middle of it."""

    def __init__(self, body, first):
        super().__init__(body, held=True, first=first)
        self.is_closed = threading.Event()

    def wait_until_closed(self):
        wait_for(self.is_closed.is_set, "closing of the connection in the middle of a reply")

    def send(self, handler):
        try:
            self.send_head(handler)
            handler.wfile.write(self.first)
            while handler.connection.recv(4096):
                pass
        except ConnectionError:
            # Closing with unread data resets the connection.
            pass
        self.is_closed.set()
        self.may_resume.wait()
        handler.wfile.write(self.body)


class Hangup(Reply):
    """Reads the request and closes the connection."""

    def send(self, handler):
        handler.connection.shutdown(socket.SHUT_RDWR)


class UpdateService:
    """A context manager that serves one reply per request and repeats the last one."""

    def __init__(self):
        self.replies = [Reply()]
        self.requests = []
        self.lock = threading.Lock()
        service = self

        class Handler(http.server.BaseHTTPRequestHandler):
            def do_GET(self):
                reply = service.take(self.requestline)
                try:
                    reply.send(self)
                    self.wfile.flush()
                except OSError:
                    pass
                # The client closes the connection when it is done.
                self.connection.settimeout(20)
                try:
                    while self.connection.recv(4096):
                        pass
                except OSError:
                    pass
                reply.is_over.set()

            def log_message(self, *_):
                pass

        self.server = http.server.ThreadingHTTPServer(("127.0.0.1", 0), Handler)
        self.server.daemon_threads = True

    def __enter__(self):
        self.thread = threading.Thread(target=self.server.serve_forever, args=(0.01,))
        self.thread.start()
        return self

    def __exit__(self, *_):
        for reply in self.replies:
            reply.resume()
        self.server.shutdown()
        self.thread.join()
        self.server.server_close()

    @property
    def host(self):
        return f"127.0.0.1:{self.server.server_port}"

    def take(self, request):
        with self.lock:
            self.requests.append(request)
            return self.replies.pop(0) if len(self.replies) > 1 else self.replies[0]

    def wait_for_requests(self, count):
        wait_for(lambda: len(self.requests) >= count, f"{count} requests to the update service")


class Browser:
    """A context manager that replaces the programs that open an address and records the addresses."""

    def __init__(self, folder):
        self.folder = folder / "browser"
        self.log = self.folder / "opened"

    def __enter__(self):
        self.folder.mkdir()
        self.log.touch()
        for name in ("xdg-open", "xdg-email"):
            program = self.folder / name
            program.write_text(f"#!/bin/sh\nprintf '%s\\n' \"$*\" >>'{self.log}'\n")
            program.chmod(0o755)
        self.patch = mock.patch.dict(os.environ, PATH=f"{self.folder}:{os.environ['PATH']}")
        self.patch.start()
        return self

    def __exit__(self, *_):
        self.patch.stop()

    @property
    def opened(self):
        return self.log.read_text().splitlines()
