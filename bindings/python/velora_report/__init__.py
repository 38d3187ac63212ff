"""Quotes and orders of Velora as documents and as data.

    with Report("acme") as report:
        outcome = report.print_current_quote(report.find_quote("Q-10052"), target="offer.pdf")
        print(outcome.file, len(outcome.rows))

A report that is not delivered raises; a box that came with a delivered one stands in ``Outcome.boxes``.
"""

from ._report import (
    Box,
    BoxShown,
    Fault,
    Icon,
    NoData,
    Outcome,
    Report,
    ReportError,
    TaxInformation,
    Usage,
    WhichEngine,
    WhichFrame,
    WhichReport,
    version,
)

__all__ = [
    "Box",
    "BoxShown",
    "Fault",
    "Icon",
    "NoData",
    "Outcome",
    "Report",
    "ReportError",
    "TaxInformation",
    "Usage",
    "WhichEngine",
    "WhichFrame",
    "WhichReport",
    "version",
]
