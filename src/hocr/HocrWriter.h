// HocrWriter.h - writes a layout as an hOCR 1.2 document (XHTML 1.0 Transitional).
#pragma once

#include "base/Sink.h"

#include <string>

namespace qent::text::layout {
class Layout;
}

namespace qent::text::hocr {

// Turns a layout into hOCR text (UTF-8) that common hOCR consumers accept and that
// PugiHocrReader reads back to the same tree (for a tree read from hOCR; a tree from
// elsewhere may hold what hOCR cannot say, and comes back as its hOCR form). The document
// is streamed into the sink element by element; the tree is walked twice, first to learn
// what the head names (capabilities, languages, page count), so no document is ever held.
//
// Elements: Page div.ocr_page, Line span.ocr_line, Word span.ocrx_word, content areas
// div.ocr_carea, paragraph boxes p.ocr_par, other boxes div.<their name>, Content nodes
// under their own element name or a div with their type name as class. Glyphs inside a
// word are not elements (the reader would not take them back); their boxes and
// confidences go into the word's title as x_bboxes and x_confs. Image nodes are not
// elements either: a page names its image in its title.
//
// Ids are kept when they are usable XML ids not used before, else replaced by generated
// ones (page_1, block_1_1, par_1_1, line_1_1, word_1_1); nodes without an id get none, so
// reading the document back gives the same tree. The generic root of other formats is the
// body element itself. Confidences are written as the model reports them, except
// for layouts read from cloud-OCR JSON, whose 0..1 values are scaled to hOCR's 0..100.
//
// The layout is borrowed for the call; fragment confidences that the layout computes on
// demand (glyph means) are cached in it as a side effect, as any reader of them does.
class HocrWriter {
public:
  void write(const layout::Layout& layout, base::Sink& sink);
  std::string write(const layout::Layout& layout);
};

}  // namespace qent::text::hocr
