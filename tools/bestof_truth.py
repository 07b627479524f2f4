#!/usr/bin/env python3
"""bestof_truth.py HOCR TEXT - the ground truth of a rendered page as an Ormida JSON layout.

The word boxes come from a recognition of the clean rendering (HOCR); the texts come from the
source TEXT, line by line: the words of each recognised line are aligned with the source line's
words, and where the recognition split or joined words, the boxes are united or divided by
characters, so every source word has one box and its true text.
"""
import difflib
import json
import re
import sys
import xml.etree.ElementTree as ET


def bbox(element):
    m = re.search(r"bbox (\d+) (\d+) (\d+) (\d+)", element.get("title", ""))
    return [int(v) for v in m.groups()]


def classed(element, name):
    return [e for e in element.iter() if name in (e.get("class") or "").split()]


def unite(boxes):
    return [min(b[0] for b in boxes), min(b[1] for b in boxes),
            max(b[2] for b in boxes), max(b[3] for b in boxes)]


def divide(box, words):
    total = sum(len(w) + 1 for w in words) - 1
    left, out = box[0], []
    for w in words:
        right = left + (box[2] - box[0]) * len(w) // total
        out.append((w, [left, box[1], max(right, left + 1), box[3]]))
        left = right + (box[2] - box[0]) // total
    return out


def word(text, box):
    return {"type": "word", "text": text, "left": box[0], "top": box[1],
            "width": box[2] - box[0], "height": box[3] - box[1]}


def main():
    tree = ET.parse(sys.argv[1])
    source = [line.split() for line in open(sys.argv[2], encoding="utf-8").read().splitlines()
              if line.strip()]
    page = classed(tree.getroot(), "ocr_page")[0]
    lines = classed(page, "ocr_line")
    if len(lines) != len(source):
        sys.exit(f"{sys.argv[1]}: {len(lines)} recognised lines, {len(source)} source lines")
    children = []
    for element, truth in zip(lines, source):
        found = [("".join(e.itertext()).strip(), bbox(e)) for e in classed(element, "ocrx_word")]
        words = []
        matcher = difflib.SequenceMatcher(a=[t for t, _ in found], b=truth, autojunk=False)
        for _, i1, i2, j1, j2 in matcher.get_opcodes():
            if i1 == i2:
                sys.exit(f"{sys.argv[1]}: no box for {truth[j1:j2]}")
            if j1 == j2:
                continue  # a recognised speck that is no word of the text
            if i2 - i1 == j2 - j1:
                words += [word(t, b) for (_, b), t in zip(found[i1:i2], truth[j1:j2])]
            else:
                words += [word(t, b) for t, b in divide(unite([b for _, b in found[i1:i2]]), truth[j1:j2])]
        box = unite([[w["left"], w["top"], w["left"] + w["width"], w["top"] + w["height"]] for w in words])
        children.append({"type": "line", "left": box[0], "top": box[1], "width": box[2] - box[0],
                         "height": box[3] - box[1], "children": words})
    p = bbox(page)
    layout = {"producer": {"name": "ground truth", "version": [1]},
              "root": {"type": "node", "children": [
                  {"type": "page", "width": p[2], "height": p[3], "children": children}]}}
    print(json.dumps(layout, indent=1, ensure_ascii=False))


main()
