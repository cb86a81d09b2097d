"""Services on 127.0.0.1 for the tests of the uploads: they keep what arrives, and answer what the test says."""

import email
import http.server
import json
import os
import select
import socket
import ssl
import subprocess
import threading
from email.policy import HTTP


def answer(status="200 OK", body=b"", **headers):
    """A whole answer; a body that is no bytes goes as JSON."""
    body = body if isinstance(body, bytes) else json.dumps(body).encode()
    headers = {"Content-Length": len(body), **headers}
    lines = [f"HTTP/1.1 {status}", *(f"{key}: {value}" for key, value in headers.items())]
    return "\r\n".join(lines).encode("latin-1") + b"\r\n\r\n" + body


def redirect(status, target):
    return answer(f"{status} Moved", {"message": f"moved {status}"}, Location=target)


LOGIN = "/auth/login"
UPLOAD = "/upload/velmora-6/velmora-upload-1.0.0"
IMPORT = "/iserv/public/timetable/api/import/velmora"
GOOD = {LOGIN: answer(body={"data": {"token": "T0ken/+=."}}), UPLOAD: answer(), IMPORT: answer()}


class Request:
    def __init__(self, path, headers, body):
        self.path, self.headers, self.body = path, headers, body

    def parts(self):
        """Each part of a form: its name, its file name, its content."""
        head = f"Content-Type: {self.headers['Content-Type']}\r\n\r\n".encode()
        form = email.message_from_bytes(head + self.body, policy=HTTP)
        assert form.get_content_type() == "multipart/form-data" and not form.defects, form.defects
        return [(part.get_param("name", header="content-disposition"), part.get_filename(),
                 part.get_payload(decode=True)) for part in form.iter_parts()]


class Handler(http.server.BaseHTTPRequestHandler):
    protocol_version = "HTTP/1.1"
    timeout = 60

    def do_POST(self):
        body = self.rfile.read(int(self.headers["Content-Length"]))
        self.server.requests.append(Request(self.path, self.headers, body))
        found = self.server.answers.get(self.path, answer("404 Not Found"))
        try:
            for block in [found] if isinstance(found, bytes) else found():
                self.wfile.write(block)
        except OSError:  # the client has gone
            pass
        self.close_connection = True

    def do_CONNECT(self):
        self.server.requests.append(Request(self.path, self.headers, b""))
        host, port = self.path.rsplit(":", 1)
        self.wfile.write(b"HTTP/1.1 200 Connection established\r\n\r\n")
        with socket.create_connection((host, int(port)), timeout=60) as there:
            here = self.connection
            while True:
                for ready in select.select([here, there], [], [], 60)[0] or [None]:
                    block = ready.recv(65536) if ready else b""
                    if not block:
                        self.close_connection = True
                        return
                    (there if ready is here else here).sendall(block)

    def log_message(self, *_):
        pass


class Server(http.server.ThreadingHTTPServer):
    daemon_threads = True

    def handle_error(self, request, client_address):
        """A client that breaks off is what some tests are about."""


class Service:
    """Runs from the begin to the end of a with statement; also a proxy, which answers for all hosts of http."""

    def __init__(self, certificate=None):
        self.server = Server(("127.0.0.1", 0), Handler)
        self.requests = self.server.requests = []
        self.answers = self.server.answers = dict(GOOD)
        if certificate:
            context = ssl.SSLContext(ssl.PROTOCOL_TLS_SERVER)
            context.load_cert_chain(*certificate)
            self.server.socket = context.wrap_socket(self.server.socket, server_side=True,
                                                     do_handshake_on_connect=False)
        self.port = self.server.server_address[1]
        self.url = f"{'https' if certificate else 'http'}://127.0.0.1:{self.port}"

    def __enter__(self):
        threading.Thread(target=self.server.serve_forever, daemon=True).start()
        return self

    def __exit__(self, *_):
        self.server.shutdown()
        self.server.server_close()

    def paths(self):
        return [request.path for request in self.requests]


def make_certificates(folder):
    """An authority, and certificates of it: for the address of the tests, and for another one."""
    def openssl(*arguments):
        subprocess.run(["openssl", *arguments], cwd=folder, check=True, timeout=60, stderr=subprocess.DEVNULL)

    key = ("-newkey", "ec", "-pkeyopt", "ec_paramgen_curve:P-256", "-nodes")
    openssl("req", "-x509", *key, "-keyout", "ca.key", "-out", "ca.pem", "-days", "2", "-subj", "/CN=School CA")
    for name, subject in (("here", "IP:127.0.0.1,DNS:localhost"), ("elsewhere", "DNS:elsewhere.invalid")):
        with open(os.path.join(folder, name + ".ext"), "w", encoding="ascii") as file:
            file.write(f"subjectAltName={subject}\n")
        openssl("req", *key, "-keyout", name + ".key", "-out", name + ".csr", "-subj", f"/CN={name}")
        openssl("x509", "-req", "-in", name + ".csr", "-CA", "ca.pem", "-CAkey", "ca.key", "-CAcreateserial",
                "-days", "2", "-extfile", name + ".ext", "-out", name + ".pem")
    return {name: tuple(os.path.join(folder, name + end) for end in (".pem", ".key")) for name in ("here", "elsewhere")}
