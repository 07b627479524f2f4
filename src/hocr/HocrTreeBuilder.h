// HocrTreeBuilder.h - the layout tree of an hOCR document, built element by element as a
// parser reports them.
#pragma once

#include "hocr/HocrProperties.h"
#include "hocr/MarkupTree.h"

#include <cstddef>
#include <cstdint>
#include <exception>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace qent::text::layout {
class Layout;
class Node;
class Fragment;
class Image;
}  // namespace qent::text::layout

namespace qent::text::hocr {

// Takes a document's elements in document order (start, first text, end) and builds the
// layout of its first "html" element's first "body", with the versions of the first "head"'s
// meta elements; everything else is passed over. The reading rules are PugiHocrReader's.
//
// Nothing here throws while the events come: the first error is kept, building stops, and
// finish() reports it, after the errors of the head (whose meta elements may follow the
// body), so that the message is the same whatever order the document has.
class HocrTreeBuilder {
public:
  explicit HocrTreeBuilder(bool tolerant);
  ~HocrTreeBuilder();
  HocrTreeBuilder(const HocrTreeBuilder&) = delete;
  HocrTreeBuilder& operator=(const HocrTreeBuilder&) = delete;

  // `offset`: of the element's "<" in the document, for messages.
  void startElement(std::string_view name, const std::vector<MarkupAttribute>& attributes,
                    std::int64_t offset);
  // A text node of the innermost open element; only its first one counts.
  void text(std::string_view text);
  void endElement();
  // After the last event: the layout, or the document's first error.
  std::unique_ptr<layout::Layout> finish();

private:
  enum class Kind : std::uint8_t { Page, Line, Word, Glyph, Box, Container };
  // An element of the body being built: what was read at its start, what it holds so far.
  struct Open;
  struct Meta {
    bool found = false;
    std::string content;
    std::int64_t offset = -1;
  };

  template <typename Step>
  void guarded(Step step);
  void openElement(std::string_view name, const std::vector<MarkupAttribute>& attributes,
                   std::int64_t offset);
  void closeElement();
  void finishElement(Open& open);
  void finishFragment(layout::Fragment& fragment, Open& open);
  void readAttributes(layout::Node& node, const Open& open,
                      const std::vector<MarkupAttribute>& attributes, bool keepClass);
  // What the dispatch goes by: the class (its first hOCR token in the tolerant dialect), or
  // the element's name when it has no class attribute.
  std::string_view dispatchKey(std::string_view name,
                               const std::vector<MarkupAttribute>& attributes) const;
  void readMeta(const std::vector<MarkupAttribute>& attributes, std::int64_t offset);

  const bool tolerant_;
  std::size_t depth_ = 0;  // open elements of the whole document
  bool htmlSeen_ = false, inHtml_ = false, headSeen_ = false, inHead_ = false;
  bool bodySeen_ = false;
  std::size_t bodyDepth_ = 0;  // depth_ of the body while it is open, else 0
  Meta system_, modules_;

  std::vector<std::unique_ptr<Open>> path_;  // kept when closed, so their buffers are reused
  std::size_t openCount_ = 0;
  std::unique_ptr<layout::Node> body_;
  std::exception_ptr failure_;
  std::int32_t pageCounter_ = 0;
  std::map<std::u16string, layout::Image*> images_;
};

}  // namespace qent::text::hocr
