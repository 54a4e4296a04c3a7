#!/usr/bin/env python3
"""Keeps the folders' arrows one way: reads the #include lines of the program's sources and fails
on an include cycle between folders, and on a core folder that includes a GUI folder's header
or a header of Qt's widget modules.

    check_layers.py <source root> [<Qt include folder>]

A widgets/ subfolder counts as a folder of its own. With the Qt include folder (the one that
holds QtCore/, QtWidgets/, ...) bare class headers such as <QLabel> are recognised as well."""
import os
import re
import sys

# Everything else is core: it builds without widgets. tests/, bench/ and fuzz/ aren't looked at.
GUI = ("frame", "ui", "main", "tools/screenshot")
NOT_SOURCES = ("tests", "bench", "fuzz", "docs", "resources", "scripts")
WIDGET_MODULES = ["QtWidgets", "QtPrintSupport", "QtSvg"]
INCLUDE = re.compile(r'^\s*#\s*include\s*([<"])([^>"]+)[>"]', re.MULTILINE)


def is_gui(folder):
    return "widgets" in folder.split("/") or folder.startswith(GUI)


def source_folders(root):
    """Every folder that holds the program's sources, relative to root, with its files."""
    for path, dirs, files in os.walk(root):
        folder = os.path.relpath(path, root).replace(os.sep, "/")
        dirs[:] = sorted(d for d in dirs if not d.startswith((".", "build"))
                         and (folder != "." or d not in NOT_SOURCES))
        sources = sorted(f for f in files if f.endswith((".h", ".cpp")))
        if sources and folder != ".":
            yield folder, sources


def widget_headers(qt_include):
    names = set()
    for module in WIDGET_MODULES:
        module_dir = os.path.join(qt_include, module)
        if os.path.isdir(module_dir):
            names.update(os.listdir(module_dir))
    return names


def scan(root, bare_widget_headers):
    edges = {}  # folder -> {included folder: one include that makes the arrow}
    faults = []
    folders = dict(source_folders(root))
    for folder, names in folders.items():
        for name in names:
            source = f"{folder}/{name}"
            with open(os.path.join(root, source), encoding="utf-8") as file:
                includes = INCLUDE.findall(file.read())
            for kind, header in includes:
                if kind == "<":
                    module = header.split("/")[0]
                    if not is_gui(folder) and (module in WIDGET_MODULES
                                           or header in bare_widget_headers):
                        faults.append(f"{source}: core folder includes <{header}>")
                    continue
                target = os.path.dirname(header) if "/" in header else folder
                if target == folder or target not in folders:
                    continue
                edges.setdefault(folder, {}).setdefault(target, f"{source} -> {header}")
                if not is_gui(folder) and is_gui(target):
                    faults.append(f"{source}: core folder includes GUI header {header}")
    return folders, edges, faults


def find_cycle(edges):
    """One cycle as a list of folders, first folder repeated at the end; None without one."""
    state = {}
    stack = []

    def visit(folder):
        state[folder] = "open"
        stack.append(folder)
        for target in sorted(edges.get(folder, {})):
            if state.get(target) == "open":
                return stack[stack.index(target):] + [target]
            if target not in state:
                cycle = visit(target)
                if cycle:
                    return cycle
        stack.pop()
        state[folder] = "done"
        return None

    for folder in sorted(edges):
        if folder not in state:
            cycle = visit(folder)
            if cycle:
                return cycle
    return None


def main():
    root = sys.argv[1]
    bare = widget_headers(sys.argv[2]) if len(sys.argv) > 2 else set()
    folders, edges, faults = scan(root, bare)
    if not folders:
        faults.append(f"no sources under {root}")
    cycle = find_cycle(edges)
    if cycle:
        faults.append("include cycle between folders: " + " -> ".join(cycle))
        faults += ["  " + edges[a][b] for a, b in zip(cycle, cycle[1:])]
    for fault in faults:
        print(fault, file=sys.stderr)
    if not faults:
        arrows = sum(len(targets) for targets in edges.values())
        print(f"{len(folders)} folders, {arrows} arrows, no cycle, core free of widgets")
    return 1 if faults else 0


if __name__ == "__main__":
    sys.exit(main())
