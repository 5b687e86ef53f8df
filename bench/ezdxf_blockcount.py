#!/usr/bin/python3
"""Counts with ezdxf what bench_BlockCountBench counts with the host: DOOR
and WINDOW references on the layers A-DOOR and A-GLAZ whose SIZE attribute
is at least 900, with nesting, over the benchmark's drawing.

    ezdxf_blockcount.py DRAWING.dxf     reads the drawing the host saved
    ezdxf_blockcount.py --build N       builds the same drawing of N
                                        references in memory (faster than
                                        reading it for large N)

Two counts, each the best of three runs:
  memo   each definition counted once and multiplied by its placements,
         as the host counts;
  walk   every reference's blocks walked down, reference by reference.
Prints load_seconds (reading or building), count, memo_seconds and
walk_seconds.
"""
import re
import sys
import time

import ezdxf

NAMES = {'DOOR', 'WINDOW'}
LAYERS = {'A-DOOR', 'A-GLAZ'}
TAG, VALUE = 'SIZE', 900.0
DECIMAL = re.compile(r'[+-]?(\d+\.?\d*|\.\d+)([eE][+-]?\d+)?')

# The recipe of bench/BlockCountBench.cpp.
LAYER_NAMES = ['A-DOOR', 'A-DOOR-OLD', 'A-GLAZ', 'A-GLAZ-OLD', 'A-FURN', 'A-WALL', '0', 'S-GRID', 'E-LITE',
               'M-DUCT']
TAGS = ['TYPE', 'SIZE', 'FIRE']
TYPES = ['swing', 'slide', 'pivot', 'fold']


def build(total):
    doc = ezdxf.new('R2010')
    for name in LAYER_NAMES:
        if name not in doc.layers:
            doc.layers.add(name)
    count = [0]

    def block(name):
        b = doc.blocks.new(name)
        b.add_line((0, 0), (1, 1))
        for i, tag in enumerate(TAGS):
            b.add_attdef(tag, (0.1, 0.1 + 0.2 * i), dxfattribs={'height': 0.05, 'prompt': tag})
        return b

    def insert(owner, name, n, kind):
        layer = LAYER_NAMES[n % 2] if kind == 0 else LAYER_NAMES[2 + n % 2] if kind == 1 else LAYER_NAMES[4 + n % 6]
        ref = owner.add_blockref(name, ((n % 1000) * 2, (n // 1000) * 2), dxfattribs={'layer': layer})
        values = [TYPES[n % 4], str(600 + (n * 37) % 700), 'no' if n % 3 else 'yes']
        for i, tag in enumerate(TAGS):
            ref.add_attrib(tag, values[i], (0.1, 0.1 + 0.2 * i), dxfattribs={'height': 0.05})
        count[0] += 1

    for name in ('DOOR', 'WINDOW', 'CHAIR'):
        block(name)
    desk = block('DESK')
    for i in range(4):
        insert(desk, 'CHAIR', i, 2)
    floors = max(1, total // 10000)
    n = 0
    for f in range(floors):
        floor = block('FLOOR%d' % f)
        for r in range(100):
            room = block('ROOM%d' % (f * 100 + r))
            for _ in range(2):
                insert(room, 'DOOR', n, 0)
                n += 1
            for _ in range(2):
                insert(room, 'WINDOW', n, 1)
                n += 1
            insert(room, 'DESK', n, 2)
            n += 1
            for _ in range(5):
                insert(room, 'CHAIR', n, 2)
                n += 1
            insert(floor, room.name, n, 2)
            n += 1
    msp = doc.modelspace()
    for f in range(floors):
        insert(msp, 'FLOOR%d' % f, n, 2)
        n += 1
    leaves = ['DOOR', 'WINDOW', 'CHAIR']
    while count[0] < total:
        kind = n % 3
        insert(msp, leaves[kind], n, kind)
        n += 1
    return doc


def matches(e):
    if e.dxf.name.upper() not in NAMES or e.dxf.layer.upper() not in LAYERS:
        return 0
    attrib = next((a for a in e.attribs if a.dxf.tag.upper() == TAG), None)
    if attrib is None:
        return 0
    text = attrib.dxf.text.strip()
    if DECIMAL.fullmatch(text):
        return int(float(text) >= VALUE)
    return int(text.lower() >= '900')


def count_memo(doc):
    memo = {}

    def contents(name):
        key = name.upper()
        if key in memo:
            return memo[key]
        memo[key] = 0
        total = 0
        if name in doc.blocks:
            for e in doc.blocks[name].query('INSERT'):
                total += matches(e) + contents(e.dxf.name)
        memo[key] = total
        return total

    return sum(matches(e) + contents(e.dxf.name) for layout in doc.layouts for e in layout.query('INSERT'))


def count_walk(doc):
    def inside(e, path):
        name = e.dxf.name.upper()
        if name in path or e.dxf.name not in doc.blocks:
            return 0
        return sum(matches(inner) + inside(inner, path | {name}) for inner in doc.blocks[e.dxf.name].query('INSERT'))

    return sum(matches(e) + inside(e, frozenset()) for layout in doc.layouts for e in layout.query('INSERT'))


def best_of_three(function, doc):
    best, result = None, None
    for _ in range(3):
        start = time.perf_counter()
        result = function(doc)
        seconds = time.perf_counter() - start
        best = seconds if best is None else min(best, seconds)
    return result, best


def main():
    start = time.perf_counter()
    doc = build(int(sys.argv[2])) if sys.argv[1] == '--build' else ezdxf.readfile(sys.argv[1])
    print('load_seconds=%.2f' % (time.perf_counter() - start))
    memo, memo_seconds = best_of_three(count_memo, doc)
    walk, walk_seconds = best_of_three(count_walk, doc)
    if memo != walk:
        print('the two counts differ: %d and %d' % (memo, walk))
        sys.exit(1)
    print('count=%d' % memo)
    print('memo_seconds=%.3f' % memo_seconds)
    print('walk_seconds=%.3f' % walk_seconds)


if __name__ == '__main__':
    main()
