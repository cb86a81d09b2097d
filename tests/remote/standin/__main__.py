"""A stand-in for the data server, to try the programs with.

Example: python3 tests/remote/standin --user anna:secret --plan "{0E984725-C51C-4BF4-9960-E1C80E27ABA0}=plan.z"

The first line of its output tells the port. It ends with SIGTERM, SIGINT, or at the end of its life.
"""

import argparse
import json
import pathlib
import signal
import sys
import threading

from server import StandIn
from store import Store, User


def words():
    parser = argparse.ArgumentParser(prog="standin", description=__doc__.splitlines()[0])
    parser.add_argument("--plan", action="append", default=[], metavar="{ID}=FILE",
                        help="a plan in its binary form, plain or compressed (velmora-forms makes .bin and .z)")
    parser.add_argument("--folder", help="holds the plans as {ID}.z; what is stored goes there too")
    parser.add_argument("--workspace", metavar="FILE", help="the compressed bytes of the workspace (service 3)")
    parser.add_argument("--user", action="append", default=[], metavar="NAME:PASSWORD", help="with rights on each file")
    parser.add_argument("--admin", action="append", default=[], metavar="NAME:PASSWORD", help="an administrator")
    parser.add_argument("--users", metavar="FILE",
                        help='JSON: a list of {"name", "password", "admin", "tenant", "policies", "profile"}; policies '
                             'such as {"{ID}": {"Velmora.Login": 2}}, with the key "" for files that are not listed')
    parser.add_argument("--port", type=int, default=0, help="that of the system's choice without it")
    parser.add_argument("--log", metavar="FILE", help="each byte of each connection, as JSON lines")
    parser.add_argument("--fault", action="append", default=[], metavar="on=STAGE,do=WHAT,...", help="see faults.py")
    parser.add_argument("--life", type=float, default=600, metavar="SECONDS")
    return parser.parse_args()


def make_store(options):
    store = Store(options.folder)
    for text in options.plan:
        file_id, path = text.split("=", 1)
        store.add(file_id, pathlib.Path(path).read_bytes(), pathlib.Path(path).stem)
    if options.workspace:
        store.workspace = pathlib.Path(options.workspace).read_bytes()
    users = [User(*text.split(":", 1)) for text in options.user]
    users += [User(*text.split(":", 1), admin=True) for text in options.admin]
    if options.users:
        users += [User(**values) for values in json.loads(pathlib.Path(options.users).read_text("utf-8"))]
    store.users = {user.name: user for user in users}
    return store


def main():
    options = words()
    stop = threading.Event()
    for number in (signal.SIGTERM, signal.SIGINT):
        signal.signal(number, lambda *_: stop.set())
    with StandIn(make_store(options), options.log, options.port, options.fault) as server:
        print(f"listening on 127.0.0.1:{server.port}", flush=True)
        stop.wait(options.life)
    return 0


if __name__ == "__main__":
    sys.exit(main())
