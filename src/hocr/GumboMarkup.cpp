// GumboMarkup.cpp - MarkupTree over gumbo's HTML tree, with a nesting check before the parse
// and a tree that is freed all at once.
#include "hocr/GumboMarkup.h"

#include "base/QentException.h"
#include "layout/LayoutLimits.h"

#if ORMIDA_HAVE_GUMBO
#include <gumbo.h>
#endif

#include <algorithm>
#include <array>
#include <cstdlib>
#include <string>
#include <memory>
#include <vector>

namespace qent::text::hocr {

namespace {

[[noreturn]] void fail(const std::string& message) {
  throw base::QentException(base::kErrorHocr, message);
}

}  // namespace

#if ORMIDA_HAVE_GUMBO

namespace {

bool isAsciiLetter(char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'); }

char lower(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; }

// Elements that never hold others (void elements), and elements that the next one of their
// kind closes by itself; neither can make a document deeper.
bool neverNests(std::string_view name) {
  static constexpr std::array<std::string_view, 29> kNames = {
      "area", "base", "basefont", "bgsound", "br", "col", "colgroup", "dd", "dt", "embed",
      "frame", "hr", "img", "input", "keygen", "li", "link", "meta", "option", "optgroup",
      "p", "param", "source", "tbody", "td", "th", "tr", "track", "wbr"};
  std::string lowered(name.size(), ' ');
  std::transform(name.begin(), name.end(), lowered.begin(), lower);
  return std::find(kNames.begin(), kNames.end(), lowered) != kNames.end();
}

// Counts start tags against end tags, without the parser: the text cannot be nested deeper
// than the tags it opens and does not close. Quoted attribute values may hold ">"; comments
// are skipped. The first tag that opens more than the limit (plus html and body around the
// reader's levels) is refused.
void refuseDeepNesting(std::string_view text) {
  const std::size_t limit = layout::kMaxLayoutDepth + 2;
  std::size_t depth = 0;
  std::size_t at = 0;
  while ((at = text.find('<', at)) != std::string_view::npos) {
    const std::size_t open = at++;
    if (text.substr(open, 4) == "<!--") {
      const std::size_t end = text.find("-->", open + 4);
      if (end == std::string_view::npos) return;
      at = end + 3;
      continue;
    }
    const bool closing = at < text.size() && text[at] == '/';
    if (closing) ++at;
    if (at >= text.size() || !isAsciiLetter(text[at])) continue;
    const std::size_t nameStart = at;
    while (at < text.size() && text[at] != '>' && text[at] != '/' && text[at] != ' ' &&
           text[at] != '\t' && text[at] != '\n' && text[at] != '\r' && text[at] != '\f') {
      ++at;
    }
    const std::string_view name = text.substr(nameStart, at - nameStart);
    char quote = 0;
    bool selfClosing = false;
    for (; at < text.size(); ++at) {
      const char c = text[at];
      if (quote != 0) {
        if (c == quote) quote = 0;
      } else if (c == '"' || c == '\'') {
        quote = c;
      } else if (c == '>') {
        selfClosing = at > nameStart && text[at - 1] == '/';
        break;
      }
    }
    if (closing) {
      if (depth > 0 && !neverNests(name)) --depth;
    } else if (!selfClosing && !neverNests(name) && ++depth > limit) {
      std::string message = "hOCR: element <";
      message.append(name).append("> at offset ").append(std::to_string(open));
      message.append(" is nested deeper than ").append(std::to_string(layout::kMaxLayoutDepth));
      fail(message.append(" levels"));
    }
  }
}

const GumboNode* nodeOf(MarkupTree::Element element) {
  return static_cast<const GumboNode*>(element);
}

bool isElement(const GumboNode* node) {
  return node->type == GUMBO_NODE_ELEMENT || node->type == GUMBO_NODE_TEMPLATE;
}

const GumboVector* childrenOf(const GumboNode* node) {
  if (node == nullptr) return nullptr;
  if (node->type == GUMBO_NODE_DOCUMENT) return &node->v.document.children;
  return isElement(node) ? &node->v.element.children : nullptr;
}

// The first element among the children from position `index` on.
const GumboNode* elementFrom(const GumboVector* children, unsigned int index) {
  if (children == nullptr) return nullptr;
  for (; index < children->length; ++index) {
    const auto* child = static_cast<const GumboNode*>(children->data[index]);
    if (isElement(child)) return child;
  }
  return nullptr;
}

}  // namespace

// gumbo allocates from an arena that is released at once: gumbo's own destructor recurses
// once per level of nesting, and a node costs one bump of a pointer instead of a malloc.
// Blocks gumbo frees (grown buffers) stay in the arena until the end; that costs at most
// about as much again as the tree.
struct GumboMarkup::Parse {
  static constexpr std::size_t kChunk = std::size_t{1} << 20;
  std::vector<std::unique_ptr<std::byte[]>> chunks;  // the last one is being filled
  std::vector<std::unique_ptr<std::byte[]>> large;   // blocks of a quarter chunk or more
  std::size_t used = kChunk;                         // of the last chunk; full: none yet
  GumboOptions options = kGumboDefaultOptions;
  GumboOutput* output = nullptr;

  // Called from C, where no exception may pass: running out of memory ends the process,
  // as it would inside gumbo's own allocator.
  static void* allocate(void* self, size_t size) noexcept {
    auto& parse = *static_cast<Parse*>(self);
    size = (size + 15) & ~std::size_t{15};
    try {
      if (size >= kChunk / 4) return parse.large.emplace_back(new std::byte[size]).get();
      if (parse.used + size > kChunk) {
        parse.chunks.emplace_back(new std::byte[kChunk]);
        parse.used = 0;
      }
    } catch (...) {
      std::abort();
    }
    void* block = parse.chunks.back().get() + parse.used;
    parse.used += size;
    return block;
  }
  static void release(void*, void*) noexcept {}
};

GumboMarkup::GumboMarkup(std::string_view utf8) : parse_(std::make_unique<Parse>()) {
  refuseDeepNesting(utf8);
  parse_->options.allocator = &Parse::allocate;
  parse_->options.deallocator = &Parse::release;
  parse_->options.userdata = parse_.get();
  // Parse errors are what the fallback is for; nobody reads them.
  parse_->options.max_errors = 0;
  parse_->output = gumbo_parse_with_options(&parse_->options, utf8.data(), utf8.size());
}

GumboMarkup::~GumboMarkup() = default;

bool GumboMarkup::available() { return true; }

MarkupTree::Element GumboMarkup::html() const {
  const GumboNode* root = parse_->output->root;
  return root != nullptr && root->v.element.tag == GUMBO_TAG_HTML ? root : nullptr;
}

MarkupTree::Element GumboMarkup::firstChild(Element parent) const {
  return elementFrom(childrenOf(nodeOf(parent)), 0);
}

MarkupTree::Element GumboMarkup::nextSibling(Element element) const {
  const GumboNode* node = nodeOf(element);
  if (node == nullptr) return nullptr;
  return elementFrom(childrenOf(node->parent), static_cast<unsigned int>(node->index_within_parent) + 1);
}

std::string_view GumboMarkup::name(Element element) const {
  const GumboNode* node = nodeOf(element);
  if (node == nullptr || !isElement(node)) return {};
  if (node->v.element.tag != GUMBO_TAG_UNKNOWN) {
    return gumbo_normalized_tagname(node->v.element.tag);
  }
  // An element HTML does not know keeps the name as written.
  GumboStringPiece piece = node->v.element.original_tag;
  gumbo_tag_from_original_text(&piece);
  return {piece.data, piece.length};
}

void GumboMarkup::attributes(Element element, std::vector<MarkupAttribute>& out) const {
  out.clear();
  const GumboNode* node = nodeOf(element);
  if (node == nullptr || !isElement(node)) return;
  const GumboVector& list = node->v.element.attributes;
  for (unsigned int i = 0; i < list.length; ++i) {
    const auto* a = static_cast<const GumboAttribute*>(list.data[i]);
    out.push_back({a->name, a->value});
  }
}

std::string_view GumboMarkup::attribute(Element element, std::string_view name) const {
  const GumboNode* node = nodeOf(element);
  if (node == nullptr || !isElement(node)) return {};
  const GumboVector& list = node->v.element.attributes;
  for (unsigned int i = 0; i < list.length; ++i) {
    const auto* a = static_cast<const GumboAttribute*>(list.data[i]);
    if (name == a->name) return a->value;
  }
  return {};
}

std::string_view GumboMarkup::directText(Element element) const {
  const GumboVector* children = childrenOf(nodeOf(element));
  if (children == nullptr) return {};
  for (unsigned int i = 0; i < children->length; ++i) {
    const auto* child = static_cast<const GumboNode*>(children->data[i]);
    if (child->type == GUMBO_NODE_TEXT || child->type == GUMBO_NODE_CDATA) {
      return child->v.text.text;
    }
  }
  return {};
}

std::ptrdiff_t GumboMarkup::offset(Element element) const {
  const GumboNode* node = nodeOf(element);
  if (node == nullptr || !isElement(node)) return -1;
  return static_cast<std::ptrdiff_t>(node->v.element.start_pos.offset);
}

#else  // without gumbo

struct GumboMarkup::Parse {};

GumboMarkup::GumboMarkup(std::string_view) {
  fail("HOCR parsing error: the document is not XML, and reading it as HTML (the tolerant "
       "mode's fallback) is not available in this build of Ormida");
}
GumboMarkup::~GumboMarkup() = default;
bool GumboMarkup::available() { return false; }
MarkupTree::Element GumboMarkup::html() const { return nullptr; }
MarkupTree::Element GumboMarkup::firstChild(Element) const { return nullptr; }
MarkupTree::Element GumboMarkup::nextSibling(Element) const { return nullptr; }
std::string_view GumboMarkup::name(Element) const { return {}; }
void GumboMarkup::attributes(Element, std::vector<MarkupAttribute>& out) const { out.clear(); }
std::string_view GumboMarkup::attribute(Element, std::string_view) const { return {}; }
std::string_view GumboMarkup::directText(Element) const { return {}; }
std::ptrdiff_t GumboMarkup::offset(Element) const { return -1; }

#endif

}  // namespace qent::text::hocr
