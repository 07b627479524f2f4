"""The Python binding against the built library (CTest sets ORMIDA_LIBRARY): round trips and errors."""

import json
import os
import sys
import tempfile
import unittest
from unittest import mock
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parents[1]))

import ormida  # noqa: E402

SAMPLES = Path(__file__).resolve().parents[2] / "data" / "samples"


class JobTest(unittest.TestCase):
    def test_result_longer_than_the_first_buffer_is_read_whole(self):
        def compare():
            with ormida.Job() as job:
                job.set("InputFilename", SAMPLES / "notice-ocr.json")
                job.set("Compare", True)
                job.set("Compare.With", SAMPLES / "notice-truth.json")
                job.execute()
                return job.get("Compare.Result")

        whole = compare()
        saved, ormida.job.FIRST_CAPACITY = ormida.job.FIRST_CAPACITY, 8
        try:
            self.assertEqual(compare(), whole)  # read again with the size asked for
        finally:
            ormida.job.FIRST_CAPACITY = saved
        self.assertEqual(json.loads(whole)["root"]["compare"], "word")

    def test_text_beyond_ascii_survives_the_round_trip(self):
        text = "Grüße aus Köln 😀"
        words = "".join(f"<span class='ocrx_word' title='bbox {10 + 60 * i} 10 {60 + 60 * i} 40'>{w}</span>"
                        for i, w in enumerate(text.split()))
        hocr = ("<html xmlns='http://www.w3.org/1999/xhtml'><body><div class='ocr_page' title='bbox 0 0 400 100'>"
                f"<span class='ocr_line' title='bbox 10 10 300 40'>{words}</span></div></body></html>")
        with tempfile.TemporaryDirectory() as folder:
            page = Path(folder) / "Grüße 😀.hocr"
            page.write_text(hocr, encoding="utf-8")
            ormida.convert(page, Path(folder) / "page.json")
            ormida.convert(Path(folder) / "page.json", Path(folder) / "again.txt")
            self.assertIn(text, (Path(folder) / "again.txt").read_text("utf-8"))

    def test_unknown_result_is_none_and_closed_job_refuses(self):
        self.assertRegex(ormida.version(), r"^Ormida \d+\.\d+\.\d+\.\d+$")
        job = ormida.Job()
        self.assertIsNone(job.get("Compare.Result"))
        job.close()
        with self.assertRaises(ormida.OrmidaError) as caught:
            job.execute()
        self.assertEqual(caught.exception.code, 29)

    def test_failed_execution_raises_with_code_and_text(self):
        with ormida.Job() as job:
            job.set("InputFilename", SAMPLES / "does-not-exist.json")
            with self.assertRaises(ormida.OrmidaError) as caught:
                job.execute()
        self.assertNotEqual(caught.exception.code, 0)
        self.assertIn("does-not-exist.json", caught.exception.text)



class HelperTest(unittest.TestCase):
    def test_compare_gives_the_result_document_and_a_report(self):
        with tempfile.TemporaryDirectory() as folder:
            report = Path(folder) / "report.html"
            result = ormida.compare(SAMPLES / "notice-truth.json", SAMPLES / "notice-ocr.json",
                                    level="line", report=report)
            self.assertTrue(report.read_text("utf-8").startswith("<!DOCTYPE html>"))
        root = result["root"]
        self.assertEqual(root["compare"], "line")
        self.assertLess(root["diff"]["recognition_rate_left"], 1.0)

    def test_compare_refuses_an_unknown_level(self):
        with self.assertRaises(ValueError):
            ormida.compare(SAMPLES / "notice-truth.json", SAMPLES / "notice-ocr.json", level="page")

    def test_convert_picks_the_format_by_extension_or_refuses(self):
        with tempfile.TemporaryDirectory() as folder:
            out = Path(folder) / "notice.txt"
            ormida.convert(SAMPLES / "notice-ocr.json", out)
            self.assertTrue(out.read_text("utf-8").strip())
            with self.assertRaises(ValueError):
                ormida.convert(SAMPLES / "notice-ocr.json", Path(folder) / "notice.xyz")
            webanno = Path(folder) / "notice.out"
            ormida.convert(SAMPLES / "notice-ocr.json", webanno, to="webanno")
            self.assertTrue(webanno.read_text("utf-8").startswith("#FORMAT=WebAnno TSV"))

    def test_check_reports_the_word_statistics(self):
        statistics = ormida.check(SAMPLES / "hocr-letter-eng-truth.hocr", "eng")["DocumentStatistics"]
        self.assertEqual((statistics["Language"], statistics["MainWordFrequency"]["Lane"]), ("eng", 2))

    def test_a_wrong_library_setting_is_named(self):
        from ormida import _native
        with mock.patch.dict(os.environ, {_native.LIBRARY_VARIABLE: "/nonexistent/lib.so"}):
            with self.assertRaisesRegex(OSError, "/nonexistent/lib.so"):
                _native._load()


if __name__ == "__main__":
    unittest.main()
