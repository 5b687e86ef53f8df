#!/usr/bin/python3
"""Makes the workbook of the Excel Cell benchmark with Debian's
python3-openpyxl: FOLDER/book.xlsx, one sheet "Data" of ROWS rows and 10
columns (whole numbers, numbers under "#,##0.00", texts from a set of
shared strings, dates under "d-mmm-yy", percents), about 5 MB for 120000
rows; and FOLDER/cells.txt, the FIELDS cells the fields name, one
"ROW COLUMN" a line, spread over the sheet by a fixed sequence.

    /usr/bin/python3 bench/make_bench_workbook.py FOLDER [ROWS] [FIELDS]
"""
import datetime
import os
import sys

import openpyxl
from openpyxl.cell import WriteOnlyCell


def main():
    folder = sys.argv[1]
    rows = int(sys.argv[2]) if len(sys.argv) > 2 else 120000
    fields = int(sys.argv[3]) if len(sys.argv) > 3 else 10000
    os.makedirs(folder, exist_ok=True)
    wb = openpyxl.Workbook(write_only=True)
    ws = wb.create_sheet('Data')
    words = ['Pump %d' % n for n in range(2000)]
    start = datetime.date(2020, 1, 1)
    for r in range(rows):
        row = []
        for c, (value, fmt) in enumerate([
                (r, None), (r * 1.25 + 0.005, '#,##0.00'), (words[r % len(words)], None),
                (start + datetime.timedelta(days=r % 3000), 'd-mmm-yy'), ((r % 1000) / 1000.0, '0.0%'),
                (r * 7 % 1013, None), (words[(r * 7) % len(words)], None), (r / 3.0, '0.000'),
                (r % 2 == 0, None), ('Note %d on row %d' % (r % 97, r), None)]):
            cell = WriteOnlyCell(ws, value=value)
            if fmt:
                cell.number_format = fmt
            row.append(cell)
        ws.append(row)
    wb.save(os.path.join(folder, 'book.xlsx'))
    # A fixed sequence (a linear congruential one) spreads the fields.
    state = 12345
    with open(os.path.join(folder, 'cells.txt'), 'w') as out:
        for _ in range(fields):
            state = (state * 1103515245 + 12345) % (1 << 31)
            out.write('%d %d\n' % (state % rows + 1, state // rows % 10 + 1))
    print('book.xlsx: %d rows, %d bytes' % (rows, os.path.getsize(os.path.join(folder, 'book.xlsx'))))


if __name__ == '__main__':
    main()
