// LayoutDump.h - a compact one-line text form of layout trees for tests, and its parser.
//
// Tests state trees as text and compare trees by their text:
//   EXPECT_EQ(dump(*reader.read(json)), "Content:node{Page(w=800){Line[0,0,10,5]{Word\"ab\"}}}");
//   auto root = parseDump("Content:node{Page{Word[1,2,3,4]\"x\"(conf=90)}}");
//
// One node is written as
//   Class ['#' id] [':' typeName] ['[' left,top,width,height ']'] ['"' text '"']
//         ['(' field,field,... ')'] ['{' child,child,... '}']
// - Class: Node, Page, Image, Content, Fragment, Box, Line, Word, Glyph, Picture, Field.
// - typeName: Box::typeName() for boxes (left out for kind 0, content_area),
//   Content::typeName() for contents (left out when empty).
// - The rectangle appears when Fragment::rect() has geometry (any value non-zero).
// - The quoted text: Fragment::text(), Content::text(), or Image::image().
// - Fields appear only when they differ from a new node's value, in this order:
//     Fragment: conf (the stored value; the dump never computes glyph means), size, family,
//               style, weight, sens, angle, entity, poly ("x y;x y"), base ("c0 c1 ..."),
//               color ("r g b"; "unset r g b" when stored without its flag), bg (same)
//     Box:      kind (only when the type name alone would not give the kind back)
//     Line:     asc, desc, gh          Word: checked, rejected        Picture: src
//     Page:     w, h, lang, index, angle, pfloat (auxiliaryFloat), pnum (auxiliaryNumber)
//     any node: @key=value for each attribute, &key=value for each auxiliary attribute
// - Values are bare when they consist of letters, digits and "_.+-" only, else quoted;
//   inside quotes \" \\ \n \r \t and \xHH escape, everything else is UTF-8 as it is.
// - Numbers print in shortest round-trip form (90, 0.5, 1e+300).
// Children are separated by "," without blanks. Every field of the model appears, so two
// trees are equal exactly when their dumps are.
#pragma once

#include <memory>
#include <string>
#include <string_view>

namespace qent::text::layout {
class Node;
class Layout;
}  // namespace qent::text::layout

namespace qent::test {

std::string dump(const text::layout::Node& node);
// The root's dump, or "null" for a layout without root.
std::string dump(const text::layout::Layout& layout);

// Builds the tree a dump describes (the parser accepts exactly the form above, blanks
// between tokens allowed). Throws std::invalid_argument naming the offset on bad input.
std::unique_ptr<text::layout::Node> parseDump(std::string_view text);
// A layout owning parseDump(text).
std::unique_ptr<text::layout::Layout> parseLayout(std::string_view text);

}  // namespace qent::test
