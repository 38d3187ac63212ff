"""Runs against a real library and a real application folder, which the environment names."""

import datetime
import os
import pathlib
import shutil
import tempfile
import threading
import unittest

from velora_report import BoxShown, Fault, NoData, Report, ReportError, Usage, WhichEngine, version

COMPANY = os.environ["VELORA_TEST_COMPANY"]
TODAY = datetime.date(2026, 6, 15)


class ReportTest(unittest.TestCase):
    def setUp(self) -> None:
        self.folder = pathlib.Path(tempfile.mkdtemp())
        self.addCleanup(shutil.rmtree, self.folder)

    def open(self, folder: object = COMPANY, **more: object) -> Report:
        report = Report(folder, settings=self.folder / "settings.ini", today=TODAY, region="en-US", **more)
        self.addCleanup(report.close)
        return report

    def test_a_quote_is_a_file_and_a_list_of_rows(self) -> None:
        report = self.open()
        outcome = report.print_current_quote(report.find_quote("Q-10052"), target=self.folder / "offer.pdf")
        self.assertEqual(outcome.file, str(self.folder / "offer.pdf"))
        self.assertEqual((self.folder / "offer.pdf").read_bytes()[:5], b"%PDF-")
        self.assertEqual(outcome.boxes, [])
        self.assertEqual(outcome.rows[0]["Quote Number"], "Q-10052")
        self.assertIsInstance(outcome.rows[0]["Quote Date"], datetime.date)
        self.assertGreater(len(outcome.rows), 20)

    def test_the_ending_and_the_format_decide_what_is_written(self) -> None:
        report = self.open()
        quote = report.find_quote("Q-10052")
        html = report.print_current_quote(quote, format="html", target=self.folder)
        self.assertTrue(html.file.endswith(".html") or html.file.endswith(".htm"), html.file)
        with self.assertRaises(Usage):
            report.print_current_quote(quote, format="papyrus")

    def test_a_box_that_says_why_not_is_an_exception(self) -> None:
        report = self.open()
        with self.assertRaises(BoxShown) as caught:
            report.print_current_quote(report.find_quote("Q-10052"), report_string=self.folder / "nowhere.rpt")
        self.assertEqual(len(caught.exception.boxes), 1)
        self.assertIn("could not be found", str(caught.exception))
        self.assertTrue(report.print_current_quote(report.find_quote("Q-10052"), target=self.folder / "next.pdf").file)

    def test_what_is_not_there_is_told(self) -> None:
        with self.assertRaises(NoData):
            self.open().find_quote("Q-nowhere")
        with self.assertRaises(BoxShown) as caught:
            self.open(self.folder / "nowhere")
        self.assertIn("nowhere", str(caught.exception))
        with self.assertRaises(Usage):
            Report()
        with self.assertRaises(BoxShown):
            self.open().show_printers()
        with self.assertRaises(Fault) as missing:
            self.open().show_emailer()
        self.assertEqual(missing.exception.number, 429)

    def test_a_closed_report_refuses(self) -> None:
        report = self.open()
        report.close()
        report.close()
        with self.assertRaises(Usage):
            report.find_quote("Q-10052")

    def test_the_stores_may_be_named_without_a_folder(self) -> None:
        report = self.open(
            None, database=f"sqlite:{COMPANY}/velora.db", accounting=f"sqlite:{COMPANY}/accounting.db",
            company="DEMOCO", engine=WhichEngine.PERVASIVE,
        )  # fmt: skip
        definition = next(pathlib.Path(COMPANY, "Reports").glob("Quote*.rpt"))
        outcome = report.print_current_quote(
            report.find_quote("Q-10052"), report_string=definition, target=self.folder / "a.pdf"
        )
        self.assertEqual(outcome.rows[0]["Quote Number"], "Q-10052")

    def test_handles_on_threads_do_not_meet(self) -> None:
        expected = {}
        got = {}

        def work(number: str, into: dict) -> None:
            with Report(COMPANY, settings=self.folder / "s.ini", today=TODAY, region="en-US") as report:
                for _ in range(3):
                    outcome = report.print_current_quote(report.find_quote(number), target=self.folder / f"{number}.pdf")
                    into[number] = (outcome.rows, (self.folder / f"{number}.pdf").read_bytes())

        numbers = ["Q-10052", "Q-10001", "Q-10002", "Q-10003"]
        for number in numbers:
            work(number, expected)
        threads = [threading.Thread(target=work, args=(number, got)) for number in numbers]
        for thread in threads:
            thread.start()
        for thread in threads:
            thread.join()
        self.assertEqual(got, expected)

    def test_the_version_is_told(self) -> None:
        self.assertRegex(version(), r"^\d+\.\d+\.\d+$")
        self.assertTrue(issubclass(NoData, ReportError))


if __name__ == "__main__":
    unittest.main()
