#!/usr/bin/env bash
# Other programs over the shared library: the examples in C and Python, and the tests of the Python package.
# usage: hosts.sh SOURCE BIN
set -euo pipefail
source=$1 bin=$2
scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT
export XDG_CONFIG_HOME=$scratch/config LD_LIBRARY_PATH=$bin PYTHONPATH=$source/bindings/python
export VELORA_REPORT_LIBRARY=$bin/libvelora-report.so.1 VELORA_TEST_COMPANY=$scratch/acme PYTHONDONTWRITEBYTECODE=1
"$bin/velora-report" --quiet init "$scratch/acme"

says() {  # says STATUS TEXT COMMAND...
    local status=$1 text=$2 got=0 out
    shift 2
    out=$("$@" 2>&1) || got=$?
    if [[ $got != "$status" || $out != *"$text"* ]]; then
        echo "$* ended with $got, not $status, or did not say \"$text\":" >&2
        echo "$out" >&2
        exit 1
    fi
}

cc -std=c11 -Wall -Wextra -Wpedantic -Werror -I"$source/include" "$source/examples/quote.c" -o "$scratch/quote" \
    -L"$bin" -l:libvelora-report.so.1
says 0 "$scratch/c.pdf: 2" "$scratch/quote" "$scratch/acme" Q-10052 "$scratch/c.pdf"
says 3 "Q-nowhere" "$scratch/quote" "$scratch/acme" Q-nowhere "$scratch/none.pdf"
says 1 "$scratch/nowhere" "$scratch/quote" "$scratch/nowhere" Q-10052 "$scratch/none.pdf"
says 0 "$scratch/p.pdf: 2" python3 "$source/examples/quote.py" "$scratch/acme" Q-10052 "$scratch/p.pdf"
says 1 "Q-nowhere" python3 "$source/examples/quote.py" "$scratch/acme" Q-nowhere "$scratch/none.pdf"
for file in c p; do [[ $(head -c 5 "$scratch/$file.pdf") == %PDF- ]]; done
[[ ! -e $scratch/none.pdf ]]
cd "$scratch"
python3 -m unittest discover -s "$source/bindings/python/tests"
