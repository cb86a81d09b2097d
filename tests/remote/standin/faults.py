"""Faults on demand: what the server does wrong, and when.

A fault is a text such as "on=request,operation=4.1,do=cut,after=100". It says
    on         the stage: accept, login, logoff, call (the session of a call), request, keep-alive, ping
    operation  of the stage request: service and operation
    skip       so many times all goes well first; 0
    times      so many times it goes wrong then; 1
    do         one of
        status  the status byte is `code`               error    a response with `code` and `text`
        echo    the error's text holds the password     drop     all sessions are forgotten first
        cut     closed after `after` bytes              reset    broken off after `after` bytes
        stall   silent after `after` bytes              drip     `after` bytes at once, then one every `every` s
        wait    `every` seconds late                    garbage  `size` bytes of noise
        lie     a `what` (see LIES) of `size`           deep     a profile of `size` folders in one another
        raw     the bytes `hex`
A reply that is damaged ends the connection.
"""

import dataclasses
import random
import socket
import struct
import threading
import time

from wire import Writer, compress, response

STALL_LIMIT = 600
PIECE = 1 << 20
PROFILE = b"\0" + bytes(range(16)) + b"\1"


def _profile(size):
    return PROFILE + b"\0" * 4 * 6 + b"\1" * 16 + struct.pack("<i", size)


def _item(size, *tail):
    """A queue of one value of this kind."""
    return b"\0\0\0" + struct.pack("<iB", 1, size) + b"".join(tail)


# Replies that promise more than they hold.
LIES = {
    "name": lambda size: PROFILE + struct.pack("<i", size),
    "permissions": _profile,
    "folders": lambda size: _profile(0) + struct.pack("<i", size),
    "class": lambda size: _profile(1) + struct.pack("<ii", 1, 1) + b"X\0",
    "message": lambda size: b"\0\5\0" + struct.pack("<i", size),
    "queue": lambda size: b"\0\0\0" + struct.pack("<i", size),
    "binary": lambda size: _item(1, struct.pack("<i", size)),
    "kind": lambda size: _item(19),
    "other": lambda size: b"\0" + response(("LongInt", size)),
    "empty": lambda size: b"\0" + response(),
    "zeros": lambda size: b"\0" + response(("Binary", compress(bytes(size)))),
    "bomb": lambda size: b"\0" + response(("Binary", compress(b"\xff" * size))),
}


@dataclasses.dataclass
class Fault:
    on: str
    do: str
    operation: str = ""
    skip: int = 0
    times: int = 1
    after: int = 0
    code: int = 1
    size: int = 0
    every: float = 0.1
    text: str = "The server cannot do that."
    what: str = ""
    hex: str = ""

    @staticmethod
    def parse(text):
        kinds = {field.name: field.type for field in dataclasses.fields(Fault)}
        values = dict(pair.split("=", 1) for pair in text.split(","))
        return Fault(**{name: kinds[name](value) for name, value in values.items()})

    def reply(self, password):
        """What is sent in place of the right reply, or None when that is sent."""
        if self.do == "status":
            return bytes([self.code])
        if self.do == "error":
            return b"\0" + response(code=self.code, message=self.text)
        if self.do == "echo":
            return b"\0" + response(code=self.code, message=f"{self.text} ({password})")
        if self.do == "garbage":
            return random.Random(self.code).randbytes(self.size)
        if self.do == "raw":
            return bytes.fromhex(self.hex)
        return LIES[self.what](self.size) if self.do == "lie" else None

    def damages(self):
        return self.do in ("garbage", "raw", "lie", "cut", "reset", "stall")

    def send(self, connection, reply):
        """Sends the reply, or what becomes of it."""
        if self.do == "wait":
            time.sleep(self.every)
        at_once = reply[:self.after] if self.do in ("cut", "reset", "stall", "drip") else reply
        connection.sendall(at_once)
        if self.do == "drip":
            for position in range(len(at_once), len(reply)):
                time.sleep(self.every)
                connection.sendall(reply[position:position + 1])
        elif self.do == "stall":
            connection.settimeout(STALL_LIMIT)
            while connection.recv(PIECE):
                pass
        elif self.do == "reset":
            connection.setsockopt(socket.SOL_SOCKET, socket.SO_LINGER, struct.pack("ii", 1, 0))


class Faults:
    def __init__(self, faults=()):
        self.lock, self.planned = threading.Lock(), []
        for fault in faults:
            self.plan(fault)

    def plan(self, text):
        self.planned.append(Fault.parse(text))

    def clear(self):
        self.planned.clear()

    def take(self, stage, operation=""):
        """The fault of this moment, or None."""
        with self.lock:
            for fault in self.planned:
                if fault.on == stage and fault.operation in ("", operation) and fault.times > 0:
                    if fault.skip > 0:
                        fault.skip -= 1
                        return None
                    fault.times -= 1
                    return fault
        return None


def deep_profile(user_name, depth):
    """The properties of a profile whose folders lie in one another."""
    writer = Writer()
    for text in (user_name, "", "", "", "", ""):
        writer.string(text)
    empty_list, one = struct.pack("<i", 0), struct.pack("<i", 1)
    writer.pieces += [bytes([7]) * 16, empty_list]
    for handle in range(1, depth + 1):
        writer.pieces.append(one)
        writer.number("<i", handle)
        writer.string("TQuillonRemoteUserWorkspaceFolder")
        writer.pieces += [bytes(16), empty_list]
    # No folder in the last one; behind each the documents, the name and the tenant; then those of the file space.
    writer.pieces += [empty_list, empty_list * 3 * depth, empty_list, b"\0", empty_list, b"\0"]
    return writer.data()
