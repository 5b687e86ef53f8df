#!/usr/bin/python3
"""Writes a large DXF drawing for the load benchmark: lightweight polylines
(some with arcs), circles and references to a block with attributes, in a
2010 drawing that ezdxf starts.

    /usr/bin/python3 bench/make_big_dxf.py OUT.dxf [MEGABYTES]
"""
import math
import os
import sys

import ezdxf


def main():
    out = sys.argv[1]
    megabytes = float(sys.argv[2]) if len(sys.argv) > 2 else 100.0
    doc = ezdxf.new('R2010')
    doc.layers.add('PLINES', color=1)
    doc.layers.add('CIRCLES', color=2)
    doc.layers.add('DOORS', color=3)
    door = doc.blocks.new('DOOR')
    door.add_line((0, 0), (0.9, 0))
    door.add_arc((0, 0), 0.9, 0, 90)
    door.add_attdef('SIZE', (0, -0.3), dxfattribs={'height': 0.2})
    door.add_attdef('ROOM', (0, -0.6), dxfattribs={'height': 0.2})
    model = doc.modelspace().block_record_handle
    doc.saveas(out)
    text = open(out, encoding='utf-8').read()
    next_handle = int(doc.header['$HANDSEED'], 16)
    head, tail = text.rsplit('  0\nENDSEC\n  0\nSECTION\n  2\nOBJECTS', 1)
    target = int(megabytes * 1024 * 1024)
    handle = next_handle
    count = {'LWPOLYLINE': 0, 'CIRCLE': 0, 'INSERT': 0, 'ATTRIB': 0}
    with open(out, 'w', encoding='utf-8', newline='\n') as f:
        f.write(head)
        written = len(head)
        i = 0
        while written < target:
            chunk = []
            for _ in range(1000):
                x = (i % 1000) * 10.0
                y = (i // 1000) * 10.0
                kind = i % 8
                if kind < 4:
                    n = 4 + i % 5
                    groups = ['  0\nLWPOLYLINE\n  5\n%X\n330\n%s\n100\nAcDbEntity\n  8\nPLINES\n100\nAcDbPolyline\n'
                              ' 90\n%d\n 70\n%d\n' % (handle, model, n, i % 2)]
                    for k in range(n):
                        a = 2 * math.pi * k / n
                        groups.append(' 10\n%.6f\n 20\n%.6f\n' % (x + 3 * math.cos(a), y + 3 * math.sin(a)))
                        if k % 3 == 1:
                            groups.append(' 42\n0.25\n')
                    chunk.append(''.join(groups))
                    count['LWPOLYLINE'] += 1
                    handle += 1
                elif kind < 7:
                    chunk.append('  0\nCIRCLE\n  5\n%X\n330\n%s\n100\nAcDbEntity\n  8\nCIRCLES\n100\nAcDbCircle\n'
                                 ' 10\n%.6f\n 20\n%.6f\n 30\n0.0\n 40\n%.4f\n' % (handle, model, x, y, 1 + (i % 7) / 4))
                    count['CIRCLE'] += 1
                    handle += 1
                else:
                    insert = handle
                    chunk.append('  0\nINSERT\n  5\n%X\n330\n%s\n100\nAcDbEntity\n  8\nDOORS\n100\nAcDbBlockReference\n'
                                 ' 66\n1\n  2\nDOOR\n 10\n%.6f\n 20\n%.6f\n 30\n0.0\n 50\n%d.0\n'
                                 % (insert, model, x, y, (i * 15) % 360))
                    for tag, value in (('SIZE', '%d' % (60 + i % 40)), ('ROOM', 'R-%05d' % (i % 99991))):
                        handle += 1
                        chunk.append('  0\nATTRIB\n  5\n%X\n330\n%X\n100\nAcDbEntity\n  8\nDOORS\n100\nAcDbText\n'
                                     ' 10\n%.6f\n 20\n%.6f\n 30\n0.0\n 40\n0.2\n  1\n%s\n100\nAcDbAttribute\n'
                                     '  2\n%s\n 70\n0\n' % (handle, insert, x, y - 0.3, value, tag))
                        count['ATTRIB'] += 1
                    handle += 1
                    chunk.append('  0\nSEQEND\n  5\n%X\n330\n%X\n100\nAcDbEntity\n  8\nDOORS\n' % (handle, insert))
                    handle += 1
                    count['INSERT'] += 1
                i += 1
            block = ''.join(chunk)
            f.write(block)
            written += len(block)
        rest = '  0\nENDSEC\n  0\nSECTION\n  2\nOBJECTS' + tail
        rest = rest  # the objects of the template follow unchanged
        f.write(rest)
    # The next free handle goes above every handle written.
    data = open(out, encoding='utf-8').read()
    data = data.replace('$HANDSEED\n  5\n%X\n' % next_handle, '$HANDSEED\n  5\n%X\n' % (handle + 1), 1)
    with open(out, 'w', encoding='utf-8', newline='\n') as f:
        f.write(data)
    print('%s: %.1f MB, %s' % (out, os.path.getsize(out) / 1048576.0,
                               ', '.join('%d %s' % (v, k) for k, v in count.items())))


if __name__ == '__main__':
    main()
