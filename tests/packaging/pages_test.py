"""What is installed beside the programs tells the truth: pages, completion, schema and examples.

Usage: pages_test.py BUILD-FOLDER
"""

import functools
import json
import pathlib
import re
import subprocess
import sys
import tempfile
import unittest

import links

ROOT = pathlib.Path(__file__).resolve().parents[2]
CONSOLE_WORDS = {"export", "import", "newguids"}
JOBS = {"ocfExport": ("velmora-host", "export"), "ocfImport": ("velmora-host", "import"),
        "jsonExport": ("velmora-host", "publish"), "sduiExport": ("velmora-console", "export", "-p", "sdui", "-c"),
        "iServExport": ("velmora-console", "export", "-p", "iserv", "-c")}


@functools.cache
def sources(*folders):
    files = [file for folder in folders for file in sorted((ROOT / "src" / folder).rglob("*.[hc]*"))]
    return "\n".join(file.read_text("utf-8") for file in files if "windows" not in file.parts)


def found(pattern, *folders):
    return set(re.findall(pattern, sources(*folders)))


def program_words():
    """Commands, options and switches that the sources know."""
    header = (ROOT / "src" / "console" / "Program.h").read_text("utf-8")
    switches = re.findall(r'MinimalDisplay = "([\w-]+)"', header)
    options = found(r'(?:FindOption|ReadText)\("(\w+)"', "console")
    return (found(r'Command == "(\w+)"', "console"), found(r'\{"(\w+)", [A-Z]\w+\}', "console/host"),
            {"-" + name for name in options | set(switches)}, {"-" + name for name in switches})


def page(name):
    """The text of a manual page, without its requests and fonts."""
    text = (ROOT / "packaging" / "man" / name).read_text("utf-8")
    for mark, meaning in {r"\-": "-", r"\(dq": '"', r"\(:u": "ü", r"\(lq": "", r"\(rq": ""}.items():
        text = text.replace(mark, meaning)
    return re.sub(r"\\f.", "", text)


def pieces(schema, value, root, place):
    """Every object of a document with the properties that the schema gives it, after a check of its values."""
    merged = dict(schema)
    while "$ref" in merged:
        base = root["$defs"][merged.pop("$ref").rpartition("/")[2]]
        merged = {**base, **merged, "properties": {**base.get("properties", {}), **merged.get("properties", {})}}
    kinds = {"object": dict, "array": list, "string": str, "integer": int, "boolean": bool, None: object}
    assert isinstance(value, kinds[merged.get("type")]), (place, value)
    assert value in merged.get("enum", [value]), (place, value)
    if isinstance(value, dict):
        yield place, merged
        for name, member in value.items():
            assert name in merged["properties"], (place, name)
            yield from pieces(merged["properties"][name], member, root, f"{place}.{name}")
    for item in value if isinstance(value, list) else []:
        yield from pieces(merged["items"], item, root, place)


class Pages(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = pathlib.Path(folder.name)
        self.schema = json.loads((ROOT / "docs" / "configuration.schema.json").read_text("utf-8"))

    def test_manual_pages_name_all_that_the_programs_know(self):
        commands, jobs, options, switches = program_words()
        self.assertLess({"-c", "-f", "-minimal-display"}, options)
        self.assertEqual((commands, jobs), (CONSOLE_WORDS, {"export", "import", "publish"}))
        variables = found(r'(?:getenv|Variable|OwnFolder|SetFrom)\("(\w+)"', "")
        for names in found(r"char\* const Variable : \{([^}]*)\}", ""):
            variables |= set(re.findall(r"\w+", names))
        self.assertLess({"VELMORA_REPORT", "SSL_CERT_FILE", "all_proxy", "XDG_STATE_HOME"}, variables)
        errors = {text.strip() for text in
                  found(r'(?:EQuillon\w+|ReportError)\("(\w[^"\\:]+)', "console", "exchange/uCommon", "exchange/uUpload")}
        console = page("velmora-console.1")
        for word in commands | options | variables | errors | {"[Error]", ".B 0", ".B 1"}:
            self.assertTrue(re.search(r"(?<![\w-])" + re.escape(word) + r"(?!\w)", console), word)
        for word in jobs | switches | {".B 0", ".B 1"}:
            self.assertTrue(word in page("velmora-host.1"), word)

    def completed(self, *words):
        script = '. "$0"; COMP_WORDS=("$@"); COMP_CWORD=$(($# - 1)); compopt() { :; }; '
        script += "_${1//-/_}; printf '%s\\n' \"${COMPREPLY[@]}\""
        done = subprocess.run(["bash", "-c", script, ROOT / "packaging" / "completion" / "velmora-console", *words],
                              check=True, capture_output=True, text=True, timeout=30, cwd=ROOT / "samples")
        return set(done.stdout.split())

    def test_completion_offers_all_that_the_programs_know(self):
        commands, jobs, options, switches = program_words()
        self.assertEqual(self.completed("velmora-console", ""), commands)
        self.assertEqual(set().union(*(self.completed("velmora-console", word, "-") for word in commands)), options)
        self.assertEqual(self.completed("velmora-host", ""), jobs)
        self.assertEqual(self.completed("velmora-host", "export", "-"), switches)
        self.assertEqual(self.completed("velmora-console", "newguids", "-f", "sch"), {"schule.velmora"})

    def test_both_completions_offer_the_same(self):
        text = (ROOT / "packaging" / "windows" / "velmora-completion.ps1").read_text("utf-8")
        offered = {words: set(re.findall(r"'([\w-]+)'", found))
                   for words, found in re.findall(r"^  '([\w -]+)' += (.*)$", text, re.MULTILINE)}
        self.assertEqual(len(offered), 10)
        for words, found in offered.items():
            with self.subTest(words):
                if words.startswith("-"):
                    self.assertEqual(self.completed("velmora-console", "export", words, ""), found)
                else:
                    self.assertEqual(self.completed(*words.split(), "-" if " " in words else ""), found)

    def test_links_of_installed_pages_hold(self):
        subprocess.run(["cmake", "--install", BUILD, "--prefix", self.folder], check=True, stdout=subprocess.DEVNULL,
                       timeout=120)
        folder = (self.folder / "share" / "doc" / "velmora-console").resolve()
        pages, broken = links.broken(folder)
        self.assertIn(folder / "README.md", pages)
        self.assertEqual(broken, [])

    def refusal(self, job, key, value):
        settings = self.folder / "settings.json"
        settings.write_text(json.dumps({"Velmora": {job: {key: value}}}), "utf-8")
        program, *words = JOBS[job]
        done = subprocess.run([BUILD / program, *words, settings], check=False, capture_output=True, text=True,
                              timeout=30, cwd=self.folder, env={"HOME": str(self.folder)})
        return re.findall(r'^\[Error\] Key "([^"]*)"', done.stdout, re.MULTILINE)

    def test_schema_has_the_keys_that_the_programs_read(self):
        known = set()
        everything = {"Velmora": {job: {} for job in JOBS}}
        for place, schema in list(pieces(self.schema, everything, self.schema, "")):
            known |= set(schema["properties"])
            job = place.rpartition(".")[2]
            for key, form in schema["properties"].items() if job in JOBS else []:
                wrong = {"string": [1], "integer": [0.5, 2**31], "boolean": ["true", 0]}.get(form.get("type"), [1])
                for value in wrong:
                    self.assertEqual(self.refusal(job, key, value), [f"{job}.{key}"], value)
        texts = json.dumps(self.schema)
        fields = {name[0].lower() + name[1:] for name in found(r'>\("F([A-Z]\w+)"\)', "exchange")}
        self.assertLess(known - {"Velmora"}, fields)
        for name in fields | found(r'\{+"(\w+)", (?:TJson|xml|dt)', "exchange/uJSONExport"):
            self.assertTrue(f'"{name}"' in texts, name)

    def test_examples_are_valid_and_for_all_jobs(self):
        jobs = set()
        for file in sorted((ROOT / "examples").glob("*.json")):
            document = json.loads(file.read_text("utf-8"))
            self.assertTrue(list(pieces(self.schema, document, self.schema, file.name)))
            jobs |= set(document["Velmora"])
        self.assertEqual(jobs, set(JOBS))


if __name__ == "__main__":
    BUILD = pathlib.Path(sys.argv.pop()).resolve()
    unittest.main(verbosity=2)
