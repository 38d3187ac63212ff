"""Prints one quote of an application folder to a PDF file, and its lines to the screen.

    pip install ./bindings/python
    python3 examples/quote.py acme Q-10052 offer.pdf
"""

import sys

from velora_report import Report, ReportError


def main(folder: str, number: str, target: str) -> int:
    try:
        with Report(folder) as report:
            outcome = report.print_current_quote(report.find_quote(number), target=target)
    except ReportError as error:
        print(f"{number}: {error}", file=sys.stderr)
        return 1
    for row in outcome.rows:
        if row["Detail Type"] == "Item":
            print(row["Detail Item Number"], row["Detail Desc"], row["Detail Amount"], sep="\t")
    for box in outcome.boxes:
        print(box.title, box.text, sep="\n", file=sys.stderr)
    print(f"{outcome.file}: {len(outcome.rows)} rows")
    return 0


if __name__ == "__main__":
    sys.exit(main(*sys.argv[1:4]))
