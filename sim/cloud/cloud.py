#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""The services that a simulated device reports to: vexa-cloud [--report]

It serves HTTPS and HTTP on the device's loopback interface, under the names of the deployment and any other of
vexa.example; the device is made to trust its authority and to know its names. Crash reports (POST /v1/crash and
/v1/kernel-crash) and traces (PUT /traces) are checked; an upload is given a URL, and what is PUT there is kept in
/tmp/vexa-cloud/dumps; /dns-query resolves any name of example; /echo gives the body back. Each request is a line of
JSON in /tmp/vexa-cloud/journal, written before it is answered. With --report a table of them is shown at the end, which
is that of standard input. "ready" says that it listens; a line on standard input changes the manners, and "done"
answers it:

  normal                 what each service does             status NUMBER [TEXT]   this answer
  body TEXT              200 and this text                  large NUMBER           200 and so many bytes
  chunked                the usual answer in pieces         empty                  200 and nothing
  redirect URL [STATUS]  to somewhere else                  stall                  never an answer
  reset                  cut the connection                 hangup                 the same, before the body is read
  garbage                no HTTP                            cut                    announce more than is sent
  plain                  no TLS (for all names only)
  certificate WHICH      "expired", "foreign" (of another authority), "wrong" (for another name)

"at NAME MANNERS" changes those of one host, and the other lines those of all.
"""
import base64
import collections
import http.server
import json
import os
import socket
import socketserver
import ssl
import struct
import subprocess
import sys
import threading
import urllib.parse

URLS = """
@VEXA_CRASH_URL_PRODUCTION@ @VEXA_CRASH_URL_STAGING@ @VEXA_CRASH_URL_DEVELOPMENT@
@VEXA_TRACE_URL_PRODUCTION@ @VEXA_TRACE_URL_STAGING@ @VEXA_TRACE_URL_DEVELOPMENT@
@VEXA_DOH_URL_1@ @VEXA_DOH_URL_2@
""".split()
UPLOAD = "upload.vexa.example"
NAMES = [*dict.fromkeys(urllib.parse.urlsplit(url).hostname for url in URLS), UPLOAD, "www.vexa.example"]
ADDRESS = "127.0.0.1"
FOLDER = "/tmp/vexa-cloud"
LONGEST_BODY = 64 << 20  # what anyone may send
LONGEST_LINE = 1 << 20  # of a body in the journal

Manners = collections.namedtuple("Manners", "verb argument")
Answer = collections.namedtuple("Answer", "status text kind", defaults=("application/json",))


# The device: what it trusts and which names it knows.


def own(folder):
    """A link to a folder of the machine becomes a folder of links to what is in it."""
    if os.path.islink(folder):
        real = os.path.realpath(folder)
        os.unlink(folder)
        os.mkdir(folder)
        for name in os.listdir(real):
            os.symlink(os.path.join(real, name), os.path.join(folder, name))
    os.makedirs(folder, exist_ok=True)


def replace(path, text):
    if os.path.lexists(path):
        os.unlink(path)
    with open(path, "w", encoding="ascii") as file:
        file.write(text)


def introduce(authority):
    own("/etc/ssl")
    if os.path.islink("/etc/ssl/certs"):
        os.unlink("/etc/ssl/certs")
    os.makedirs("/etc/ssl/certs", exist_ok=True)
    with open(authority, encoding="ascii") as file:
        replace("/etc/ssl/certs/ca-certificates.crt", file.read())
    known = "127.0.0.1 localhost\n"
    if os.path.exists("/etc/hosts"):
        with open("/etc/hosts", encoding="utf-8", errors="replace") as file:
            known = "".join(line for line in file if UPLOAD not in line)
    replace("/etc/hosts", known.encode("ascii", "replace").decode() + f"{ADDRESS} {' '.join(NAMES)}\n")
    replace("/etc/resolv.conf", f"nameserver {ADDRESS}\n")  # nobody answers there, and at once


# Certificates.


class Authority:
    """Makes keys and certificates with the command openssl."""

    CONFIGURATION = """[req]
distinguished_name = name
[name]
[authority]
basicConstraints = critical, CA:TRUE
[server]
basicConstraints = critical, CA:FALSE
subjectAltName = {names}
[ca]
default_ca = issuer
[issuer]
database = {folder}/issued
new_certs_dir = {folder}
rand_serial = yes
unique_subject = no
default_md = sha256
policy = any
[any]
commonName = optional
"""
    LONG_AGO, THEN, FAR_AHEAD = "20200101000000Z", "20200201000000Z", "20491231000000Z"

    def __init__(self, folder, name):
        self.folder, self.key, self.certificate = folder, f"{folder}/{name}.key", f"{folder}/{name}"
        self.openssl("genpkey", "-algorithm", "EC", "-pkeyopt", "ec_paramgen_curve:P-256", "-out", self.key)
        self.openssl("req", "-x509", "-new", "-key", self.key, "-subj", f"/CN={name}", "-out", self.certificate,
                     *self.configuration("authority", ["none.example"]))
        open(f"{folder}/issued", "w", encoding="ascii").close()

    def configuration(self, section, names):
        place = f"{self.folder}/configuration"
        with open(place, "w", encoding="ascii") as file:
            file.write(self.CONFIGURATION.format(folder=self.folder, names=",".join("DNS:" + name for name in names)))
        return "-config", place, "-extensions", section

    def openssl(self, *arguments):
        done = subprocess.run(["openssl", *arguments], capture_output=True, text=True)
        if done.returncode != 0:
            sys.exit(f"vexa-cloud: openssl {arguments[0]}: {done.stderr}")

    def server(self, name, names, until=FAR_AHEAD):
        """What a server of these names needs to present itself."""
        request, certificate = f"{self.folder}/request", f"{self.folder}/{name}"
        self.openssl("req", "-new", "-key", self.key, "-subj", f"/CN={name}", "-out", request,
                     *self.configuration("server", names)[:2])
        self.openssl("ca", "-batch", "-notext", "-cert", self.certificate, "-keyfile", self.key, "-in", request,
                     "-out", certificate, "-startdate", self.LONG_AGO, "-enddate", until,
                     *self.configuration("server", names))
        context = ssl.SSLContext(ssl.PROTOCOL_TLS_SERVER)
        context.load_cert_chain(certificate, self.key)
        return context


# The services. Each takes a request and gives an answer.


class Refused(Exception):
    """What was sent is not what a service takes."""


def check(condition, text):
    if not condition:
        raise Refused(text)


def object_of(request):
    check(request.headers.get("content-type") == "application/json", "the content is not announced as JSON")
    try:
        document = json.loads(request.body)
    except ValueError as error:
        raise Refused(f"no JSON: {error}") from error
    check(isinstance(document, dict), "no object")
    return document


def check_members(document, **kinds):
    """Of these kinds where they are there, and there where the kind is marked by a tuple."""
    for name, kind in kinds.items():
        value = document.get(name)
        check(value is not None or not isinstance(kind, tuple), f"no {name}")
        check(value is None or (isinstance(value, kind) and (kind is not int or not isinstance(value, bool))),
              f"{name} is of another kind")


def texts_only(document, name):
    value = document.get(name)
    check(isinstance(value, dict) and all(isinstance(v, str) for v in value.values()), f"{name} has not only texts")


def take_crash(request, cloud):
    report = object_of(request)
    check(report.get("product_line") == "network", "another product line")
    check_members(report, anonymous_controller_id=str, anonymous_site_id=str, anonymous_device_id=str,
                  kernel_version=str, architecture=str, bomrev=str, manufacturer_id=str, model=(str,), version=(str,),
                  is_default=(bool,), uptime=(int,), boot_time=(int,), controller_version=(str,), system_time=str,
                  crash_log=str, system_cfg=str, upload=bool)
    if request.path == "/v1/kernel-crash":
        check_members(report, source=(str,), sender=(str,), crash_log=(str,))
    else:
        check_members(report, type=(str,))
    request.note = report.get("type", "kernel crash")
    if not report.get("upload"):
        return Answer(200, "{}")
    return Answer(200, json.dumps({"upload_url": f"https://{UPLOAD}/dumps/{cloud.new_ticket()}"}))


def take_dump(request, cloud):
    ticket = request.path.rpartition("/")[2]
    check(cloud.use_ticket(ticket), "nobody was given this URL, or it was used")
    place = os.path.join(FOLDER, "dumps", ticket)
    with open(place, "wb") as file:
        file.write(request.body)
    request.note = f"kept as {place}"
    return Answer(200, "{}")


def take_traces(request, _):
    envelope = object_of(request)
    check_members(envelope, meta=(dict,), traces=(list,))
    check_members(envelope["meta"], timestamp=(int,), type=(str,))
    texts_only(envelope["meta"], "meta")
    texts_only(envelope["meta"], "source")
    for trace in envelope["traces"]:
        check(isinstance(trace, dict), "a trace that is no object")
        check_members(trace, namespace=str, type=str, timestamp=int, source=dict, meta=dict, payload=dict)
        if "payload" in trace:
            check_members(trace["payload"], contentType=(str,), data=(str,))
            check(trace["payload"]["contentType"] == "application/json", "a payload of another kind")
            json.loads(trace["payload"]["data"])
    request.note = f"{len(envelope['traces'])} traces"
    return Answer(202, "{}")


ADDRESS_QUERY, NO_SUCH_NAME = 1, 3


def resolve(request, _):
    """One question in DNS wire format, by POST or in the URL."""
    if request.method == "GET":
        text = urllib.parse.parse_qs(urllib.parse.urlsplit(request.target).query).get("dns", [""])[0]
        query = base64.urlsafe_b64decode(text + "=" * (-len(text) % 4))
    else:
        check(request.headers.get("content-type") == "application/dns-message", "no DNS message")
        query = request.body
    labels, at = [], 12
    while query[at]:
        labels.append(query[at + 1 : at + 1 + query[at]].decode("ascii", "replace"))
        at += 1 + query[at]
    question, (kind,) = query[12 : at + 5], struct.unpack_from(">H", query, at + 1)
    request.note = f"{'.'.join(labels)}, type {kind}"
    known = labels[-1:] == ["example"]
    found = known and kind == ADDRESS_QUERY
    header = query[:2] + struct.pack(">HHHHH", 0x8180 | (0 if known else NO_SUCH_NAME), 1, found, 0, 0)
    record = struct.pack(">HHHIH", 0xC00C, kind, 1, 60, 4) + socket.inet_aton(ADDRESS)
    return Answer(200, header + question + record * found, "application/dns-message")


def echo(request, _):
    return Answer(200, request.body, request.headers.get("content-type", "application/octet-stream"))


SERVICES = {
    ("POST", "/v1/crash"): take_crash,
    ("POST", "/v1/kernel-crash"): take_crash,
    ("PUT", "/dumps"): take_dump,
    ("PUT", "/traces"): take_traces,
    ("POST", "/dns-query"): resolve,
    ("GET", "/dns-query"): resolve,
}


class Request:
    def __init__(self, handler, body):
        self.method, self.target, self.body = handler.command, handler.path, body
        self.path = urllib.parse.urlsplit(handler.path).path
        self.headers = {name.lower(): ", ".join(handler.headers.get_all(name)) for name in handler.headers}
        self.host = self.headers.get("host", "").partition(":")[0]
        self.note = ""

    def service(self):
        folder = "/dumps" if self.path.startswith("/dumps/") else self.path
        return echo if folder == "/echo" else SERVICES.get((self.method, folder))

    def answer(self, cloud):
        service = self.service()
        if not service:
            return Answer(404, '{"error": "nothing here"}')
        try:
            return service(self, cloud)
        except (Refused, ValueError, IndexError, struct.error) as refused:
            self.note = str(refused)
            return Answer(400, json.dumps({"error": str(refused)}))


# The connection.


class Handler(http.server.BaseHTTPRequestHandler):
    protocol_version = "HTTP/1.1"
    timeout = 60

    def log_message(self, *_):
        pass

    def body(self):
        if "chunked" not in self.headers.get("Transfer-Encoding", ""):
            return self.rfile.read(min(int(self.headers.get("Content-Length", 0)), LONGEST_BODY))
        body = b""
        while (size := int(self.rfile.readline().partition(b";")[0], 16)) and len(body) < LONGEST_BODY:
            body += self.rfile.read(size)
            self.rfile.readline()
        while self.rfile.readline().strip():
            pass
        return body

    def serve(self):
        cloud = self.server.cloud
        manners = cloud.manners(self.headers.get("Host", "").partition(":")[0])
        if manners.verb == "hangup":
            self.close_connection = True
            return
        request = Request(self, self.body())
        answer = self.answer(request, manners)
        cloud.record(request, self.server.scheme, answer.status if answer else manners.verb)
        if answer:
            self.send(answer, manners)
        else:
            self.misbehave(manners)

    do_GET = do_POST = do_PUT = do_HEAD = do_DELETE = serve

    def answer(self, request, manners):
        """None where there will be none."""
        verb, argument = manners
        if verb in ("stall", "reset", "garbage"):
            return None
        if verb == "status":
            status, _, text = argument.partition(" ")
            return Answer(int(status), text, "text/plain")
        if verb == "redirect":
            return Answer(int(argument.partition(" ")[2] or 302), "moved", "text/plain")
        if verb in ("body", "empty"):
            return Answer(200, argument, "text/plain")
        if verb == "large":
            return Answer(200, "x" * int(argument), "text/plain")
        return request.answer(self.server.cloud)

    def send(self, answer, manners):
        text = answer.text if isinstance(answer.text, bytes) else answer.text.encode("utf-8", "surrogateescape")
        self.send_response(answer.status)
        self.send_header("Content-Type", answer.kind)
        if manners.verb == "redirect":
            self.send_header("Location", manners.argument.partition(" ")[0])
        if manners.verb == "chunked":
            self.send_header("Transfer-Encoding", "chunked")
        else:
            self.send_header("Content-Length", str(len(text) + (manners.verb == "cut")))
        self.end_headers()
        if manners.verb == "chunked":
            pieces = [text[at : at + 7] for at in range(0, len(text), 7)] + [b""]
            text = b"".join(b"%x\r\n%s\r\n" % (len(piece), piece) for piece in pieces)
        self.wfile.write(text)
        self.close_connection = manners.verb == "cut"

    def misbehave(self, manners):
        self.close_connection = True
        if manners.verb == "garbage":
            self.wfile.write(b"\x00\xff no HTTP at all\r\n\r\n" * 10)
        elif manners.verb == "reset":
            self.connection.setsockopt(socket.SOL_SOCKET, socket.SO_LINGER, struct.pack("ii", 1, 0))
        else:
            self.connection.recv(1)  # until the peer has had enough


class Server(socketserver.ThreadingTCPServer):
    daemon_threads = True
    allow_reuse_address = True

    def __init__(self, cloud, port, scheme, context):
        self.cloud, self.scheme, self.context = cloud, scheme, context
        super().__init__((ADDRESS, port), Handler)
        threading.Thread(target=self.serve_forever, daemon=True).start()

    def finish_request(self, request, client_address):
        if not self.context:
            super().finish_request(request, client_address)
        elif self.cloud.manners("*").verb == "plain":
            request.sendall(b"220 no TLS at all\r\n")
        else:
            with self.context.wrap_socket(request, server_side=True) as connection:
                super().finish_request(connection, client_address)

    def handle_error(self, request, client_address):
        if not isinstance(sys.exc_info()[1], OSError):  # one that went away or did not trust us
            super().handle_error(request, client_address)


class Cloud:
    def __init__(self):
        self.rules, self.tickets, self.last_ticket, self.rows = {}, set(), 0, []
        self.lock = threading.Lock()
        os.makedirs(os.path.join(FOLDER, "dumps"), exist_ok=True)
        authority, other = Authority(FOLDER, "authority"), Authority(FOLDER, "other-authority")
        here = [*NAMES, "*.vexa.example"]
        self.contexts = {
            "good": authority.server("good", here),
            "wrong": authority.server("wrong", ["elsewhere.example"]),
            "expired": authority.server("expired", here, Authority.THEN),
            "foreign": other.server("foreign", here),
        }
        self.contexts["good"].sni_callback = self.choose_certificate
        introduce(authority.certificate)
        self.journal = open(os.path.join(FOLDER, "journal"), "w", encoding="ascii")
        Server(self, 443, "https", self.contexts["good"])
        Server(self, 80, "http", None)

    def choose_certificate(self, connection, name, _):
        manners = self.manners(name or "")
        if manners.verb == "certificate":
            connection.context = self.contexts[manners.argument]

    def manners(self, host):
        return self.rules.get(host) or self.rules.get("*") or Manners("normal", "")

    def obey(self, line):
        verb, _, argument = line.partition(" ")
        host = "*"
        if verb == "at":
            host, _, line = argument.partition(" ")
            verb, _, argument = line.partition(" ")
        else:
            self.rules.clear()
        self.rules[host] = Manners(verb, argument)

    def new_ticket(self):
        with self.lock:
            self.last_ticket += 1
            self.tickets.add(str(self.last_ticket))
            return self.last_ticket

    def use_ticket(self, ticket):
        with self.lock:
            known = ticket in self.tickets
            self.tickets.discard(ticket)
            return known

    def record(self, request, scheme, status):
        body = request.body[:LONGEST_LINE].decode("utf-8", "backslashreplace")
        entry = {"method": request.method, "scheme": scheme, "host": request.host, "path": request.target,
                 "headers": request.headers, "body": body, "length": len(request.body), "answer": status,
                 "note": request.note}
        with self.lock:
            self.journal.write(json.dumps(entry) + "\n")
            self.journal.flush()
            self.rows.append((request.method, f"{request.host}{request.path}", str(len(request.body)), str(status),
                              request.note))

    def report(self):
        rows = [("METHOD", "WHERE", "BYTES", "ANSWER", "WHAT"), *self.rows]
        widths = [max(map(len, column)) for column in zip(*rows)]
        print(f"What arrived at the simulated cloud ({len(self.rows)} requests):", file=sys.stderr)
        for row in rows:
            print("  ".join(cell.ljust(width) for cell, width in zip(row, widths)).rstrip(), file=sys.stderr)


def main():
    if sys.argv[1:] not in ([], ["--report"]):
        sys.exit(__doc__)
    if not os.path.isdir("/etc/.real"):
        sys.exit("vexa-cloud: this changes what the machine trusts, so it runs on a simulated device only")
    cloud = Cloud()
    print("ready", flush=True)
    for line in sys.stdin:
        cloud.obey(line.strip())
        print("done", flush=True)
    if sys.argv[1:]:
        cloud.report()


if __name__ == "__main__":
    main()
