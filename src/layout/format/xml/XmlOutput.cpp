// XmlOutput.cpp - ids, confidences and points for the XML layout writers.
#include "layout/format/xml/XmlOutput.h"

#include "base/NumberConversion.h"
#include "base/Unicode.h"
#include "layout/Layout.h"
#include "layout/LayoutFormat.h"
#include "layout/TreeWalk.h"

#include <algorithm>

namespace qent::text::layout::format::xml {

namespace {

bool isXmlId(std::u16string_view id) {
  if (id.empty()) return false;
  const auto letter = [](char16_t c) {
    return (c >= u'a' && c <= u'z') || (c >= u'A' && c <= u'Z') || c == u'_';
  };
  if (!letter(id.front())) return false;
  return std::all_of(id.begin(), id.end(), [&](char16_t c) {
    return letter(c) || (c >= u'0' && c <= u'9') || c == u'-' || c == u'.';
  });
}

}  // namespace

std::string IdAssigner::idFor(std::u16string_view own, std::string_view prefix) {
  if (isXmlId(own)) {
    std::string id(own.begin(), own.end());  // ASCII only, checked above
    if (used_.insert(id)) return id;
  }
  while (true) {
    std::string id(prefix);
    id.append("_").append(std::to_string(++counter_));
    if (used_.insert(id)) return id;
  }
}

double confidenceFactor(const Layout& layout) {
  return layout.format() == kFormatCloudOcr ? 1.0 : 0.01;
}

std::string confidenceText(const Fragment& fragment, double factor) {
  const double stored = fragment.storedConfidence();
  if (!(stored >= 0)) return {};
  return base::formatShortest(std::clamp(stored * factor, 0.0, 1.0));
}

std::string pointsText(const std::vector<Point>& points) {
  std::string text;
  for (const Point& p : points) {
    if (!text.empty()) text += ' ';
    text.append(std::to_string(std::max(p.x, 0)))
        .append(",")
        .append(std::to_string(std::max(p.y, 0)));
  }
  return text;
}

std::size_t countPages(Node& root) {
  std::size_t pages = root.nodeClass() == NodeClass::Page ? 1 : 0;
  walkBelow(
      root,
      [&pages](Node& node, Node&) {
        if (node.nodeClass() != NodeClass::Page) return true;
        ++pages;
        return false;
      },
      [](Node&) {});
  return pages;
}

std::vector<Point> corners(const Rect& rect) {
  const std::int32_t right = rect.left + rect.width;
  const std::int32_t bottom = rect.top + rect.height;
  return {{rect.left, rect.top}, {right, rect.top}, {right, bottom}, {rect.left, bottom}};
}

}  // namespace qent::text::layout::format::xml
