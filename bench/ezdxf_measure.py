#!/usr/bin/python3
"""Sums with ezdxf the areas of the objects whose handles a file lists, as
the AcArea field over them does: the same geometry as the fixtures' figures
(tests/fixtures/make_fixtures.py), by handle look-up in the drawing.

    /usr/bin/python3 bench/ezdxf_measure.py DRAWING HANDLES

Prints the time to load the drawing (not part of the sum's time), the time
of the sum, taken as the best of three runs, and the sum.
"""
import os
import sys
import time

import ezdxf

sys.path.insert(0, os.path.join(os.path.dirname(os.path.abspath(__file__)), '..', 'tests', 'fixtures'))
from make_fixtures import figures_of  # noqa: E402

start = time.perf_counter()
doc = ezdxf.readfile(sys.argv[1])
print('ezdxf_load_seconds=%.3f' % (time.perf_counter() - start))
with open(sys.argv[2], encoding='utf-8') as listed:
    handles = [line.strip() for line in listed if line.strip()]

best = None
total = 0.0
for run in range(3):
    start = time.perf_counter()
    total = 0.0
    for handle in handles:
        total += figures_of(doc.entitydb[handle])[0]
    seconds = time.perf_counter() - start
    best = seconds if best is None else min(best, seconds)
print('ezdxf_handles=%d' % len(handles))
print('ezdxf_sum_seconds=%.6f' % best)
print('ezdxf_area_sum=%.17g' % total)
