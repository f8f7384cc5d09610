#!/usr/bin/env python3
"""Compresses one file for installation: compress.py FROM TO. The same input gives the same bytes at any time."""

import gzip
import sys
from pathlib import Path

source, target = map(Path, sys.argv[1:])
target.write_bytes(gzip.compress(source.read_bytes(), compresslevel=9, mtime=0))
