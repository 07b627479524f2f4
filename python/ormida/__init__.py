"""Ormida from Python: ctypes over the library's C interface, no other dependency.

    import ormida
    result = ormida.compare("truth.hocr", "page.hocr", level="word", report="report.html")
    print(result["root"]["diff"]["recognition_rate_left"])

The library is found through the environment variable ORMIDA_LIBRARY, else beside this
package, else in the build folders of the source tree, else in the installed prefixes.
"""

from .helpers import check, compare, convert
from .job import Job, OrmidaError, version

__all__ = ["Job", "OrmidaError", "check", "compare", "convert", "version"]
