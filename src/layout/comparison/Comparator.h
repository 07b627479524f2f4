// Comparator.h - measures how well a recognised layout (left) agrees with a reference (right).
//
// Pages are paired by position (a page that one side lacks is paired with an empty stand-in
// node); on every page pair the nodes of the compared level are paired one-to-one by the
// overlap of their rectangles, each pair is compared by the derived class, unpaired nodes
// count wholly as wrong, and pages and roots receive the sums of their children. The
// comparator borrows both layouts (they must outlive it) and owns one NodeStatistics record
// per compared or aggregated node; nothing is written into the layouts before
// createStatistics().
#pragma once

#include "layout/Node.h"
#include "layout/comparison/Alignment.h"
#include "layout/comparison/CandidateMatching.h"
#include "layout/comparison/CompareEnums.h"
#include "layout/comparison/EditDistance.h"
#include "layout/comparison/NodeStatistics.h"
#include "layout/comparison/StatisticsTable.h"

#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace qent::text::layout {
class Layout;
}

namespace qent::text::layout::comparison {

// The nodes of the compared level on one page, in document order, with their texts and
// records, and what the alignment needs to know of the page.
struct PageNodes {
  PageFrame frame;
  std::vector<Node*> nodes;
  std::vector<std::u16string> texts;
  std::vector<NodeStatistics*> records;
};

// The two algorithms a comparison spends its time in. The defaults are the fast exact ones;
// the benchmark swaps in the obvious quadratic forms to show what these save.
struct ComparisonKernels {
  CandidateLists (*findCandidates)(std::span<const MatchRect>, std::span<const MatchRect>) =
      &comparison::findCandidates;
  std::size_t (*editDistance)(std::u16string_view, std::u16string_view) =
      &comparison::editDistance;
};

class Comparator {
public:
  // One side of a compared pair: the node, the text the comparison sees for it (the texts
  // of all fragments of its subtree, itself included, then those of its contents), and the
  // node's record, which compareNodes fills.
  struct Item {
    Node* node;
    std::u16string_view text;
    NodeStatistics* stats;
  };
  using PagePair = std::pair<Node*, Node*>;

  Comparator(Layout& left, Layout& right, CompareLevel level, bool characterwise,
             bool countLengthDifference, Alignment alignment);
  Comparator(const Comparator&) = delete;
  Comparator& operator=(const Comparator&) = delete;
  virtual ~Comparator();

  // Runs the whole comparison. Throws QentException (code 20020) with "Width or Height of
  // Rectangle must be > 0" for a compared left node without area, and "internal error has
  // occured during text comparison" when pairing goes wrong; the records gathered until
  // then stay in the comparator.
  virtual void compare();
  // Writes "comp_count", "comp_errors", "comp_extId" and (except on the roots)
  // "comp_f1Measure" onto both roots and every node of the level in both layouts.
  virtual void createStatistics();
  // The same for one side or both: a caller that discards a layout right after the
  // comparison spares the annotations nobody will read.
  void createStatistics(bool left, bool right);
  // The candidate lists of one page pair: the left nodes' rectangles are first mapped onto
  // the right page by the alignment.
  virtual CandidateLists match(Node& leftPage, Node& rightPage, const PageNodes& left,
                               const PageNodes& right);
  // Compares one pair and fills both records, rates and f1 included.
  virtual void compareNodes(const Item& left, const Item& right) = 0;

  Layout& leftLayout() const { return left_; }
  Layout& rightLayout() const { return right_; }
  CompareLevel level() const { return level_; }
  bool characterwise() const { return characterwise_; }
  bool countLengthDifference() const { return countLengthDifference_; }
  Alignment alignment() const { return alignment_; }
  // In page order; a missing page is the placeholder.
  const std::vector<PagePair>& pagePairs() const { return pagePairs_; }
  const Node& placeholder() const { return placeholder_; }
  bool isPlaceholder(const Node* node) const { return node == &placeholder_; }
  // The record of a node, or null when the comparison gave it none.
  const NodeStatistics* statistics(const Node* node) const;

  const ComparisonKernels& kernels() const { return kernels_; }
  void setKernels(const ComparisonKernels& kernels) { kernels_ = kernels; }

protected:
  // The record of a node, created (all zero but `self`) on first access.
  NodeStatistics& record(Node& node);

private:
  void comparePagePair(Node& leftPage, Node& rightPage);
  PageNodes collect(Node& page);
  void countUnpaired(const PageNodes& page);
  void aggregate(Node* root);
  void writeAttributes(Node& node, bool withF1) const;

  Layout& left_;
  Layout& right_;
  std::vector<PagePair> pagePairs_;
  StatisticsTable statistics_;
  CompareLevel level_;
  bool characterwise_;
  bool countLengthDifference_;
  Alignment alignment_;
  ComparisonKernels kernels_;
  Node placeholder_;
};

}  // namespace qent::text::layout::comparison
