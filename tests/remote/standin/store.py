"""What the server keeps: users with their rights, and plans with the changes that were sent to them."""

import os
import pathlib
import threading
import uuid
import zlib

from wire import FormError, compress, decompress, guid_bytes, guid_text, thing

from binary_form import read_plan, write_plan
from change_log import Conflict, Player, read_log, write_log

OUT_OF_SYNC = 4
FIRST_CONFLICT = 100
NO_CHANGES = compress(write_log([]))
FILE_SPACE = guid_bytes("{6F0C4D52-8E3B-4B61-9A0E-8A5C3B1D7E21}")
FOLDER = guid_bytes("{0B7E9D14-52C8-4F6F-8B0D-6D9E2A4C1F35}")
PREFIX = "TQuillonRemoteUserWorkspace"


class Refusal(Exception):
    """Ends a request in a response with an error."""

    def __init__(self, code, message):
        super().__init__(message)
        self.code, self.message = code, message


class User:
    """`policies`: id of a file: policy: value. A file without an entry has those of the key ""."""

    def __init__(self, name, password="", admin=False, tenant="", policies=None, profile=True):
        self.name, self.password, self.admin, self.tenant = name, password, admin, tenant
        self.policies = {"": {"Velmora.Login": 2}} if policies is None else policies
        self.profile = profile

    def view(self, plans):
        """The light view of the workspace; None for a user who is given none."""
        if not self.profile:
            return None
        documents = [thing(PREFIX + "Document", ID=plan.id, Name=plan.name, Permissions=self._permissions(plan.id))
                     for plan in plans]
        folder = thing(PREFIX + "Folder", ID=FOLDER, Documents=documents, Name="Schule", Tenant=self.tenant)
        space = thing(PREFIX + "FileSpace", ID=FILE_SPACE, Folders=[folder])
        return thing(PREFIX, UserName=self.name, Lastname="Beispiel", FileSpace=space, Admin=self.admin,
                     Tenant=self.tenant, CanChangePassword=True)

    def _permissions(self, file_id):
        policies = self.policies.get(guid_text(file_id), self.policies.get("", {}))
        return [thing(PREFIX + "Permission", PolicyName=name, PolicyValue=value) for name, value in policies.items()]


class Session:
    def __init__(self, user):
        self.id, self.user = uuid.uuid4().bytes_le, user
        self.seen = {}


class Plan:
    """Zlib bytes of the binary form, with the changes since: each has the session that sent it."""

    def __init__(self, file_id, name, data):
        self.id, self.name, self.data = file_id, name, data
        self.generation, self.changes = 0, []


class Store:
    def __init__(self, folder=None):
        self.lock = threading.Lock()
        self.folder = pathlib.Path(folder) if folder else None
        self.users, self.sessions, self.plans = {}, {}, {}
        self.workspace = None
        if self.folder:
            for path in sorted(self.folder.glob("{*}.z")):
                self.add(path.stem, path.read_bytes())

    def add(self, file_id, data, name=""):
        """Zlib bytes, or those of the binary form."""
        key = guid_bytes(file_id)
        self.plans[key] = Plan(key, name or file_id, data if data[:1] == b"\x78" else compress(data))

    def log_in(self, name, password):
        with self.lock:
            user = self.users.get(name)
            if user is None or user.password != password:
                return None
            session = Session(user)
            self.sessions[session.id] = session
            return session

    def forget_sessions(self):
        with self.lock:
            self.sessions.clear()

    def load(self, session, file_id):
        with self.lock:
            plan = self._plan(file_id)
            session.seen[file_id] = (plan.generation, len(plan.changes))
            return plan.data

    def store(self, session, file_id, data):
        """A whole plan: whoever works on the old one has to load again."""
        with self.lock:
            plan = self._plan(file_id)
            decompress(data)
            self._keep(plan, data)
            plan.generation, plan.changes = plan.generation + 1, []
            session.seen[file_id] = (plan.generation, 0)

    def exchange(self, session, file_id, log=None):
        """Takes the changes of a session. @return what others have sent since its last exchange"""
        with self.lock:
            plan = self._plan(file_id)
            generation, position = session.seen.get(file_id, (None, 0))
            if generation != plan.generation:
                raise Refusal(OUT_OF_SYNC, "The change log is out of sync. Load the file again.")
            others = [operation for sender, changes in plan.changes[position:] if sender != session.id
                      for operation in changes]
            if log is not None:
                self._play(session, plan, decompress(log))
            session.seen[file_id] = (generation, len(plan.changes))
            return compress(write_log(others)) if others else NO_CHANGES

    def _play(self, session, plan, log):
        operations = read_log(log)
        if operations is None:
            raise Refusal(FIRST_CONFLICT + 5, "Too many changes.")
        tree = read_plan(decompress(plan.data))
        try:
            Player(tree).play(operations)
        except Conflict as conflict:
            raise Refusal(FIRST_CONFLICT + conflict.kind, conflict.message) from conflict
        self._keep(plan, compress(write_plan(tree)))
        plan.changes.append((session.id, operations))

    def _plan(self, file_id):
        if file_id not in self.plans:
            raise Refusal(2, f"The file {guid_text(file_id)} does not exist.")
        return self.plans[file_id]

    def _keep(self, plan, data):
        plan.data = data
        if self.folder:
            path = self.folder / (guid_text(plan.id) + ".z")
            path.with_suffix(".part").write_bytes(data)
            os.replace(path.with_suffix(".part"), path)

    def change_password(self, session, old, new):
        with self.lock:
            if session.user.password != old:
                raise Refusal(1, "The old password is wrong.")
            session.user.password = new


# What damaged bytes of a client lead to.
DAMAGE = (FormError, zlib.error, UnicodeError, KeyError, IndexError)
