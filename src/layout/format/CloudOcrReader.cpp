// CloudOcrReader.cpp - the depth-limited parse of a cloud-OCR answer and the walk that turns
// its pages, paragraphs, words and symbols into layout nodes.
#include "layout/format/CloudOcrReader.h"

#include "base/MeanOf.h"
#include "base/NumberConversion.h"
#include "base/QentException.h"
#include "base/TraceLog.h"
#include "base/Unicode.h"
#include "base/json/DepthLimitedParse.h"
#include "layout/Layout.h"
#include "layout/LayoutFormat.h"
#include "layout/Nodes.h"

#include <rapidjson/document.h>
#include <rapidjson/error/en.h>
#include <rapidjson/reader.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <stdexcept>
#include <string>

namespace qent::text::layout::format {

namespace {

using Value = rapidjson::Value;

// The member names of the answer, and the box name its paragraphs get.
namespace key {
constexpr std::u16string_view kParagraph = u"paragraph";
constexpr const char* kResponses = "responses";
constexpr const char* kFullTextAnnotation = "fullTextAnnotation";
constexpr const char* kPages = "pages";
constexpr const char* kBlocks = "blocks";
constexpr const char* kParagraphs = "paragraphs";
constexpr const char* kBoundingBox = "boundingBox";
constexpr const char* kWidth = "width";
constexpr const char* kHeight = "height";
constexpr const char* kVertices = "vertices";
constexpr const char* kX = "x";
constexpr const char* kY = "y";
constexpr const char* kWords = "words";
constexpr const char* kSymbols = "symbols";
constexpr const char* kConfidence = "confidence";
constexpr const char* kText = "text";
constexpr const char* kProperty = "property";
constexpr const char* kDetectedBreak = "detectedBreak";
constexpr const char* kType = "type";
constexpr std::string_view kSpace = "SPACE";
}  // namespace key

constexpr const char* kIncorrectFormat = "Incorrect format";
constexpr double kInt32Low = -2147483648.0;
constexpr double kInt32End = 2147483648.0;
constexpr double kUint32End = 4294967296.0;

[[noreturn]] void failFormat(const std::string& what) {
  throw base::QentException(base::kErrorJson, std::string(kIncorrectFormat) + ": " + what);
}

[[noreturn]] void failNotJson(const std::string& detail, std::size_t offset) {
  if (base::TraceLog::isOn()) {
    base::TraceLog::write("cloud-OCR JSON: " + detail + " at byte " + std::to_string(offset),
                          base::kTraceError);
  }
  throw base::QentException(base::kErrorJson, kIncorrectFormat);
}


// Members of the wrong kind count as absent.
const Value* member(const Value& object, const char* name) {
  const auto found = object.FindMember(name);
  return found == object.MemberEnd() ? nullptr : &found->value;
}
const Value* objectMember(const Value& object, const char* name) {
  const Value* value = member(object, name);
  return value != nullptr && value->IsObject() ? value : nullptr;
}
const Value* arrayMember(const Value& object, const char* name) {
  const Value* value = member(object, name);
  return value != nullptr && value->IsArray() ? value : nullptr;
}
const Value* numberMember(const Value& object, const char* name) {
  const Value* value = member(object, name);
  return value != nullptr && value->IsNumber() ? value : nullptr;
}
const Value* stringMember(const Value& object, const char* name) {
  const Value* value = member(object, name);
  return value != nullptr && value->IsString() ? value : nullptr;
}

std::u16string decimal(std::uint32_t value) {
  const std::string digits = std::to_string(value);
  return std::u16string(digits.begin(), digits.end());
}

// The union of rectangles, kept wide so that it cannot overflow.
struct Bounds {
  std::int64_t left = std::numeric_limits<std::int64_t>::max();
  std::int64_t top = std::numeric_limits<std::int64_t>::max();
  std::int64_t right = std::numeric_limits<std::int64_t>::min();
  std::int64_t bottom = std::numeric_limits<std::int64_t>::min();
  bool empty = true;

  void add(const Rect& rect) {
    left = std::min<std::int64_t>(left, rect.left);
    top = std::min<std::int64_t>(top, rect.top);
    right = std::max(right, rect.right());
    bottom = std::max(bottom, rect.bottom());
    empty = false;
  }
};

std::int32_t extent(std::int64_t size, const char* side) {
  if (size > std::numeric_limits<std::int32_t>::max()) {
    failFormat(std::string("a rectangle is ") + side + " than 2147483647 pixels");
  }
  return static_cast<std::int32_t>(size);
}

// Builds the tree; every node it makes takes the next number as its id.
class TreeBuilder {
public:
  std::unique_ptr<Node> build(const Value& annotation) {
    auto root = std::make_unique<Content>();
    root->setTypeName(u"node");
    if (const Value* pages = arrayMember(annotation, key::kPages)) {
      for (const Value& page : pages->GetArray()) {
        if (page.IsObject()) readPage(page, *root);
      }
    }
    return root;
  }

private:
  template <class T>
  std::unique_ptr<T> make() {
    auto node = std::make_unique<T>();
    node->setId(decimal(++counter_));
    return node;
  }

  void readPage(const Value& input, Node& root) {
    Page& page = root.appendChild(make<Page>());
    page.setWidth(pageSize(input, key::kWidth));
    page.setHeight(pageSize(input, key::kHeight));
    page.appendChild(make<Image>()).setImage(u"picture.img");
    // Blocks add nothing of their own: their paragraphs stand directly on the page.
    const Value* blocks = arrayMember(input, key::kBlocks);
    if (blocks == nullptr) return;
    for (const Value& block : blocks->GetArray()) {
      if (!block.IsObject()) continue;
      const Value* paragraphs = arrayMember(block, key::kParagraphs);
      if (paragraphs == nullptr) continue;
      for (const Value& paragraph : paragraphs->GetArray()) {
        if (paragraph.IsObject()) readParagraph(paragraph, page);
      }
    }
  }

  static std::uint32_t pageSize(const Value& page, const char* name) {
    const Value* value = numberMember(page, name);
    if (value == nullptr) return 0;
    const double size = std::trunc(value->GetDouble());
    if (!(size >= 0 && size < kUint32End)) {
      failFormat("the page " + std::string(name) + " " + base::formatShortest(value->GetDouble()) +
                 " is out of range");
    }
    return static_cast<std::uint32_t>(size);
  }

  void readParagraph(const Value& input, Page& page) {
    Box& box = page.appendChild(make<Box>());
    box.setTypeName(std::u16string(key::kParagraph));  // also makes the kind 25, so that the name is kept
    if (const Value* bounds = objectMember(input, key::kBoundingBox)) {
      box.setRect(boundingBox(*bounds));
    }
    const Value* words = arrayMember(input, key::kWords);

    std::unique_ptr<Line> line = make<Line>();
    Bounds lineBounds;
    base::MeanOf confidence;
    auto closeLine = [&] {
      if (line->childCount() == 0) return;
      if (!lineBounds.empty) {
        line->setRect(Rect::fromInput(static_cast<std::int32_t>(lineBounds.left),
                                      static_cast<std::int32_t>(lineBounds.top),
                                      extent(lineBounds.right - lineBounds.left, "wider"),
                                      extent(lineBounds.bottom - lineBounds.top, "higher")));
      }
      // Words without a confidence count in the divisor too.
      line->setConfidence(confidence.over(static_cast<double>(line->childCount())));
      box.appendChild(std::move(line));
      line = make<Line>();
      lineBounds = Bounds();
      confidence = base::MeanOf();
    };

    if (words != nullptr) {
      for (const Value& element : words->GetArray()) {
        if (!element.IsObject()) continue;
        bool endsLine = false;
        std::unique_ptr<Word> word = readWord(element, endsLine);
        // A word without geometry would drag the line's rectangle to the origin.
        if (word->rect().hasGeometry()) lineBounds.add(word->rect());
        if (word->storedConfidence() > 0) confidence.add(word->storedConfidence());
        line->appendChild(std::move(word));
        if (endsLine) closeLine();
      }
    }
    closeLine();
  }

  std::unique_ptr<Word> readWord(const Value& input, bool& endsLine) {
    auto word = make<Word>();
    const Value* bounds = objectMember(input, key::kBoundingBox);
    if (bounds == nullptr) {
      throw base::QentException(base::kErrorJson, "Bounding box for a word is not found");
    }
    word->setRect(boundingBox(*bounds));
    if (const Value* confidence = numberMember(input, key::kConfidence)) {
      word->setConfidence(confidence->GetDouble());
    }
    if (const Value* symbols = arrayMember(input, key::kSymbols)) {
      word->reserveChildren(symbols->Size());
      for (const Value& symbol : symbols->GetArray()) {
        if (!symbol.IsObject()) continue;
        // Only the break after the word's last symbol counts.
        endsLine = false;
        word->appendChild(readSymbol(symbol, endsLine));
      }
    }
    return word;
  }

  std::unique_ptr<Glyph> readSymbol(const Value& input, bool& breaksLine) {
    auto glyph = make<Glyph>();
    if (const Value* bounds = objectMember(input, key::kBoundingBox)) {
      glyph->setRect(boundingBox(*bounds));
    }
    if (const Value* text = stringMember(input, key::kText)) {
      try {
        glyph->setText(base::utf8ToUtf16(std::string_view(text->GetString(), text->GetStringLength())));
      } catch (const std::invalid_argument& e) {
        // Only an escaped lone surrogate gets here: the bytes were checked before parsing.
        failFormat(std::string("the text of a symbol is not valid Unicode (") + e.what() + ")");
      }
    }
    if (const Value* confidence = numberMember(input, key::kConfidence)) {
      glyph->setConfidence(confidence->GetDouble());
    }
    if (const Value* property = objectMember(input, key::kProperty)) {
      if (const Value* detected = objectMember(*property, key::kDetectedBreak)) {
        if (const Value* type = stringMember(*detected, key::kType)) {
          const std::string_view name(type->GetString(), type->GetStringLength());
          breaksLine = !name.empty() && name != key::kSpace;
        }
      }
    }
    return glyph;
  }

  static std::int32_t coordinate(const Value& value) {
    const double truncated = std::trunc(value.GetDouble());
    if (!(truncated >= kInt32Low && truncated < kInt32End)) {
      failFormat("the vertex coordinate " + base::formatShortest(value.GetDouble()) +
                 " is out of range");
    }
    return static_cast<std::int32_t>(truncated);
  }

  // The box around all vertices; a vertex without "x" (or "y") adds nothing on that axis,
  // and an axis without any value has position and size 0.
  static Rect boundingBox(const Value& input) {
    const Value* vertices = arrayMember(input, key::kVertices);
    if (vertices == nullptr) return Rect{};
    std::int64_t minX = 0, maxX = 0, minY = 0, maxY = 0;
    bool anyX = false, anyY = false;
    for (const Value& vertex : vertices->GetArray()) {
      if (!vertex.IsObject()) continue;
      if (const Value* x = numberMember(vertex, key::kX)) {
        const std::int32_t value = coordinate(*x);
        minX = anyX ? std::min<std::int64_t>(minX, value) : value;
        maxX = anyX ? std::max<std::int64_t>(maxX, value) : value;
        anyX = true;
      }
      if (const Value* y = numberMember(vertex, key::kY)) {
        const std::int32_t value = coordinate(*y);
        minY = anyY ? std::min<std::int64_t>(minY, value) : value;
        maxY = anyY ? std::max<std::int64_t>(maxY, value) : value;
        anyY = true;
      }
    }
    return Rect::fromInput(static_cast<std::int32_t>(minX), static_cast<std::int32_t>(minY),
                           extent(maxX - minX, "wider"), extent(maxY - minY, "higher"));
  }

  std::uint32_t counter_ = 0;
};

// The annotation of the top level, else that of the first response that has one.
const Value* findAnnotation(const Value& answer) {
  if (!answer.IsObject()) return nullptr;
  if (const Value* annotation = objectMember(answer, key::kFullTextAnnotation)) return annotation;
  const Value* responses = arrayMember(answer, key::kResponses);
  if (responses == nullptr) return nullptr;
  for (const Value& response : responses->GetArray()) {
    if (!response.IsObject()) continue;
    if (const Value* annotation = objectMember(response, key::kFullTextAnnotation)) {
      return annotation;
    }
  }
  return nullptr;
}

}  // namespace

std::unique_ptr<Layout> CloudOcrReader::read(std::string_view utf8) {
  if (utf8.substr(0, 3) == "\xEF\xBB\xBF") utf8.remove_prefix(3);
  // Checked in one fast pass here instead of character by character by the parser.
  if (const std::size_t bad = base::findInvalidUtf8(utf8); bad != std::string_view::npos) {
    failNotJson("invalid UTF-8", bad);
  }
  // The parser decodes strings in place in this copy, and the document points into it.
  std::string text(utf8);
  rapidjson::Document document;
  rapidjson::InsituStringStream stream(text.data());
  const auto [parsed, tooDeep] =
      base::json::parseDepthLimited<rapidjson::kParseInsituFlag>(document, stream, kMaxJsonDepth);
  if (tooDeep) {
    failFormat("values nested deeper than " + std::to_string(kMaxJsonDepth) + " levels");
  }
  if (parsed.IsError()) failNotJson(rapidjson::GetParseError_En(parsed.Code()), parsed.Offset());
  // The stream reports a NUL byte as its end; anything after the document is not JSON.
  for (std::size_t i = stream.Tell(); i < utf8.size(); ++i) {
    const char c = utf8[i];
    if (c != ' ' && c != '\t' && c != '\n' && c != '\r') failNotJson("text after the document", i);
  }

  const Value* annotation = findAnnotation(document);
  if (annotation == nullptr) throw base::QentException(base::kErrorJson, kIncorrectFormat);
  auto layout = std::make_unique<Layout>(TreeBuilder().build(*annotation));
  layout->setFormat(kFormatCloudOcr);
  return layout;
}

}  // namespace qent::text::layout::format
