"""A small data server on 127.0.0.1, with a log of each byte of each connection."""

import hashlib
import json
import socket
import struct
import threading

from faults import Faults, deep_profile
from store import DAMAGE, NO_CHANGES, Refusal
from wire import FormError, Reader, Writer, guid_text, response

SILENCE = 60
LOGGED_BYTES = 1 << 16
ESTABLISHED = 1
WORKSPACE, STORAGE = 3, 4


class Log:
    """Events in their order, also as JSON lines in a file. `bytes` holds the begin of what came or went, in hex,
    with its whole length and hash beside it where it is cut. With a fault, all that would have gone is told."""

    def __init__(self, path=None):
        self.lock, self.events = threading.Lock(), []
        self.file = open(path, "a", encoding="utf-8") if path else None

    def add(self, number, event, data=None, **fields):
        entry = {"connection": number, "event": event, **fields}
        if data is not None:
            entry["bytes"] = bytes(data[:LOGGED_BYTES]).hex()
            if len(data) > LOGGED_BYTES:
                entry["length"], entry["sha256"] = len(data), hashlib.sha256(data).hexdigest()
        with self.lock:
            self.events.append(entry)
            if self.file:
                self.file.write(json.dumps(entry) + "\n")
                self.file.flush()

    def of(self, number):
        with self.lock:
            return [entry for entry in self.events if entry["connection"] == number]


class Conversation:
    """One connection, from its begin to its end."""

    def __init__(self, server, connection, number):
        self.server, self.connection, self.number = server, connection, number
        self.store, self.log, self.faults = server.store, server.log, server.faults
        self.heard = bytearray()
        self.reader = Reader(self.take)
        self.session, self.damaged = None, False
        self.commands = {1: self.login, 2: self.logoff, 3: self.call, 4: self.keep_alive, 5: self.ping}

    def take(self, count):
        begin = len(self.heard)
        while len(self.heard) < begin + count:
            block = self.connection.recv(min(begin + count - len(self.heard), 1 << 20))
            if not block:
                raise EOFError
            self.heard += block
        return bytes(memoryview(self.heard)[begin:])

    def run(self):
        how = "closed without command 0"
        try:
            self.connection.settimeout(SILENCE)
            self.connection.setsockopt(socket.IPPROTO_TCP, socket.TCP_NODELAY, 1)
            self.begin()
            while self.command():
                pass
            self.told("end")
            rest = self.connection.recv(1)
            how = "bytes behind command 0" if rest else "command 0, closed"
        except EOFError:
            how = "fault" if self.damaged else how
        except OSError as error:
            how = f"broken: {type(error).__name__}"
        except (*DAMAGE, struct.error, RecursionError) as error:
            how = f"not understood: {error}"
        finally:
            if self.heard:
                self.told("rest")
            self.log.add(self.number, "end", how=how)
            self.connection.close()

    def is_open(self):
        """Whether neither end has closed it, as the system knows before any thread does."""
        try:
            return self.connection.getsockopt(socket.IPPROTO_TCP, socket.TCP_INFO, 1)[0] == ESTABLISHED
        except OSError:
            return False

    def begin(self):
        fault = self.faults.take("accept")
        if fault is not None:
            self.go_wrong(fault, fault.reply("") or b"")

    def go_wrong(self, fault, reply):
        if fault.do == "drop":
            self.store.forget_sessions()
        fault.send(self.connection, reply)
        if fault.damages():
            self.damaged = True
            raise EOFError

    def told(self, what, **values):
        self.log.add(self.number, "in", self.heard, what=what, **values)
        self.heard.clear()

    def command(self):
        """@return false at the end of the connection"""
        number = self.reader.number("<B")
        if number == 0:
            return False
        if number not in self.commands:
            raise FormError(f"command {number}")
        self.commands[number]()
        return True

    def answer(self, stage, work, operation=""):
        """Sends what the work gives, or what the fault of this moment makes of it. @return the status"""
        fault = self.faults.take(stage, operation)
        if fault is None:
            reply = work()
            self.log.add(self.number, "out", reply, what=stage)
            self.connection.sendall(reply)
            return reply[0]
        if fault.do == "drop":
            self.store.forget_sessions()
        password = self.session.user.password if self.session else ""
        reply = fault.reply(password)
        if reply is None:
            reply = work(fault.size) if fault.do == "deep" else work()
        self.log.add(self.number, "out", reply, what=stage, fault=fault.do)
        self.go_wrong(fault, reply)
        return reply[0]

    def login(self):
        version, name, password = (self.reader.string() for _ in range(3))
        self.told("login", version=version, user=name, password=password)

        def work(depth=0):
            session = self.store.log_in(name, password)
            if session is None:
                return b"\1"
            self.session = session
            view = session.user.view(self.store.plans.values())
            writer = Writer().of_kind("Byte", 0).of_kind("Guid", session.id).of_kind("Boolean", view is not None)
            if depth:
                writer.pieces.append(deep_profile(name, depth))
            elif view is not None:
                writer.properties(view)
            return writer.data()
        self.answer("login", work)

    def hear_session(self, what):
        session_id = self.reader.take(16)
        self.told(what, session=guid_text(session_id))
        return session_id

    def known(self, session_id):
        """The status of a session."""
        self.session = self.store.sessions.get(session_id)
        return b"\4" if self.session is None else b"\0"

    def logoff(self):
        session_id = self.hear_session("logoff")
        self.answer("logoff", lambda: b"\4" if self.store.sessions.pop(session_id, None) is None else b"\0")

    def keep_alive(self):
        session_id = self.hear_session("keep-alive")
        self.answer("keep-alive", lambda: self.known(session_id))

    def ping(self):
        self.told("ping")
        self.answer("ping", lambda: b"\0")

    def call(self):
        session_id = self.hear_session("call")
        if self.answer("call", lambda: self.known(session_id)) != 0:
            return
        self.reader.objects.clear()
        service, operation, values = self.reader.request()
        self.told("request", operation=f"{service}.{operation}",
                  values=[kind if kind != "Guid" else guid_text(value) for kind, value in values])

        def work():
            if session_id not in self.store.sessions:
                return b"\4"
            if service not in (WORKSPACE, STORAGE):
                return b"\3"
            try:
                perform = self.storage if service == STORAGE else self.workspace
                return b"\0" + response(*perform(operation, values))
            except Refusal as refusal:
                return b"\0" + response(code=refusal.code, message=refusal.message)
            except (*DAMAGE, TypeError, ValueError, struct.error):
                return b"\0" + response(code=3, message="The request makes no sense.")
        self.answer("request", work, f"{service}.{operation}")

    def storage(self, operation, values):
        file_id, *given = (value for _, value in values)
        if operation == 1:
            return [("Binary", self.store.load(self.session, file_id))]
        if operation in (2, 4):
            return [("Binary", self.store.exchange(self.session, file_id, *given))]
        if operation == 3:
            self.store.store(self.session, file_id, *given)
            return []
        if operation in (5, 6):
            return values[1:]
        raise Refusal(3, f"There is no operation {operation}.")

    def workspace(self, operation, values):
        given = [value for _, value in values]
        if operation == 1 and self.store.workspace is not None:
            return [("Binary", self.store.workspace)]
        if operation in (2, 4):
            return [("Binary", NO_CHANGES)]
        if operation == 3:
            self.store.workspace, = given
            return []
        if operation == 5:
            self.store.change_password(self.session, *given)
            return []
        raise Refusal(3, f"There is no operation {operation}.")


class StandIn:
    """Runs from the begin to the end of a with statement."""

    def __init__(self, store, log=None, port=0, faults=()):
        self.store, self.log, self.faults = store, Log(log), Faults(faults)
        self.socket = socket.create_server(("127.0.0.1", port))
        self.port = self.socket.getsockname()[1]
        self.conversations = []

    def __enter__(self):
        threading.Thread(target=self._accept, daemon=True).start()
        return self

    def __exit__(self, *_):
        self.socket.shutdown(socket.SHUT_RDWR)
        self.socket.close()

    def _accept(self):
        while True:
            try:
                connection, _ = self.socket.accept()
            except OSError:
                return
            open_ones = [other.number for other in self.conversations if other.is_open()]
            conversation = Conversation(self, connection, len(self.conversations) + 1)
            self.conversations.append(conversation)
            self.log.add(conversation.number, "accept", beside=open_ones)
            threading.Thread(target=conversation.run, daemon=True).start()
