// Comparator.cpp - page pairing, candidate matching, pair reduction, unpaired nodes and
// aggregation of the comparison.
#include "layout/comparison/Comparator.h"

#include "base/NumberConversion.h"
#include "base/QentException.h"
#include "base/TraceLog.h"
#include "base/Unicode.h"
#include "layout/Fragment.h"
#include "layout/IteratorTemplate.h"
#include "layout/Layout.h"
#include "layout/NodeText.h"
#include "layout/Page.h"
#include "layout/comparison/Alignment.h"
#include "layout/comparison/CompareIterator.h"
#include "layout/comparison/LevelNodes.h"
#include "layout/comparison/PairReduction.h"

#include <charconv>

namespace qent::text::layout::comparison {

namespace {

std::vector<Node*> pagesOf(Node* root) {
  std::vector<Node*> pages;
  if (root != nullptr) collectPages(*root, pages);
  return pages;
}

// The comparison text of a level node. Level nodes are fragments; one without children
// (a word without glyphs, a glyph) reads as its own text, which spares the subtree walk.
std::u16string textOf(Node& node) {
  if (node.childCount() == 0) return static_cast<const Fragment&>(node).text();
  return nodeText(node);
}

std::u16string decimal(std::uint64_t value) {
  char digits[24];
  const auto end = std::to_chars(digits, digits + sizeof digits, value).ptr;
  return std::u16string(digits, end);
}

std::u16string ascii(const std::string& text) { return std::u16string(text.begin(), text.end()); }

}  // namespace

Comparator::Comparator(Layout& left, Layout& right, CompareLevel level, bool characterwise,
                       bool countLengthDifference, Alignment alignment)
    : left_(left),
      right_(right),
      level_(level),
      characterwise_(characterwise),
      countLengthDifference_(countLengthDifference),
      alignment_(alignment) {}

Comparator::~Comparator() = default;

const NodeStatistics* Comparator::statistics(const Node* node) const {
  return statistics_.find(node);
}

NodeStatistics& Comparator::record(Node& node) {
  return statistics_.obtain(node);
}

void Comparator::compare() {
  if (base::TraceLog::isOn()) {
    base::TraceLog::write("Start layout comparison...", base::kTraceInfo);
  }
  const std::vector<Node*> leftPages = pagesOf(left_.root());
  const std::vector<Node*> rightPages = pagesOf(right_.root());
  const std::size_t count = std::max(leftPages.size(), rightPages.size());
  for (std::size_t i = 0; i < count; ++i) {
    Node* leftPage = i < leftPages.size() ? leftPages[i] : &placeholder_;
    Node* rightPage = i < rightPages.size() ? rightPages[i] : &placeholder_;
    pagePairs_.emplace_back(leftPage, rightPage);
    comparePagePair(*leftPage, *rightPage);
  }

  aggregate(left_.root());
  aggregate(right_.root());
  if (left_.root() != nullptr && right_.root() != nullptr) {
    setPairF1(record(*left_.root()), record(*right_.root()));
  }
  for (const auto& [leftPage, rightPage] : pagePairs_) {
    setPairF1(record(*leftPage), record(*rightPage));
  }
  if (base::TraceLog::isOn()) {
    base::TraceLog::write("Layout comparison is finished", base::kTraceInfo);
  }
}

PageNodes Comparator::collect(Node& page) {
  PageNodes out;
  scanPage(page, level_, out.nodes, out.frame.content);
  setPageSize(out.frame, page);
  out.texts.reserve(out.nodes.size());
  out.records.reserve(out.nodes.size());
  for (Node* node : out.nodes) {
    out.texts.push_back(textOf(*node));
    out.records.push_back(&record(*node));
  }
  return out;
}

CandidateLists Comparator::match(Node& leftPage, Node& rightPage, const PageNodes& left,
                                 const PageNodes& right) {
  (void)leftPage;  // the frames gathered while collecting the nodes describe both pages
  (void)rightPage;
  const AlignmentTransform transform = alignFrames(alignment_, left.frame, right.frame);
  std::vector<MatchRect> leftRects;
  leftRects.reserve(left.nodes.size());
  for (Node* node : left.nodes) {
    // Nodes of a compared level are fragments (glyphs, words, lines).
    const Rect& rect = static_cast<const Fragment*>(node)->rect();
    if (rect.width <= 0 || rect.height <= 0) {
      throw base::QentException(base::kErrorOption, "Width or Height of Rectangle must be > 0");
    }
    leftRects.push_back(transform.map(rect));
  }
  std::vector<MatchRect> rightRects;
  rightRects.reserve(right.nodes.size());
  for (Node* node : right.nodes) {
    const Rect& rect = static_cast<const Fragment*>(node)->rect();
    rightRects.push_back({rect.left, rect.top, rect.right(), rect.bottom()});
  }
  return kernels_.findCandidates(leftRects, rightRects);
}

void Comparator::comparePagePair(Node& leftPage, Node& rightPage) {
  const PageNodes left = collect(leftPage);
  const PageNodes right = collect(rightPage);
  CandidateLists lists = match(leftPage, rightPage, left, right);
  for (const auto& [l, r] : reduceToPairs(lists, left.texts, right.texts)) {
    left.records[l]->partner = right.nodes[r];
    right.records[r]->partner = left.nodes[l];
    compareNodes({left.nodes[l], left.texts[l], left.records[l]},
                 {right.nodes[r], right.texts[r], right.records[r]});
  }
  countUnpaired(left);
  countUnpaired(right);
}

void Comparator::countUnpaired(const PageNodes& page) {
  for (std::size_t i = 0; i < page.nodes.size(); ++i) {
    NodeStatistics& stats = *page.records[i];
    if (stats.partner != nullptr) continue;
    stats.count = characterwise_ ? page.texts[i].size() : 1;
    stats.errors = stats.count;
    stats.lengthDifference = stats.count;
    stats.updateRates();
  }
}

void Comparator::aggregate(Node* root) {
  if (root == nullptr || statistics_.contains(root)) return;
  // Post-order without recursion: each frame sums its children as they finish, and a
  // finished frame hands its sums to its parent.
  struct Frame {
    Node* node;
    std::size_t next;
    std::uint64_t count;
    std::uint64_t errors;
    std::uint64_t lengthDifference;
  };
  std::vector<Frame> stack{{root, 0, 0, 0, 0}};
  while (!stack.empty()) {
    Frame& frame = stack.back();
    if (frame.next < frame.node->childCount()) {
      Node& child = frame.node->child(frame.next++);
      // A node that has a record was compared: it is a leaf of the aggregation.
      if (const NodeStatistics* part = statistics_.find(&child)) {
        frame.count += part->count;
        frame.errors += part->errors;
        frame.lengthDifference += part->lengthDifference;
      } else {
        stack.push_back({&child, 0, 0, 0, 0});
      }
      continue;
    }
    NodeStatistics& stats = record(*frame.node);
    stats.count = frame.count;
    stats.errors = frame.errors;
    stats.lengthDifference = frame.lengthDifference;
    stats.updateRates();
    stack.pop_back();
    if (!stack.empty()) {
      stack.back().count += stats.count;
      stack.back().errors += stats.errors;
      stack.back().lengthDifference += stats.lengthDifference;
    }
  }
}

void Comparator::writeAttributes(Node& node, bool withF1) const {
  static const NodeStatistics kNone;
  // The keys are built once.
  static const std::u16string kCount = u"comp_count";
  static const std::u16string kErrors = u"comp_errors";
  static const std::u16string kExtId = u"comp_extId";
  static const std::u16string kF1 = u"comp_f1Measure";
  static const std::u16string kNoPartner = u"none";
  const NodeStatistics* found = statistics(&node);
  const NodeStatistics& stats = found != nullptr ? *found : kNone;
  const std::u16string count = decimal(stats.count);
  const std::u16string errors = decimal(stats.errors);
  const std::u16string_view partner = stats.partner != nullptr ? stats.partner->id() : kNoPartner;
  // All at once: each change of a node's attributes writes them anew.
  if (withF1) {
    const std::u16string f1 = ascii(base::formatFixed6(stats.f1Measure));
    node.attributes().update({{kCount, count}, {kErrors, errors}, {kExtId, partner}, {kF1, f1}});
  } else {
    node.attributes().update({{kCount, count}, {kErrors, errors}, {kExtId, partner}});
  }
}

void Comparator::createStatistics() { createStatistics(true, true); }

void Comparator::createStatistics(bool left, bool right) {
  for (Layout* layout : {left ? &left_ : nullptr, right ? &right_ : nullptr}) {
    if (layout == nullptr || layout->root() == nullptr) continue;
    Node* root = layout->root();
    writeAttributes(*root, false);
    for (CompareIterator it(root, level_); !it.atEnd(); ++it) writeAttributes(*it, true);
  }
}

}  // namespace qent::text::layout::comparison
