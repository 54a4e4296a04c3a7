#!/usr/bin/env python3
"""Check the compiled-in resources without building the program.

Dependency: python3 (standard library only). Run from anywhere:

    python3 tools/images/check_resources.py

It checks that every file listed in resources/*.qrc exists, that every path
the program looks up is provided by a qrc file, that every url(...) in the
style sheet resolves, that the icons carry a visible fill, and that the PNGs
have the expected size and an alpha channel where they need one. Exits
non-zero on any failure and ends with a "N passed, N failed" line.
"""

import re
import struct
import sys
import xml.etree.ElementTree as ET
from pathlib import Path

RES = Path(__file__).resolve().parents[2] / "resources"

ICONS = """script experiment group device settings connected disconnected play
stop-circle delete edit add done close alarm-light folder_search folder account
add-account male female incognito chevron-up chevron-down check time-stim
time-delay session refresh""".split()

STIMS = """green1 white1 blue1 red1 yellow1 blue2 red2 yellow2 white2 green2
whiteL whiteR audioLeftLo audioLeftHi audioRightLo audioRightHi audioBothLo
audioBothHi pedal-left pedal-right""".split()

LOOKED_UP = (
    [":/resources/Images/%s.svg" % n for n in ICONS]
    + [":/resources/Images/stims/%s.png" % n for n in STIMS]
    + [
        ":/resources/tarvelo-splash.png",
        ":/resources/tarvelo.png",
        ":/icons/folder.svg",
        ":/icons/delete.svg",
        ":/resources/Tarvelo.css",
        ":/resources/Fonts/RobotoCondensed-Regular.ttf",
        ":/resources/Fonts/RobotoCondensed-Bold.ttf",
    ]
)

passed = 0
failed = 0


def check(ok, what):
    global passed, failed
    if ok:
        passed += 1
    else:
        failed += 1
        print("FAIL: " + what)


def read_qrc(path):
    """Map resource path (":/prefix/name") -> file on disk."""
    entries = {}
    for res in ET.parse(path).getroot().iter("qresource"):
        prefix = res.get("prefix", "/").rstrip("/")
        for f in res.iter("file"):
            name = f.get("alias") or f.text.strip()
            entries[":%s/%s" % (prefix, name)] = path.parent / f.text.strip()
    return entries


def png_header(path):
    """(width, height, colour type) from a PNG's IHDR chunk."""
    if not path.is_file():
        return None
    data = path.read_bytes()[:33]
    if data[:8] != b"\x89PNG\r\n\x1a\n" or data[12:16] != b"IHDR":
        return None
    width, height, _depth, colour_type = struct.unpack(">IIBB", data[16:26])
    return width, height, colour_type


def main():
    qrcs = sorted(RES.glob("*.qrc"))
    check(len(qrcs) >= 2, "expected images.qrc and style.qrc in resources/")
    entries = {}
    for qrc in qrcs:
        for key, disk in read_qrc(qrc).items():
            check(disk.is_file(), "%s lists %s, which does not exist" % (qrc.name, disk))
            check(key not in entries, "%s defined twice" % key)
            entries[key] = disk
            check(disk.suffix not in (".txt", ".md"), "%s should not be compiled in" % disk.name)

    for key in LOOKED_UP:
        check(key in entries, "no qrc provides %s" % key)

    css = (RES / "Tarvelo.css").read_text(encoding="utf-8")
    urls = re.findall(r"url\(\s*['\"]?([^)'\"]+)['\"]?\s*\)", css)
    check(len(urls) > 0, "style sheet uses no url()")
    for url in urls:
        check(url in entries, "style sheet refers to %s, which no qrc provides" % url)
    check(css.count("{") == css.count("}"), "unbalanced braces in Tarvelo.css")

    for name in ICONS:
        path = RES / "Images" / (name + ".svg")
        check(path.is_file(), "missing icon %s" % path.name)
        svg = path.read_text(encoding="utf-8") if path.is_file() else ""
        fills = re.findall(r'<path[^>]*\bfill="([^"]+)"', svg)
        paths = re.findall(r"<path\b", svg)
        check(paths and len(fills) == len(paths), "%s.svg: every path needs a fill" % name)
        for fill in fills:
            light = fill.lower() in ("#fff", "#ffffff", "white", "none")
            check(not light, "%s.svg: fill %s is invisible on light buttons" % (name, fill))

    for name in STIMS:
        header = png_header(RES / "Images" / "stims" / (name + ".png"))
        check(header == (64, 64, 6), "%s.png should be a 64x64 RGBA PNG, is %s" % (name, header))
    header = png_header(RES / "tarvelo.png")
    check(header == (256, 256, 6), "tarvelo.png should be a 256x256 RGBA PNG, is %s" % (header,))
    header = png_header(RES / "tarvelo-splash.png")
    check(
        header is not None and 500 <= header[0] <= 700 and 300 <= header[1] <= 420,
        "tarvelo-splash.png should be about 600x360, is %s" % (header,),
    )

    for licence in ("Images/LICENSE-MaterialDesignIcons.txt", "Fonts/LICENSE.txt"):
        check((RES / licence).is_file(), "missing licence %s" % licence)

    print("%d passed, %d failed" % (passed, failed))
    return 1 if failed else 0


if __name__ == "__main__":
    sys.exit(main())
