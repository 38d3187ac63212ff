#!/usr/bin/env bash
# What the shared library shows of itself is what it always showed.  usage: symbols.sh LIBRARY LIST
set -euo pipefail
nm -D --defined-only "$1" | awk '$2 != "A" {print $3}' | LC_ALL=C sort | diff -u "$2" - || {
    echo "The symbols of $(basename "$1") differ. A new one is added to the list; one that was there stays." >&2
    exit 1
}
needed=$(readelf -d "$1" | grep -c 'SONAME.*libvelora-report.so.1') || true
[[ $needed == 1 ]]
