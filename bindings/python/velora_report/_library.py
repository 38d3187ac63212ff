"""The shared library and what its functions take."""

from __future__ import annotations

import ctypes
import ctypes.util
import os
from typing import Optional

ON_BOX = ctypes.CFUNCTYPE(None, ctypes.c_void_p, ctypes.c_char_p, ctypes.c_char_p, ctypes.c_int32)
ON_PROGRESS = ctypes.CFUNCTYPE(None, ctypes.c_void_p, ctypes.c_size_t, ctypes.c_size_t)
ON_PIPE = ctypes.CFUNCTYPE(None, ctypes.c_void_p, ctypes.c_void_p, ctypes.c_size_t)


class Options(ctypes.Structure):
    _fields_ = [
        ("size", ctypes.c_size_t),
        ("folder", ctypes.c_char_p),
        ("database", ctypes.c_char_p),
        ("accounting", ctypes.c_char_p),
        ("company", ctypes.c_char_p),
        ("engine", ctypes.c_int32),
        ("user", ctypes.c_char_p),
        ("settings", ctypes.c_char_p),
        ("today", ctypes.c_char_p),
        ("region", ctypes.c_char_p),
        ("resources", ctypes.c_char_p),
        ("context", ctypes.c_void_p),
        ("on_box", ON_BOX),
        ("on_progress", ON_PROGRESS),
        ("on_pipe", ON_PIPE),
    ]


class TaxSlot(ctypes.Structure):
    _fields_ = [
        ("Authority", ctypes.c_char_p),
        ("TaxClass", ctypes.c_char_p),
        ("CascadeTax", ctypes.c_int32),
        ("RegNumber", ctypes.c_char_p),
        ("Amount", ctypes.c_float),
    ]


_HANDLE = ctypes.c_void_p
_INT = ctypes.c_int32
_TEXT = ctypes.c_char_p

# name, result, arguments: as the header declares them
_FUNCTIONS = [
    ("velora_version", _TEXT, []),
    ("velora_open", _INT, [ctypes.POINTER(Options), ctypes.POINTER(_HANDLE)]),
    ("velora_close", None, [_HANDLE]),
    ("velora_last_error", _TEXT, [_HANDLE]),
    ("velora_last_fault", _INT, [_HANDLE]),
    ("velora_set_export", _INT, [_HANDLE, _TEXT, _TEXT]),
    ("velora_set_printer", _INT, [_HANDLE, _TEXT]),
    ("velora_engine", _INT, [_HANDLE]),
    ("velora_multi_curr", _INT, [_HANDLE]),
    ("velora_exported_file", _TEXT, [_HANDLE]),
    ("velora_find_quote", _INT, [_HANDLE, _TEXT, ctypes.POINTER(_INT)]),
    ("velora_tax_authorities", _INT, [_HANDLE, ctypes.POINTER(TaxSlot), ctypes.POINTER(_INT)]),
    ("velora_Show_Printers", _INT, [_HANDLE, _INT, _INT, _INT]),
    ("velora_Open_Reports", _INT, [_HANDLE, _INT, _INT, _INT, _INT, _TEXT, _INT, _TEXT, _INT, _INT, _INT]),
    ("velora_Print_CurrentQuote", _INT, [_HANDLE, _INT, _INT, _INT, _TEXT, _INT, _TEXT, _INT, _INT]),
    ("velora_Print_OrderChecklist", _INT, [_HANDLE, _INT, _INT, _TEXT, _INT, _INT]),
    ("velora_Print_OrderConfirmation", _INT, [_HANDLE, _INT, _INT, _TEXT, _INT, _INT]),
    ("velora_Show_Emailer", _INT, [_HANDLE, _INT, _INT]),
    ("velora_Print_OrderPickingSlip", _INT, [_HANDLE, _INT, _INT, _TEXT, _INT, _INT, _INT]),
    ("velora_Print_QuoteExpiration", _INT, [_HANDLE, _INT, _TEXT, _INT, _INT]),
]

_loaded: Optional[ctypes.CDLL] = None


def library() -> ctypes.CDLL:
    """The library of ``VELORA_REPORT_LIBRARY``, or the one that is installed."""
    global _loaded
    if _loaded is None:
        named = os.environ.get("VELORA_REPORT_LIBRARY")
        loaded = ctypes.CDLL(named or ctypes.util.find_library("velora-report") or "libvelora-report.so.1")
        for name, result, arguments in _FUNCTIONS:
            function = getattr(loaded, name)
            function.restype = result
            function.argtypes = arguments
        _loaded = loaded
    return _loaded
