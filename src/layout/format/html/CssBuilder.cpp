// CssBuilder.cpp - reusable style classes and the document's style sheet.
#include "layout/format/html/CssBuilder.h"

#include <algorithm>
#include <charconv>
#include <cmath>

namespace qent::text::layout::format::html {

namespace {

// The rules every document carries. Rows lay their columns side by side; columns keep the
// widths the scan gives them, and their text wraps within them.
constexpr std::string_view kFixedRules =
    "body{margin:1em auto;max-width:60em;padding:0 1em;font-family:serif;line-height:1.25}"
    ".page{margin:0 0 2em;padding:0 0 1em;border-bottom:1px solid #bbb}"
    ".row{display:flex;align-items:flex-start}"
    ".col{flex:none;box-sizing:border-box;min-width:0;padding-right:1em}"
    ".area{margin:0 0 .6em;overflow-wrap:break-word}"
    "p,h1,h2,h3,h4,h5,h6{margin:0 0 .4em}"
    "table{border-collapse:collapse}"
    "td,th{border:1px solid #999;padding:.1em .3em;vertical-align:top}"
    "img{max-width:100%}"
    ".img{background:#eee}"
    ".b{font-weight:bold}.i{font-style:italic}.ac{text-align:center}.ar{text-align:right}";
// On a narrow screen the columns follow one another, so the text still reads in order.
constexpr std::string_view kNarrowRule =
    "@media (max-width:40em){.row{display:block}.col{width:auto;margin-left:0}}";

// A number with at most `decimals` decimals, without trailing zeros ("48.39", "1.5", "2").
std::string decimal(double value, int decimals) {
  const double scale = std::pow(10.0, decimals);
  value = std::round(value * scale) / scale;
  if (value == 0) value = 0;  // no "-0"
  char buffer[64];
  const auto result =
      std::to_chars(buffer, buffer + sizeof buffer, value, std::chars_format::fixed, decimals);
  std::string text(buffer, result.ptr);
  if (text.find('.') != std::string::npos) {
    text.erase(text.find_last_not_of('0') + 1);
    if (text.back() == '.') text.pop_back();
  }
  return text;
}

double steps(double value, double step, double low, double high) {
  if (!std::isfinite(value)) value = low;
  return std::clamp(std::round(value / step) * step, low, high);
}

// A CSS string: quotes and backslashes escaped, and every character that must not reach a
// style element or a string ("<", ">", "&", controls) as a hexadecimal escape.
std::string cssString(std::string_view utf8) {
  std::string out = "\"";
  for (const char c : utf8) {
    const auto byte = static_cast<unsigned char>(c);
    if (c == '"' || c == '\\' || c == '<' || c == '>' || c == '&' || byte < 0x20 || byte == 0x7F) {
      static constexpr char kHex[] = "0123456789abcdef";
      out += '\\';
      if (byte >= 0x10) out += kHex[byte >> 4];
      out += kHex[byte & 0xF];
      out += ' ';
    } else {
      out += c;
    }
  }
  out += '"';
  return out;
}

}  // namespace

std::string_view CssBuilder::classFor(char letter, std::string declaration) {
  const auto found = classes_.find(declaration);
  if (found != classes_.end()) return found->second;
  std::string name(1, letter);
  name += std::to_string(++counts_[letter]);
  ordered_.emplace_back(name, declaration);
  return classes_.emplace(std::move(declaration), std::move(name)).first->second;
}

std::string_view CssBuilder::width(double percent) {
  return classFor('w', "width:" + decimal(steps(percent, 0.01, 0, 100), 2) + "%");
}

std::string_view CssBuilder::marginLeft(double percent) {
  return classFor('m', "margin-left:" + decimal(steps(percent, 0.01, 0, 100), 2) + "%");
}

std::string_view CssBuilder::marginTop(double em) {
  const double value = steps(em, 0.5, 0, 6);
  if (value == 0) return {};
  return classFor('t', "margin-top:" + decimal(value, 1) + "em");
}

std::string_view CssBuilder::relativeSize(double rem) {
  const double value = steps(rem, 0.1, 0.5, 5);
  if (std::abs(value - 1) < 0.05) return {};
  return classFor('s', "font-size:" + decimal(value, 1) + "rem");
}

std::string_view CssBuilder::pointSize(double points) {
  return classFor('s', "font-size:" + decimal(steps(points, 0.1, 1, 500), 1) + "pt");
}

std::string_view CssBuilder::height(double em) {
  return classFor('v', "height:" + decimal(steps(em, 0.5, 0.5, 100), 1) + "em");
}

std::string_view CssBuilder::color(std::uint8_t red, std::uint8_t green, std::uint8_t blue) {
  std::string declaration = "color:rgb(";
  declaration += std::to_string(red);
  declaration += ',';
  declaration += std::to_string(green);
  declaration += ',';
  declaration += std::to_string(blue);
  declaration += ')';
  return classFor('c', std::move(declaration));
}

std::string_view CssBuilder::fontFamily(std::string_view name) {
  std::string declaration = "font-family:";
  declaration += cssString(name);
  return classFor('f', std::move(declaration));
}

std::string CssBuilder::styleSheet() const {
  std::string out(kFixedRules);
  for (const auto& [name, declaration] : ordered_) {
    out += '.';
    out += name;
    out += '{';
    out += declaration;
    out += '}';
  }
  out += kNarrowRule;
  return out;
}

}  // namespace qent::text::layout::format::html
