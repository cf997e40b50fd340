# SPDX-License-Identifier: MIT
"""Clients of the stand-in broker that offer objects to each other, on the wire."""
import os
import socket
import struct
import subprocess
import tempfile
import unittest

STATUS, DATA, LOOKUP, INVOKE, ADD_OBJECT, REMOVE_OBJECT = 1, 2, 4, 5, 6, 7
EVENTS = 1


def part(number, payload):
    return struct.pack(">I", number << 24 | 4 + len(payload)) + payload + bytes(-len(payload) % 4)


def number(value):
    return struct.pack(">I", value)


def field(kind, name, payload):
    header = struct.pack(">H", len(name)) + name + b"\0"
    return part(0x80 | kind, header + bytes(-len(header) % 4) + payload)


class Client:
    def __init__(self, path):
        self.sock = socket.socket(socket.AF_UNIX)
        self.sock.settimeout(10)
        self.sock.connect(path)
        self.id = self.receive()[2]

    def send(self, kind, seq, peer, *parts):
        body = b"".join(parts)
        self.sock.sendall(struct.pack(">BBHII", 0, kind, seq, peer, 4 + len(body)) + body)

    def receive(self):
        """Kind, sequence number, peer and parts by number."""
        _, kind, seq, peer, size = struct.unpack(">BBHII", self.sock.recv(12, socket.MSG_WAITALL))
        body, parts = self.sock.recv(size - 4, socket.MSG_WAITALL), {}
        while body:
            word = struct.unpack(">I", body[:4])[0]
            parts[word >> 24 & 0x7F], body = body[4 : word & 0xFFFFFF], body[((word & 0xFFFFFF) + 3) & ~3 :]
        return kind, seq, peer, parts

    def ask(self, kind, peer, *parts):
        """The status, and the parts of the last answer with data."""
        self.send(kind, 7, peer, *parts)
        kind, _, _, data = self.receive()
        while kind == DATA:
            kind, _, _, last = self.receive()
            if kind == STATUS:
                return struct.unpack(">I", last[1])[0], data
            data = last
        return struct.unpack(">I", data[1])[0], None


class Broker(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        path, description = folder.name + "/bus", folder.name + "/description"
        with open(description, "w", encoding="utf-8") as file:
            file.write("{}")
        broker = subprocess.Popen([os.environ["VEXA_BUS"], path, description], stdin=subprocess.PIPE,
                                  stdout=subprocess.PIPE)
        self.addCleanup(broker.communicate)
        self.assertEqual(broker.stdout.readline(), b"ready\n")
        self.provider, self.caller = Client(path), Client(path)
        self.addCleanup(self.provider.sock.close)
        self.addCleanup(self.caller.sock.close)

    def offer(self):
        method = field(2, b"reset", b"")
        status, data = self.provider.ask(ADD_OBJECT, 0, part(2, b"demo\0"), part(6, method))
        self.assertEqual(status, 0)
        return data[3]

    def test_carries_calls_to_the_client_that_offers_the_object(self):
        own = self.offer()
        self.assertEqual(self.caller.ask(ADD_OBJECT, 0, part(2, b"demo\0"))[0], 2, "the name is taken")
        status, found = self.caller.ask(LOOKUP, 0, part(2, b"de*\0"))
        self.assertEqual((status, found[2], found[3], found[6]), (0, b"demo\0", own, field(2, b"reset", b"")))
        peer = struct.unpack(">I", own)[0]
        self.caller.send(INVOKE, 9, peer, part(3, own), part(4, b"reset\0"), part(7, field(5, b"n", number(3))))
        kind, seq, asker, call = self.provider.receive()
        self.assertEqual((kind, seq, asker), (INVOKE, 9, self.caller.id))
        self.assertEqual((call[3], call[4], call[7]), (own, b"reset\0", field(5, b"n", number(3))))
        answer = field(5, b"done", number(1))
        self.provider.send(DATA, 9, asker, part(3, own), part(7, answer))
        self.provider.send(STATUS, 9, asker, part(3, own), part(1, number(4711)))
        self.assertEqual(self.caller.receive(), (DATA, 9, peer, {3: own, 7: answer}))
        self.assertEqual(self.caller.receive(), (STATUS, 9, peer, {3: own, 1: number(4711)}))
        self.assertEqual(self.caller.ask(REMOVE_OBJECT, 0, part(3, own))[0], 4, "it is another's")
        self.assertEqual(self.provider.ask(REMOVE_OBJECT, 0, part(3, own))[0], 0)
        self.assertEqual(self.caller.ask(LOOKUP, 0, part(2, b"demo\0"))[0], 4)
        for kind, parts in ((INVOKE, ()), (REMOVE_OBJECT, ()), (LOOKUP, (part(2, b"\xff\0"),)), (77, ())):
            self.assertIn(self.caller.ask(kind, 0, *parts)[0], (1, 2), "refused, and survived")

    def test_carries_events_to_those_who_wait_for_them(self):
        own = self.offer()
        pattern = field(5, b"object", own) + field(3, b"pattern", b"power.*\0")
        register = part(3, number(EVENTS)), part(4, b"register\0"), part(7, pattern)
        self.assertEqual(self.provider.ask(INVOKE, EVENTS, *register)[0], 0)
        values = field(5, b"watts", number(12))
        for name in (b"other\0", b"power.outlet\0"):
            event = field(3, b"id", name) + field(2, b"data", values)
            send = part(3, number(EVENTS)), part(4, b"send\0"), part(7, event)
            self.assertEqual(self.caller.ask(INVOKE, EVENTS, *send)[0], 0)
        kind, _, _, call = self.provider.receive()
        self.assertEqual((kind, call[3], call[4], call[7]), (INVOKE, own, b"power.outlet\0", values))


if __name__ == "__main__":
    unittest.main()
