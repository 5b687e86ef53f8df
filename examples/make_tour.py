#!/usr/bin/python3
"""Makes examples/tour.dxf, the drawing of the tour, with Debian's
python3-ezdxf (run it with /usr/bin/python3, the Python that ezdxf belongs
to):

    /usr/bin/python3 examples/make_tour.py [OUTPUT]

Model space holds an equipment schedule: a table of 5 rows and 30 columns
(the 28th column is AB), below (0, 20), with rows 1.0 high and columns 2.5
wide, whose cells carry multiline text formatting codes. Paper space holds a
sheet index, a table of 3 rows and 2 columns below (10, 40). ezdxf has no
writer of tables: they are written here from the DXF reference, by text.

The cell (row r, column c, both from 0) of the schedule spans x from
2.5 * c to 2.5 * (c + 1) and y from 20 - r down to 19 - r; its middle is
(2.5 * c + 1.25, 19.5 - r).

Below the schedule, on the layer ROOMS, lie three rooms of a floor drawn in
inches (closed polylines, two with arc segments) and a round column: see
ROOMS. Their handles come after the tables'.

Beside them, from y = -30 up to y = -5, lies a plan: doors and
windows with attributes (TYPE and WIDTH of a door, WIDTH of a window) on
the layers A-DOOR and A-GLAZ, and two rooms whose block holds two doors
and a window, on A-ROOM. The plan is added after the tables, so that they
keep their handles.
"""
import os
import sys

import ezdxf

HERE = os.path.dirname(os.path.abspath(__file__))

SCHEDULE_INSERT = (0.0, 20.0)
SCHEDULE_ROWS = [1.0] * 5
SCHEDULE_COLUMNS = [2.5] * 30
INDEX_INSERT = (10.0, 40.0)
INDEX_ROWS = [2.0, 2.0, 2.0]
INDEX_COLUMNS = [12.0, 40.0]


def schedule_texts():
    """Cells of the equipment schedule by (row, column), from 0."""
    texts = {(0, 0): 'Tag', (0, 1): '{\\fArial|b1;Item}'}
    for week in range(28):
        texts[(0, 2 + week)] = 'W%02d' % (week + 1)
    items = [('P-1', '{\\fArial|b1;Pump}'), ('F-2', 'Fan \\P(roof)'), ('V-3', '\\C1;Valve'),
             ('H-4', '{\\H1.5x;Heater}')]
    for row, (tag, item) in enumerate(items, start=1):
        texts[(row, 0)] = tag
        texts[(row, 1)] = item
        for week in range(28):
            texts[(row, 2 + week)] = str((row * 7 + week * 3) % 20)
    texts[(2, 27)] = '{\\C1;12.5} kW'        # AB3
    texts[(4, 29)] = '\\A1;{\\L last}'        # AD5
    return texts


def index_texts():
    return {(0, 0): 'Sheet', (0, 1): 'Title', (1, 0): 'A-101', (1, 1): '{\\LGround floor plan\\l}',
            (2, 0): 'A-102', (2, 1): 'Equipment \\Pschedule'}


def table_groups(handle, owner, block_name, block_record, layer, insert, heights, widths, texts, paper=False):
    """An ACAD_TABLE entity as the DXF reference lists its groups."""
    g = [(0, 'ACAD_TABLE'), (5, handle), (330, owner), (100, 'AcDbEntity')]
    if paper:
        g.append((67, 1))
    g += [(8, layer), (100, 'AcDbBlockReference'), (2, block_name), (10, insert[0]), (20, insert[1]), (30, 0.0),
          (100, 'AcDbTable'), (280, 0), (343, block_record), (11, 1.0), (21, 0.0), (31, 0.0),
          (90, 22), (91, len(heights)), (92, len(widths)), (93, 0), (94, 0), (95, 0), (96, 0)]
    g += [(141, h) for h in heights]
    g += [(142, w) for w in widths]
    for r in range(len(heights)):
        for c in range(len(widths)):
            g += [(171, 1), (172, 0), (173, 0), (174, 0), (175, 1), (176, 1), (91, 0), (178, 0), (145, 0.0)]
            text = texts.get((r, c))
            if text is not None:
                chunks = [text[i:i + 250] for i in range(0, len(text), 250)] or ['']
                g += [(2, chunk) for chunk in chunks[:-1]] + [(1, chunks[-1])]
            g += [(7, 'Standard'), (140, 0.18), (170, 5)]
    return g


def dxf(groups):
    return ''.join('%3d\n%s\n' % (code, repr(v) if isinstance(v, float) else v) for code, v in groups)


# The rooms of a floor, in inches, on the layer ROOMS below the schedule:
# the office has a bay window (an arc segment), the meeting room a rounded
# end (a half circle), the store is plain. (x, y, bulge), closed.
ROOMS = [
    ('Office', [(0, -300, 0), (180, -300, 0), (180, -156, 0.4), (0, -156, 0)]),
    ('Meeting', [(180, -300, 0), (420, -300, 1), (420, -120, 0), (180, -120, 0)]),
    ('Store', [(0, -156, 0), (120, -156, 0), (120, -60, 0), (0, -60, 0)]),
]


def add_rooms(doc, msp):
    """The rooms as closed lightweight polylines, and a column (a circle)."""
    doc.layers.add('ROOMS', color=3)
    for name, points in ROOMS:
        msp.add_lwpolyline(points, format='xyb', close=True, dxfattribs={'layer': 'ROOMS'})
    msp.add_circle((300, -210), 9, dxfattribs={'layer': 'ROOMS'})


def make_tour(path):
    """Writes the tour drawing; answers the handles of the two tables."""
    doc = ezdxf.new('R2010')
    doc.layers.add('TABLES', color=4)
    msp = doc.modelspace()
    psp = doc.layout('Layout1')
    msp.add_mtext('{\\fArial|b1;Equipment schedule}', dxfattribs={'char_height': 1.0, 'insert': (0, 22)})
    msp.add_line((0, 14), (75, 14), dxfattribs={'layer': 'TABLES'})
    psp.add_mtext('Sheet index', dxfattribs={'char_height': 2.0, 'insert': (10, 44)})
    block_schedule = doc.blocks.new_anonymous_block('T')
    block_index = doc.blocks.new_anonymous_block('T')
    # Saving makes the objects that ezdxf adds to every file; then the
    # tables' handles are taken, so that they stay what they were before the
    # rooms came, and the rooms follow.
    doc.saveas(path)
    schedule, index = doc.entitydb.next_handle(), doc.entitydb.next_handle()
    add_rooms(doc, msp)
    doc.saveas(path)

    text = open(path, encoding='utf-8').read()
    model = table_groups(schedule, doc.modelspace().block_record_handle, block_schedule.name,
                         block_schedule.block_record_handle, 'TABLES', SCHEDULE_INSERT, SCHEDULE_ROWS,
                         SCHEDULE_COLUMNS, schedule_texts())
    paper = table_groups(index, psp.block_record_handle, block_index.name, block_index.block_record_handle, '0',
                         INDEX_INSERT, INDEX_ROWS, INDEX_COLUMNS, index_texts(), paper=True)
    entities = text.index('\nENTITIES\n')
    entities_end = text.rindex('  0\n', 0, text.index('\nENDSEC\n', entities))
    text = text[:entities_end] + dxf(model) + dxf(paper) + text[entities_end:]
    classes_end = text.rindex('  0\nENDSEC', 0, text.index('\nTABLES\n'))
    text = text[:classes_end] + dxf([(0, 'CLASS'), (1, 'ACAD_TABLE'), (2, 'AcDbTable'), (3, 'ObjectDBX Classes'),
                                     (90, 1025), (91, 2), (280, 0), (281, 1)]) + text[classes_end:]
    with open(path, 'w', encoding='utf-8') as out:
        out.write(text)
    # ezdxf reads it back without complaint.
    check = ezdxf.readfile(path)
    errors = check.audit().errors
    if errors:
        raise SystemExit('ezdxf finds errors in %s: %s' % (path, errors))
    return schedule, index


def door_block(doc):
    door = doc.blocks.new('DOOR')
    door.add_line((0, 0), (0.9, 0))
    door.add_arc((0, 0), 0.9, 0, 90)
    door.add_attdef('TYPE', (0.1, 0.1), dxfattribs={'height': 0.08, 'prompt': 'Type?'})
    door.add_attdef('WIDTH', (0.1, 0.25), dxfattribs={'height': 0.08, 'prompt': 'Width?'})
    window = doc.blocks.new('WINDOW')
    window.add_lwpolyline([(0, 0), (1.2, 0), (1.2, 0.3), (0, 0.3)], close=True)
    window.add_attdef('WIDTH', (0.1, 0.1), dxfattribs={'height': 0.08, 'prompt': 'Width?'})


def place(layout, name, where, layer, values):
    ref = layout.add_blockref(name, where, dxfattribs={'layer': layer})
    for i, (tag, value) in enumerate(values):
        ref.add_attrib(tag, value, (where[0] + 0.1, where[1] + 0.1 + 0.15 * i), dxfattribs={'height': 0.08})
    return ref


def add_plan(path):
    """The plan below the schedule, added to the drawing at path."""
    doc = ezdxf.readfile(path)
    doc.layers.add('A-DOOR', color=1)
    doc.layers.add('A-GLAZ', color=5)
    doc.layers.add('A-ROOM', color=3)
    door_block(doc)
    room = doc.blocks.new('ROOM')
    room.add_lwpolyline([(0, 0), (6, 0), (6, 4), (0, 4)], close=True)
    place(room, 'DOOR', (1, 0), 'A-DOOR', [('TYPE', 'swing'), ('WIDTH', '900')])
    place(room, 'DOOR', (4, 0), 'A-DOOR', [('TYPE', 'slide'), ('WIDTH', '800')])
    place(room, 'WINDOW', (2, 3.7), 'A-GLAZ', [('WIDTH', '1200')])
    msp = doc.modelspace()
    place(msp, 'DOOR', (20, -10), 'A-DOOR', [('TYPE', 'swing'), ('WIDTH', '900')])
    place(msp, 'DOOR', (22, -10), 'A-DOOR', [('TYPE', 'slide'), ('WIDTH', '800')])
    place(msp, 'DOOR', (24, -10), '0', [('TYPE', 'swing'), ('WIDTH', '1000')])
    place(msp, 'WINDOW', (20, -7), 'A-GLAZ', [('WIDTH', '1200')])
    place(msp, 'WINDOW', (23, -7), '0', [('WIDTH', '600')])
    msp.add_blockref('ROOM', (0, -30), dxfattribs={'layer': 'A-ROOM'})
    msp.add_blockref('ROOM', (8, -30), dxfattribs={'layer': 'A-ROOM'})
    doc.saveas(path)
    errors = ezdxf.readfile(path).audit().errors
    if errors:
        raise SystemExit('ezdxf finds errors in %s: %s' % (path, errors))


def main():
    path = sys.argv[1] if len(sys.argv) > 1 else os.path.join(HERE, 'tour.dxf')
    schedule, index = make_tour(path)
    add_plan(path)
    print('%s: schedule %s in model space, sheet index %s in paper space' % (path, schedule, index))


if __name__ == '__main__':
    main()
