// CloudOcrAnswer.h - a cloud-OCR answer made from a generated layout, for reader benchmarks.
#pragma once

#include <string>

namespace qent::text::layout {
class Layout;
}

namespace qent::bench {

// The layout's pages as a "responses" answer with a full-text annotation: one block and one
// paragraph per content area, one word per Word with one symbol per character (boxes split
// from the word's rectangle), confidences scaled to 0..1, a LINE_BREAK after the last word
// of each line and SPACE after the others. Compact JSON, as the service sends it.
std::string makeCloudOcrAnswer(const text::layout::Layout& layout);

}  // namespace qent::bench
