"""Links between the pages of a folder."""

import re


def broken(folder):
    """Pages, and each link in them whose file or heading is missing."""
    headings = {file: {re.sub(r"[^\w -]", "", heading.lower()).strip().replace(" ", "-")
                       for heading in re.findall(r"^#+ (.*)$", file.read_text("utf-8"), re.MULTILINE)}
                for file in folder.resolve().rglob("*.md")}
    found = []
    for file in headings:
        for link in re.findall(r"\]\((?!https?:)([^)]+)\)", file.read_text("utf-8")):
            path, _, anchor = link.partition("#")
            target = (file.parent / path).resolve() if path else file
            if not target.is_file() or anchor and anchor not in headings[target]:
                found.append((file.name, link))
    return set(headings), found
