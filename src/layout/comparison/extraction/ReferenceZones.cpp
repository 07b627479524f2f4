// ReferenceZones.cpp - one walk over the page assigns every level node to its innermost area.
#include "layout/comparison/extraction/ReferenceZones.h"

#include "layout/Fragment.h"
#include "layout/NodeClass.h"
#include "layout/NodeText.h"
#include "layout/TreeWalk.h"
#include "layout/comparison/LevelNodes.h"
#include "layout/comparison/extraction/ReadingOrder.h"

#include <cstddef>

namespace qent::text::layout::comparison::extraction {

namespace {

bool isArea(const Node& node) {
  return (isA<Box>(node) || isA<Field>(node)) &&
         static_cast<const Fragment&>(node).rect().hasGeometry();
}

MatchRect matchRect(const Rect& rect) { return {rect.left, rect.top, rect.right(), rect.bottom()}; }

// Level nodes with their texts; the texts stay in place while pointers to them are joined.
struct LevelGroup {
  std::vector<MatchRect> rects;
  std::vector<std::u16string> texts;

  void add(const Node& node) {
    rects.push_back(matchRect(static_cast<const Fragment&>(node).rect()));
    texts.push_back(levelText(node));
  }
  std::u16string joined() const {
    std::vector<const std::u16string*> pointers;
    pointers.reserve(texts.size());
    for (const std::u16string& text : texts) pointers.push_back(&text);
    return joinInReadingOrder(rects, pointers);
  }
};

struct Area {
  const Node* node;
  LevelGroup own;
};

}  // namespace

std::u16string levelText(const Node& node) {
  // A word without glyphs, or a glyph, reads as its own text; that spares the subtree walk.
  if (node.childCount() == 0 && isA<Fragment>(node)) {
    return static_cast<const Fragment&>(node).text();
  }
  return nodeText(node);
}

std::vector<Zone> referenceZones(Node& page, CompareLevel level, ContentBox& content) {
  std::vector<Area> areas;
  std::vector<std::size_t> open;  // the areas on the walk's path, innermost last
  LevelGroup loose;               // level nodes outside every area
  std::vector<const Node*> looseNodes;
  auto take = [&](const Node& node) {
    if (level == CompareLevel::None || levelOf(node) != level) return;
    if (open.empty()) {
      loose.add(node);
      looseNodes.push_back(&node);
    } else {
      areas[open.back()].own.add(node);
    }
  };
  walkBelow(
      page,
      [&](Node& node, Node&) {
        if (isA<Fragment>(node)) content.extend(static_cast<const Fragment&>(node).rect());
        if (isArea(node)) {
          open.push_back(areas.size());
          areas.push_back({&node, {}});
        }
        take(node);
        return true;
      },
      [&](Node& node) {
        if (!open.empty() && areas[open.back()].node == &node) open.pop_back();
      });

  std::vector<Zone> zones;
  for (const Area& area : areas) {
    const auto& fragment = static_cast<const Fragment&>(*area.node);
    std::u16string text = area.own.texts.empty() ? fragment.text() : area.own.joined();
    if (!text.empty()) zones.push_back({area.node, fragment.rect(), std::move(text)});
  }
  if (!zones.empty()) return zones;
  for (std::size_t i = 0; i < looseNodes.size(); ++i) {
    if (loose.texts[i].empty()) continue;
    zones.push_back({looseNodes[i], static_cast<const Fragment&>(*looseNodes[i]).rect(),
                     std::move(loose.texts[i])});
  }
  return zones;
}

}  // namespace qent::text::layout::comparison::extraction
