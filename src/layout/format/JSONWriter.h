// JSONWriter.h - writes layout trees as JSON layout documents.
#pragma once

#include "base/Sink.h"
#include "layout/NodeVisitor.h"

#include <rapidjson/stringbuffer.h>
#include <rapidjson/writer.h>

#include <deque>
#include <string>
#include <string_view>

namespace qent::text::layout {
class Layout;
}

namespace qent::text::layout::format {

// Streams the document through a RapidJSON Writer; no tree of JSON values is built. Each node
// object holds its members in ascending key order. A Word's glyphs are never written (the
// format keeps words as the smallest unit) and a word without text of its own is written with
// the texts of the Content nodes below it. The writer computes cached glyph-mean confidences
// (Fragment::confidence()), which is why it takes mutable nodes.
//
// Throws std::invalid_argument when a text cannot become UTF-8 (a lone surrogate, or a narrow
// field that is not UTF-8) or a number is not finite; nothing is returned then.
class JSONWriter : public NodeVisitor {
public:
  using Output = rapidjson::Writer<rapidjson::StringBuffer>;

  JSONWriter();
  ~JSONWriter() override;

  // The whole document, {"root": ...}, as UTF-8 text; {} for a layout without root. Into a
  // sink it is handed over in pieces as it is written, so a large layout never exists twice.
  void write(const Layout& layout, base::Sink& sink);
  std::string write(const Layout& layout);
  // One node object with its subtree, as text.
  std::string writeNode(Node& node);
  // One node object with its subtree, as the next value of `out`: lets another document
  // embed a subtree without copying. `out` must stand where a value may follow (after a
  // Key, or inside an array). Pass a plain Writer: a PrettyWriter would lose its indentation.
  void writeNode(Node& node, Output& out);

  using NodeVisitor::visit;
  void visit(Picture& node) override;
  void visit(Glyph& node) override;
  void visit(Word& node) override;
  void visit(Line& node) override;
  void visit(Field& node) override;
  void visit(Box& node) override;
  void visit(Fragment& node) override;
  void visit(Page& node) override;
  void visit(Image& node) override;
  void visit(Content& node) override;
  void visit(Node& node) override;
  void leave(Node& node) override;

private:
  struct Members;
  Members& open(Node& node, std::string_view type);
  // Writes the members up to the children; the rest follows in close(), once the children
  // are written (at once for a node whose children are not written).
  void emit(Members& members);
  void close(const Members& members);
  void writeAttributes(const Members& members);
  // Hands what is written so far to the sink of write(layout, sink), once it is worth a call.
  void spill();

  Output* out_ = nullptr;
  rapidjson::StringBuffer* spillBuffer_ = nullptr;
  base::Sink* sink_ = nullptr;
  // The nodes being written, outermost first. A deque, so that the members stay where they
  // were built while inner nodes come and go.
  std::deque<Members> open_;
};

}  // namespace qent::text::layout::format
