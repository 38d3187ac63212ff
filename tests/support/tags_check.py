#!/usr/bin/python3
"""Says which rules of PDF/UA-1 (ISO 14289-1) the files break that a reader of others can see: a line each.

usage: tags_check.py FILE...
"""
import sys

import pikepdf

PAINTS = {"f", "F", "f*", "S", "s", "B", "B*", "b", "b*", "Tj", "TJ", "'", '"', "Do", "sh", "EI"}


def marks_of_page(page, number):
    """Yields faults; returns the numbers of marked content."""
    marks, open_marks, in_text = [], [], None
    for operands, operator in pikepdf.parse_content_stream(page):
        name = str(operator)
        if name in ("BMC", "BDC"):
            content = operands[1].get("/MCID") if name == "BDC" else None
            if content is not None:
                if any(mark is not None for mark, _ in open_marks):
                    yield f"page {number}: marked content within marked content"
                marks.append(int(content))
            open_marks.append((content, in_text))
        elif name == "EMC":
            if not open_marks or open_marks.pop()[1] != in_text:
                yield f"page {number}: a mark crosses the bounds of a text"
        elif name == "BT":
            in_text = (in_text or 0) + 1
        elif name == "ET":
            if any(within == in_text for _, within in open_marks):
                yield f"page {number}: a mark outlives its text"
            in_text = None
        elif name in PAINTS and not open_marks:
            yield f"page {number}: {name} is neither told nor decoration"
    if open_marks:
        yield f"page {number}: a mark is not closed"
    if marks != list(range(len(marks))):
        yield f"page {number}: the numbers of marks are {marks}"
    return marks


def kids(element):
    content = element.get("/K")
    if content is None:
        return []
    return list(content) if isinstance(content, pikepdf.Array) else [content]


class Tree:
    def __init__(self, pdf):
        self.pdf = pdf
        self.owners = {}       # (page, mark) -> element
        self.annotations = {}  # annotation -> element
        self.headings = []
        self.found = []

    def walk(self, element, parent):
        kind = str(element.S)
        if element.P.objgen != parent.objgen:
            yield f"{kind}: another parent than the one that it is in"
        if kind == "/Figure" and not str(element.get("/Alt", "")):
            yield "a figure without words"
        if kind[1:2] == "H" and kind[2:].isdigit():
            self.headings.append(int(kind[2:]))
        if kind == "/Table":
            yield from self.rows(element)
        for kid in kids(element):
            if isinstance(kid, int):
                self.owners[(element.Pg.objgen, int(kid))] = element.objgen
            elif kid.get("/Type") == "/OBJR":
                self.annotations[kid.Obj.objgen] = element.objgen
            else:
                yield from self.walk(kid, element)

    def rows(self, table):
        widths = set()
        for row in kids(table):
            if row.S != "/TR":
                yield f"a table holds {row.S}"
                continue
            cells = kids(row)
            widths.add(sum(int(cell.get("/A", {}).get("/ColSpan", 1)) for cell in cells))
            for cell in cells:
                if cell.S == "/TH" and "/Scope" not in cell.get("/A", {}):
                    yield "a head cell that does not say what it heads"
        if len(widths) != 1:
            yield f"a table whose rows have {sorted(widths)} columns"


def faults(path):
    with pikepdf.open(path) as pdf:
        root = pdf.Root
        if not root.get("/MarkInfo", {}).get("/Marked", False):
            yield "it is not tagged"
            return
        if not str(root.get("/Lang", "")) or not root.get("/ViewerPreferences", {}).get("/DisplayDocTitle", False):
            yield "no language, or a file name in place of the title"
        if b"pdfuaid:part" not in root.Metadata.read_raw_bytes():
            yield "it does not say that everyone can read it"
        structure = root.StructTreeRoot
        tree = Tree(pdf)
        yield from tree.walk(structure.K, structure)
        level = 0
        for heading in tree.headings:
            if heading > level + 1:
                yield f"a heading of level {heading} below one of {level}"
            level = heading
        keys = list(structure.ParentTree.Nums)
        parents = {int(keys[at]): keys[at + 1] for at in range(0, len(keys), 2)}
        if list(parents) != sorted(parents):
            yield "the keys of the parent tree are out of order"
        for number, page in enumerate(pdf.pages, 1):
            marks = yield from marks_of_page(page, number)
            owners = [tree.owners.pop((page.obj.objgen, mark), None) for mark in marks]
            if [owner.objgen for owner in parents[int(page.obj.StructParents)]] != owners:
                yield f"page {number}: the parent tree tells other owners than the structure"
            for annotation in page.obj.get("/Annots", []):
                if tree.annotations.get(annotation.objgen) != parents[int(annotation.StructParent)].objgen:
                    yield f"page {number}: a link that is not told"
                if not str(annotation.get("/Contents", "")):
                    yield f"page {number}: a link without words"
        if tree.owners:
            yield f"{len(tree.owners)} marks are told and not there"


for name in sys.argv[1:]:
    for fault in faults(name):
        print(f"{name}: {fault}")
