"""Finding and loading the Ormida library, and the prototypes of its eight C functions."""

import ctypes
import ctypes.util
import os
import sys
from pathlib import Path
from typing import List, Optional

# Set to the full path of libOrmida64.so (Ormida64.dll on Windows) to use that one.
LIBRARY_VARIABLE = "ORMIDA_LIBRARY"

_NAMES = ["Ormida64.dll"] if sys.platform == "win32" else ["libOrmida64.so", "libOrmida64.so.1"]

# OrmidaChar is a 16-bit UTF-16 code unit on every platform (char16_t, wchar_t on Windows).
OrmidaChar = ctypes.c_uint16
_Handle = ctypes.c_void_p


def candidates() -> List[Path]:
    """Where the library is looked for, in order: the environment variable, beside this
    package, the build folders of the source tree the package sits in, then the installed
    prefixes."""
    found: List[Path] = []
    explicit = os.environ.get(LIBRARY_VARIABLE)
    if explicit:
        found.append(Path(explicit))
    here = Path(__file__).resolve().parent
    found += [here / name for name in _NAMES]
    source = here.parent.parent
    for build in sorted(source.glob("build*")) + sorted(source.glob(".build-win/build")):
        found += [build / name for name in _NAMES]
    for prefix in dict.fromkeys([sys.prefix, "/usr/local", "/usr"]):
        for lib in ("lib", "lib/x86_64-linux-gnu", "bin"):
            found += [Path(prefix) / lib / name for name in _NAMES]
    return found


def _load() -> ctypes.CDLL:
    explicit = os.environ.get(LIBRARY_VARIABLE)
    if explicit and not Path(explicit).is_file():
        # A wrong setting should not be covered up by some other copy of the library.
        raise OSError(f"{LIBRARY_VARIABLE} names {explicit}, which is not a file")
    for path in candidates():
        if path.is_file():
            return ctypes.CDLL(str(path))
    system = ctypes.util.find_library("Ormida64")
    if system:
        return ctypes.CDLL(system)
    searched = "\n  ".join(str(p) for p in candidates())
    raise OSError(f"the Ormida library was not found; set {LIBRARY_VARIABLE}. Searched:\n  {searched}")


def _declare(lib: ctypes.CDLL) -> ctypes.CDLL:
    u32, size = ctypes.c_uint32, ctypes.c_size_t
    chars = ctypes.POINTER(OrmidaChar)
    for name, arguments in {
        "OrmidaJobCreate": [ctypes.POINTER(_Handle)],
        "OrmidaJobFree": [ctypes.POINTER(_Handle)],
        "OrmidaJobExecute": [_Handle],
        "OrmidaJobSetProperty": [_Handle, chars, chars, size],
        "OrmidaJobGetProperty": [_Handle, chars, chars, ctypes.POINTER(size)],
        "OrmidaJobGetErrorText": [_Handle, ctypes.c_char_p, ctypes.POINTER(size)],
        "OrmidaGetVersion": [],
        "OrmidaGetVersionText": [ctypes.c_char_p, size],
    }.items():
        function = getattr(lib, name)
        function.argtypes = arguments
        function.restype = u32
    return lib


_library: Optional[ctypes.CDLL] = None


def library() -> ctypes.CDLL:
    """The loaded library, loaded on first use so that importing the package never fails."""
    global _library
    if _library is None:
        _library = _declare(_load())
    return _library


def to_utf16(text: str) -> "ctypes.Array[ctypes.c_uint16]":
    """A zero-terminated UTF-16 copy of text, and nothing lost: lone surrogates are refused."""
    data = text.encode("utf-16-le")
    units = len(data) // 2
    buffer = (OrmidaChar * (units + 1))()
    ctypes.memmove(buffer, data, len(data))
    return buffer


def from_utf16(buffer: "ctypes.Array[ctypes.c_uint16]", units: int) -> str:
    return ctypes.string_at(buffer, units * 2).decode("utf-16-le", errors="surrogatepass")
