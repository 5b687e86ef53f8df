#!/usr/bin/python3
"""Loads a DXF drawing with ezdxf and reports the time and peak memory."""
import resource
import sys
import time

import ezdxf

start = time.perf_counter()
doc = ezdxf.readfile(sys.argv[1])
seconds = time.perf_counter() - start
print('load_seconds=%.3f' % seconds)
print('model_entities=%d' % len(doc.modelspace()))
print('peak_bytes=%d' % (resource.getrusage(resource.RUSAGE_SELF).ru_maxrss * 1024))
