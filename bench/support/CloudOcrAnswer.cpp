// CloudOcrAnswer.cpp - layouts written as cloud-OCR answers.
#include "support/CloudOcrAnswer.h"

#include "base/Unicode.h"
#include "layout/IteratorTemplate.h"
#include "layout/Layout.h"
#include "layout/Nodes.h"

#include <rapidjson/stringbuffer.h>
#include <rapidjson/writer.h>

namespace qent::bench {

using namespace qent::text::layout;

namespace {

using Writer = rapidjson::Writer<rapidjson::StringBuffer>;

void boundingBox(Writer& out, int left, int top, int right, int bottom) {
  out.Key("boundingBox");
  out.StartObject();
  out.Key("vertices");
  out.StartArray();
  const int corners[4][2] = {{left, top}, {right, top}, {right, bottom}, {left, bottom}};
  for (const auto& corner : corners) {
    out.StartObject();
    out.Key("x");
    out.Int(corner[0]);
    out.Key("y");
    out.Int(corner[1]);
    out.EndObject();
  }
  out.EndArray();
  out.EndObject();
}

void boundingBox(Writer& out, const Rect& rect) {
  boundingBox(out, rect.left, rect.top, rect.left + rect.width, rect.top + rect.height);
}

void word(Writer& out, Word& node, bool lastOfLine) {
  out.StartObject();
  boundingBox(out, node.rect());
  const double confidence = node.confidence() / 100;
  out.Key("confidence");
  out.Double(confidence);
  out.Key("symbols");
  out.StartArray();
  const std::u16string& text = node.text();
  const int step = text.empty() ? 0 : node.rect().width / static_cast<int>(text.size());
  for (std::size_t i = 0; i < text.size(); ++i) {
    out.StartObject();
    const int left = node.rect().left + static_cast<int>(i) * step;
    boundingBox(out, left, node.rect().top, left + step, node.rect().top + node.rect().height);
    out.Key("text");
    const std::string character = base::utf16ToUtf8(text.substr(i, 1));
    out.String(character.data(), static_cast<rapidjson::SizeType>(character.size()));
    out.Key("confidence");
    out.Double(confidence);
    if (i + 1 == text.size()) {
      out.Key("property");
      out.StartObject();
      out.Key("detectedBreak");
      out.StartObject();
      out.Key("type");
      out.String(lastOfLine ? "LINE_BREAK" : "SPACE");
      out.EndObject();
      out.EndObject();
    }
    out.EndObject();
  }
  out.EndArray();
  out.EndObject();
}

void paragraph(Writer& out, Box& area) {
  out.StartObject();
  boundingBox(out, area.rect());
  out.Key("paragraphs");
  out.StartArray();
  out.StartObject();
  boundingBox(out, area.rect());
  out.Key("words");
  out.StartArray();
  for (IteratorTemplate<Line> line(&area); !line.atEnd(); ++line) {
    std::vector<Word*> words;
    for (IteratorTemplate<Word> it(&*line); !it.atEnd(); ++it) words.push_back(&*it);
    for (std::size_t i = 0; i < words.size(); ++i) word(out, *words[i], i + 1 == words.size());
  }
  out.EndArray();
  out.EndObject();
  out.EndArray();
  out.EndObject();
}

}  // namespace

std::string makeCloudOcrAnswer(const Layout& layout) {
  rapidjson::StringBuffer buffer;
  Writer out(buffer);
  out.StartObject();
  out.Key("responses");
  out.StartArray();
  out.StartObject();
  out.Key("fullTextAnnotation");
  out.StartObject();
  out.Key("pages");
  out.StartArray();
  for (IteratorTemplate<Page> page(layout.root()); !page.atEnd(); ++page) {
    out.StartObject();
    out.Key("width");
    out.Uint(page->width());
    out.Key("height");
    out.Uint(page->height());
    out.Key("blocks");
    out.StartArray();
    for (IteratorTemplate<Box> area(&*page); !area.atEnd(); ++area) paragraph(out, *area);
    out.EndArray();
    out.EndObject();
  }
  out.EndArray();
  out.EndObject();
  out.EndObject();
  out.EndArray();
  out.EndObject();
  return std::string(buffer.GetString(), buffer.GetSize());
}

}  // namespace qent::bench
