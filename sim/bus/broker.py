#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""A stand-in for the system bus's broker: vexa-bus SOCKET DESCRIPTION

The description is JSON: the answers of the objects that the broker serves itself, by object and method. Other
objects are registered by clients, as on the real bus. One line on standard input changes the manners; "done" answers
each, and "ready" says that the broker listens:

  normal          answer as described            status NUMBER   answer with this status only
  stall           answer nothing any more        garbage HEX     answer with these bytes as the data
  cut NUMBER      send so much of an answer, then hang up
  vanish          hang up on everybody and stop listening
  return          listen again, with new ids     describe JSON   another description
"""
import json
import os
import random
import selectors
import socket
import struct
import sys

HELLO, STATUS, DATA, PING, LOOKUP, INVOKE, ADD_OBJECT, REMOVE_OBJECT = range(8)
PART_STATUS, PART_PATH, PART_ID, PART_METHOD, PART_TYPE, PART_SIGNATURE, PART_DATA = range(1, 8)
PART_USER, PART_GROUP = 12, 13
OK, INVALID_COMMAND, INVALID_ARGUMENT, METHOD_NOT_FOUND, NOT_FOUND = range(5)
EVENTS = 1
LARGEST = 1 << 20


def padded(data):
    return data + bytes(-len(data) % 4)


def attribute(number, payload, extended=False):
    word = (0x80000000 if extended else 0) | number << 24 | 4 + len(payload)
    return padded(struct.pack(">I", word) + payload)


def attributes(data):
    """Pairs of id word and payload, as far as they are whole."""
    while len(data) >= 4:
        word = struct.unpack_from(">I", data)[0]
        length = word & 0xFFFFFF
        if length < 4 or (length + 3) & ~3 > len(data):
            return
        yield word >> 24, data[4:length]
        data = data[(length + 3) & ~3 :]


def field(name, value):
    kinds = {
        bool: lambda v: (7, bytes([v])),
        int: lambda v: (5, struct.pack(">i", v)) if -(1 << 31) <= v < 1 << 31 else (4, struct.pack(">q", v)),
        float: lambda v: (8, struct.pack(">d", v)),
        str: lambda v: (3, v.encode() + b"\0"),
        list: lambda v: (1, b"".join(field("", item) for item in v)),
        dict: lambda v: (2, fields(v)),
        type(None): lambda v: (0, b""),
    }
    kind, payload = kinds[type(value)](value)
    text = name.encode()
    header = padded(struct.pack(">H", len(text)) + text + b"\0")
    return attribute(kind, header + payload, extended=True)


def fields(values):
    return b"".join(field(name, value) for name, value in values.items())


def read_fields(data):
    """The fields of a message that hold text, a number or more fields."""
    values = {}
    for number, payload in attributes(data):
        length = struct.unpack_from(">H", payload)[0]
        name, value = payload[2 : 2 + length].decode(), payload[(2 + length + 1 + 3) & ~3 :]
        readers = {3: lambda v: v[:-1].decode(), 5: lambda v: struct.unpack(">i", v)[0], 2: lambda v: v}
        values[name] = readers.get(number & 0x7F, lambda v: v)(value)
    return values


class Object:
    def __init__(self, path, owner, signature):
        self.path, self.owner, self.signature = path, owner, signature


class Client:
    def __init__(self, sock):
        self.sock, self.buffer = sock, b""

    def take(self, data):
        """Adds received bytes; yields the messages that are whole."""
        self.buffer += data
        while len(self.buffer) >= 12:
            size = 8 + (struct.unpack_from(">I", self.buffer, 8)[0] + 3 & 0xFFFFFC)
            if size < 12 or size > LARGEST + 8:
                raise ConnectionError("a message that cannot be")
            if len(self.buffer) < size:
                return
            message, self.buffer = self.buffer[:size], self.buffer[size:]
            yield message


class Broker:
    def __init__(self, path, described):
        self.path, self.described = path, described
        self.selector = selectors.DefaultSelector()
        self.manners, self.argument = "normal", ""
        self.clients, self.objects, self.listener, self.patterns = {}, {}, None, []
        self.listen()

    def new_id(self, taken):
        number = random.randrange(1024, 1 << 32)
        return number if number not in taken else self.new_id(taken)

    def listen(self):
        if os.path.exists(self.path):
            os.unlink(self.path)
        self.listener = socket.socket(socket.AF_UNIX, socket.SOCK_STREAM)
        self.listener.bind(self.path)
        os.chmod(self.path, 0o666)
        self.listener.listen(64)
        self.selector.register(self.listener, selectors.EVENT_READ, self.accept)
        self.describe(self.described)

    def describe(self, described):
        self.described = described
        self.objects = {number: o for number, o in self.objects.items() if o.owner is not None}
        for path, methods in described.items():
            signature = b"".join(field(method, {}) for method in methods)
            self.objects[self.new_id(self.objects)] = Object(path, None, signature)

    def vanish(self):
        if self.listener:
            self.selector.unregister(self.listener)
            self.listener.close()
            os.unlink(self.path)
        self.listener = None
        for number in list(self.clients):
            self.hang_up(number)
        self.objects.clear()

    def accept(self):
        sock, _ = self.listener.accept()
        number = self.new_id(self.clients)
        self.clients[number] = Client(sock)
        self.selector.register(sock, selectors.EVENT_READ, lambda: self.readable(number))
        if self.manners != "stall":
            self.send(number, HELLO, 0, number)

    def hang_up(self, number):
        client = self.clients.pop(number)
        self.selector.unregister(client.sock)
        client.sock.close()
        self.objects = {i: o for i, o in self.objects.items() if o.owner != number}

    def readable(self, number):
        try:
            data = self.clients[number].sock.recv(65536)
            messages = list(self.clients[number].take(data)) if data else None
        except ConnectionError:
            messages = None
        if messages is None:
            return self.hang_up(number)
        for message in messages:
            if number in self.clients:
                self.handle(number, message)

    def send(self, number, kind, seq, peer, *parts):
        if number not in self.clients:
            return
        body = b"".join(parts)
        message = struct.pack(">BBHII", 0, kind, seq, peer, 4 + len(body)) + body
        cut = int(self.argument) if self.manners == "cut" and kind == DATA else len(message)
        try:
            self.clients[number].sock.sendall(message[:cut])
        except OSError:
            cut = 0
        if cut < len(message):
            self.hang_up(number)

    def finish(self, number, seq, peer, status, *parts):
        self.send(number, STATUS, seq, peer, attribute(PART_STATUS, struct.pack(">i", status)), *parts)

    def handle(self, number, message):
        if self.manners == "stall":
            return
        _, kind, seq, peer = struct.unpack_from(">BBHI", message)
        parts = {i: payload for i, payload in attributes(message[12:])}
        verbs = {PING: self.ping, LOOKUP: self.look_up, INVOKE: self.invoke, ADD_OBJECT: self.add_object,
                 REMOVE_OBJECT: self.remove_object, DATA: self.relay, STATUS: self.relay}
        if kind not in verbs:
            return self.finish(number, seq, peer, INVALID_COMMAND)
        try:
            verbs[kind](number, kind, seq, peer, parts)
        except (KeyError, struct.error, UnicodeDecodeError):
            self.finish(number, seq, peer, INVALID_ARGUMENT)

    def ping(self, number, _, seq, peer, parts):
        self.send(number, DATA, seq, peer, *(attribute(i, payload) for i, payload in parts.items()))
        self.finish(number, seq, peer, OK)

    def look_up(self, number, _, seq, peer, parts):
        wanted = parts.get(PART_PATH, b"*\0")[:-1].decode()
        if not wanted:
            return self.finish(number, seq, peer, INVALID_ARGUMENT)
        prefix = wanted[:-1] if wanted.endswith("*") else None
        found = sorted((o.path, i) for i, o in self.objects.items()
                       if o.path and (o.path == wanted or prefix is not None and o.path.startswith(prefix)))
        for path, i in found:
            self.send(number, DATA, seq, peer, attribute(PART_PATH, path.encode() + b"\0"),
                      attribute(PART_ID, struct.pack(">I", i)), attribute(PART_TYPE, struct.pack(">I", i ^ 0x5A5A)),
                      attribute(PART_SIGNATURE, self.objects[i].signature))
        self.finish(number, seq, peer, OK if found or PART_PATH not in parts else NOT_FOUND)

    def add_object(self, number, _, seq, peer, parts):
        path = parts.get(PART_PATH, b"\0")[:-1].decode()
        if path and any(o.path == path for o in self.objects.values()):
            return self.finish(number, seq, peer, INVALID_ARGUMENT)
        i = self.new_id(self.objects)
        self.objects[i] = Object(path, number, parts.get(PART_SIGNATURE, b""))
        self.send(number, DATA, seq, peer, attribute(PART_ID, struct.pack(">I", i)),
                  attribute(PART_TYPE, struct.pack(">I", i ^ 0x5A5A)))
        self.finish(number, seq, peer, OK)

    def remove_object(self, number, _, seq, peer, parts):
        i = struct.unpack(">I", parts[PART_ID])[0]
        if i not in self.objects or self.objects[i].owner != number:
            return self.finish(number, seq, peer, NOT_FOUND)
        del self.objects[i]
        self.send(number, DATA, seq, peer, attribute(PART_ID, parts[PART_ID]))
        self.finish(number, seq, peer, OK)

    def invoke(self, number, _, seq, peer, parts):
        if PART_ID not in parts or PART_METHOD not in parts:
            return self.finish(number, seq, peer, INVALID_ARGUMENT)
        i, method = struct.unpack(">I", parts[PART_ID])[0], parts[PART_METHOD][:-1].decode()
        if i == EVENTS:
            return self.event(number, seq, peer, method, read_fields(parts.get(PART_DATA, b"")))
        if i not in self.objects:
            return self.finish(number, seq, peer, NOT_FOUND)
        if self.objects[i].owner is not None:
            return self.send(self.objects[i].owner, INVOKE, seq, number, attribute(PART_ID, parts[PART_ID]),
                             attribute(PART_METHOD, parts[PART_METHOD]), attribute(PART_USER, b"root\0"),
                             attribute(PART_GROUP, b"root\0"), attribute(PART_DATA, parts.get(PART_DATA, b"")))
        return self.answer(number, seq, i, method)

    def answer(self, number, seq, i, method):
        own = attribute(PART_ID, struct.pack(">I", i))
        methods = self.described[self.objects[i].path]
        status = int(self.argument) if self.manners == "status" else OK if method in methods else METHOD_NOT_FOUND
        if status == OK:
            data = bytes.fromhex(self.argument) if self.manners == "garbage" else fields(methods[method])
            self.send(number, DATA, seq, i, own, attribute(PART_DATA, data))
        self.finish(number, seq, i, status, own)

    def event(self, number, seq, peer, method, values):
        if method == "register":
            self.patterns.append((values.get("pattern", "*"), values["object"] & 0xFFFFFFFF))
        for pattern, i in self.patterns if method == "send" else []:
            name, target = values["id"], self.objects.get(i)
            if target and (pattern == name or pattern.endswith("*") and name.startswith(pattern[:-1])):
                self.send(target.owner, INVOKE, 0, 0, attribute(PART_ID, struct.pack(">I", i)),
                          attribute(PART_METHOD, name.encode() + b"\0"), attribute(PART_DATA, values["data"]))
        self.finish(number, seq, peer, OK if method in ("register", "send") else METHOD_NOT_FOUND)

    def relay(self, number, kind, seq, peer, parts):
        i = struct.unpack(">I", parts[PART_ID])[0] if PART_ID in parts else 0
        if i in self.objects and self.objects[i].owner == number:
            self.send(peer, kind, seq, i, *(attribute(n, payload) for n, payload in parts.items()))

    def obey(self):
        line = sys.stdin.readline()
        if not line:
            return False
        verb, _, argument = line.strip().partition(" ")
        if verb == "vanish":
            self.vanish()
        elif verb == "return":
            self.listen()
        elif verb == "describe":
            self.describe(json.loads(argument))
        else:
            self.manners, self.argument = verb, argument
        print("done", flush=True)
        return True

    def run(self):
        self.selector.register(sys.stdin, selectors.EVENT_READ, self.obey)
        print("ready", flush=True)
        while True:
            for key, _ in self.selector.select():
                if key.fileobj is not sys.stdin:
                    if key.fileobj.fileno() >= 0:
                        key.data()
                elif not key.data():
                    return


def main():
    if len(sys.argv) != 3:
        sys.exit(__doc__)
    with open(sys.argv[2], encoding="utf-8") as description:
        Broker(sys.argv[1], json.load(description)).run()


if __name__ == "__main__":
    main()
