// XmlInput.cpp - parsing, sniffing and attribute reading for the XML layout readers.
#include "layout/format/xml/XmlInput.h"

#include "base/QentException.h"
#include "base/Unicode.h"
#include "layout/Node.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <limits>
#include <stdexcept>

namespace qent::text::layout::format::xml {

namespace {

bool isSpace(char c) { return c == ' ' || c == '\t' || c == '\n' || c == '\r'; }

std::string_view withoutPrefix(std::string_view name) {
  const std::size_t colon = name.find(':');
  return colon == std::string_view::npos ? name : name.substr(colon + 1);
}

}  // namespace

std::string_view rootElementName(std::string_view text) {
  std::size_t at = 0;
  while (true) {
    while (at < text.size() && isSpace(text[at])) ++at;
    if (at + 1 >= text.size() || text[at] != '<') return {};
    std::string_view end;
    if (text.compare(at, 4, "<!--") == 0) {
      end = "-->";
    } else if (text[at + 1] == '?') {
      end = "?>";
    } else if (text[at + 1] == '!') {
      // A DOCTYPE with an internal subset holds "]" before its ">".
      const std::size_t bracket = text.find_first_of("[>", at);
      end = bracket != std::string_view::npos && text[bracket] == '[' ? "]>" : ">";
    } else {
      const std::size_t start = at + 1;
      std::size_t stop = start;
      while (stop < text.size() && !isSpace(text[stop]) && text[stop] != '>' && text[stop] != '/') {
        ++stop;
      }
      return withoutPrefix(text.substr(start, stop - start));
    }
    const std::size_t close = text.find(end, at + 2);
    if (close == std::string_view::npos) return {};
    at = close + end.size();
  }
}

std::string_view localName(const pugi::xml_node& node) { return withoutPrefix(node.name()); }

XmlInput::XmlInput(std::string& buffer, const char* title) : title_(title) {
  const pugi::xml_parse_result parsed = document_.load_buffer_inplace(
      buffer.data(), buffer.size(), pugi::parse_default, pugi::encoding_utf8);
  if (!parsed) {
    std::string message = "malformed XML (";
    message.append(parsed.description()).append(") at offset ");
    fail(message.append(std::to_string(parsed.offset)));
  }
}

void XmlInput::fail(std::string_view what) const {
  std::string message = title_;
  message.append(": ").append(what);
  throw base::QentException(base::kErrorHocr, message);
}

void XmlInput::fail(const pugi::xml_node& node, std::string_view what) const {
  std::string message = "element <";
  // pugixml places an element at its name; the "<" is one byte before.
  const std::ptrdiff_t offset = node.offset_debug();
  message.append(node.name()).append("> at offset ");
  message.append(std::to_string(offset > 0 ? offset - 1 : offset)).append(" ").append(what);
  fail(message);
}

std::u16string XmlInput::wide(std::string_view utf8, const pugi::xml_node& node) const {
  try {
    return base::utf8ToUtf16(utf8);
  } catch (const std::invalid_argument& e) {
    std::string what = "holds invalid UTF-8 (";
    fail(node, what.append(e.what()).append(")"));
  }
}

double XmlInput::number(const pugi::xml_node& node, const char* attribute) const {
  return number(node, node.attribute(attribute));
}

double XmlInput::number(const pugi::xml_node& node, const pugi::xml_attribute& attribute) const {
  std::string_view text = attribute.value();
  while (!text.empty() && isSpace(text.front())) text.remove_prefix(1);
  while (!text.empty() && isSpace(text.back())) text.remove_suffix(1);
  if (!text.empty() && text.front() == '+') text.remove_prefix(1);
  double value = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
  if (text.empty() || error != std::errc() || end != text.data() + text.size() ||
      !std::isfinite(value)) {
    std::string what = "has ";
    what.append(attribute.name()).append("=\"").append(attribute.value());
    fail(node, what.append("\", which is not a number"));
  }
  return value;
}

std::int32_t XmlInput::pixels(double value, double scale, const pugi::xml_node& node,
                              const char* attribute) const {
  const double scaled = std::round(value * scale);
  // Beyond a million pixels (a scan of 85 m at 300 dpi) a coordinate is a broken unit or
  // a broken file, and later sums of coordinates must not overflow 32 bits.
  constexpr double kLimit = 1 << 30;
  if (!(std::abs(scaled) < kLimit)) {
    std::string what = "has ";
    what.append(attribute).append(" ").append(node.attribute(attribute).value());
    fail(node, what.append(", which is out of range as a pixel coordinate"));
  }
  return static_cast<std::int32_t>(scaled);
}

std::vector<Point> XmlInput::points(const pugi::xml_node& node, const char* attribute,
                                    double scale) const {
  std::string_view text = node.attribute(attribute).value();
  std::vector<double> values;
  std::size_t at = 0;
  while (true) {
    while (at < text.size() && (isSpace(text[at]) || text[at] == ',')) ++at;
    if (at == text.size()) break;
    double value = 0;
    const char* first = text.data() + at;
    if (*first == '+') ++first;
    const auto [end, error] = std::from_chars(first, text.data() + text.size(), value);
    if (error != std::errc() || !std::isfinite(value)) {
      std::string what = "has ";
      what.append(attribute).append(" with \"").append(text.substr(at, 20));
      fail(node, what.append("\", which is not a number"));
    }
    values.push_back(value);
    at = static_cast<std::size_t>(end - text.data());
  }
  if (values.size() % 2 != 0) {
    std::string what = "has ";
    fail(node, what.append(attribute).append(" with an odd number of values"));
  }
  std::vector<Point> result;
  result.reserve(values.size() / 2);
  for (std::size_t i = 0; i < values.size(); i += 2) {
    result.push_back(
        {pixels(values[i], scale, node, attribute), pixels(values[i + 1], scale, node, attribute)});
  }
  return result;
}

void XmlInput::keepAttributes(const pugi::xml_node& element, Node& node,
                              std::initializer_list<std::string_view> skip) const {
  AttributeMap::Entries entries;
  for (const pugi::xml_attribute& a : element.attributes()) {
    const std::string_view name = a.name();
    if (std::find(skip.begin(), skip.end(), name) != skip.end()) continue;
    // Namespace declarations and schema locations belong to the document, not the node.
    if (name.starts_with("xmlns") || name.starts_with("xsi:")) continue;
    entries.emplace_back(AttributeKey(wide(name, element)), wide(a.value(), element));
  }
  if (!entries.empty()) node.attributes().assign(std::move(entries));
}

Rect boundingRect(const std::vector<Point>& points) {
  if (points.empty()) return {};
  std::int32_t left = points.front().x, right = left;
  std::int32_t top = points.front().y, bottom = top;
  for (const Point& p : points) {
    left = std::min(left, p.x);
    right = std::max(right, p.x);
    top = std::min(top, p.y);
    bottom = std::max(bottom, p.y);
  }
  return Rect{left, top, right - left, bottom - top};
}

}  // namespace qent::text::layout::format::xml
