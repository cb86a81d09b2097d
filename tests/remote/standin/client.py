"""A second client of the data server: small, and not ours."""

import socket

from wire import NO_ID, Reader, Writer, compress, decompress, request

from change_log import read_log, write_log


class Client:
    def __init__(self, port, user, password):
        self.port, self.user, self.password = port, user, password
        self.session, self.profile = NO_ID, None

    def _talk(self, dialogue):
        with socket.create_connection(("127.0.0.1", self.port), timeout=60) as connection:
            stream = connection.makefile("rb")

            def take(count):
                data = stream.read(count)
                if len(data) < count:
                    raise EOFError
                return data
            reader = Reader(take)
            try:
                return dialogue(connection.sendall, reader)
            finally:
                connection.sendall(b"\0")

    def log_in(self):
        def dialogue(send, reader):
            writer = Writer().of_kind("Byte", 1)
            for text in ("6.0.172", self.user, self.password):
                writer.string(text)
            send(writer.data())
            status = reader.number("<B")
            if status == 0:
                self.session = reader.take(16)
                self.profile = reader.properties("TQuillonRemoteUserWorkspace") if reader.boolean() else None
            return status
        return self._talk(dialogue)

    def simple(self, command):
        """Logoff (2), keep-alive (4) or ping (5). @return the status"""
        def dialogue(send, reader):
            send(bytes([command]) + (b"" if command == 5 else self.session))
            return reader.number("<B")
        return self._talk(dialogue)

    def call(self, service, operation, *values):
        """@return both status bytes and the response; None for what does not come"""
        def dialogue(send, reader):
            send(b"\3" + self.session)
            first = reader.number("<B")
            if first != 0:
                return first, None, None
            send(request(service, operation, *values))
            second = reader.number("<B")
            return first, second, reader.response() if second == 0 else None
        return self._talk(dialogue)

    def load(self, file_id):
        """The binary form of a plan."""
        return decompress(self.call(4, 1, ("Guid", file_id))[2][2][0][1])

    def exchange(self, file_id, operations=()):
        """Sends changes, if there are any. @return error code, message, and the changes of others"""
        log = [("Binary", compress(write_log(operations)))] if operations else []
        code, message, values = self.call(4, 4 if operations else 2, ("Guid", file_id), *log)[2]
        return code, message, None if code else read_log(decompress(values[0][1]))
