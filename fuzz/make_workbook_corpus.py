#!/usr/bin/python3
"""Makes the first inputs (the corpus) of the WorkbookRead and NumberFormat fuzz targets
(fuzz/corpus/WorkbookRead, fuzz/corpus/NumberFormat) with Debian's
python3-openpyxl and python3-xlwt. Run with /usr/bin/python3:

    /usr/bin/python3 fuzz/make_workbook_corpus.py

WorkbookRead inputs begin with a byte that says how the rest is read: 0 as
an .xlsx package, 1 as an .xls compound file, 2 by what it looks like.
NumberFormat inputs are 8 bytes of a double, a byte for the calendar, and a
format code.
"""
import datetime
import io
import os
import struct
import zipfile

import openpyxl
import xlwt

HERE = os.path.dirname(os.path.abspath(__file__))
CODES = ['General', '0', '#,##0.00', '0.0%', '0.00E+00', '##0.0E+0', 'm/d/yyyy h:mm AM/PM', '[h]:mm:ss.00',
         'dddd, mmmm d, yyyy', '# ??/??', '?/8', '_(* #,##0_);_(* \\(#,##0\\);_(* "-"_);_(@_)',
         '[>=100]"big";[<10]"small";0', '[$\u20ac-407] #,##0.00;[Red]-#,##0.00', '"Total: "General', '0;-0;;@',
         '000-00-0000', '#,##0,,"M"', 'mmss.0', 'yy-m-d h:m:s A/P']


def small_xlsx():
    wb = openpyxl.Workbook()
    ws = wb.active
    ws.title = 'Data'
    ws['A1'] = 'text'
    ws['B1'] = 1234.5
    ws['B1'].number_format = '#,##0.00'
    ws['C1'] = datetime.date(2024, 3, 5)
    ws['C1'].number_format = 'd-mmm-yy'
    ws['A2'] = True
    ws['B2'] = '=B1*2'
    ws['C2'] = 0.25
    ws['C2'].number_format = '0%'
    other = wb.create_sheet('Other')
    other['D4'] = 'x'
    other.sheet_view.selection[0].activeCell = 'D4'
    wb.active = 1
    out = io.BytesIO()
    wb.save(out)
    return out.getvalue()


def small_xls():
    wb = xlwt.Workbook()
    ws = wb.add_sheet('Data')
    ws.write(0, 0, 'text')
    ws.write(0, 1, 1234.5, xlwt.easyxf(num_format_str='#,##0.00'))
    ws.write(0, 2, datetime.date(2024, 3, 5), xlwt.easyxf(num_format_str='d-mmm-yy'))
    ws.write(1, 0, True)
    ws.write(1, 1, xlwt.Formula('B1*2'))
    ws.row(1).set_cell_error(2, 0x07)
    out = io.BytesIO()
    wb.save(out)
    return out.getvalue()


def main():
    xlsx, xls = small_xlsx(), small_xls()
    inputs = {'xlsx': b'\0' + xlsx, 'xls': b'\1' + xls, 'sniffed_xlsx': b'\2' + xlsx, 'sniffed_xls': b'\2' + xls}
    folder = os.path.join(HERE, 'corpus', 'WorkbookRead')
    for name, data in inputs.items():
        with open(os.path.join(folder, name), 'wb') as out:
            out.write(data)
    folder = os.path.join(HERE, 'corpus', 'NumberFormat')
    for n, code in enumerate(CODES):
        value = [1234.5678, -0.5, 45356.75, 0.0, 1e-12][n % 5]
        with open(os.path.join(folder, 'code%02d' % n), 'wb') as out:
            out.write(struct.pack('<d', value) + bytes([n % 2]) + code.encode('latin-1', 'replace'))


if __name__ == '__main__':
    main()
