// HocrStructure.h - a structural check of written hOCR, independent of the writer's code.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace qent::test {

// The problems found in an hOCR document, empty when there are none:
//   - it parses as XML; the root is an XHTML html element with head and body;
//   - the head names ocr-system, ocr-capabilities and ocr-number-of-pages, the page count
//     matches the ocr_page elements and the capabilities list exactly the hOCR classes used
//     plus ocrp_wconf / ocrp_lang / ocrp_dir / ocrp_poly / ocrp_font where the document
//     uses x_wconf, lang, dir, poly or fonts;
//   - hOCR classes sit on their elements (ocr_par on p, ocr_line and ocrx_word on span,
//     every other hOCR class on div) and no element is named like a class;
//   - every bbox is four integers with x0 <= x1 and y0 <= y1, every word's x_wconf a number;
//   - ids are unique, and no span, div or p is written as an empty-element tag.
std::vector<std::string> hocrStructureProblems(std::string_view hocr);

}  // namespace qent::test
