// BestOfMerge.cpp - page by page: collect and scale the words, cluster, vote, set lines.
#include "bestof/BestOfMerge.h"

#include "base/MeanOf.h"
#include "bestof/Candidate.h"
#include "bestof/LineBuilder.h"
#include "bestof/MergeTrace.h"
#include "bestof/MergedWord.h"
#include "bestof/TextVote.h"
#include "bestof/WordClusters.h"
#include "layout/Layout.h"
#include "layout/NodeClass.h"
#include "layout/NodeText.h"
#include "layout/Nodes.h"
#include "layout/TreeWalk.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <stdexcept>
#include <string>
#include <vector>

namespace qent::bestof {

namespace {

using text::layout::Box;
using text::layout::Content;
using text::layout::Layout;
using text::layout::Line;
using text::layout::Node;
using text::layout::Page;
using text::layout::Rect;
using text::layout::Word;
using text::layout::isA;

// The pages of a layout in document order (a page inside a page belongs to the outer one).
// A layout without any page is one page without a size: its root.
std::vector<Node*> pagesOf(const Layout& layout) {
  std::vector<Node*> pages;
  Node* root = layout.root();
  if (root == nullptr) return pages;
  if (isA<Page>(*root)) return {root};
  text::layout::walkBelow(
      *root,
      [&](Node& node, Node&) {
        if (!isA<Page>(node)) return true;
        pages.push_back(&node);
        return false;
      },
      [](Node&) {});
  if (pages.empty()) pages.push_back(root);
  return pages;
}

ImageSize sizeOf(const Node& page) {
  if (!isA<Page>(page)) return {};
  const auto& p = static_cast<const Page&>(page);
  const auto clampSize = [](std::uint32_t v) {
    return static_cast<std::int32_t>(std::min<std::uint32_t>(v, std::numeric_limits<std::int32_t>::max()));
  };
  return {clampSize(p.width()), clampSize(p.height())};
}

// The words of one input page with their rectangles scaled by (sx, sy). Left and top are
// rounded down and right and bottom up, so no word collapses to nothing when scaled down.
// Words without a rectangle cannot be placed and are left out.
void collectWords(Node& page, std::uint32_t input, double sx, double sy,
                  std::vector<Candidate>& out) {
  text::layout::walkBelow(
      page,
      [&](Node& node, Node&) {
        if (!isA<Word>(node)) return true;
        const auto& word = static_cast<const Word&>(node);
        const Rect& r = word.rect();
        if (r.width <= 0 || r.height <= 0) return false;
        Candidate candidate;
        candidate.input = input;
        candidate.rect = {static_cast<std::int64_t>(std::floor(r.left * sx)),
                          static_cast<std::int64_t>(std::floor(r.top * sy)),
                          static_cast<std::int64_t>(std::ceil(static_cast<double>(r.right()) * sx)),
                          static_cast<std::int64_t>(std::ceil(static_cast<double>(r.bottom()) * sy))};
        // A word's own text, else what its glyphs read.
        candidate.text = word.text().empty() ? text::layout::nodeText(word) : word.text();
        candidate.confidence = word.confidence();
        out.push_back(std::move(candidate));
        return false;
      },
      [](Node&) {});
}

std::int64_t median(std::vector<std::int64_t>& values) {
  const auto middle = values.begin() + static_cast<std::ptrdiff_t>((values.size() - 1) / 2);
  std::nth_element(values.begin(), middle, values.end());
  return *middle;
}

MergedWord voteCluster(const std::vector<Candidate>& candidates, std::vector<std::uint32_t> members,
                       std::size_t inputs, std::size_t required) {
  MergedWord word;
  word.members = std::move(members);
  std::vector<std::int64_t> lefts, tops, rights, bottoms;
  std::vector<Ballot> ballots;
  base::MeanOf confidence;
  for (const std::uint32_t member : word.members) {
    const Candidate& c = candidates[member];
    lefts.push_back(c.rect.left);
    tops.push_back(c.rect.top);
    rights.push_back(c.rect.right);
    bottoms.push_back(c.rect.bottom);
    ballots.push_back({c.text, c.confidence, c.input});
    if (c.confidence >= 0) confidence.add(c.confidence);
  }
  word.rect = {median(lefts), median(tops), median(rights), median(bottoms)};
  word.kept = word.members.size() >= required;
  word.text = voteText(ballots);
  const double share = static_cast<double>(word.members.size()) / static_cast<double>(inputs);
  word.confidence = confidence.count() == 0 ? share : share * confidence.mean();
  return word;
}

std::int32_t toInt32(std::int64_t value) {
  return static_cast<std::int32_t>(std::clamp<std::int64_t>(
      value, std::numeric_limits<std::int32_t>::min(), std::numeric_limits<std::int32_t>::max()));
}

Rect toRect(const MatchRect& r) {
  const std::int32_t left = toInt32(r.left);
  const std::int32_t top = toInt32(r.top);
  return Rect::fromComputed(left, top, toInt32(r.right - left), toInt32(r.bottom - top));
}

MatchRect unite(const MatchRect& a, const MatchRect& b) {
  return {std::min(a.left, b.left), std::min(a.top, b.top), std::max(a.right, b.right),
          std::max(a.bottom, b.bottom)};
}

std::u16string decimal(std::size_t value) {
  const std::string text = std::to_string(value);
  return std::u16string(text.begin(), text.end());
}

// The merged page: one content area, its lines top to bottom, their words left to right.
std::unique_ptr<Page> buildPage(const std::vector<MergedWord>& words, ImageSize size,
                                std::size_t pageIndex, std::size_t inputs,
                                const BestOfOptions& options) {
  auto page = std::make_unique<Page>();
  page->setWidth(static_cast<std::uint32_t>(std::max(size.width, 0)));
  page->setHeight(static_cast<std::uint32_t>(std::max(size.height, 0)));
  page->setIndexInLayout(static_cast<std::uint32_t>(pageIndex));
  page->setId(u"page_" + decimal(pageIndex + 1));

  std::vector<const MergedWord*> kept;
  std::vector<MatchRect> rects;
  for (const MergedWord& word : words) {
    if (!word.kept || word.text.empty()) continue;
    kept.push_back(&word);
    rects.push_back(word.rect);
  }
  if (kept.empty()) return page;

  const LineRules rules{options.verticalConfidenceMin, options.maxLineHeightDeviation,
                        options.maxWordDistance};
  Box& area = page->appendChild(std::make_unique<Box>());
  MatchRect areaRect = rects.front();
  std::size_t wordNumber = 0;
  for (const std::vector<std::uint32_t>& lineWords : buildLines(rects, rules)) {
    Line& line = area.appendChild(std::make_unique<Line>());
    MatchRect lineRect = rects[lineWords.front()];
    for (const std::uint32_t i : lineWords) {
      const MergedWord& merged = *kept[i];
      Word& word = line.appendChild(std::make_unique<Word>());
      std::u16string id = u"word_" + decimal(pageIndex + 1);
      id += u'_';
      id += decimal(++wordNumber);
      word.setId(std::move(id));
      word.setText(merged.text);
      word.setRect(toRect(merged.rect));
      word.setConfidence(merged.confidence);
      std::u16string votes = decimal(merged.members.size());
      votes += u'/';
      votes += decimal(inputs);
      word.setAttribute(u"bestof_votes", std::move(votes));
      lineRect = unite(lineRect, merged.rect);
    }
    line.setRect(toRect(lineRect));
    areaRect = unite(areaRect, lineRect);
  }
  area.setRect(toRect(areaRect));
  return page;
}

}  // namespace

std::size_t requiredVotes(float threshold, std::size_t inputs) {
  // A NaN or negative threshold asks for nothing: one input suffices.
  if (inputs == 0 || !(threshold > 0)) return 1;
  // The small addition keeps 0.7 x 10 at 7 although 0.7f is a little below 0.7.
  const double votes = std::floor(static_cast<double>(threshold) * static_cast<double>(inputs) + 1e-6);
  if (votes >= static_cast<double>(inputs)) return inputs;
  return std::max<std::size_t>(1, static_cast<std::size_t>(votes));
}

std::optional<ImageSize> largestPage(std::span<const Layout* const> inputs) {
  std::optional<ImageSize> largest;
  std::int64_t largestArea = 0;
  for (const Layout* layout : inputs) {
    for (const Node* page : pagesOf(*layout)) {
      const ImageSize size = sizeOf(*page);
      const std::int64_t area = std::int64_t{size.width} * size.height;
      if (area > largestArea) {
        largestArea = area;
        largest = size;
      }
    }
  }
  return largest;
}

std::unique_ptr<Layout> mergeLayouts(std::span<const Layout* const> inputs,
                                     const BestOfOptions& options,
                                     const std::filesystem::path& traceDirectory) {
  if (inputs.empty()) throw std::runtime_error("Best-Of merge: there is no layout to merge");
  std::vector<std::vector<Node*>> pages;
  std::size_t pageCount = 0;
  for (const Layout* layout : inputs) {
    pages.push_back(pagesOf(*layout));
    pageCount = std::max(pageCount, pages.back().size());
  }
  const std::size_t required = requiredVotes(options.overlapThreshold, inputs.size());
  const double minOverlap = std::clamp(1.0 - static_cast<double>(options.clusterAreaTolerance), 0.0, 1.0);

  auto root = std::make_unique<Content>();
  root->setTypeName(u"node");
  std::vector<Candidate> candidates;
  for (std::size_t p = 0; p < pageCount; ++p) {
    candidates.clear();
    // A side of the common size that is unknown (or not wanted) stays as the first input
    // page that has it gives it, and that direction is not scaled.
    const bool scaleX = options.equalizeLayouts && options.pageWidth >= 1;
    const bool scaleY = options.equalizeLayouts && options.pageHeight >= 1;
    ImageSize outputSize{scaleX ? options.pageWidth : 0, scaleY ? options.pageHeight : 0};
    for (std::uint32_t input = 0; input < inputs.size(); ++input) {
      if (p >= pages[input].size()) continue;
      Node& page = *pages[input][p];
      const ImageSize size = sizeOf(page);
      const double sx = scaleX && size.width > 0 ? static_cast<double>(options.pageWidth) / size.width : 1;
      const double sy = scaleY && size.height > 0 ? static_cast<double>(options.pageHeight) / size.height : 1;
      if (outputSize.width < 1) outputSize.width = size.width;
      if (outputSize.height < 1) outputSize.height = size.height;
      collectWords(page, input, sx, sy, candidates);
    }
    // Fewer than one cell (a raster fitted to a page without that side) is one cell: words
    // are then told apart by their overlap alone in that direction.
    RasterGeometry raster;
    raster.pageWidth = std::max(outputSize.width, 1);
    raster.pageHeight = std::max(outputSize.height, 1);
    raster.cellsX = std::max(options.rasterFactorX, 1);
    raster.cellsY = std::max(options.rasterFactorY, 1);
    raster.wordWidthFactor = options.wordWidthFactor;
    raster.wordHeightFactor = options.wordHeightFactor;

    std::vector<MergedWord> words;
    for (std::vector<std::uint32_t>& members : clusterWords(candidates, raster, minOverlap)) {
      words.push_back(voteCluster(candidates, std::move(members), inputs.size(), required));
    }
    if (!traceDirectory.empty()) writeMergeTrace(traceDirectory, p, required, candidates, words);
    root->appendChild(buildPage(words, outputSize, p, inputs.size(), options));
  }
  auto merged = std::make_unique<Layout>(std::move(root));
  merged->addVersion(u"Ormida Best-Of merge", u"1.7.0");
  return merged;
}

}  // namespace qent::bestof
