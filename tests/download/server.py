#!/usr/bin/env python3
"""A web server on 127.0.0.1 that answers well, badly or not at all, for tests, examples and the benchmark.

    server.py [--log FILE] [--nginx] COMMAND [ARGUMENT...]

runs the command while it serves, and ends with the command's exit code. The command finds the addresses
"http://127.0.0.1:PORT" and "https://127.0.0.1:PORT" (by a certificate that nobody trusts) in TVUT22_HTTP and
TVUT22_HTTPS, and the requests, one a line, in the file that TVUT22_HTTP_LOG names. Ports are free ones.

A path says what the answer shall be; N and M are numbers of bytes, byte I being I * 7 % 251.

    /bytes/N        N bytes, announced            /chunked/N      N bytes in pieces, none announced
    /gzip/N         N bytes, packed               /untold/N       N bytes that end with the connection
    /short/N/M      N announced, M sent, then the connection ends
    /long/N/M       N announced, M sent
    /stall/N/M      N announced, M sent, then nothing
    /slow/N/M       N announced, M sent, and a byte more every 20 ms
    /broken/N       N bytes in pieces, the last of which is missing
    /silent         the request is read, and nothing is sent
    /drop           the request is read, and the connection ends
    /status/S       status S, with a page that tells so unless there can be none
    /redirect/N     as many redirections, then /bytes/5
    /loop           a redirection to itself
    /to?ADDRESS     a redirection to an address
    /to-https /to-http    a redirection to /bytes/5 of the other server
    /cut/N          the first N bytes of an answer, then the connection ends
    /file/NAME      a file of the folder "files" beside this script

With --nginx a server of others runs, too, whose address is in TVUT22_NGINX:

    /plain /packed  100000 bytes; the second ones packed for who takes that
    /whole          the same from a folder without ranges, on a connection of its own
    /empty          no byte
    /moved          a redirection to /plain
    /closed /gone   403, 410
"""
import gzip
import os
import shutil
import socket
import socketserver
import ssl
import struct
import subprocess
import sys
import tempfile
import threading
from pathlib import Path
from urllib.parse import unquote

PATTERN = bytes(i * 7 % 251 for i in range(251))
MEGABYTE = PATTERN * 4178  # a whole number of patterns, somewhat more than 1 MiB
stopping = threading.Event()
roots = {}
log_path = ""
log_lock = threading.Lock()


def contents(size):
    return (PATTERN * (size // 251 + 1))[:size]


def head(status, *fields):
    return "\r\n".join([f"HTTP/1.1 {status} Told", *fields, "", ""]).encode()


def announced(size):
    return head(200, "Content-Type: application/octet-stream", f"Content-Length: {size}")


def chunks(data, size):
    for at in range(0, len(data), size):
        piece = data[at : at + size]
        yield b"%x\r\n%s\r\n" % (len(piece), piece)


class Close(Exception):
    """Ends the connection after what was sent."""


class Connection(socketserver.StreamRequestHandler):
    disable_nagle_algorithm = True

    def handle(self):
        try:
            while line := self.rfile.readline():
                fields = []
                while (field := self.rfile.readline()) not in (b"\r\n", b""):
                    fields.append(field.decode("latin-1").strip())
                self.answer(line.decode("latin-1").split()[1], line, fields)
        except Close:
            pass
        except OSError:
            pass

    def send(self, data):
        self.wfile.write(data)

    def send_bytes(self, size):
        while size > 0:
            self.send(MEGABYTE[:size])
            size -= min(size, len(MEGABYTE))

    def answer(self, path, line, fields):
        with log_lock, open(log_path, "ab") as log:
            log.write(line.strip() + b"".join(b" | " + f.encode("latin-1") for f in fields) + b"\n")
        path, _, query = path.partition("?")
        name, *words = path.strip("/").split("/")
        getattr(self, "do_" + name.replace("-", "_"), self.do_missing)(words, query)

    def do_missing(self, words, query):
        self.do_status(["404"], query)

    def do_bytes(self, words, query):
        self.send(announced(int(words[0])))
        self.send_bytes(int(words[0]))

    def do_chunked(self, words, query):
        self.send(head(200, "Transfer-Encoding: chunked"))
        for piece in chunks(contents(int(words[0])), 1000):
            self.send(piece)
        self.send(b"0\r\n\r\n")

    def do_broken(self, words, query):
        self.send(head(200, "Transfer-Encoding: chunked"))
        for piece in chunks(contents(int(words[0])), 1000):
            self.send(piece)
        raise Close

    def do_gzip(self, words, query):
        data = gzip.compress(contents(int(words[0])), 6, mtime=0)
        self.send(head(200, "Content-Encoding: gzip", f"Content-Length: {len(data)}"))
        self.send(data)

    def do_untold(self, words, query):
        self.send(head(200, "Connection: close"))
        self.send_bytes(int(words[0]))
        raise Close

    def do_short(self, words, query):
        self.send(announced(int(words[0])))
        self.send_bytes(int(words[1]))
        raise Close

    def do_long(self, words, query):
        length, sent = int(words[0]), int(words[1])
        self.send(head(200, f"Content-Length: {length}", "Connection: close"))  # or others would meet the rest
        self.send_bytes(sent)
        raise Close

    def do_stall(self, words, query):
        self.send(announced(int(words[0])))
        self.send_bytes(int(words[1]))
        self.do_silent(words, query)

    def do_slow(self, words, query):
        total, first = int(words[0]), int(words[1])
        data = contents(total)
        self.send(announced(total) + data[:first])
        for at in range(first, total):
            if stopping.wait(0.02):
                break
            self.send(data[at : at + 1])

    def do_silent(self, words, query):
        # Until the other side leaves or the server ends.
        self.request.settimeout(0.2)
        while not stopping.is_set():
            try:
                if not self.request.recv(1000):
                    break
            except TimeoutError:
                pass
        raise Close

    def do_drop(self, words, query):
        # The other side meets a reset, not an end.
        self.request.setsockopt(socket.SOL_SOCKET, socket.SO_LINGER, struct.pack("ii", 1, 0))
        raise Close

    def do_status(self, words, query):
        status = int(words[0])
        page = b"" if status in (204, 304) else b"a page about %d" % status
        extra = ['WWW-Authenticate: Basic realm="tests"'] if status == 401 else []
        if status == 206:
            extra = [f"Content-Range: bytes 0-{len(page) - 1}/1000"]
        length = [] if status in (204, 304) else [f"Content-Length: {len(page)}"]
        self.send(head(status, *length, *extra) + page)

    def redirect(self, address, status=302):
        page = b"this is elsewhere"
        self.send(head(status, f"Location: {address}", f"Content-Length: {len(page)}") + page)

    def do_redirect(self, words, query):
        left = int(words[0])
        query = "?" + query if query else ""
        self.redirect((f"/redirect/{left - 1}" if left > 1 else "/bytes/5") + query, 302 if left % 2 else 307)

    def do_loop(self, words, query):
        self.redirect("/loop?" + query)

    def do_to(self, words, query):
        self.redirect(unquote(query))

    def do_to_http(self, words, query):
        self.redirect(roots["http"] + "/bytes/5?" + query)

    def do_to_https(self, words, query):
        self.redirect(roots["https"] + "/bytes/5?" + query)

    def do_cut(self, words, query):
        self.send((announced(5) + contents(5))[: int(words[0])])
        raise Close

    def do_file(self, words, query):
        path = Path(__file__).with_name("files") / Path(unquote(words[0])).name
        if not path.is_file():
            return self.do_missing(words, query)
        data = path.read_bytes()
        self.send(announced(len(data)) + data)


class Server(socketserver.ThreadingTCPServer):
    allow_reuse_address = True
    daemon_threads = True
    block_on_close = False
    request_queue_size = 128
    context = None

    def finish_request(self, request, address):
        if self.context:
            try:
                request = self.context.wrap_socket(request, server_side=True)
            except OSError:  # who does not trust the certificate leaves
                return
        super().finish_request(request, address)


def serve(scheme):
    server = Server(("127.0.0.1", 0), Connection)
    if scheme == "https":
        server.context = ssl.SSLContext(ssl.PROTOCOL_TLS_SERVER)
        server.context.load_cert_chain(Path(__file__).with_name("untrusted.pem"))
    roots[scheme] = f"{scheme}://127.0.0.1:{server.server_address[1]}"
    os.environ["TVUT22_" + scheme.upper()] = roots[scheme]
    threading.Thread(target=server.serve_forever, daemon=True).start()


NGINX = """
daemon off;
user root;
pid {folder}/nginx.pid;
error_log {folder}/nginx.log;
events {{}}
http {{
    access_log off;
    client_body_temp_path {folder};
    proxy_temp_path {folder};
    fastcgi_temp_path {folder};
    uwsgi_temp_path {folder};
    scgi_temp_path {folder};
    server {{
        listen 127.0.0.1:{port};
        root {folder}/www;
        location = /packed {{ gzip on; gzip_types *; try_files /plain =404; }}
        location = /whole {{ max_ranges 0; keepalive_timeout 0; try_files /plain =404; }}
        location = /moved {{ return 301 /plain; }}
        location = /closed {{ deny all; }}
        location = /gone {{ return 410; }}
    }}
}}
"""


def start_nginx(folder):
    """It takes over a socket that listens already: whoever asks early waits until it has begun."""
    listening = socket.create_server(("127.0.0.1", 0))
    port = listening.getsockname()[1]
    (folder / "www").mkdir()
    (folder / "www" / "plain").write_bytes(contents(100000))
    (folder / "www" / "empty").write_bytes(b"")
    (folder / "nginx.conf").write_text(NGINX.format(folder=folder, port=port))
    os.environ["TVUT22_NGINX"] = f"http://127.0.0.1:{port}"
    program = shutil.which("nginx", path=f"{os.environ['PATH']}:/usr/sbin") or sys.exit("no nginx: scripts/setup --tests")
    return subprocess.Popen([program, "-p", folder, "-c", folder / "nginx.conf", "-e", folder / "nginx.log"],
                            env={**os.environ, "NGINX": f"{listening.fileno()};"}, pass_fds=[listening.fileno()])


def main():
    global log_path
    words = sys.argv[1:]
    if words[:1] == ["--log"]:
        log_path, words = words[1], words[2:]
    with_nginx = words[:1] == ["--nginx"]
    words = words[with_nginx:]
    if not words or words[0] in ("-h", "--help"):
        sys.exit(__doc__)
    with tempfile.TemporaryDirectory() as folder:
        log_path = log_path or os.path.join(folder, "requests")
        Path(log_path).write_bytes(b"")
        os.environ["TVUT22_HTTP_LOG"] = log_path
        serve("http")
        serve("https")
        nginx = start_nginx(Path(folder)) if with_nginx else None
        code = subprocess.call(words)
        stopping.set()
        if nginx:
            nginx.terminate()
            nginx.wait()
    sys.exit(code)


if __name__ == "__main__":
    main()
