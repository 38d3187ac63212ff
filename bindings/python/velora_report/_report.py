from __future__ import annotations

import ctypes
import datetime
import enum
import json
import os
from dataclasses import dataclass, field
from types import TracebackType
from typing import Any, Callable, Dict, List, Optional, Type, Union

from ._library import ON_BOX, ON_PIPE, ON_PROGRESS, Options, TaxSlot, library

Path = Union[str, "os.PathLike[str]"]
Row = Dict[str, Any]

_DATES = (7, 135)  # types of the fields that hold a date


class WhichReport(enum.IntEnum):
    QUOTE = 0
    CUSTOMER_LIST = 1
    ITEM_LIST = 2
    WIN_LOSS_GRAPH = 3
    LOST_REASON_GRAPH = 4
    OVERVIEW_QUOTES = 5
    ORDER_CHECKLIST = 6
    PICKING_SLIP = 7
    ORDER_CONFIRMATION = 8
    EXPIRE_QUOTES = 9
    ALL_ORDER = 10
    BACK_ORDER = 11
    CUSTOM = 22


class WhichEngine(enum.IntEnum):
    NONE = 0
    SQL_SERVER = 1
    PERVASIVE = 2


class WhichFrame(enum.IntEnum):
    PRINTER = 0
    RPT_QUOTE = 1
    RPT_EXPIRATION = 2
    RPT_CHECKLIST = 3
    RPT_CONFIRMATION = 4
    RPT_PICKING_SLIP = 5
    EXPORT = 6
    EMAIL = 7
    LOG_FILE = 8
    MISC_OPTIONS = 9


class Icon(enum.IntEnum):
    INFORMATION = 0
    EXCLAMATION = 1
    CRITICAL = 2


class _Status(enum.IntEnum):
    DELIVERED = 0
    TOLD = 1
    USAGE = 2
    NO_DATA = 3
    DELIVERED_WITH_BOXES = 4
    FAULT = 5


@dataclass(frozen=True)
class Box:
    """A message box as a person would see it."""

    title: str
    text: str
    icon: Icon


@dataclass(frozen=True)
class TaxInformation:
    authority: str
    tax_class: str
    cascade_tax: bool
    reg_number: str
    amount: float


@dataclass
class Outcome:
    """What a delivered report came to."""

    file: str = ""
    rows: List[Row] = field(default_factory=list)
    boxes: List[Box] = field(default_factory=list)


class ReportError(Exception):
    """A report that was not delivered."""

    def __init__(self, text: str, boxes: Optional[List[Box]] = None) -> None:
        super().__init__(text)
        self.boxes = boxes or []


class BoxShown(ReportError):
    """A message box said why not."""


class NoData(ReportError):
    """There was nothing to put on the report."""


class Fault(ReportError):
    """The operation raised a fault; ``number`` is its number."""

    def __init__(self, text: str, boxes: Optional[List[Box]], number: int) -> None:
        super().__init__(text, boxes)
        self.number = number


class Usage(ReportError, ValueError):
    """The call itself is wrong."""


def version() -> str:
    return library().velora_version().decode()


def _bytes(text: Optional[Path]) -> Optional[bytes]:
    return None if text is None else os.fspath(text).encode()


def _value(cell: Any, code: int) -> Any:
    if code not in _DATES or not isinstance(cell, str):
        return cell
    return datetime.datetime.fromisoformat(cell) if "T" in cell else datetime.date.fromisoformat(cell)


def _rows(pipes: List[str]) -> List[Row]:
    """The rows of all pipes; a picking slip that is split comes as several."""
    rows: List[Row] = []
    for text in pipes:
        pipe = json.loads(text)
        names = [(entry["name"], entry["type"]) for entry in pipe["fields"]]
        for cells in pipe["rows"]:
            rows.append({name: _value(cell, code) for (name, code), cell in zip(names, cells)})
    return rows


class Report:
    """A session on one company, open until ``close``. One thread uses it at a time."""

    def __init__(
        self,
        folder: Optional[Path] = None,
        *,
        database: Optional[str] = None,
        accounting: Optional[str] = None,
        company: Optional[str] = None,
        engine: WhichEngine = WhichEngine.NONE,
        user: Optional[str] = None,
        settings: Optional[Path] = None,
        today: Optional[datetime.date] = None,
        region: Optional[str] = None,
        resources: Optional[Path] = None,
        on_progress: Optional[Callable[[int, int], None]] = None,
    ) -> None:
        self._boxes: List[Box] = []
        self._pipes: List[str] = []
        self._raised: Optional[BaseException] = None
        self._on_progress = on_progress
        self._handle = ctypes.c_void_p()
        self._library = library()
        # The library calls these as long as the handle lives.
        self._callbacks = (ON_BOX(self._box), ON_PROGRESS(self._progress), ON_PIPE(self._pipe))
        options = Options()
        options.size = ctypes.sizeof(Options)
        options.folder = _bytes(folder)
        options.database = _bytes(database)
        options.accounting = _bytes(accounting)
        options.company = _bytes(company)
        options.engine = int(engine)
        options.user = _bytes(user)
        options.settings = _bytes(settings)
        options.today = None if today is None else today.isoformat()[:10].encode()
        options.region = _bytes(region)
        options.resources = _bytes(resources)
        options.on_box, options.on_progress, options.on_pipe = self._callbacks
        self._check(self._library.velora_open(ctypes.byref(options), ctypes.byref(self._handle)))
        self._engine = WhichEngine(self._library.velora_engine(self._handle))
        self._multi_curr = bool(self._library.velora_multi_curr(self._handle))

    def close(self) -> None:
        if self._handle:
            self._library.velora_close(self._handle)
            self._handle = ctypes.c_void_p()

    def __enter__(self) -> "Report":
        return self

    def __exit__(
        self, kind: Optional[Type[BaseException]], error: Optional[BaseException], trace: Optional[TracebackType]
    ) -> None:
        self.close()

    def __del__(self) -> None:
        if getattr(self, "_library", None) is not None:
            self.close()

    def find_quote(self, number: str) -> int:
        """The id of the quote of a number. Raises ``NoData`` when there is none."""
        found = ctypes.c_int32()
        self._check(self._library.velora_find_quote(self._handle, number.encode(), ctypes.byref(found)))
        return found.value

    def set_printer(self, name: Optional[str]) -> None:
        """Prints on the first printer whose name holds the text, where a document is neither exported nor previewed."""
        self._check(self._library.velora_set_printer(self._handle, None if name is None else name.encode()))

    def tax_authorities(self) -> List[TaxInformation]:
        """The authorities of the tax group that the last operation loaded."""
        slots = (TaxSlot * 5)()
        count = ctypes.c_int32()
        self._check(self._library.velora_tax_authorities(self._handle, slots, ctypes.byref(count)))
        return [
            TaxInformation(
                slot.Authority.decode(), slot.TaxClass.decode(), bool(slot.CascadeTax), slot.RegNumber.decode(), slot.Amount
            )
            for slot in slots[: count.value]
        ]

    def show_printers(self, frame: WhichFrame = WhichFrame.PRINTER, *, win_xp: bool = False) -> Outcome:
        return self._run("velora_Show_Printers", int(win_xp), int(self._engine), int(frame))

    def open_reports(
        self,
        which_report: WhichReport,
        *,
        win_xp: bool = False,
        multi_curr: Optional[bool] = None,
        sess_user: str = "",
        quote_id: int = 0,
        cust_group: str = "",
        own_quotes: bool = False,
        email_it: bool = False,
        show_cust: int = 0,
    ) -> Outcome:
        return self._run(
            "velora_Open_Reports", int(win_xp), int(self._engine), int(which_report), self._currencies(multi_curr),
            sess_user.encode(), quote_id, cust_group.encode(), int(own_quotes), int(email_it), show_cust,
        )  # fmt: skip

    def print_current_quote(
        self,
        quote_id: int,
        *,
        multi_curr: Optional[bool] = None,
        cust_group: str = "",
        show_cust: int = 0,
        report_string: Optional[Path] = None,
        export_it: bool = True,
        preview: bool = False,
        format: Optional[str] = None,
        target: Optional[Path] = None,
    ) -> Outcome:
        self._set_export(format, target)
        return self._run(
            "velora_Print_CurrentQuote", int(self._engine), self._currencies(multi_curr), quote_id, cust_group.encode(), show_cust,
            _bytes(report_string), int(export_it), int(preview),
        )  # fmt: skip

    def print_order_checklist(self, quote_id: int, **how: Any) -> Outcome:
        return self._document("velora_Print_OrderChecklist", [quote_id], **how)

    def print_order_confirmation(self, quote_id: int, **how: Any) -> Outcome:
        return self._document("velora_Print_OrderConfirmation", [quote_id], **how)

    def show_emailer(self, *, win_xp: bool = False) -> Outcome:
        return self._run("velora_Show_Emailer", int(win_xp), int(self._engine))

    def print_order_picking_slip(self, quote_id: int, *, quant_as_int: bool = False, **how: Any) -> Outcome:
        return self._document("velora_Print_OrderPickingSlip", [quote_id], [int(quant_as_int)], **how)

    def print_quote_expiration(self, **how: Any) -> Outcome:
        return self._document("velora_Print_QuoteExpiration", [], **how)

    def _currencies(self, multi_curr: Optional[bool]) -> int:
        return int(self._multi_curr if multi_curr is None else multi_curr)

    def _document(
        self,
        name: str,
        before: List[int],
        behind: Optional[List[int]] = None,
        *,
        report_string: Optional[Path] = None,
        export_it: bool = True,
        preview: bool = False,
        format: Optional[str] = None,
        target: Optional[Path] = None,
    ) -> Outcome:
        self._set_export(format, target)
        how = [_bytes(report_string), int(export_it), int(preview)]
        return self._run(name, int(self._engine), *before, *how, *(behind or []))

    def _set_export(self, format: Optional[str], target: Optional[Path]) -> None:
        written = None if format is None else format.encode()
        self._check(self._library.velora_set_export(self._handle, written, _bytes(target)))

    def _run(self, name: str, *arguments: Any) -> Outcome:
        self._boxes = []
        self._pipes = []
        self._check(getattr(self._library, name)(self._handle, *arguments))
        file = self._library.velora_exported_file(self._handle).decode()
        return Outcome(file, _rows(self._pipes), self._boxes)

    def _check(self, status: int) -> None:
        raised, self._raised = self._raised, None
        if raised is not None:
            raise raised
        if status in (_Status.DELIVERED, _Status.DELIVERED_WITH_BOXES):
            return
        text = self._library.velora_last_error(self._handle).decode()
        text = text or self._library.velora_last_error(None).decode()
        if status == _Status.NO_DATA:
            raise NoData(text or "There was nothing to put on the report.", self._boxes)
        if status == _Status.FAULT:
            raise Fault(text, self._boxes, self._library.velora_last_fault(self._handle))
        raise Usage(text, self._boxes) if status == _Status.USAGE else BoxShown(text, self._boxes)

    # What is raised in a callback cannot pass through the library: it waits for the call to end.

    def _box(self, context: Optional[int], title: bytes, text: bytes, icon: int) -> None:
        self._boxes.append(Box(title.decode(), text.decode(), Icon(icon)))

    def _progress(self, context: Optional[int], done: int, total: int) -> None:
        if self._on_progress is None or self._raised is not None:
            return
        try:
            self._on_progress(done, total)
        except BaseException as error:  # noqa: B902
            self._raised = error

    def _pipe(self, context: Optional[int], text: int, length: int) -> None:
        self._pipes.append(ctypes.string_at(text, length).decode())
