"""Prints the cells of "Sheet1" of an .xls or .xlsx file as JSON: "t:text", "n:number", "d:date", "-"."""
import datetime
import json
import re
import sys
import zipfile
from xml.etree import ElementTree

import xlrd


def number(value):
    return "n:%d" % value if value == int(value) else "n:%r" % value


def date(serial):
    return "d:" + (datetime.date(1899, 12, 30) + datetime.timedelta(days=serial)).strftime("%Y/%m/%d")


def xls_rows(name):
    book = xlrd.open_workbook(name, formatting_info=True)
    sheet = book.sheet_by_name("Sheet1")
    assert book.datemode == 0 and sheet.panes_are_frozen and sheet.horz_split_pos == 1
    assert book.font_list[book.xf_list[sheet.cell_xf_index(0, 0)].font_index].weight == 700
    shown = {xlrd.XL_CELL_EMPTY: lambda value: "-", xlrd.XL_CELL_TEXT: lambda value: "t:" + value,
             xlrd.XL_CELL_NUMBER: number, xlrd.XL_CELL_DATE: date}
    for row in range(sheet.nrows):
        yield [shown[sheet.cell_type(row, column)](sheet.cell_value(row, column)) for column in range(sheet.ncols)]


def xlsx_rows(name):
    space = "{http://schemas.openxmlformats.org/spreadsheetml/2006/main}"
    with zipfile.ZipFile(name) as package:
        assert package.testzip() is None
        for part in package.namelist():
            ElementTree.fromstring(package.read(part))
        root = ElementTree.fromstring(package.read("xl/worksheets/sheet1.xml"))
    columns = len(root.find(space + "cols"))
    for row in root.iter(space + "row"):
        cells = ["-"] * columns
        for cell in row:
            if cell.get("t") == "inlineStr":
                text = cell.find(space + "is").find(space + "t").text
                text = re.sub("_x([0-9A-F]{4})_", lambda match: chr(int(match[1], 16)), text)
                shown = "t:" + text
            else:
                value = float(cell.find(space + "v").text)
                shown = date(value) if cell.get("s") == "3" else number(value)
            cells[ord(cell.get("r")[0]) - ord("A")] = shown
        yield cells


print(json.dumps(list(xlsx_rows(sys.argv[1]) if sys.argv[1].endswith("x") else xls_rows(sys.argv[1]))))
