#!/usr/bin/python3
"""Says which rules of PDF/A-2b (ISO 19005-2) the files break that a reader of others can see: a line each.

usage: archive_check.py FILE...
"""
import struct
import sys
from xml.etree import ElementTree

import pikepdf

RDF = "{http://www.w3.org/1999/02/22-rdf-syntax-ns#}"
PDFAID = "{http://www.aiim.org/pdfa/ns/id/}"
REFUSED_ACTIONS = {"/Launch", "/Sound", "/Movie", "/ResetForm", "/ImportData", "/Hide", "/JavaScript", "/Trans"}


def profile_faults(profile):
    data = profile.read_bytes()
    size, = struct.unpack(">I", data[:4])
    if size != len(data) or data[36:40] != b"acsp" or data[12:20] != b"mntrRGB " or data[8] != 2:
        yield "the colour profile is none of a screen"
    count, = struct.unpack(">I", data[128:132])
    tags = {data[132 + 12 * at:136 + 12 * at]: struct.unpack(">II", data[136 + 12 * at:144 + 12 * at]) for at in range(count)}
    for name in (b"desc", b"cprt", b"wtpt", b"rXYZ", b"gXYZ", b"bXYZ", b"rTRC", b"gTRC", b"bTRC"):
        place, length = tags.get(name, (0, 0))
        if place < 128 or place + length > len(data):
            yield f"the colour profile lacks {name.decode()}"
    sums = [sum(struct.unpack(">i", data[tags[c][0] + at:tags[c][0] + at + 4])[0] for c in (b"rXYZ", b"gXYZ", b"bXYZ"))
            for at in (8, 12, 16)]
    if any(abs(part / 65536 - white) > 0.001 for part, white in zip(sums, (0.9642, 1, 0.8249))):
        yield "red, green and blue do not make white"
    place, length = tags[b"rTRC"]
    steps, = struct.unpack(">I", data[place + 8:place + 12])
    curve = struct.unpack(f">{steps}H", data[place + 12:place + 12 + 2 * steps])
    if list(curve) != sorted(curve) or curve[0] != 0 or curve[-1] != 65535 or abs(curve[128] - 14146) > 20:
        yield "the tone curve is not that of the standard space"


def font_faults(pdf):
    for page in pdf.pages:
        for name, font in page.Resources.get("/Font", {}).items():
            descendant = font.DescendantFonts[0]
            descriptor = descendant.FontDescriptor
            if not any(key in descriptor for key in ("/FontFile2", "/FontFile3")):
                yield f"{name} is not embedded"
            if descendant.Subtype == "/CIDFontType2" and "/CIDToGIDMap" not in descendant:
                yield f"{name} has no map of glyphs"


def faults(path):
    with pikepdf.open(path) as pdf:
        root = pdf.Root
        metadata = root.get("/Metadata")
        if metadata is None or "/Filter" in metadata:
            yield "no metadata that programs read without unpacking"
        else:
            text = metadata.read_raw_bytes()
            parts = {element.tag: element.text for element in ElementTree.fromstring(text).iter()}
            if parts.get(PDFAID + "part") != ("3" if "/AF" in root else "2") or parts.get(PDFAID + "conformance") not in ("A", "B"):
                yield "it does not say that it is for archives"
            titles = [item.text for title in ElementTree.fromstring(text).iter("{http://purl.org/dc/elements/1.1/}title")
                      for item in title.iter(RDF + "li")]
            if titles != [str(pdf.docinfo.get("/Title", ""))]:
                yield f"the titles differ: {titles}"
        intents = [one for one in root.get("/OutputIntents", []) if one.S == "/GTS_PDFA1"]
        if len(intents) != 1 or intents[0].DestOutputProfile.N != 3:
            yield "no output intent"
        else:
            yield from profile_faults(intents[0].DestOutputProfile)
        if len(pdf.trailer.get("/ID", [])) != 2 or len(bytes(pdf.trailer.ID[0])) < 16:
            yield "no identity"
        if "/Encrypt" in pdf.trailer:
            yield "it is encrypted"
        for number, page in enumerate(pdf.pages, 1):
            if "/Resources" not in page.obj:
                yield f"page {number} has no resources of its own"
            for annotation in page.obj.get("/Annots", []):
                if int(annotation.get("/F", 0)) & 0b100011:
                    yield f"page {number} has a hidden note"
                if not int(annotation.get("/F", 0)) & 4:
                    yield f"page {number} has a note that is not printed"
        yield from font_faults(pdf)
        for thing in pdf.objects:
            if not isinstance(thing, (pikepdf.Dictionary, pikepdf.Stream)):
                continue
            if thing.get("/S") in REFUSED_ACTIONS and thing.get("/Type") != "/OutputIntent":
                yield f"an action {thing.S}"
            if thing.get("/Filter") == "/LZWDecode" or "/AA" in thing:
                yield "something that archives refuse"
            if thing.get("/Subtype") == "/Image" and thing.get("/ColorSpace") == "/DeviceCMYK":
                yield "a picture in the colours of inks"


for name in sys.argv[1:]:
    for fault in faults(name):
        print(f"{name}: {fault}")
