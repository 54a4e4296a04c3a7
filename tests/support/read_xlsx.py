#!/usr/bin/env python3
"""Prints an XLSX workbook as JSON, read by openpyxl: the active sheet's name and, per sheet in
order, its name, each non-empty cell as [row, column, type, value] (rows and columns from 1;
type "n" numeric, "s" string, "b" boolean) and the width of each sized column."""
import json
import sys

import openpyxl
from openpyxl.utils import column_index_from_string


def main(path):
    # Opened as a stream, the workbook is judged by its contents, not by its file name: the
    # export keeps whatever name the operator typed.
    with open(path, "rb") as stream:
        workbook = openpyxl.load_workbook(stream)
    sheets = []
    for sheet in workbook.worksheets:
        cells = []
        for row in sheet.iter_rows():
            for cell in row:
                if cell.value is not None:
                    cells.append([cell.row, cell.column, cell.data_type, cell.value])
        widths = {}
        for letter, dimension in sheet.column_dimensions.items():
            if dimension.width:
                widths[column_index_from_string(letter)] = dimension.width
        sheets.append({"name": sheet.title, "cells": cells, "widths": widths,
                       "selected": bool(sheet.sheet_view.tabSelected)})
    json.dump({"active": workbook.active.title, "sheets": sheets}, sys.stdout, ensure_ascii=False)


if __name__ == "__main__":
    main(sys.argv[1])
