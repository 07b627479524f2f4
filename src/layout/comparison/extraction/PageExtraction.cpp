// PageExtraction.cpp - alignment, assignment of recognised nodes to zones, and the errors of
// every zone of one page pair.
#include "layout/comparison/extraction/PageExtraction.h"

#include "base/QentException.h"
#include "layout/Fragment.h"
#include "layout/comparison/Alignment.h"
#include "layout/comparison/CandidateMatching.h"
#include "layout/comparison/EditDistance.h"
#include "layout/comparison/LevelNodes.h"
#include "layout/comparison/extraction/ReadingOrder.h"
#include "layout/comparison/extraction/ReferenceZones.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <optional>
#include <vector>

namespace qent::text::layout::comparison::extraction {

namespace {

std::int64_t areaOf(const MatchRect& r) { return r.width() * r.height(); }

std::int64_t intersectionArea(const MatchRect& a, const MatchRect& b) {
  const std::int64_t width = std::min(a.right, b.right) - std::max(a.left, b.left);
  const std::int64_t height = std::min(a.bottom, b.bottom) - std::max(a.top, b.top);
  return width > 0 && height > 0 ? width * height : 0;
}

// The recognised nodes that one zone receives.
struct Feed {
  std::vector<std::uint32_t> nodes;
  std::uint32_t partialNodes = 0;
  std::uint64_t charactersOutside = 0;
};

class PagePair {
public:
  PagePair(const ExtractionOptions& options, std::vector<Node*> mainNodes,
           std::vector<MatchRect> mainRects, std::vector<Zone> zones)
      : options_(options),
        mainNodes_(std::move(mainNodes)),
        mainRects_(std::move(mainRects)),
        texts_(mainNodes_.size()),
        zones_(std::move(zones)),
        feeds_(zones_.size()) {
    zoneRects_.reserve(zones_.size());
    for (const Zone& zone : zones_) {
      zoneRects_.push_back({zone.rect.left, zone.rect.top, zone.rect.right(), zone.rect.bottom()});
    }
  }

  void assign() {
    // Sorted by node, then zone: each node's overlaps form one run.
    const std::vector<std::uint64_t> pairs = overlappingPairs(mainRects_, zoneRects_);
    for (std::size_t begin = 0; begin < pairs.size();) {
      const auto node = static_cast<std::uint32_t>(pairs[begin] >> 32);
      std::size_t end = begin;
      while (end < pairs.size() && static_cast<std::uint32_t>(pairs[end] >> 32) == node) ++end;
      if (options_.removeMatchingBoxes) {
        feedBest(node, begin, end, pairs);
      } else {
        for (std::size_t p = begin; p < end; ++p) feed(node, zoneOf(pairs[p]));
      }
      begin = end;
    }
  }

  PageResult score() {
    PageResult page;
    page.zones.reserve(zones_.size());
    for (std::size_t z = 0; z < zones_.size(); ++z) {
      ZoneResult zone;
      zone.id = zones_[z].node->id();
      zone.reference = std::move(zones_[z].text);
      zone.extracted = extractedText(feeds_[z]);
      zone.partialNodes = feeds_[z].partialNodes;
      if (options_.editDistance) {
        zone.count = zone.reference.size();
        zone.errors = editDistance(zone.reference, zone.extracted) + feeds_[z].charactersOutside;
      } else {
        zone.count = 1;
        zone.errors = zone.extracted != zone.reference || zone.partialNodes > 0 ? 1 : 0;
      }
      page.count += zone.count;
      page.errors += zone.errors;
      page.zones.push_back(std::move(zone));
    }
    return page;
  }

private:
  static std::uint32_t zoneOf(std::uint64_t pair) {
    return static_cast<std::uint32_t>(pair & 0xFFFFFFFFu);
  }

  // The zone with the largest intersection (the node's area is the same for all); on a tie
  // the smaller zone, then the earlier one.
  void feedBest(std::uint32_t node, std::size_t begin, std::size_t end,
                const std::vector<std::uint64_t>& pairs) {
    std::uint32_t best = zoneOf(pairs[begin]);
    std::int64_t bestShare = intersectionArea(mainRects_[node], zoneRects_[best]);
    for (std::size_t p = begin + 1; p < end; ++p) {
      const std::uint32_t zone = zoneOf(pairs[p]);
      const std::int64_t share = intersectionArea(mainRects_[node], zoneRects_[zone]);
      if (share > bestShare ||
          (share == bestShare && areaOf(zoneRects_[zone]) < areaOf(zoneRects_[best]))) {
        best = zone;
        bestShare = share;
      }
    }
    feed(node, best);
  }

  void feed(std::uint32_t node, std::uint32_t zone) {
    const double inside = static_cast<double>(intersectionArea(mainRects_[node], zoneRects_[zone])) /
                          static_cast<double>(areaOf(mainRects_[node]));
    const bool partial = inside < 0.5;
    if (partial && !options_.partialSegmentationErrors) return;
    Feed& target = feeds_[zone];
    target.nodes.push_back(node);
    if (!partial) return;
    ++target.partialNodes;
    const auto length = static_cast<double>(text(node).size());
    target.charactersOutside += static_cast<std::uint64_t>(length - std::round(length * inside));
  }

  const std::u16string& text(std::uint32_t node) {
    // Only nodes inside some zone are ever read; a node feeding several zones is read once.
    if (!texts_[node]) texts_[node] = levelText(*mainNodes_[node]);
    return *texts_[node];
  }

  std::u16string extractedText(const Feed& feed) {
    std::vector<MatchRect> rects;
    std::vector<const std::u16string*> texts;
    rects.reserve(feed.nodes.size());
    texts.reserve(feed.nodes.size());
    for (const std::uint32_t node : feed.nodes) {
      rects.push_back(mainRects_[node]);
      texts.push_back(&text(node));
    }
    return joinInReadingOrder(rects, texts);
  }

  const ExtractionOptions& options_;
  std::vector<Node*> mainNodes_;
  std::vector<MatchRect> mainRects_;
  std::vector<std::optional<std::u16string>> texts_;
  std::vector<Zone> zones_;
  std::vector<MatchRect> zoneRects_;
  std::vector<Feed> feeds_;
};

// A recognised page without a reference page: every node of the level is wholly wrong.
PageResult unpairedMainPage(const ExtractionOptions& options, const std::vector<Node*>& nodes) {
  PageResult page;
  for (const Node* node : nodes) {
    const std::uint64_t units = options.editDistance ? levelText(*node).size() : 1;
    page.count += units;
    page.errors += units;
  }
  return page;
}

}  // namespace

PageResult extractPage(const ExtractionOptions& options, Node* mainPage, Node* referencePage) {
  std::vector<Node*> mainNodes;
  PageFrame mainFrame;
  if (mainPage != nullptr) {
    scanPage(*mainPage, options.level, mainNodes, mainFrame.content);
    setPageSize(mainFrame, *mainPage);
  }
  if (referencePage == nullptr) return unpairedMainPage(options, mainNodes);

  PageFrame referenceFrame;
  std::vector<Zone> zones = referenceZones(*referencePage, options.level, referenceFrame.content);
  setPageSize(referenceFrame, *referencePage);
  const AlignmentTransform transform = alignFrames(options.alignment, mainFrame, referenceFrame);
  std::vector<MatchRect> mainRects;
  mainRects.reserve(mainNodes.size());
  for (const Node* node : mainNodes) {
    // Nodes of a compared level are fragments (glyphs, words, lines).
    const Rect& rect = static_cast<const Fragment*>(node)->rect();
    if (rect.width <= 0 || rect.height <= 0) {
      throw base::QentException(base::kErrorOption, "Width or Height of Rectangle must be > 0");
    }
    mainRects.push_back(transform.map(rect));
  }
  PagePair pair(options, std::move(mainNodes), std::move(mainRects), std::move(zones));
  pair.assign();
  return pair.score();
}

}  // namespace qent::text::layout::comparison::extraction
