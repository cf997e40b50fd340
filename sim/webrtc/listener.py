#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""A stand-in for the process that negotiates remote sessions: vexa-webrtc

It listens at the abstract socket "IPC_WEBRTC_LISTENER", offers a session to whoever asks, accepts answers that begin
with "v=0", and lists and closes sessions. One line on standard input changes the manners; "done" answers each, and
"ready" says that it listens:

  normal             everything at once          silent           answer nothing any more
  incomplete NUMBER  so many replies without an offer before the one with it
  foreign NUMBER     so many records that nobody asked for before each reply
  refuse STATUS      this status for answers and lists
  count NUMBER       claim so many sessions      brim             texts without an end
  torn               announce an offer, and send one of a negative length
  break              break the connection of the next request off
  vanish             stop listening              return           listen again
"""
import selectors
import socket
import struct
import sys

NEXT_OFFER, OFFER, SET_ANSWER, ALL_SESSIONS, CLOSE_SESSION = range(1, 6)
NAME = b"\0IPC_WEBRTC_LISTENER".ljust(108, b"\0")
RECORD, UUID, PIECE = 1876, 64, 16384
LIST_ROOM = 544
HEADER = struct.Struct("=ii")
ACCEPTED, INVALID = 0, 22
PATIENCE = 5


def text_of(field):
    return field.partition(b"\0")[0]


def record(code, uuid=b"", data=b""):
    return (struct.pack("=i", code) + uuid[:UUID].ljust(UUID, b"\0") + data).ljust(RECORD, b"\0")[:RECORD]


class Answer:
    """One that is on its way: its frame comes in datagrams."""

    def __init__(self, uuid):
        self.uuid, self.header, self.text = uuid, None, b""

    def awaits(self, datagram):
        return len(datagram) == (HEADER.size if self.header is None else min(PIECE, self.header[1] - len(self.text)))

    def take(self, datagram):
        if self.header is None:
            self.header = HEADER.unpack(datagram)
        else:
            self.text += datagram

    def whole(self):
        return self.header is not None and len(self.text) >= self.header[1]

    def accepted(self):
        return self.header[0] == 1 and self.text.startswith(b"v=0")


class Listener:
    def __init__(self):
        self.selector = selectors.DefaultSelector()
        self.socket, self.manners, self.argument = None, "normal", ""
        self.sessions, self.answers = {}, {}
        self.listen()

    def listen(self):
        self.socket = socket.socket(socket.AF_UNIX, socket.SOCK_DGRAM)
        self.socket.bind(NAME)
        self.socket.settimeout(PATIENCE)
        self.selector.register(self.socket, selectors.EVENT_READ, self.receive)

    def vanish(self):
        if self.socket:
            self.selector.unregister(self.socket)
            self.socket.close()
        self.socket = None
        self.answers.clear()

    def break_off(self):
        """The kernel tells a client when whoever is connected to it turns away from unread requests."""
        client = self.socket.recvfrom(1, socket.MSG_PEEK)[1]
        with socket.socket(socket.AF_UNIX, socket.SOCK_DGRAM) as other:
            other.bind("")
            self.socket.connect(client)
            self.socket.connect(other.getsockname())
        self.vanish()
        self.listen()

    def number(self, manners, otherwise=0):
        return int(self.argument) if self.manners == manners else otherwise

    def send(self, client, *datagrams):
        try:
            for datagram in datagrams:
                self.socket.sendto(datagram, client)
        except OSError as error:
            print(f"not sent: {error}", file=sys.stderr)

    def reply(self, client, *datagrams):
        foreign = [record(SET_ANSWER, b"foreign"), b"?"] * self.number("foreign")
        self.send(client, *foreign[: self.number("foreign")], *datagrams)

    def offer(self, client, uuid, block):
        credentials = b"turn:" + text_of(block[4:404])
        if self.manners == "brim":
            uuid, credentials = b"u" * RECORD, b"t" * RECORD
        self.sessions[uuid] = 0
        text = b"v=0\r\no=- 1 1 IN IP4 192.0.2.1\r\ns=" + uuid + b"\r\nm=application 9 UDP/DTLS/SCTP webrtc\r\n"
        early = [record(OFFER, b"early", b"\0early")] * self.number("incomplete")
        frame = [HEADER.pack(2, len(text))] + [text[at : at + PIECE] for at in range(0, len(text), PIECE)]
        if self.manners == "torn":
            frame = [HEADER.pack(2, -1)]
        self.reply(client, *early, record(OFFER, uuid, b"\1" + credentials), *frame)

    def finish(self, client, answer):
        status = self.number("refuse", ACCEPTED if answer.accepted() else INVALID)
        if status == ACCEPTED:
            self.sessions[answer.uuid] = 1
        self.send(client, record(status, answer.uuid))

    def list_sessions(self, client):
        entries = [struct.pack("=64si", uuid[: UUID - 1], answered) for uuid, answered in self.sessions.items()]
        count = self.number("count", len(entries))
        self.send(client, record(self.number("refuse"), b"", struct.pack("=i", count) + b"".join(entries)[:LIST_ROOM]))

    def receive(self):
        if self.manners == "break":
            self.break_off()
            self.manners = "normal"
            return
        datagram, client = self.socket.recvfrom(RECORD + PIECE)
        answer = self.answers.get(client)
        if answer and answer.awaits(datagram):
            answer.take(datagram)
            if answer.whole():
                self.finish(client, self.answers.pop(client))
        elif len(datagram) == RECORD and self.manners != "silent":
            self.request(client, struct.unpack_from("=i", datagram)[0], datagram)

    def request(self, client, command, datagram):
        uuid = text_of(datagram[4:])
        if command == NEXT_OFFER:
            self.offer(client, text_of(datagram[4 : 4 + UUID]), datagram[4 + UUID :])
        elif command == SET_ANSWER:
            self.answers[client] = Answer(uuid)
        elif command == ALL_SESSIONS:
            self.list_sessions(client)
        elif command == CLOSE_SESSION:
            self.sessions.pop(uuid, None)

    def obey(self):
        line = sys.stdin.readline()
        verb, _, argument = line.strip().partition(" ")
        if verb == "vanish":
            self.vanish()
        elif verb == "return":
            self.listen()
        elif verb:
            self.manners, self.argument = verb, argument
        if line:
            print("done", flush=True)
        return line

    def run(self):
        self.selector.register(sys.stdin, selectors.EVENT_READ, self.obey)
        print("ready", flush=True)
        while True:
            for key, _ in self.selector.select():
                if key.fileobj is sys.stdin:
                    if not self.obey():
                        return
                elif key.fileobj is self.socket:
                    self.receive()


def main():
    if len(sys.argv) != 1:
        sys.exit(__doc__)
    Listener().run()


if __name__ == "__main__":
    main()
