#!/usr/bin/python3
"""Tells what another program's reader finds in workbooks: a line for each thing, its parts split by tabs.

usage: xls_dump.py FILE...
"""
import re
import struct
import sys

import xlrd

KINDS = {xlrd.XL_CELL_TEXT: "text", xlrd.XL_CELL_NUMBER: "number", xlrd.XL_CELL_DATE: "date"}
SIDES = ("left", "right", "top", "bottom")


def tokens(section):
    """The parts of a format section: literals and codes."""
    for quoted, escaped, bracket, code in re.findall(
            r'"([^"]*)"|\\(.)|\[([^\]]*)\]|(AM/PM|y+|m+|d+|h+|s+|[#0,.]*[#0]|.)', section):
        if code:
            yield "code", code
        elif not bracket:
            yield "literal", quoted + escaped


def shown_number(value, section):
    digits = next((code for kind, code in tokens(section) if kind == "code" and "0" in code or code == "#"), "0")
    if any(token == ("code", "%") for token in tokens(section)):
        value *= 100
    decimals = len(digits.split(".")[1]) if "." in digits else 0
    least = digits.split(".")[0].count("0")
    text = f"{value:{',' if ',' in digits else ''}.{decimals}f}"
    if "," not in digits:
        text = text.rjust(least + (decimals + 1 if decimals else 0), "0")
    return "".join(text if kind == "code" and token == digits else token for kind, token in tokens(section))


def shown_date(value, section, mode):
    year, month, day, hour, minute, second = xlrd.xldate_as_tuple(value, mode)
    moment = __import__("datetime").datetime(max(year, 1), max(month, 1), max(day, 1), hour, minute, second)
    names = {"yyyy": "%Y", "yy": "%y", "mmmm": "%B", "mmm": "%b", "mm": "%m", "dddd": "%A", "ddd": "%a", "dd": "%d",
             "hh": "%H", "ss": "%S"}
    result, hours = "", False
    for kind, token in tokens(section):
        if kind == "literal":
            result += token
        elif token == "mm" and hours:
            result += f"{minute:02}"
        elif token in names:
            result += moment.strftime(names[token])
        elif token in ("m", "d", "h"):
            result += str({"m": month, "d": day, "h": (hour % 12 or 12) if "AM/PM" in section else hour}[token])
        elif token == "AM/PM":
            result += "PM" if hour >= 12 else "AM"
        else:
            result += token
        hours = token[0] == "h" or hours and kind == "literal" or hours and token == ":"
    return result


def shown(cell, code, mode):
    if cell.ctype == xlrd.XL_CELL_TEXT:
        return cell.value
    if code == "General":
        return f"{cell.value:.15g}"
    if cell.ctype == xlrd.XL_CELL_DATE:
        return shown_date(cell.value, code, mode)
    sections = re.findall(r'(?:"[^"]*"|\\.|[^;])+', code)
    negative = cell.value < 0
    if negative and len(sections) > 1:
        return shown_number(-cell.value, sections[1])
    return ("-" if negative else "") + shown_number(abs(cell.value), sections[0])


def color(book, index):
    return "%02x%02x%02x" % (book.colour_map.get(index) or (0, 0, 0))


def looks(book, xf):
    font, align, under = book.font_list[xf.font_index], xf.alignment, xf.background
    words = [font.name, f"{font.height / 20:g}", color(book, font.colour_index)]
    words += [name for name, on in (("bold", font.weight >= 700), ("italic", font.italic),
                                    ("underlined", font.underline_type), ("struck", font.struck_out)) if on]
    words += [("general", "left", "center", "right", "fill", "justify")[align.hor_align],
              ("top", "middle", "bottom", "justify")[align.vert_align]]
    words += [name for name, on in (("wrap", align.text_wrapped), ("shrink", align.shrink_to_fit)) if on]
    if align.rotation:
        words.append(f"turned {align.rotation}")
    if under.fill_pattern:
        words.append("on " + color(book, under.pattern_colour_index))
    for side in SIDES:
        line = getattr(xf.border, side + "_line_style")
        if line:
            words.append(f"{side} {line} {color(book, getattr(xf.border, side + '_colour_index'))}")
    return " ".join(words)


def records(stream):
    at = 0
    while at + 4 <= len(stream):
        kind, size = struct.unpack_from("<HH", stream, at)
        yield kind, stream[at + 4:at + 4 + size]
        at += 4 + size


def drawings(stream):
    """The kinds of the stored pictures, and of each shown one its sheet, its corners and the words that go with it."""
    sheet = -1
    for kind, data in records(stream):
        if kind == 0x0809:
            sheet += 1
        if kind == 0x00EB:
            for store, size in re.findall(rb"(\x00\x6e\x1e\xf0|\xa0\x46\x1d\xf0)(....)", data, re.S):
                yield "stored", "png" if store[2] == 0x1E else "jpeg", struct.unpack("<I", size)[0] - 17
        if kind == 0x00EC:
            anchor = data.index(b"\x00\x00\x10\xf0\x12\x00\x00\x00") + 8
            described = data.find(b"\x81\xc3")
            words = ""
            if described >= 0:
                size = struct.unpack_from("<I", data, described + 2)[0]
                words = data[described + 6:described + 6 + size].decode("utf-16-le").rstrip("\0")
            yield "picture", f"{sheet - 1} " + " ".join(map(str, struct.unpack_from("<9H", data, anchor))), words


def dump(path):
    book = xlrd.open_workbook(path, formatting_info=True)
    print("workbook", path, sep="\t")
    for index, sheet in enumerate(book.sheets()):
        print("sheet", sheet.name, sheet.nrows, sheet.ncols, sep="\t")
        widths = [sheet.colinfo_map[c].width if c in sheet.colinfo_map else 0 for c in range(sheet.ncols)]
        print("widths", *(f"{w * 6 / 256:g}" for w in widths), sep="\t")
        print("heights", *(f"{sheet.rowinfo_map[r].height / 20:g}" for r in range(sheet.nrows)
                           if r in sheet.rowinfo_map), sep="\t")
        print("breaks", *(row for row, _, _ in sheet.horizontal_page_breaks), sep="\t")
        for top, bottom, left, right in sorted(sheet.merged_cells):
            print("merge", top, bottom, left, right, sep="\t")
        for row in range(sheet.nrows):
            for column in range(sheet.ncols):
                cell = sheet.cell(row, column)
                if cell.ctype in (xlrd.XL_CELL_EMPTY,):
                    continue
                xf = book.xf_list[cell.xf_index]
                code = book.format_map[xf.format_key].format_str
                kind = KINDS.get(cell.ctype, "blank")
                text = "" if kind == "blank" else shown(cell, code, book.datemode)
                value = "" if kind in ("blank", "text") else repr(cell.value)
                text = text.replace("\\", "\\\\").replace("\n", "\\n").replace("\t", " ")
                print("cell", row, column, kind, text, value, code, looks(book, xf), sep="\t")
        for link in sheet.hyperlink_list:
            print("link", link.frowx, link.lrowx, link.fcolx, link.lcolx, link.url_or_path, sep="\t")
    stream = xlrd.compdoc.CompDoc(open(path, "rb").read()).get_named_stream("Workbook")
    for parts in drawings(stream):
        print(*parts, sep="\t")


if __name__ == "__main__":
    for name in sys.argv[1:]:
        dump(name)
