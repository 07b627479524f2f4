// JSONReader.cpp - node kinds and their members, and the parse that drives them.
#include "layout/format/JSONReader.h"

#include "base/FileIo.h"
#include "base/QentException.h"
#include "base/TraceLog.h"
#include "base/Unicode.h"
#include "layout/Layout.h"
#include "layout/LayoutFormat.h"
#include "layout/NodeClass.h"
#include "layout/format/LayoutKeys.h"
#include "layout/format/internal/JsonLayoutHandler.h"

#include <rapidjson/error/en.h>
#include <rapidjson/reader.h>

#include <limits>
#include <stdexcept>
#include <string>
#include <string_view>

namespace qent::text::layout::format {

namespace {

using internal::JsonAttribute;
using internal::JsonNodeRecord;
using internal::Member;
using K = LayoutKeys;

constexpr double kInt32Low = -2147483648.0;
constexpr double kInt32End = 2147483648.0;
constexpr double kUint32End = 4294967296.0;
constexpr double kUint64End = 18446744073709551616.0;

std::int32_t int32Member(const JsonNodeRecord& r, Member m) {
  return static_cast<std::int32_t>(
      internal::truncatedValue(r.number(m), kInt32Low, kInt32End, internal::keyOf(m)));
}

std::uint32_t uint32Member(const JsonNodeRecord& r, Member m) {
  return static_cast<std::uint32_t>(
      internal::truncatedValue(r.number(m), 0, kUint32End, internal::keyOf(m)));
}

std::uint64_t uint64Value(double value, std::string_view key) {
  // The writer prints these marks as doubles, and the largest ones round up to 2^64.
  if (value == kUint64End) return std::numeric_limits<std::uint64_t>::max();
  return static_cast<std::uint64_t>(internal::truncatedValue(value, 0, kUint64End, key));
}

// Attribute values that the writer produced from fields of the node's class go back there.
bool divertAttribute(Node& node, NodeType kind, const JsonAttribute& a) {
  if (kind == NodeType::Unknown || kind == NodeType::Image || kind == NodeType::Page) return false;
  auto& fragment = static_cast<Fragment&>(node);
  if (!a.isNumber) {
    // The writer never writes these from empty fields, so an empty one is a plain attribute.
    if (a.text.empty()) return false;
    if (a.key == K::kXEntity) {
      fragment.setXEntity(base::utf16ToUtf8(a.text));
      return true;
    }
    if (kind == NodeType::ImageFragment && a.key == K::kImageSource) {
      static_cast<Picture&>(fragment).setImageSource(a.text);
      return true;
    }
    return false;
  }
  if (kind == NodeType::Line) {
    auto& line = static_cast<Line&>(node);
    if (a.key == K::kMaxAscenders) line.setMaxAscenders(internal::numberValue(a.number, a.key));
    else if (a.key == K::kMaxDescenders) line.setMaxDescenders(internal::numberValue(a.number, a.key));
    else if (a.key == K::kMaxGlyphHeight) line.setMaxGlyphHeight(internal::numberValue(a.number, a.key));
    else return false;
    return true;
  }
  if (kind == NodeType::Word) {
    auto& word = static_cast<Word&>(node);
    if (a.key == K::kXChecked) word.setXChecked(uint64Value(internal::numberValue(a.number, a.key), a.key));
    else if (a.key == K::kXRejected) word.setXRejected(uint64Value(internal::numberValue(a.number, a.key), a.key));
    else if (a.key == K::kXSensibility) word.setXSensibility(internal::numberValue(a.number, a.key));
    else return false;
    return true;
  }
  return false;
}

void traceFailure(const std::string& what) {
  if (base::TraceLog::isOn()) base::TraceLog::write("JSON layout: " + what, base::kTraceError);
}

}  // namespace

JSONReader::JSONReader() = default;
JSONReader::~JSONReader() = default;

std::unique_ptr<Layout> JSONReader::read(std::string_view utf8) {
  std::string text(utf8);
  return readInPlace(text);
}

namespace {

// The parse both entries share; `trailing` checks what follows the document (the stream
// ends at a NUL byte, so that may be more than white space).
template <unsigned kFlags, typename Stream, typename Trailing>
std::unique_ptr<Layout> parseLayout(internal::NodeBuilder& builder, Stream& stream,
                                    Trailing trailing) {
  internal::JsonLayoutHandler handler(builder);
  rapidjson::Reader reader;
  const rapidjson::ParseResult parsed = reader.Parse<kFlags>(stream, handler);
  if (parsed.IsError()) {
    if (handler.stop() == internal::JsonLayoutHandler::Stop::Depth) {
      throw base::QentException(base::kErrorJson,
                                "Failed to parse JSON layout: " + handler.stopReason());
    }
    std::string detail = rapidjson::GetParseError_En(parsed.Code());
    if (!handler.stopReason().empty()) detail = handler.stopReason();
    traceFailure(detail + " at byte " + std::to_string(parsed.Offset()));
    throw base::QentException(base::kErrorJson, "Failed to parse JSON layout");
  }
  if (const std::size_t at = trailing(); at != std::string_view::npos) {
    traceFailure("text after the document at byte " + std::to_string(at));
    throw base::QentException(base::kErrorJson, "Failed to parse JSON layout");
  }
  if (handler.error() != nullptr) std::rethrow_exception(handler.error());
  std::unique_ptr<Node> root = handler.takeRoot();
  if (root == nullptr) throw base::QentException(base::kErrorJson, "Root node is not found");
  auto layout = std::make_unique<Layout>(std::move(root));
  layout->setFormat(kFormatJsonLayout);
  return layout;
}

constexpr unsigned kCommonFlags = rapidjson::kParseIterativeFlag | rapidjson::kParseNumbersAsStringsFlag;

bool isJsonSpace(char c) { return c == ' ' || c == '\t' || c == '\n' || c == '\r'; }

// A RapidJSON input stream over the head of a file already read and a source for the rest,
// refilling one small buffer: a large file is never held whole.
class ChunkStream {
public:
  using Ch = char;
  ChunkStream(std::string head, base::ByteSource& rest) : buffer_(std::move(head)), rest_(rest) {}

  // The parser calls these once a byte: the common case stays inline, refilling does not.
  char Peek() { return at_ < buffer_.size() || refill() ? buffer_[at_] : '\0'; }
  char Take() { return at_ < buffer_.size() || refill() ? buffer_[at_++] : '\0'; }
  std::size_t Tell() const { return consumed_ + at_; }
  // Only an in-place parse writes; this stream is never used for one.
  char* PutBegin() { return nullptr; }
  void Put(char) {}
  void Flush() {}
  std::size_t PutEnd(char*) { return 0; }

  // The byte offset of the first byte from here on that is not white space; npos if none.
  std::size_t firstNonSpace() {
    while (at_ < buffer_.size() || refill()) {
      if (!isJsonSpace(buffer_[at_])) return Tell();
      ++at_;
    }
    return std::string_view::npos;
  }

private:
  [[gnu::noinline]] bool refill() {
    consumed_ += buffer_.size();
    at_ = 0;
    buffer_.resize(kChunk);
    buffer_.resize(rest_.read(buffer_.data(), kChunk));
    return !buffer_.empty();
  }

  static constexpr std::size_t kChunk = 1 << 16;
  std::string buffer_;
  std::size_t at_ = 0;
  std::size_t consumed_ = 0;
  base::ByteSource& rest_;
};

}  // namespace

std::unique_ptr<Layout> JSONReader::readInPlace(std::string& buffer) {
  std::string_view utf8 = buffer;
  if (utf8.substr(0, 3) == "\xEF\xBB\xBF") utf8.remove_prefix(3);
  // Checked in one fast pass here instead of character by character by the parser.
  const std::size_t invalid = base::findInvalidUtf8(utf8);
  if (invalid != std::string_view::npos) {
    traceFailure("invalid UTF-8 at byte " + std::to_string(invalid));
    throw base::QentException(base::kErrorJson, "Failed to parse JSON layout");
  }
  // The parser decodes strings where they stand rather than copying each of them; it only
  // writes behind its reading position, so the text after the document stays as it was.
  rapidjson::InsituStringStream stream(buffer.data() + (buffer.size() - utf8.size()));
  return parseLayout<kCommonFlags | rapidjson::kParseInsituFlag>(*this, stream, [&] {
    for (std::size_t i = stream.Tell(); i < utf8.size(); ++i) {
      if (!isJsonSpace(utf8[i])) return i;
    }
    return std::string_view::npos;
  });
}

std::unique_ptr<Layout> JSONReader::readStream(std::string head, base::ByteSource& rest) {
  if (std::string_view(head).substr(0, 3) == "\xEF\xBB\xBF") head.erase(0, 3);
  // Piece by piece, so the parser checks the UTF-8 of each string as it decodes it (outside
  // strings only ASCII is JSON anyway).
  ChunkStream stream(std::move(head), rest);
  return parseLayout<kCommonFlags | rapidjson::kParseValidateEncodingFlag>(
      *this, stream, [&] { return stream.firstNonSpace(); });
}

std::unique_ptr<Node> JSONReader::build(JsonNodeRecord& record) { return readNode(record); }

std::unique_ptr<Node> JSONReader::readNode(JsonNodeRecord& r) {
  if (!r.has(Member::Type)) {
    throw base::QentException(base::kErrorJson, "Type attribute is not found");
  }
  switch (K::nodeType(r.type)) {
    case NodeType::Image: return readImage(r);
    case NodeType::Page: return readPage(r);
    case NodeType::ContentArea: return readBox(r);
    case NodeType::FormField: return readField(r);
    case NodeType::Line: return readLine(r);
    case NodeType::Word: return readWord(r);
    case NodeType::Glyph: return readGlyph(r);
    case NodeType::ImageFragment: return readPicture(r);
    case NodeType::Unknown: break;
  }
  return readContent(r);
}

std::unique_ptr<Node> JSONReader::readContent(JsonNodeRecord& r) {
  auto node = std::make_unique<Content>();
  try {
    node->setTypeName(base::utf8ToUtf16(r.type));
  } catch (const std::invalid_argument& e) {
    throw base::QentException(base::kErrorJson, std::string("Failed to parse JSON layout: ") +
                                                    "\"type\" is not valid Unicode (" + e.what() +
                                                    ")");
  }
  if (r.has(Member::Text)) node->setText(std::move(r.text));
  readCommon(*node, r, NodeType::Unknown);
  return node;
}

std::unique_ptr<Node> JSONReader::readImage(JsonNodeRecord& r) {
  auto node = std::make_unique<Image>();
  if (r.has(Member::Image)) node->setImage(std::move(r.image));
  readCommon(*node, r, NodeType::Image);
  return node;
}

std::unique_ptr<Node> JSONReader::readPage(JsonNodeRecord& r) {
  auto node = std::make_unique<Page>();
  if (r.has(Member::Width)) node->setWidth(uint32Member(r, Member::Width));
  if (r.has(Member::Height)) node->setHeight(uint32Member(r, Member::Height));
  if (r.has(Member::Language)) node->setLanguage(std::move(r.language));
  if (r.has(Member::IndexInLayout)) node->setIndexInLayout(uint32Member(r, Member::IndexInLayout));
  if (r.has(Member::Textangle)) node->setTextangle(r.number(Member::Textangle));
  readCommon(*node, r, NodeType::Page);
  return node;
}

std::unique_ptr<Node> JSONReader::readBox(JsonNodeRecord& r) {
  auto node = std::make_unique<Box>();
  node->setBoxKind(Box::kContentArea);
  readFragment(*node, r);
  readCommon(*node, r, NodeType::ContentArea);
  return node;
}

std::unique_ptr<Node> JSONReader::readField(JsonNodeRecord& r) {
  auto node = std::make_unique<Field>();
  readFragment(*node, r);
  readCommon(*node, r, NodeType::FormField);
  return node;
}

std::unique_ptr<Node> JSONReader::readLine(JsonNodeRecord& r) {
  auto node = std::make_unique<Line>();
  readFragment(*node, r);
  if (r.has(Member::MaxAscenders)) node->setMaxAscenders(r.number(Member::MaxAscenders));
  if (r.has(Member::MaxDescenders)) node->setMaxDescenders(r.number(Member::MaxDescenders));
  if (r.has(Member::MaxGlyphHeight)) node->setMaxGlyphHeight(r.number(Member::MaxGlyphHeight));
  readCommon(*node, r, NodeType::Line);
  return node;
}

std::unique_ptr<Node> JSONReader::readWord(JsonNodeRecord& r) {
  auto node = std::make_unique<Word>();
  readFragment(*node, r);
  if (r.has(Member::XChecked)) {
    node->setXChecked(uint64Value(r.number(Member::XChecked), K::kXChecked));
  }
  if (r.has(Member::XRejected)) {
    node->setXRejected(uint64Value(r.number(Member::XRejected), K::kXRejected));
  }
  if (r.has(Member::XSensibility)) node->setXSensibility(r.number(Member::XSensibility));
  readCommon(*node, r, NodeType::Word);
  return node;
}

std::unique_ptr<Node> JSONReader::readGlyph(JsonNodeRecord& r) {
  auto node = std::make_unique<Glyph>();
  readFragment(*node, r);
  readCommon(*node, r, NodeType::Glyph);
  return node;
}

std::unique_ptr<Node> JSONReader::readPicture(JsonNodeRecord& r) {
  auto node = std::make_unique<Picture>();
  readFragment(*node, r);
  if (r.has(Member::ImageSource)) node->setImageSource(std::move(r.imageSource));
  readCommon(*node, r, NodeType::ImageFragment);
  return node;
}

void JSONReader::readFragment(Fragment& f, JsonNodeRecord& r) {
  if (r.has(Member::Text)) f.setText(std::move(r.text));
  if (r.has(Member::Left) || r.has(Member::Top) || r.has(Member::Width) ||
      r.has(Member::Height)) {
    auto side = [&](Member m) { return r.has(m) ? int32Member(r, m) : 0; };
    f.setRect(Rect::fromInput(side(Member::Left), side(Member::Top), side(Member::Width),
                              side(Member::Height)));
  }
  if (r.has(Member::Textangle)) f.setTextangle(r.number(Member::Textangle));
  if (r.has(Member::Confidence)) f.setConfidence(r.number(Member::Confidence));
  if (r.has(Member::ColorRgb)) f.setColor(r.color);
  if (r.has(Member::BackgroundColorRgb)) f.setBackgroundColor(r.backgroundColor);
  if (r.has(Member::FontFamily)) f.setFontFamily(std::move(r.fontFamily));
  if (r.has(Member::FontStyle)) f.setFontStyle(K::fontStyleCode(r.fontStyle));
  if (r.has(Member::FontWeight)) f.setFontWeight(K::fontWeightCode(r.fontWeight));
  if (r.has(Member::FontSize)) f.setFontSize(r.number(Member::FontSize));
  if (r.has(Member::Polygon)) f.setPolygon(std::move(r.polygon));
  if (r.has(Member::Baseline)) f.setBaseline(std::move(r.baseline));
  if (r.has(Member::XEntity)) f.setXEntity(std::move(r.xEntity));
}

void JSONReader::readCommon(Node& node, JsonNodeRecord& r, NodeType kind) {
  if (r.has(Member::Id)) node.setId(std::move(r.id));
  if (!r.attributes.empty()) {
    Node::Attributes::Entries entries;
    entries.reserve(r.attributes.size());
    for (JsonAttribute& a : r.attributes) {
      if (divertAttribute(node, kind, a)) continue;
      std::u16string value;
      if (a.isNumber) {
        const std::string fixed = internal::fixed6Text(a.number);
        value.assign(fixed.begin(), fixed.end());
      } else {
        value = std::move(a.text);
      }
      entries.emplace_back(AttributeKey(a.key16), std::move(value));
    }
    // Handed over at once: an object with many members costs one sort, not an insertion each.
    node.attributes().assign(std::move(entries));
  }
  if (r.hasAttributeBaseline) {
    if (isA<Fragment>(node)) static_cast<Fragment&>(node).setBaseline(r.attributeBaseline);
  }
  if (!r.children.empty()) {
    node.reserveChildren(r.children.size());
    for (auto& child : r.children) node.appendChild(std::move(child));
    r.children.clear();
  }
}

}  // namespace qent::text::layout::format
