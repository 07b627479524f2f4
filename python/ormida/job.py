"""The job: create, set properties, execute, read results, free."""

import ctypes
from typing import Optional, Union
from os import PathLike

from . import _native

OK = 0
BUFFER_TOO_SMALL = 47
UNKNOWN_PROPERTY = 99

# Most results fit; a longer one is read again with the size the library asks for.
FIRST_CAPACITY = 4096


class OrmidaError(Exception):
    """A call into the library failed: `code` is the library's return code, `text` its
    error text (the job's, when there is one)."""

    def __init__(self, code: int, text: str):
        super().__init__(f"{text} (code {code})")
        self.code = code
        self.text = text


def _value(value: Union[str, bool, int, float, "PathLike[str]"]) -> str:
    if isinstance(value, bool):
        return "true" if value else "false"
    return str(value) if not isinstance(value, PathLike) else str(value.__fspath__())


class Job:
    """One job of the library. Use it as a context manager, or call close():

        with Job() as job:
            job.set("InputFilename", "page.hocr")
            job.set("Compare", True)
            job.set("Compare.With", "truth.hocr")
            job.execute()
            result = job.get("Compare.Result")
    """

    def __init__(self):
        self._lib = _native.library()
        self._handle = ctypes.c_void_p()
        self._check(self._lib.OrmidaJobCreate(ctypes.byref(self._handle)), "OrmidaJobCreate")

    def __enter__(self) -> "Job":
        return self

    def __exit__(self, *exc) -> None:
        self.close()

    def __del__(self):
        # A job the caller forgot still gives its memory back.
        if getattr(self, "_handle", None):
            self.close()

    def close(self) -> None:
        if self._handle:
            self._lib.OrmidaJobFree(ctypes.byref(self._handle))
            self._handle = ctypes.c_void_p()

    def set(self, name: str, value: Union[str, bool, int, float, "PathLike[str]"]) -> "Job":
        """Sets a property (booleans become "true"/"false", paths and numbers text)."""
        text = _value(value)
        encoded = _native.to_utf16(text)
        self._check(self._lib.OrmidaJobSetProperty(self._live(), _native.to_utf16(name), encoded,
                                                   len(encoded) - 1), f"setting {name}")
        return self

    def execute(self) -> None:
        self._check(self._lib.OrmidaJobExecute(self._live()), "OrmidaJobExecute")

    def get(self, name: str) -> Optional[str]:
        """A result property, or None when the job has none of that name."""
        key = _native.to_utf16(name)
        capacity = FIRST_CAPACITY
        while True:
            buffer = (_native.OrmidaChar * capacity)()
            size = ctypes.c_size_t(capacity)
            code = self._lib.OrmidaJobGetProperty(self._live(), key, buffer, ctypes.byref(size))
            if code == OK:
                return _native.from_utf16(buffer, size.value - 1)
            if code == UNKNOWN_PROPERTY:
                return None
            if code != BUFFER_TOO_SMALL or size.value <= capacity:
                self._check(code, f"reading {name}")
            capacity = size.value

    def error_text(self) -> str:
        size = ctypes.c_size_t(0)
        # The capacity is not consulted: ask for the size first, then read.
        if self._lib.OrmidaJobGetErrorText(self._live(), None, ctypes.byref(size)) != OK:
            return ""
        buffer = ctypes.create_string_buffer(max(size.value, 1))
        self._lib.OrmidaJobGetErrorText(self._live(), buffer, ctypes.byref(size))
        return buffer.value.decode("utf-8", errors="replace")

    def _live(self) -> ctypes.c_void_p:
        if not self._handle:
            raise OrmidaError(29, "the job has been closed")
        return self._handle

    def _check(self, code: int, what: str) -> None:
        if code == OK:
            return
        text = self.error_text() if self._handle else ""
        raise OrmidaError(code, text or f"{what} failed")


def version() -> str:
    """The library's version text, e.g. "Ormida 1.7.0.170980"."""
    buffer = ctypes.create_string_buffer(128)
    _native.library().OrmidaGetVersionText(buffer, len(buffer))
    return buffer.value.decode("utf-8")
