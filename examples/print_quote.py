"""Prints one quote of an application folder on a printer of this machine.

    python3 examples/print_quote.py acme Q-10052 office
"""

import sys

from velora_report import Report, ReportError


def main(folder: str, number: str, printer: str) -> int:
    try:
        with Report(folder) as report:
            report.set_printer(printer)
            outcome = report.print_current_quote(report.find_quote(number), export_it=False)
    except ReportError as error:
        print(f"{number}: {error}", file=sys.stderr)
        return 1
    for box in outcome.boxes:
        print(box.title, box.text, sep="\n", file=sys.stderr)
    print(f"{number}: printed, {len(outcome.rows)} rows")
    return 0


if __name__ == "__main__":
    sys.exit(main(*sys.argv[1:4]))
