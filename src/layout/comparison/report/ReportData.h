// ReportData.h - what a comparison report shows, gathered before any HTML is written.
#pragma once

#include "layout/Rect.h"
#include "layout/comparison/report/CharacterAlignment.h"
#include "layout/comparison/report/ConfusionCounter.h"

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

namespace qent::text::layout::comparison::report {

// One row of a page: a ground-truth line beside the recognised line or lines that were
// paired with it. Either side may be empty (a line one side lacks).
struct ReportLine {
  std::u16string truth;
  std::u16string recognised;
  CharacterAlignment alignment;
};

// A recognised line's rectangle on the page and the row it belongs to.
struct ReportBox {
  Rect rect;
  std::size_t line = 0;  // index into ReportPage::lines
};

struct ReportPage {
  std::size_t number = 0;  // 1-based, in page-pair order
  // The size the boxes are drawn in: the page's, else the extent of its lines.
  std::uint32_t width = 0;
  std::uint32_t height = 0;
  std::filesystem::path image;  // an existing file, or empty
  std::vector<ReportLine> lines;
  std::vector<ReportBox> boxes;
  // From the line alignment: the edits shown, over the ground truth's characters.
  std::size_t truthCharacters = 0;
  std::size_t edits = 0;
  // The comparison's own figures for the page pair (the recognition's side).
  double recognitionRate = 0.0;
  double f1 = 0.0;
};

struct ReportData {
  std::string level;  // "word", "line", "glyph" or "node", as the result document names it
  std::vector<ReportPage> pages;
  std::vector<Confusion> confusions;
};

}  // namespace qent::text::layout::comparison::report
