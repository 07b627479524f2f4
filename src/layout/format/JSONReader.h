// JSONReader.h - reads JSON layout documents into layout trees.
#pragma once

#include "layout/NodeType.h"
#include "layout/format/internal/JsonNodeRecord.h"

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

namespace qent::base {
class ByteSource;
}

namespace qent::text::layout {
class Layout;
class Node;
class Fragment;
}  // namespace qent::text::layout

namespace qent::text::layout::format {

// Reads with RapidJSON's iterative SAX parser: no tree of JSON values is built and no input
// drives the stack. The input is checked for UTF-8 first and then parsed in place: in the
// caller's buffer (readInPlace), or in one copy of the text (read). Node objects are
// dispatched on "type"; a name without a NodeType code
// (also "node", "fragment" and the box names other than "content_area") becomes a Content
// node that keeps the name and its "text". Members of the wrong kind count as absent.
// Attribute numbers become their "%Lf" text ("3" -> "3.000000"). The members the writer
// puts into "attributes" from fields (x_entity, the line extremes, the word marks,
// image_source) go back into those fields, and "baseline_coefficients" becomes the
// fragment's baseline; the writer-only members "index_in_layout", "textangle" (pages) and
// "baseline" (fragments) are read as fields too.
//
// Failures (no layout is returned):
//   QentException 20039 "Failed to parse JSON layout"  the text is not JSON (also invalid
//       UTF-8, escaped lone surrogates, numbers beyond the range of a double), or its top
//       level is not an object; details go to the trace log
//   QentException 20039 "Failed to parse JSON layout: nodes nested deeper than 1000 levels"
//       (or "values nested deeper than ..."), refused before any deeper node is built
//   QentException 20039 "Failed to parse JSON layout: <what>"  a value the model cannot
//       hold: a number out of range for its field, a malformed "children" element,
//       "polygon" point, "baseline" or colour
//   QentException 20039 "Root node is not found"  no "root" member, or it is not an object
//   QentException 20039 "Type attribute is not found"  a node object without string "type"
//   std::invalid_argument "Invalid Attribute Format. Only Number and String are supported."
//   std::invalid_argument "Width or Height of Rectangle must be > 0"
class JSONReader : private internal::NodeBuilder {
public:
  JSONReader();
  ~JSONReader() override;

  std::unique_ptr<Layout> read(std::string_view utf8);
  // The same, decoding the strings inside `utf8` itself, which is left changed: for a
  // caller that reads a file only to parse it, this spares a copy of the whole text.
  std::unique_ptr<Layout> readInPlace(std::string& utf8);
  // The same for a text too large to hold twice: `head` is its beginning, already read;
  // the rest comes from the source piece by piece, and only the tree is kept.
  std::unique_ptr<Layout> readStream(std::string head, base::ByteSource& rest);

private:
  std::unique_ptr<Node> build(internal::JsonNodeRecord& record) override;

  // One operation per node kind; each reads its own members, then the fragment and the
  // common members.
  std::unique_ptr<Node> readNode(internal::JsonNodeRecord& record);
  std::unique_ptr<Node> readContent(internal::JsonNodeRecord& record);
  std::unique_ptr<Node> readImage(internal::JsonNodeRecord& record);
  std::unique_ptr<Node> readPage(internal::JsonNodeRecord& record);
  std::unique_ptr<Node> readBox(internal::JsonNodeRecord& record);
  std::unique_ptr<Node> readField(internal::JsonNodeRecord& record);
  std::unique_ptr<Node> readLine(internal::JsonNodeRecord& record);
  std::unique_ptr<Node> readWord(internal::JsonNodeRecord& record);
  std::unique_ptr<Node> readGlyph(internal::JsonNodeRecord& record);
  std::unique_ptr<Node> readPicture(internal::JsonNodeRecord& record);
  void readFragment(Fragment& fragment, internal::JsonNodeRecord& record);
  void readCommon(Node& node, internal::JsonNodeRecord& record, NodeType kind);
};

}  // namespace qent::text::layout::format
