// HtmlWriter.cpp - pages, rows and columns of the HTML output, and its head.
#include "layout/format/html/HtmlWriter.h"

#include "base/Version.h"
#include "base/xml/XmlText.h"
#include "base/xml/XmlWriter.h"
#include "layout/Layout.h"
#include "layout/NodeClass.h"
#include "layout/Nodes.h"
#include "layout/format/html/CssBuilder.h"
#include "layout/format/html/NodeMarkup.h"
#include "layout/format/html/PageAreas.h"
#include "layout/format/html/XyCut.h"

#include <optional>

namespace qent::text::layout::format::html {

namespace {

using base::xml::XmlWriter;

// A language HTML's lang attribute takes as it stands: two letters, optionally followed by
// subtags ("de", "en-GB"). Three-letter codes such as "deu" are ISO 639-2, which language
// tags use only where no two-letter code exists, so they are left out rather than guessed.
bool isLanguageTag(std::string_view language) {
  auto letter = [](char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'); };
  if (language.size() < 2 || !letter(language[0]) || !letter(language[1])) return false;
  if (language.size() == 2) return true;
  if (language[2] != '-' || language.size() == 3 || language.back() == '-') return false;
  for (const char c : language.substr(3)) {
    if (!letter(c) && !(c >= '0' && c <= '9') && c != '-') return false;
  }
  return true;
}

// One page of the output: a Page node, or the items found outside pages.
struct PageSource {
  const Page* page = nullptr;
  std::vector<Node*> items;
};

std::vector<PageSource> pagesOf(Node* root) {
  std::vector<PageSource> pages;
  if (root == nullptr) return pages;
  std::vector<Node*> items;
  if (isA<Page>(*root) || isA<Fragment>(*root)) {
    items.push_back(root);
  } else {
    items = itemsBelow(*root);
  }
  for (Node* item : items) {
    if (isA<Page>(*item)) {
      pages.push_back({static_cast<const Page*>(item), itemsBelow(*item)});
      continue;
    }
    // Items between pages form a page of their own.
    if (pages.empty() || pages.back().page != nullptr) pages.emplace_back();
    pages.back().items.push_back(item);
  }
  return pages;
}

class BodyWriter {
public:
  BodyWriter(XmlWriter& writer, CssBuilder& css, std::string_view documentLanguage)
      : writer_(writer), css_(css), markup_(writer, css), documentLanguage_(documentLanguage) {}

  void writePage(const PageSource& source, std::size_t number) {
    PageAreas page = collectAreas(source.items);
    markup_.startPage(page.medianLineHeight);
    median_ = page.medianLineHeight;
    page_ = number;
    area_ = 0;
    writer_.startElement("div");
    writer_.attribute("class", "page");
    writer_.attribute("id", "page_" + std::to_string(number));
    if (source.page != nullptr && isLanguageTag(source.page->language()) &&
        source.page->language() != documentLanguage_) {
      writer_.attribute("lang", source.page->language());
      writer_.attribute("xml:lang", source.page->language());
    }
    std::vector<XyCut::Bounds> bounds;
    bounds.reserve(page.areas.size());
    for (const Area& area : page.areas) bounds.push_back(area.bounds);
    const std::vector<XyCut::Cell> cells = XyCut::cut(bounds);
    if (!cells.empty()) {
      // Columns are placed within the page's width when the page states it.
      XyCut::Bounds box = cells.front().bounds;
      if (source.page != nullptr && source.page->width() > 0) {
        box.left = std::min<std::int64_t>(box.left, 0);
        box.right = std::max<std::int64_t>(box.right, source.page->width());
      }
      areas_ = &page.areas;
      cells_ = &cells;
      writeRows(0, box);
    }
    if (!page.flow.empty()) {
      writer_.startElement("div");
      writer_.attribute("class", "row");
      writer_.startElement("div");
      std::string classes = "col ";
      classes += css_.width(100);
      writer_.attribute("class", classes);
      markup_.writeFlow(page.flow);
      writer_.endElement();
      writer_.endElement();
    }
    if (writer_.currentIsEmpty()) writer_.text("");
    writer_.endElement();
  }

private:
  // The cut tree is at most XyCut::kMaxDepth levels deep, so these calls nest boundedly.
  void writeRows(std::size_t index, const XyCut::Bounds& box) {
    const XyCut::Cell& cell = (*cells_)[index];
    if (cell.kind != XyCut::Kind::Rows) {
      writeRow(index, box, std::nullopt);
      return;
    }
    std::optional<std::int64_t> above;
    for (const std::size_t part : cell.parts) {
      writeRow(part, box, above);
      above = (*cells_)[part].bounds.bottom;
    }
  }

  void writeRow(std::size_t index, const XyCut::Bounds& box, std::optional<std::int64_t> above) {
    const XyCut::Cell& cell = (*cells_)[index];
    std::string classes = "row";
    if (above && median_ > 0) {
      const std::string_view gap =
          css_.marginTop(static_cast<double>(cell.bounds.top - *above) / median_);
      if (!gap.empty()) (classes += ' ') += gap;
    }
    writer_.startElement("div");
    writer_.attribute("class", classes);
    const double width = static_cast<double>(std::max<std::int64_t>(box.width(), 1));
    std::int64_t right = box.left;
    auto column = [&](std::size_t part) {
      const XyCut::Cell& col = (*cells_)[part];
      std::string names = "col ";
      names += css_.width(100.0 * static_cast<double>(col.bounds.width()) / width);
      names += ' ';
      names += css_.marginLeft(100.0 * static_cast<double>(col.bounds.left - right) / width);
      right = col.bounds.right;
      writer_.startElement("div");
      writer_.attribute("class", names);
      writeColumn(part);
      writer_.endElement();
    };
    if (cell.kind == XyCut::Kind::Columns) {
      for (const std::size_t part : cell.parts) column(part);
    } else {
      column(index);
    }
    writer_.endElement();
  }

  void writeColumn(std::size_t index) {
    const XyCut::Cell& cell = (*cells_)[index];
    if (cell.kind == XyCut::Kind::Stack) {
      for (const std::size_t area : cell.parts) {
        markup_.writeArea((*areas_)[area],
                          "block_" + std::to_string(page_) + "_" + std::to_string(++area_));
      }
      return;
    }
    writeRows(index, cell.bounds);
  }

  XmlWriter& writer_;
  CssBuilder& css_;
  NodeMarkup markup_;
  std::string_view documentLanguage_;
  const std::vector<Area>* areas_ = nullptr;
  const std::vector<XyCut::Cell>* cells_ = nullptr;
  double median_ = 0;
  std::size_t page_ = 0;
  std::size_t area_ = 0;
};

// The language every page that names one agrees on, when HTML takes it.
std::string documentLanguage(const std::vector<PageSource>& pages) {
  std::string language;
  for (const PageSource& source : pages) {
    if (source.page == nullptr || source.page->language().empty()) continue;
    if (!language.empty() && language != source.page->language()) return {};
    language = source.page->language();
  }
  return isLanguageTag(language) ? language : std::string();
}

}  // namespace

void HtmlWriter::write(const Layout& layout, base::Sink& sink) {
  const std::vector<PageSource> pages = pagesOf(layout.root());
  const std::string language = documentLanguage(pages);
  CssBuilder css;
  base::StringSink body;
  {
    XmlWriter writer(body, "");
    writer.startElement("body");
    // The root's own text (a layout built in code may have one) heads the document.
    if (const auto* root = layout.root(); root != nullptr && isA<Content>(*root)) {
      const std::string text = base::xml::xmlText(static_cast<const Content&>(*root).text());
      if (!text.empty()) {
        writer.startElement("p");
        writer.text(text);
        writer.endElement();
      }
    }
    BodyWriter pageWriter(writer, css, language);
    for (std::size_t i = 0; i < pages.size(); ++i) pageWriter.writePage(pages[i], i + 1);
    if (writer.currentIsEmpty()) writer.text("");
    writer.endElement();
    writer.finish();
  }

  // No XML declaration: an HTML parser reads it as a bogus comment (a parse error), and
  // UTF-8 is what an XML parser assumes without one.
  XmlWriter writer(sink, "");
  writer.doctype("html");
  writer.startElement("html");
  writer.attribute("xmlns", "http://www.w3.org/1999/xhtml");
  if (!language.empty()) {
    writer.attribute("lang", language);
    writer.attribute("xml:lang", language);
  }
  writer.startElement("head");
  writer.startElement("meta");
  writer.attribute("charset", "UTF-8");
  writer.endElement();
  writer.startElement("meta");
  writer.attribute("name", "viewport");
  writer.attribute("content", "width=device-width, initial-scale=1");
  writer.endElement();
  writer.startElement("meta");
  writer.attribute("name", "generator");
  writer.attribute("content", base::kVersionText);
  writer.endElement();
  writer.startElement("title");
  // HTML wants a title that is not empty.
  const std::string title = base::xml::xmlText(layout.documentName());
  writer.text(title.find_first_not_of(" \t\r\n") == std::string::npos ? "OCR layout" : title);
  writer.endElement();
  writer.startElement("style");
  writer.text(css.styleSheet());
  writer.endElement();
  writer.endElement();
  std::string_view markup = body.text();
  if (!markup.empty() && markup.back() == '\n') markup.remove_suffix(1);
  writer.markup(markup);
  writer.endElement();
  writer.finish();
}

std::string HtmlWriter::write(const Layout& layout) {
  base::StringSink sink;
  write(layout, sink);
  return std::move(sink.text());
}

}  // namespace qent::text::layout::format::html
