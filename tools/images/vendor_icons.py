#!/usr/bin/env python3
"""Copy the Material Design Icons used by Tarvelo into resources/Images.

Dependency: python3 (standard library only) and an unpacked copy of the
npm package @mdi/svg (Apache-2.0), obtained with:

    cd /tmp && npm pack @mdi/svg && mkdir mdi && tar xzf mdi-svg-*.tgz -C mdi

Run from the repository root:

    python3 tools/images/vendor_icons.py /tmp/mdi/package

Each icon is renamed to the file name the program looks up and its paths get
an explicit fill colour, since the MDI originals have none (Qt would paint
them black). The package licence is copied next to the icons. The list
below is the single source of the mapping; resources/Images/README.md
mirrors it.
"""

import json
import re
import shutil
import sys
from pathlib import Path

DARK = "#333333"
RED = "#CC3300"
GREEN = "#11AA00"

# program file name -> (MDI icon name, fill colour)
ICONS = [
    ("script.svg", "script-text", DARK),
    ("experiment.svg", "flask", DARK),
    ("group.svg", "account-group", DARK),
    ("device.svg", "developer-board", DARK),
    ("settings.svg", "cog", DARK),
    ("connected.svg", "lan-connect", GREEN),
    ("disconnected.svg", "lan-disconnect", RED),
    ("play.svg", "play", DARK),
    ("stop-circle.svg", "stop-circle", RED),
    ("delete.svg", "delete", DARK),
    ("edit.svg", "pencil", DARK),
    ("add.svg", "plus", DARK),
    ("done.svg", "check-circle", DARK),
    ("close.svg", "close", DARK),
    ("alarm-light.svg", "alarm-light", DARK),
    ("folder_search.svg", "folder-search", DARK),
    ("folder.svg", "folder", DARK),
    ("account.svg", "account", DARK),
    ("add-account.svg", "account-plus", DARK),
    ("male.svg", "gender-male", DARK),
    ("female.svg", "gender-female", DARK),
    ("incognito.svg", "incognito", DARK),
    ("chevron-up.svg", "chevron-up", DARK),
    ("chevron-down.svg", "chevron-down", DARK),
    ("check.svg", "check", DARK),
    ("time-stim.svg", "timer-outline", DARK),
    ("time-delay.svg", "timer-sand", DARK),
    ("session.svg", "clipboard-text-clock", DARK),
    ("refresh.svg", "refresh", DARK),
]


def recolour(svg: str, colour: str) -> str:
    """Give every <path> an explicit fill unless it already has one."""

    def fix(match: re.Match) -> str:
        tag = match.group(0)
        if "fill=" in tag:
            return tag
        return tag.replace("<path ", '<path fill="%s" ' % colour, 1)

    out, count = re.subn(r"<path\b[^>]*>", fix, svg)
    if count == 0:
        raise ValueError("no <path> element found")
    return out


def main() -> int:
    if len(sys.argv) != 2:
        print(__doc__)
        return 2
    package = Path(sys.argv[1])
    repo = Path(__file__).resolve().parents[2]
    dest = repo / "resources" / "Images"
    dest.mkdir(parents=True, exist_ok=True)

    version = json.loads((package / "package.json").read_text())["version"]
    for name, mdi, colour in ICONS:
        src = package / "svg" / (mdi + ".svg")
        svg = src.read_text(encoding="utf-8").strip() + "\n"
        (dest / name).write_text(recolour(svg, colour), encoding="utf-8")
    shutil.copyfile(package / "LICENSE", dest / "LICENSE-MaterialDesignIcons.txt")
    print("copied %d icons from @mdi/svg %s" % (len(ICONS), version))
    return 0


if __name__ == "__main__":
    sys.exit(main())
