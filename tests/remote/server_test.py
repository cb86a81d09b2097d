#!/usr/bin/env python3
"""Runs the real programs against a data server of the test's own: what goes over the wire, what comes of it, and what
a server that fails or lies leads to.

Usage: server_test.py PROGRAM HOST FORMS USERS SAMPLE
"""

import json
import os
import pathlib
import re
import resource
import shutil
import socket
import struct
import subprocess
import sys
import tempfile
import time
import unittest
import uuid

HERE = pathlib.Path(__file__).parent
ROOT = HERE.parents[1]
sys.path += [str(HERE / "standin"), str(HERE.parent / "exchange")]

from client import Client
from server import StandIn
from store import OUT_OF_SYNC, Store, User
from upload_server import Service

from binary_form import decompress, read_plan, write_content
from change_log import MODIFICATION, Operation

PROGRAM = HOST = FORMS = USERS = SAMPLE = ""
PLAN = "{0E984725-C51C-4BF4-9960-E1C80E27ABA0}"
PLAN_BYTES = uuid.UUID(PLAN).bytes_le
PASSWORD = "Geh3im&\u00e4"
ROOM = "{6D2E1C9A-1B7F-4D4C-9C3E-2F0A51B7A001}"
OPEN = "Open VELMORA file..."
REFUSED = ("Login konnte nicht erfolgreich ausgef\u00fchrt werden. M\u00f6glicherweise ist der Benutzername oder das "
           "Kennwort falsch.")
SHORT = "Es konnten nicht alle Daten gelesen werden."
NOT_CONFIRMED = " (The data server has not confirmed that it stored the file.)"
CONFIRMED = " (The data server has confirmed that it stored the file.)"
IMPORT_LINES = [OPEN, "Start Import from OCF...", "Save VELMORA file...", "Import finished."]
BOUND = 60


def text(value):
    data = value.encode("utf-16-le")
    return struct.pack("<i", len(data) // 2) + data


class Programs(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        common = tempfile.TemporaryDirectory()
        cls.addClassCleanup(common.cleanup)
        path = os.path.join(common.name, "plan.z")
        subprocess.run([FORMS, "convert", SAMPLE, path], check=True, timeout=BOUND)
        cls.plan = pathlib.Path(path).read_bytes()
        cls.wanted = os.path.join(common.name, "set")
        subprocess.run([PROGRAM, "export", "-s", "file", "-fn", SAMPLE, "-o", cls.wanted], check=True, timeout=BOUND,
                       stdout=subprocess.DEVNULL)

    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = folder.name
        self.target = os.path.join(self.folder, "out")
        self.store = Store()
        self.store.add(PLAN, self.plan)
        self.users(User("anna", PASSWORD))
        self.server = StandIn(self.store)
        self.server.__enter__()
        self.addCleanup(self.server.__exit__)

    def users(self, *users):
        self.store.users = {user.name: user for user in users}

    def run_program(self, *words, lines=(OPEN,)):
        """@return the lines behind those that are told, and the exit code; a failure is one line"""
        begin = time.monotonic()
        done = subprocess.run([*words, "-minimal-display"], check=False, capture_output=True, timeout=BOUND,
                              env={"HOME": self.folder, "XDG_CONFIG_HOME": self.folder})
        self.assertLess(time.monotonic() - begin, BOUND / 2)
        output = done.stdout.decode("utf-8")
        self.assertNotIn(PASSWORD, output)
        self.assertEqual(done.stderr, b"")
        found = output.split("\n")[:-1]
        self.assertEqual(found[:len(lines)], list(lines))
        found = found[len(lines):]
        if done.returncode != 0:
            self.assertEqual((len(found), found[0], found[-1][:8]), (2, "", "[Error] "), found)
            return found[1].removeprefix("[Error] "), done.returncode
        return found, 0

    def export(self, *more, user="anna", port=None, file_id=PLAN):
        """@return the last line but the word for an error, and the exit code"""
        words = ["-sn", "127.0.0.1", "-sp", str(port or self.server.port), "-un", user, "-up", PASSWORD]
        return self.run_program(PROGRAM, "export", "-s", "server", *words, *(("-sf", file_id) if file_id else ()),
                                "-o", self.target, *more)

    def export_file(self, path, target):
        return self.run_program(PROGRAM, "export", "-s", "file", "-fn", path, "-o", target)

    def assert_exported(self, result, target=None):
        self.assertEqual(result, (["Start Export to OCF...", "Export Finished."], 0))
        names = sorted(os.listdir(self.wanted))
        self.assertEqual(sorted(os.listdir(target or self.target)), names)
        for name in names:
            self.assertEqual(pathlib.Path(target or self.target, name).read_bytes(),
                             pathlib.Path(self.wanted, name).read_bytes(), name)

    def configure(self, job, **settings):
        server = {"serverName": "127.0.0.1", "serverPort": self.server.port, "serverUserName": "anna",
                  "serverPassword": PASSWORD, "serverFileId": PLAN}
        path = os.path.join(self.folder, "job.json")
        jobs = {job: {**server, **settings}}
        if job == "ocfImport":
            jobs["ocfExport"] = {"sourceProvider": "sERVER"}
        pathlib.Path(path).write_text(json.dumps({"Velmora": jobs}), "utf-8")
        return path

    def import_set(self, lines=3, target="Server"):
        source = os.path.join(self.folder, "in")
        os.makedirs(source, exist_ok=True)
        pathlib.Path(source, "Rooms.csv").write_text(f"Id;Code;Name;Capacity\r\n{ROOM[1:-1].lower()};Z99;Neubau;17\r\n",
                                                     "utf-8")
        job = self.configure("ocfImport", sourceFolderName=source, targetProvider=target)
        return self.run_program(HOST, "import", job, lines=IMPORT_LINES[:lines])

    def talk(self, number):
        """The turns of a connection in their order: direction, meaning, bytes."""
        self.wait_for(number)
        return [(entry["event"], entry["what"], bytes.fromhex(entry["bytes"]))
                for entry in self.server.log.of(number) if "bytes" in entry]

    def wait_for(self, number):
        end = time.monotonic() + BOUND
        while not any(entry["event"] == "end" for entry in self.server.log.of(number)):
            self.assertLess(time.monotonic(), end)
            time.sleep(0.01)

    def assert_session(self, begin, request, bytes_out):
        """Three connections, each closed before the next: login, one call, logoff. @return the id of the session"""
        login, call, logoff = (self.talk(number) for number in range(begin, begin + 3))
        for number in range(begin, begin + 3):
            events = self.server.log.of(number)
            self.assertEqual((events[0]["beside"], events[-1]["how"]), ([], "command 0, closed"))
        self.assertEqual([entry[:2] for entry in login], [("in", "login"), ("out", "login"), ("in", "end")])
        self.assertEqual(login[0][2], b"\1" + text("6.0.172") + text("anna") + text(PASSWORD))
        session = login[1][2][1:17]
        self.assertEqual(call[:2], [("in", "call", b"\3" + session), ("out", "call", b"\0")])
        self.assertTrue(call[2][2].startswith(request), call[2][2][:80])
        self.assertTrue(call[3][2].startswith(bytes_out), call[3][2][:80])
        self.assertEqual((len(call), call[4]), (5, ("in", "end", b"\0")))
        self.assertEqual(logoff, [("in", "logoff", b"\2" + session), ("out", "logoff", b"\0"), ("in", "end", b"\0")])
        return session


def renaming(teacher, name):
    """The change of a user who gives a teacher another name."""
    teacher.values["Surname"], version = name, teacher.values["Version"] + 1
    teacher.values["Version"] = version
    return Operation(MODIFICATION, "anna", object_id=teacher.id, object_name=name, object_version=version,
                     content=write_content(teacher))


def load_request(file_id=PLAN_BYTES):
    return struct.pack("<HHiB", 4, 1, 1, 20) + file_id


class Jobs(Programs):
    def test_export(self):
        self.assert_exported(self.export())
        reply = b"\0" + struct.pack("<HiBi", 0, 1, 1, len(self.plan)) + self.plan[:64]
        self.assert_session(1, load_request(), reply)
        self.assertEqual(self.talk(2)[2][2], load_request())
        self.assertEqual(len(self.server.conversations), 3)

    def test_import(self):
        other = Client(self.server.port, "anna", PASSWORD)
        self.assertEqual(other.log_in(), 0)
        rename = renaming(read_plan(other.load(PLAN_BYTES)).values["Teacher"].items[0], "Umbenannt")
        self.assertEqual(other.exchange(PLAN_BYTES, [rename]), (0, "", []))
        before = len(self.server.conversations)
        self.assertEqual(self.import_set(), ([IMPORT_LINES[3]], 0))
        self.assertEqual(len(self.server.conversations), before + 6)
        stored = self.store.plans[PLAN_BYTES].data
        sessions = [self.assert_session(before + 1, load_request(), b"\0" * 3),
                    self.assert_session(before + 4, struct.pack("<HHiB", 4, 3, 2, 20) + PLAN_BYTES +
                                        struct.pack("<Bi", 1, len(stored)) + stored[:64], bytes(7))]
        self.assertEqual(len(set(sessions)), 2)
        self.assertEqual(self.talk(before + 5)[3][2], bytes(7))
        # The plan as it lies there, read by other eyes: the room has come, and what was sent ahead of it stayed.
        tree = read_plan(decompress(stored))
        self.assertEqual(tree.values["Teacher"].items[0].values["Surname"], "Umbenannt")
        rooms = tree.values["Rooms"].items
        new, = (room for room in rooms if room.id == uuid.UUID(ROOM).bytes_le)
        self.assertEqual([new.values[key] for key in ("Code", "Name", "Capacity")], ["Z99", "Neubau", 17])
        self.assertEqual(len(rooms), len(read_plan(decompress(self.plan)).values["Rooms"].items) + 1)
        # Who worked on the plan meanwhile is told to load it again.
        self.assertEqual(other.exchange(PLAN_BYTES)[0], OUT_OF_SYNC)
        local = os.path.join(self.folder, "plan.z")
        pathlib.Path(local).write_bytes(stored)
        subprocess.run([FORMS, "convert", local, local + ".velmora"], check=True, timeout=BOUND)
        self.wanted = os.path.join(self.folder, "local")
        self.export_file(local + ".velmora", self.wanted)
        self.assert_exported(self.export())

    def test_an_import_without_a_target(self):
        message, code = self.import_set(target="")
        self.assertEqual((message[:24], code), ("The plan was not saved: ", 1))
        self.assertEqual(self.store.plans[PLAN_BYTES].data, self.plan)

    def test_uploads(self):
        for job, provider, name in (("sduiExport", "sdui", "Sdui"), ("iServExport", "iserv", "IServ")):
            with self.subTest(provider), Service() as service:
                begin = len(self.server.conversations)
                job = self.configure(job, sourceProvider="Server", sduiPin="1", sduiUrl=service.url,
                                     iServUrl=service.url, iServApiToken="2")
                self.assertEqual(self.run_program(PROGRAM, "export", "-c", job, "-p", provider),
                                 ([f"Start Upload to {name}...", "Upload successfully finished."], 0))
                self.assert_session(begin + 1, load_request(), b"\0" * 3)
                if provider == "sdui":
                    (_, _, content), = service.requests[-1].parts()
                    path = os.path.join(self.folder, "sent.velmora")
                    pathlib.Path(path).write_bytes(content)
                    self.assert_exported(self.export_file(path, self.target))
                else:
                    self.assertIn(b"Velmora", service.requests[-1].body)
                # The version of the plan travels with it: the same plan is not sent twice.
                self.assertEqual(self.run_program(PROGRAM, "export", "-c", job, "-p", provider),
                                 ([f"Start Upload to {name}...", "No changes detected since last upload. No Upload."],
                                  0))

    def test_other_jobs_of_the_host(self):
        job = self.configure("ocfExport", sourceProvider="Server", targetFolderName=self.target)
        self.assert_exported(self.run_program(HOST, "export", job))
        results = []
        for source in ({"sourceProvider": "server"}, {"sourceFileName": SAMPLE}):
            path = pathlib.Path(self.folder, "publication.json")
            job = self.configure("jsonExport", targetFileName=str(path), **source)
            self.assertEqual(self.run_program(HOST, "publish", job),
                             (["Start Publication...", "Publication finished."], 0))
            results.append(json.loads(path.read_text("utf-8-sig"))["result"])
        self.assertEqual(*(result["courses"] for result in results))
        self.assertEqual(len(self.server.conversations), 6)

    def test_rights(self):
        def policy(value):
            return {PLAN: {"Velmora.Login": value}}
        self.users(*(User(name, PASSWORD, **values) for name, values in {
            "anna": {}, "admin": {"admin": True, "policies": {}}, 
            "local": {"admin": True, "tenant": "Ost", "policies": {}},
            "one": {"policies": policy(1)}, "other": {"policies": {PLAN: {"Velmora.Edit": 3}}},
            "high": {"policies": policy(2)}, "bare": {"profile": False}}.items()))
        for user in ("admin", "local", "high"):
            self.assert_exported(self.export(user=user))
        for user, file_id in (("one", PLAN), ("other", PLAN), ("bare", PLAN), ("anna", None), ("anna", ROOM)):
            with self.subTest(user=user, file_id=file_id):
                begin = len(self.server.conversations)
                self.assertEqual(self.export(user=user, file_id=file_id),
                                 ("Cannot open Velmora file. No access rights.", 1))
                self.assertEqual(len(self.server.conversations), begin + 1, "no call without the right")
        self.assertEqual(self.export(user="nobody"), (REFUSED, 1))
        # The server has the last word; the id of zeros goes out as it is.
        self.assertEqual(self.export(user="admin", file_id=None),
                         ("The file {00000000-0000-0000-0000-000000000000} does not exist.", 1))
        self.assertEqual(self.talk(len(self.server.conversations))[2][2], load_request(bytes(16)))

    def test_a_right_that_ends_ahead_of_the_store(self):
        class Fading(User):
            values = [2, 1]

            def view(self, plans):
                self.policies = {PLAN: {"Velmora.Login": self.values.pop(0)}}
                return super().view(plans)
        self.users(Fading("anna", PASSWORD))
        message, code = self.import_set()
        self.assertEqual((message, code), ("Cannot store Velmora file. No access rights.", 1))
        self.assertEqual(self.store.plans[PLAN_BYTES].data, self.plan)

    def test_addresses(self):
        self.assert_exported(self.export(port=65536 + self.server.port))
        for file_id in ("nonsense", PLAN[1:-1], PLAN + "0"):
            begin = len(self.server.conversations)
            self.assertEqual(self.export(file_id=file_id)[1], 1)
            self.assertEqual(len(self.server.conversations), begin, "the id is looked at ahead of the way")
        with socket.create_server(("127.0.0.1", 0)) as unused:
            port = unused.getsockname()[1]
        self.assertEqual(self.export(port=port)[1], 1)
        self.assertEqual(self.run_program(PROGRAM, "export", "-s", "server", "-sn", "no-such-host.invalid")[1], 1)

    def test_two_users_at_work_on_one_plan(self):
        done = subprocess.run([USERS, str(self.server.port), "anna", PASSWORD, PLAN, "1"], check=False,
                              capture_output=True, timeout=BOUND)
        self.assertEqual(done.stdout.decode("utf-8").splitlines(), [
            "nothing",
            'conflict: "Raum "C017"" wurde bereits von Benutzer "" modifiziert.',
            "nothing", "nothing", "new",
            "out of sync: The change log is out of sync. Load the file again."])
        self.assertEqual(done.returncode, 0)


class Faults(Programs):
    def test_what_ends_an_export(self):
        os.mkdir(self.target)
        pathlib.Path(self.target, "Rooms.csv").write_text("old", "ascii")
        lies = [f"on=login,do=lie,what={what},size={size}" for what in ("name", "permissions", "folders", "class")
                for size in (1 << 30, -1, 100000)]
        lies += [f"on=request,operation=4.1,do=lie,what={what},size={size}" for size in (1 << 30, -1, 100000)
                 for what in ("message", "queue", "binary", "kind", "other", "empty")]
        lies += ["on=request,operation=4.1,do=lie,what=bomb,size=50000000",
                 "on=request,operation=4.1,do=lie,what=zeros,size=100000"]
        broken = [f"on={stage},do={do},after={after}" for stage, afters in
                  (("login", (0, 1, 17, 18, 40)), ("call", (0,)), ("logoff", (0,)),
                   ("request", (0, 1, 3, 7, 8, 12, 5000))) for do in ("cut", "reset") for after in afters]
        # A name that stands in the error's text, and is the password.
        echo = b"\0" + bytes(range(16)) + b"\1" + bytes(24) + bytes(16) + struct.pack("<ii", 1, 1) + text(PASSWORD)
        noise = [f"on={stage},do=garbage,size=3000,code={code}" for stage in ("login", "request") for code in range(4)]
        told = {
            "on=login,do=status,code=1": REFUSED, "on=login,do=status,code=255": REFUSED,
            "on=login,do=status,code=6": "Die Client-Version ist nicht kompatibel mit der Server-Version. Bitte "
                                         "aktualisieren Sie Ihren Client.",
            "on=login,do=status,code=7": "Die Server-Version ist nicht kompatibel mit der Client-Version. Bitte "
                                         "aktualisieren Sie Ihren Server.",
            "on=call,do=status,code=3": "Service wurde nicht gefunden.",
            "on=call,do=status,code=9": "Unbekannter Fehler.",
            "on=request,do=status,code=3": "Service wurde nicht gefunden.",
            "on=request,do=status,code=1": "Unbekannter Fehler.",
            "on=request,operation=4.1,do=error,code=5,text=Gesperrt.": "Gesperrt.",
            "on=request,operation=4.1,do=error,code=5,text= \n": "The data server has refused without a reason (code 5).",
            "on=request,do=drop": "The request makes no sense.",
        }
        told["on=login,do=cut,after=0"] = told["on=request,do=cut,after=5000"] = SHORT
        for fault in [*told, *lies, *broken, *noise, "on=request,do=echo,code=3,text=Kein Recht", "on=accept,do=cut",
                      "on=accept,do=reset", "on=login,do=deep,size=100000",
                      f"on=login,do=raw,hex={echo.hex()}", "on=call,do=drop,times=99"]:
            with self.subTest(fault):
                self.server.faults.clear()
                self.server.faults.plan(fault)
                message, code = self.export()
                self.assertEqual(code, 1)
                if fault in told:
                    self.assertEqual(message, told[fault])
                self.assertEqual(os.listdir(self.target), ["Rooms.csv"])
                self.assertEqual(pathlib.Path(self.target, "Rooms.csv").read_text("ascii"), "old")
        # What a length promises takes no memory: none of the programs came near the gigabytes of the lies.
        self.assertLess(resource.getrusage(resource.RUSAGE_CHILDREN).ru_maxrss, 1 << 20)

    def test_what_an_export_lives_through(self):
        for fault, connections in (("on=call,do=drop", 3), ("on=login,do=drip,every=0.0005", 3),
                                   (f"on=request,do=drip,after={len(self.plan) - 500},every=0.001", 3),
                                   ("on=accept,do=wait,every=0.5,times=3", 3), ("on=logoff,do=status,code=4", 3),
                                   ("on=login,do=deep,size=20", None)):
            with self.subTest(fault):
                self.server.faults.clear()
                self.server.faults.plan(fault)
                begin = len(self.server.conversations)
                if connections is None:
                    self.assertEqual(self.export(), ("Cannot open Velmora file. No access rights.", 1))
                    continue
                self.assert_exported(self.export())
                self.assertEqual(len(self.server.conversations), begin + connections)
                shutil.rmtree(self.target)
        # A session that the server has lost is made anew on the connection of the call.
        lost = [entry[1] for entry in self.talk(2) if entry[0] == "in"]
        self.assertEqual(lost, ["call", "login", "call", "request", "end"])

    def test_a_request_goes_out_again_without_its_values(self):
        self.server.faults.plan("on=request,do=drop")
        self.assertEqual(self.export()[1], 1)
        requests = [entry[2] for entry in self.talk(2) if entry[1] == "request" and entry[0] == "in"]
        self.assertEqual(requests, [load_request(), struct.pack("<HHi", 4, 1, 0)])

    def test_a_store_that_fails_says_what_it_knows(self):
        for fault, message, confirmed in (
                ("on=login,skip=1,do=status,code=1", REFUSED, False),
                ("on=call,skip=1,do=status,code=3", "Service wurde nicht gefunden.", False),
                ("on=call,skip=1,do=reset", "", False),
                ("on=request,operation=4.3,do=error,code=8,text=Platte voll.", "Platte voll.", False),
                ("on=request,operation=4.3,do=drop", "The request makes no sense.", False),
                ("on=request,operation=4.3,do=cut", SHORT, None),
                ("on=request,operation=4.3,do=cut,after=2", SHORT, None),
                ("on=logoff,skip=1,do=cut", SHORT, True)):
            with self.subTest(fault):
                self.store.add(PLAN, self.plan)
                self.server.faults.clear()
                self.server.faults.plan(fault)
                found, code = self.import_set()
                self.assertEqual(code, 1)
                sentence = CONFIRMED if confirmed else NOT_CONFIRMED
                self.assertTrue(found == message + sentence if message else found.endswith(sentence), found)
                stored = self.store.plans[PLAN_BYTES].data
                self.assertEqual(stored != self.plan, confirmed is not False)
                read_plan(decompress(stored))


@unittest.skipUnless(shutil.which("stunnel"), "stunnel is not installed")
class Tunnel(Programs):
    """The example of the page, with other ports and paths."""

    def start(self, name, **changes):
        page = (ROOT / "docs" / "data-server.md").read_text("utf-8")
        block = re.search(rf"```ini\n; .*{name}\.conf\n(.*?)```", page, re.DOTALL).group(1)
        for key, value in changes.items():
            block, count = re.subn(rf"(?m)^{key} = .*$", f"{key} = {value}", block)
            self.assertEqual(count, 1, key)
        path = os.path.join(self.folder, name + ".conf")
        pathlib.Path(path).write_text("foreground = yes\npid =\nsyslog = no\ndebug = info\n" + block, "utf-8")
        tunnel = subprocess.Popen(["stunnel", path], stderr=subprocess.PIPE, text=True)
        self.addCleanup(tunnel.stderr.close)
        self.addCleanup(tunnel.wait, BOUND)
        self.addCleanup(tunnel.terminate)
        for line in tunnel.stderr:
            if bound := re.search(r"bound to 127\.0\.0\.1:(\d+)", line):
                return int(bound.group(1))
        return self.fail(f"{name} does not start")

    def certificate(self, name):
        """@return paths of a key and a certificate, made as the page tells"""
        page = (ROOT / "docs" / "data-server.md").read_text("utf-8")
        command = re.search(r"^openssl req .*?[^\\]$", page, re.DOTALL | re.MULTILINE).group(0)
        folder = os.path.join(self.folder, name)
        os.mkdir(folder)
        subprocess.run(["sh", "-c", command], cwd=folder, check=True, timeout=BOUND, stderr=subprocess.DEVNULL)
        return [os.path.join(folder, file) for file in ("velmora.key", "velmora.pem")]

    def test_the_example(self):
        key, certificate = self.certificate("server")
        behind = self.start("velmora-server", accept="127.0.0.1:0", connect=f"127.0.0.1:{self.server.port}", key=key,
                            cert=certificate)
        way = {"accept": "127.0.0.1:0", "connect": f"127.0.0.1:{behind}"}
        self.assert_exported(self.export(port=self.start("velmora-client", **way, CAfile=certificate)))
        self.assert_session(1, load_request(), b"\0" * 3)
        # Behind another certificate nobody gets the password.
        for changes in ({"CAfile": self.certificate("false")[1]},
                        {"CAfile": certificate, "checkHost": "another.example"}):
            self.assertEqual(self.export(port=self.start("velmora-client", **way, **changes))[1], 1)
        self.assertFalse([entry for number in range(4, len(self.server.conversations) + 1)
                          for entry in self.server.log.of(number) if entry.get("bytes")])


class Demo(unittest.TestCase):
    def test_the_page_shows_what_it_prints(self):
        done = subprocess.run([str(ROOT / "scripts" / "demo-server.sh"), os.path.dirname(PROGRAM)], check=True,
                              capture_output=True, text=True, timeout=BOUND)
        page = (ROOT / "docs" / "data-server.md").read_text("utf-8")
        shown = re.search(r"```console\n\$ python3 (.*?)```", page, re.DOTALL).group(0)
        self.assertEqual(re.sub(r"(127\.0\.0\.1:|-sp )\d+", r"\g<1>8100", done.stdout).strip(),
                         shown.removeprefix("```console\n").removesuffix("```").strip())


if __name__ == "__main__":
    PROGRAM, HOST, FORMS, USERS, SAMPLE = sys.argv[1:6]
    unittest.main(argv=sys.argv[:1] + sys.argv[6:], verbosity=2)
