"""The everyday jobs in one call each: compare, convert, check."""

import json
from os import PathLike
from pathlib import Path
from typing import Optional, Union

from .job import Job, OrmidaError

PathType = Union[str, "PathLike[str]"]

_LEVELS = {"glyph": "Glyph", "word": "Word", "line": "Line"}
_FORMATS = {".hocr": "hocr", ".json": "json", ".html": "html", ".htm": "html",
            ".tsv": "webanno", ".webanno": "webanno", ".txt": "txtutf8"}
_FORMAT_NAMES = {"hocr": "hocr", "json": "json", "html": "html", "webanno": "webanno",
                 "txt": "txtutf8", "txtutf8": "txtutf8"}


def _tolerant(job: Job, strict: bool) -> None:
    # Real engines' hOCR is looser than the format; read it as it comes unless asked not to.
    if not strict:
        job.set("TolerantHocr", True)


def compare(gt: PathType, ocr: PathType, level: str = "word", *, report: Optional[PathType] = None,
            strict: bool = False) -> dict:
    """Compares the recognition `ocr` with its ground truth `gt` (files in any format the
    library reads) and returns the comparison result document as a dict. `report` also
    writes the visual HTML report there."""
    if level.lower() not in _LEVELS:
        raise ValueError(f"level must be one of {', '.join(_LEVELS)}, not {level!r}")
    with Job() as job:
        _tolerant(job, strict)
        job.set("InputFilename", ocr)
        job.set("Compare", True)
        job.set("Compare.With", gt)
        job.set("Compare.Level", _LEVELS[level.lower()])
        if report is not None:
            job.set("ComparisonReportFilename", report)
        job.execute()
        return json.loads(job.get("Compare.Result") or "null")


def convert(src: PathType, dst: PathType, to: Optional[str] = None, *, strict: bool = False) -> None:
    """Reads `src` and writes it to `dst` in the format `to` (hocr, json, html, webanno, txt),
    by default the one `dst`'s extension names."""
    if to is None:
        suffix = Path(dst).suffix.lower()
        if suffix not in _FORMATS:
            raise ValueError(f"cannot tell the output format from {suffix!r}; pass to=")
        format_name = _FORMATS[suffix]
    elif to.lower() in _FORMAT_NAMES:
        format_name = _FORMAT_NAMES[to.lower()]
    else:
        raise ValueError(f"to must be one of hocr, json, html, webanno, txt, not {to!r}")
    with Job() as job:
        _tolerant(job, strict)
        job.set("InputFilename", src)
        job.set("OutputFilename", dst)
        job.set("OutputFilename.Format", format_name)
        job.execute()


def check(path: PathType, lang: str = "deu", *, strict: bool = False) -> dict:
    """Judges the text quality of `path` (a plain text or a layout) in language `lang`
    (deu, eng, ...) with the word recognizer and returns its statistics report as a dict."""
    with Job() as job:
        _tolerant(job, strict)
        job.set("InputFilename", path)
        job.set("WordRecognizer", True)
        job.set("WordRecognizer.Options", f"Language={lang}")
        job.set("WordRecognizer.StatisticsOutputFormat", "json")
        job.execute()
        result = job.get("WordRecognizer.Result")
        if result is None:
            raise OrmidaError(99, "the word recognizer gave no result")
        return json.loads(result)
