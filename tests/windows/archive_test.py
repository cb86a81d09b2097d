"""The archive for Windows, unpacked elsewhere: its pages hold, and its programs run with nothing beside them.

Usage: archive_test.py ARCHIVE.zip
"""

import pathlib
import subprocess
import sys
import tempfile
import zipfile
from xml.etree import ElementTree

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parents[1] / "packaging"))
import links

WINE = "/usr/lib/wine/wine64"
LIBRARIES = {"curl", "gcc", "libzip", "mingw-w64", "nlohmann-json", "pugixml", "utf8proc", "utfcpp", "zlib"}

with tempfile.TemporaryDirectory() as name:
    folder = pathlib.Path(name)
    with zipfile.ZipFile(sys.argv[1]) as archive:
        assert archive.testzip() is None
        archive.extractall(folder)
    (root,) = folder.iterdir()
    assert {file.stem for file in (root / "licences").iterdir()} == LIBRARIES
    pages, broken = links.broken(root)
    assert root.resolve() / "README.md" in pages and not broken, broken
    task = ElementTree.parse(root / "velmora-nightly.xml").find(".//{*}Exec/{*}Command").text
    assert (root / task.rpartition("\\")[2]).is_file(), task
    assert (root / "velmora-completion.ps1").is_file()

    out = folder / "out"
    done = subprocess.run([WINE, "velmora-console.exe", "export", "-s", "file", "-fn", r"examples\schule.velmora", "-o",
                           "Z:" + str(out)], cwd=root, timeout=120, stdout=subprocess.PIPE, check=False)
    assert done.returncode == 0 and (out / "_Manifest.csv").is_file(), done
    done = subprocess.run([WINE, "velmora-host.exe", "export", "none.json"], cwd=root, timeout=120,
                          stdout=subprocess.PIPE, check=False)
    assert done.returncode == 1 and b"[Error] " in done.stdout and b"none.json" in done.stdout, done
    print(f"{pathlib.Path(sys.argv[1]).name}: {len(pages)} pages, {len(LIBRARIES)} licences, both programs run")
