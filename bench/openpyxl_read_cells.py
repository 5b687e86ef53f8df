#!/usr/bin/python3
"""The openpyxl side of the Excel Cell benchmark: loads FOLDER/book.xlsx
with Debian's python3-openpyxl (values as saved, not formulas) and reads
the cells of FOLDER/cells.txt, each value and its number format, as the
fields name them; prints how long loading and reading took.

    /usr/bin/python3 bench/openpyxl_read_cells.py FOLDER
"""
import os
import sys
import time


def main():
    folder = sys.argv[1]
    started = time.perf_counter()
    import openpyxl
    book = openpyxl.load_workbook(os.path.join(folder, 'book.xlsx'), data_only=True)
    sheet = book['Data']
    loaded = time.perf_counter()
    cells = [tuple(int(n) for n in line.split()) for line in open(os.path.join(folder, 'cells.txt'))]
    shown = 0
    for row, column in cells:
        cell = sheet.cell(row=row, column=column)
        if cell.value is not None and cell.number_format:
            shown += 1
    done = time.perf_counter()
    print('openpyxl: load %.2f s, %d cells read %.3f s, total %.2f s' % (loaded - started, len(cells), done - loaded,
                                                                        done - started))


if __name__ == '__main__':
    main()
