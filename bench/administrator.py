"""Three of the files of a set, as a script of a few lines would write them: what the export is measured against.

Usage: administrator.py etree|lxml PLAN FOLDER
"""

import csv
import os
import sys

if sys.argv[1] == "lxml":
    from lxml import etree
else:
    from xml.etree import ElementTree as etree

FILES = {"Rooms": ("Code", "Name", "Capacity"), "Subjects": ("Code", "Name", "Key"),
         "Students": ("Code", "Lastname", "Firstname", "DateOfBirth")}

plan = etree.parse(sys.argv[2])
os.makedirs(sys.argv[3], exist_ok=True)
for name, columns in FILES.items():
    with open(os.path.join(sys.argv[3], name + ".csv"), "w", encoding="utf-8-sig", newline="") as file:
        writer = csv.writer(file, delimiter=";")
        writer.writerow(("Id", *columns))
        for item in plan.iterfind(f"{name}/Items/Item"):
            writer.writerow((item.get("ID").strip("{}").lower(), *(item.findtext(column, "") for column in columns)))
