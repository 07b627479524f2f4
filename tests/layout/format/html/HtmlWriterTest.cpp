// HtmlWriterTest.cpp - golden pages, the same tree for XML and HTML5 parsers, and every
// word once in reading order on generated pages.
#include "layout/format/html/HtmlWriter.h"

#include "base/Unicode.h"
#include "io/DocumentReader.h"
#include "layout/Layout.h"
#include "layout/Nodes.h"
#include "support/Golden.h"

#include <gtest/gtest.h>
#include <pugixml.hpp>

#if ORMIDA_HAVE_GUMBO
#include <gumbo.h>
#endif

#include <algorithm>
#include <map>
#include <random>
#include <sstream>

namespace {

using namespace qent::text::layout;
using qent::text::layout::format::html::HtmlWriter;

std::unique_ptr<Layout> readFile(const std::filesystem::path& path) {
  return qent::io::readDocument(qent::test::readAll(path), path.string(), {})->takeLayout();
}

bool isBlank(std::string_view text) {
  return text.find_first_not_of(" \t\r\n") == std::string_view::npos;
}

// Elements (name, sorted attributes) and texts in document order, one a line; texts that
// are only white space are left out, since an XML parser drops them.
void dumpXml(const pugi::xml_node& node, std::ostringstream& out) {
  for (const pugi::xml_node child : node.children()) {
    if (child.type() == pugi::node_pcdata) {
      if (!isBlank(child.value())) out << "text " << child.value() << "\n";
      continue;
    }
    if (child.type() != pugi::node_element) continue;
    std::map<std::string, std::string> attributes;
    for (const pugi::xml_attribute a : child.attributes()) attributes[a.name()] = a.value();
    out << "<" << child.name();
    for (const auto& [k, v] : attributes) out << " " << k << "=" << v;
    out << ">\n";
    dumpXml(child, out);
    out << "</" << child.name() << ">\n";
  }
}

#if ORMIDA_HAVE_GUMBO
void dumpHtml(const GumboNode* node, std::ostringstream& out) {
  const GumboVector& children = node->v.element.children;
  for (unsigned i = 0; i < children.length; ++i) {
    const auto* child = static_cast<const GumboNode*>(children.data[i]);
    if (child->type == GUMBO_NODE_TEXT || child->type == GUMBO_NODE_CDATA) {
      if (!isBlank(child->v.text.text)) out << "text " << child->v.text.text << "\n";
      continue;
    }
    if (child->type != GUMBO_NODE_ELEMENT) continue;
    std::map<std::string, std::string> attributes;
    const GumboVector& list = child->v.element.attributes;
    for (unsigned k = 0; k < list.length; ++k) {
      const auto* a = static_cast<const GumboAttribute*>(list.data[k]);
      attributes[a->name] = a->value;
    }
    const char* name = gumbo_normalized_tagname(child->v.element.tag);
    out << "<" << name;
    for (const auto& [k, v] : attributes) out << " " << k << "=" << v;
    out << ">\n";
    dumpHtml(child, out);
    out << "</" << name << ">\n";
  }
}
#endif

// Parses the document both ways; both parsers must accept it and build the same tree.
void expectPolyglot(const std::string& html, const std::string& label) {
  pugi::xml_document xml;
  ASSERT_TRUE(xml.load_string(html.c_str())) << label;
  std::ostringstream fromXml;
  dumpXml(xml, fromXml);
#if ORMIDA_HAVE_GUMBO
  GumboOutput* output = gumbo_parse_with_options(&kGumboDefaultOptions, html.data(), html.size());
  std::ostringstream fromHtml;
  dumpHtml(output->document, fromHtml);
  EXPECT_EQ(output->errors.length, 0u) << label << ": HTML5 parse errors";
  EXPECT_EQ(output->document->v.document.doc_type_quirks_mode, GUMBO_DOCTYPE_NO_QUIRKS) << label;
  gumbo_destroy_output(&kGumboDefaultOptions, output);
  EXPECT_EQ(fromHtml.str(), fromXml.str()) << label;
#else
  std::cout << "[  NOTE    ] " << label << ": no HTML5 parser (gumbo) in this build; XML only\n";
#endif
}

TEST(HtmlWriterTest, GoldenPagesReadAlikeAsXmlAndHtml5) {
  const std::string samples = ORMIDA_SOURCE_DIR "/data/samples/";
  const std::pair<std::string, std::filesystem::path> cases[] = {
      {"letter", samples + "hocr-letter-eng-truth.hocr"},
      {"two-columns", samples + "two-columns.hocr"},
      {"table", qent::test::testData("html/table.hocr")},
      {"no-geometry", qent::test::testData("html/no-geometry.json")},
      {"empty", qent::test::testData("hocr/empty-layout.hocr")},
  };
  for (const auto& [name, input] : cases) {
    const std::string html = HtmlWriter().write(*readFile(input));
    expectPolyglot(html, name);
    qent::test::expectGolden("html/" + name + ".html", html);
  }
}

TEST(HtmlWriterTest, ValuesFromTheLayoutCannotBreakOutOfStyleOrText) {
  auto root = std::make_unique<Content>();
  root->setTypeName(u"node");
  Page& page = root->appendChild(std::make_unique<Page>());
  page.setLanguage("en\" onload=\"x");
  Word& word = page.appendChild(std::make_unique<Word>());
  word.setRect({10, 10, 50, 20});
  word.setText(u"</style><b>&amp;");
  word.setFontFamily(u"Evil</style><script>alert(1)</script>\"\\\n&");
  word.setColor({1, 2, 3});
  Layout layout(std::move(root));
  layout.setDocumentName(u"</title>");
  const std::string html = HtmlWriter().write(layout);
  expectPolyglot(html, "hostile values");
  pugi::xml_document xml;
  ASSERT_TRUE(xml.load_string(html.c_str()));
  const std::string sheet = xml.select_node("//style").node().text().get();
  EXPECT_NE(sheet.find(R"(Evil\3c /style\3e \3c script\3e alert(1)\3c /script\3e \22 \5c \a \26 ")"),
            std::string::npos)
      << sheet;
  EXPECT_EQ(std::string(xml.select_node("//span").node().text().get()), "</style><b>&amp;");
  EXPECT_FALSE(xml.select_node("//*[@lang]")) << "a language that is no language tag";
}

// Pages of rows of columns; a column holds one area or, in one column of a row, two areas
// one above the other. Areas are shuffled in the tree, so only the cut can order them.
struct GeneratedPage {
  std::unique_ptr<Layout> layout;
  std::vector<std::string> words;  // in reading order
};

GeneratedPage generate(std::mt19937& random) {
  auto pick = [&](int low, int high) { return std::uniform_int_distribution<int>(low, high)(random); };
  GeneratedPage out;
  auto root = std::make_unique<Content>();
  root->setTypeName(u"node");
  auto addWord = [&](Node& parent) -> Word& {
    out.words.push_back("w" + std::to_string(out.words.size() + 1));
    auto& word = parent.appendChild(std::make_unique<Word>());
    word.setText(qent::base::utf8ToUtf16(out.words.back()));
    return word;
  };
  for (int p = pick(1, 3); p > 0; --p) {
    Page& page = root->appendChild(std::make_unique<Page>());
    page.setWidth(1200);
    std::vector<std::unique_ptr<Node>> areas;
    auto makeArea = [&](int left, int top, int width, int height) {
      auto box = std::make_unique<Box>();
      box->setRect({left, top, width, height});
      for (int y = top; y + 30 <= top + height; y += 40) {
        auto& line = box->appendChild(std::make_unique<Line>());
        line.setRect({left, y, width, 30});
        for (int x = left; x + 50 <= left + width; x += 60 + pick(0, 40)) {
          addWord(line).setRect({x, y, 50, 30});
        }
      }
      areas.push_back(std::move(box));
    };
    int top = 50;
    for (int r = pick(1, 4); r > 0; --r) {
      const int columns = pick(1, 3), width = 1100 / columns, stacked = pick(0, columns);
      const int height = 80 + 40 * pick(1, 4);
      for (int c = 0; c < columns; ++c) {
        const int left = 50 + c * width;
        if (c == stacked) {
          makeArea(left, top, width - 40, height / 2 - 20);
          makeArea(left, top + height / 2, width - 40, height / 2);
        } else {
          makeArea(left, top, width - 40 - pick(0, 40), height - pick(0, 40));
        }
      }
      top += height + pick(20, 120);
    }
    std::shuffle(areas.begin(), areas.end(), random);
    for (auto& area : areas) page.appendChild(std::move(area));
    // Words without geometry flow after the areas, in document order.
    for (int k = pick(0, 2); k > 0; --k) addWord(page);
  }
  out.layout = std::make_unique<Layout>(std::move(root));
  return out;
}

TEST(HtmlWriterTest, WritesEveryWordOnceInReadingOrder) {
  std::mt19937 random(7);
  for (int round = 0; round < 60; ++round) {
    const GeneratedPage page = generate(random);
    const std::string html = HtmlWriter().write(*page.layout);
    pugi::xml_document xml;
    ASSERT_TRUE(xml.load_string(html.c_str())) << "round " << round;
    std::vector<std::string> words;
    for (const pugi::xpath_node text : xml.select_nodes("//body//text()")) {
      std::istringstream split(text.node().value());
      for (std::string word; split >> word;) words.push_back(word);
    }
    ASSERT_EQ(words, page.words) << "round " << round << "\n" << html;
  }
}

}  // namespace
