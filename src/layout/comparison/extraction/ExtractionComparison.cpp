// ExtractionComparison.cpp - page pairing by offset and the document's totals.
#include "layout/comparison/extraction/ExtractionComparison.h"

#include "base/TraceLog.h"
#include "layout/Layout.h"
#include "layout/Node.h"
#include "layout/comparison/LevelNodes.h"
#include "layout/comparison/extraction/PageExtraction.h"

#include <algorithm>
#include <vector>

namespace qent::text::layout::comparison::extraction {

namespace {

std::vector<Node*> pagesOf(const Layout& layout) {
  std::vector<Node*> pages;
  if (layout.root() != nullptr) collectPages(*layout.root(), pages);
  return pages;
}

}  // namespace

ExtractionResult compareExtraction(const ExtractionOptions& options, const Layout& main,
                                   const Layout& reference) {
  if (base::TraceLog::isOn()) {
    base::TraceLog::write("Start extraction comparison...", base::kTraceInfo);
  }
  const std::vector<Node*> mainPages = pagesOf(main);
  const std::vector<Node*> referencePages = pagesOf(reference);
  const auto mainCount = static_cast<std::int64_t>(mainPages.size());
  const auto referenceCount = static_cast<std::int64_t>(referencePages.size());
  const std::int64_t offset = options.pageOffset;

  // i runs over recognised page numbers, stretched to reach every reference page; the
  // gap that a far offset opens between the two ranges is skipped, not walked.
  ExtractionResult result;
  const std::int64_t first = std::min<std::int64_t>(0, -offset);
  const std::int64_t last = std::max(mainCount, referenceCount - offset);
  auto nextStart = [&](std::int64_t i) {
    std::int64_t next = last;
    if (i < 0) next = std::min<std::int64_t>(next, 0);
    if (i < -offset) next = std::min(next, -offset);
    return next;
  };
  for (std::int64_t i = first; i < last;) {
    const std::int64_t k = i + offset;
    const bool hasMain = i >= 0 && i < mainCount;
    const bool hasReference = k >= 0 && k < referenceCount;
    if (!hasMain && !hasReference) {
      i = nextStart(i);
      continue;
    }
    PageResult page = extractPage(options, hasMain ? mainPages[i] : nullptr,
                                  hasReference ? referencePages[k] : nullptr);
    if (hasMain) page.mainPage = static_cast<std::uint32_t>(i);
    if (hasReference) page.referencePage = static_cast<std::uint32_t>(k);
    result.count += page.count;
    result.errors += page.errors;
    result.pages.push_back(std::move(page));
    ++i;
  }
  if (base::TraceLog::isOn()) {
    base::TraceLog::write("Extraction comparison is finished", base::kTraceInfo);
  }
  return result;
}

}  // namespace qent::text::layout::comparison::extraction
