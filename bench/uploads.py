"""Time and memory of the uploads to a service on this machine, as a table in Markdown.

Usage: uploads.py CONSOLE PLAN ROUNDS

The quickest round counts, and the largest resident size of its process. The service takes what comes and says yes.
"""

import json
import os
import pathlib
import sys
import tempfile

from measure import measure, size_text, time_text

sys.path.insert(0, str(pathlib.Path(__file__).parents[1] / "tests/exchange"))
from upload_server import Service

CONSOLE, PLAN = (os.path.abspath(path) for path in sys.argv[1:3])
SIZE = os.path.getsize(PLAN)

print("| upload | time | memory | to the file |\n|---|---|---|---|")
for provider, section, settings in (("sdui", "sduiExport", ("sduiUrl", "sduiPin")),
                                    ("iserv", "iServExport", ("iServUrl", "iServApiToken"))):
    best = []
    for _ in range(int(sys.argv[3])):
        with tempfile.TemporaryDirectory() as folder, Service() as service:
            path = os.path.join(folder, "config.json")
            with open(path, "w", encoding="utf-8") as file:
                json.dump({"Velmora": {section: {"sourceFileName": PLAN, **dict(zip(settings, (service.url, "x")))}}},
                          file)
            # Without what an earlier round has kept, so that all is sent.
            environment = {**os.environ, "XDG_CONFIG_HOME": folder}
            best.append(measure([CONSOLE, "export", "-c", path, "-p", provider], environment))
            assert len(service.requests[-1].body) > SIZE / 100, service.paths()
    seconds, memory = (min(values) for values in zip(*best))
    print(f"| {provider} | {time_text(seconds)} | {size_text(memory)} | {memory / SIZE:.2f} |")
