#!/usr/bin/python3
"""Tells what other programs' readers find in workbooks and documents of today's form: a line for each thing, its parts
split by tabs, as xls_dump.py does.

usage: office_dump.py FILE...
"""
import re
import sys
import zipfile
from xml.etree import ElementTree

import docx
import openpyxl
from docx.enum.style import WD_STYLE_TYPE
from docx.oxml.ns import qn
from openpyxl.utils.datetime import to_excel

sys.dont_write_bytecode = True  # nothing is left in the folder of the sources
from xls_dump import shown_date, shown_number

DRAWING = "{http://schemas.openxmlformats.org/drawingml/2006/spreadsheetDrawing}"


def one_line(text):
    return text.replace("\\", "\\\\").replace("\n", "\\n").replace("\t", " ")


def shown(cell):
    value, code = cell.value, cell.number_format
    if isinstance(value, str):
        return value
    if cell.is_date:
        return shown_date(to_excel(value), code, 0)
    if code == "General":
        return f"{value:.15g}"
    sections = re.findall(r'(?:"[^"]*"|\\.|[^;])+', code)
    if value < 0 and len(sections) > 1:
        return shown_number(-value, sections[1])
    return ("-" if value < 0 else "") + shown_number(abs(value), sections[0])


def looks(cell):
    font, align, under = cell.font, cell.alignment, cell.fill
    words = [font.name, f"{font.sz:g}", (font.color.rgb if font.color else "FF000000")[2:].lower()]
    words += [name for name, on in (("bold", font.b), ("italic", font.i), ("underlined", font.u), ("struck", font.strike)) if on]
    words += [align.horizontal or "general", {"center": "middle"}.get(align.vertical, align.vertical)]
    words += [name for name, on in (("wrap", align.wrap_text), ("shrink", align.shrink_to_fit)) if on]
    if align.textRotation:
        words.append(f"turned {align.textRotation}")
    if under.fill_type:
        words.append("on " + under.fgColor.rgb[2:].lower())
    for name in ("left", "right", "top", "bottom"):
        side = getattr(cell.border, name)
        if side is not None and side.style:
            words.append(f"{name} {side.style} {side.color.rgb[2:].lower()}")
    return " ".join(words)


def dump_workbook(path):
    book = openpyxl.load_workbook(path)
    print("workbook", path, book.properties.title or "", book.properties.creator or "", sep="\t")
    for sheet in book:
        print("sheet", sheet.title, sheet.max_row, sheet.max_column, sep="\t")
        print("widths", *(f"{sheet.column_dimensions[key].width * 6:g}" for key in sheet.column_dimensions), sep="\t")
        print("heights", *(f"{sheet.row_dimensions[row].height:g}" for row in range(1, sheet.max_row + 1)), sep="\t")
        print("breaks", *(one.id for one in sheet.row_breaks.brk), sep="\t")
        print("frozen", sheet.freeze_panes or "", sep="\t")
        for merged in sorted(sheet.merged_cells.ranges, key=lambda one: (one.min_row, one.max_row, one.min_col)):
            print("merge", merged.min_row - 1, merged.max_row, merged.min_col - 1, merged.max_col, sep="\t")
        for row in sheet.iter_rows():
            for cell in row:
                if cell.value is None:
                    continue
                kind = "text" if isinstance(cell.value, str) else "date" if cell.is_date else "number"
                value = "" if kind == "text" else repr(float(to_excel(cell.value) if kind == "date" else cell.value))
                print("cell", cell.row - 1, cell.column - 1, kind, one_line(shown(cell)), value, cell.number_format,
                      looks(cell), sep="\t")
                if cell.hyperlink:
                    print("link", cell.row - 1, cell.column - 1, cell.hyperlink.target, sep="\t")
    with zipfile.ZipFile(path) as parts:
        assert parts.testzip() is None
        for name in parts.namelist():
            if name.startswith("xl/drawings/drawing"):
                for anchor in ElementTree.fromstring(parts.read(name)):
                    row, column = (anchor.find(f"{DRAWING}from/{DRAWING}{part}").text for part in ("row", "col"))
                    shape = anchor.find(f".//{DRAWING}cNvPr")
                    print("picture", f"{row} {column}", one_line(shape.get("descr", "")), sep="\t")


def dump_document(path):
    document = docx.Document(path)
    print("document", path, document.core_properties.title, document.core_properties.author, sep="\t")
    for section in document.sections:
        print("section", section.page_width.twips, section.page_height.twips, sep="\t")
    for style in document.styles:
        if style.element.get(qn("w:default")) and style.type == WD_STYLE_TYPE.PARAGRAPH:
            fonts = document.styles.element.find(".//" + qn("w:docDefaults") + "//" + qn("w:rFonts"))
            print("style", style.name, fonts.get(qn("w:ascii")), sep="\t")
    page = 0
    for paragraph in document.paragraphs:
        frame = paragraph._p.find(qn("w:pPr") + "/" + qn("w:framePr"))
        if frame is not None:
            place = " ".join(frame.get(qn("w:" + part)) for part in ("x", "y", "w", "h"))
            runs = "".join(one.text or "\n" if one.tag != qn("w:tab") else "\t"
                           for one in paragraph._p.iter(qn("w:t"), qn("w:br"), qn("w:tab")))
            style = [f"{run.font.name} {run.font.size.pt:g} {run.font.color.rgb}" + " bold" * bool(run.bold)
                     for run in paragraph.runs if run.font.size is not None]
            print("frame", page, place, paragraph.alignment, one_line(runs), *style[:1], sep="\t")
        for shape in paragraph._p.iter(qn("wp:docPr")):
            if shape.get("descr") is not None:
                print("picture", page, one_line(shape.get("descr")), sep="\t")
        for link in paragraph._p.iter(qn("w:hyperlink")):
            relation = link.get(qn("r:id"))
            print("link", document.part.rels[relation].target_ref if relation else "#" + link.get(qn("w:anchor")), sep="\t")
        if paragraph._p.find(qn("w:pPr") + "/" + qn("w:sectPr")) is not None:
            page += 1


for name in sys.argv[1:]:
    dump_document(name) if name.endswith(".docx") else dump_workbook(name)
