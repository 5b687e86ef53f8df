#!/usr/bin/python3
"""Makes examples/tour_costs.xlsx, the small workbook of the tour's Excel
Cell part, with Debian's python3-openpyxl: a sheet "Costs" of the pumps of
the tour drawing's schedule, saved with its total (C5) selected. Run with
/usr/bin/python3:

    /usr/bin/python3 examples/make_tour_workbook.py
"""
import datetime
import os

import openpyxl

HERE = os.path.dirname(os.path.abspath(__file__))


def main():
    wb = openpyxl.Workbook()
    ws = wb.active
    ws.title = 'Costs'
    ws.append(['Item', 'Qty', 'Cost', 'Ordered'])
    for item, qty, cost, ordered in [('Pump P-1', 2, 1250.5, datetime.date(2024, 3, 5)),
                                     ('Valve V-7', 12, 86.25, datetime.date(2024, 3, 12)),
                                     ('Filter F-2', 4, 310.0, datetime.date(2024, 4, 2))]:
        ws.append([item, qty, cost, ordered])
    ws.append(['Total', 18, 4016.0, None])
    for row in range(2, 6):
        ws.cell(row=row, column=3).number_format = '"$"#,##0.00'
        ws.cell(row=row, column=4).number_format = 'd-mmm-yy'
    ws.sheet_view.selection[0].activeCell = 'C5'
    ws.sheet_view.selection[0].sqref = 'C5'
    wb.save(os.path.join(HERE, 'tour_costs.xlsx'))


if __name__ == '__main__':
    main()
