// CssBuilder.h - the style sheet of an HTML document: fixed rules and reusable classes.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace qent::text::layout::format::html {

// Hands out one class per distinct declaration, named by a letter for its property and a
// number counted per letter in order of first use ("w1", "w2", "s1"), so equal values share
// a class and the body stays small. The sheet lists the fixed rules, the classes in order
// of first use, then the rule that stacks columns on narrow screens.
//
// Values from the layout are made safe for a style element of both XML and HTML: the
// sheet never contains "<", ">" or "&" (an XML writer escapes them, an HTML parser would
// not unescape them inside <style>), nor a line break inside a string.
class CssBuilder {
public:
  // Classes with fixed names, always in the sheet.
  static constexpr std::string_view kBold = "b";
  static constexpr std::string_view kItalic = "i";
  static constexpr std::string_view kCentred = "ac";
  static constexpr std::string_view kRight = "ar";

  // width / margin-left as a percentage of the parent's width, to 0.01 %.
  std::string_view width(double percent);
  std::string_view marginLeft(double percent);
  // margin-top in em, in steps of 0.5 em, at most 6 em; empty when it rounds to 0.
  std::string_view marginTop(double em);
  // font-size relative to the root, in steps of 0.1 rem between 0.5 and 5; empty when it
  // rounds to 1.
  std::string_view relativeSize(double rem);
  // font-size in points, to 0.1 pt, at most 500.
  std::string_view pointSize(double points);
  // height of an empty picture box in em, in steps of 0.5 em, at most 100 em.
  std::string_view height(double em);
  std::string_view color(std::uint8_t red, std::uint8_t green, std::uint8_t blue);
  // font-family as one quoted name (UTF-8).
  std::string_view fontFamily(std::string_view name);

  std::string styleSheet() const;

private:
  std::string_view classFor(char letter, std::string declaration);

  std::unordered_map<std::string, std::string> classes_;       // declaration -> class
  std::vector<std::pair<std::string, std::string>> ordered_;    // class, declaration
  std::unordered_map<char, unsigned> counts_;
};

}  // namespace qent::text::layout::format::html
