// XmlWriterTest.cpp - the streaming XML writer against pugixml's indented print of the same
// document, for random documents with mixed content and every character that needs escaping.
#include "base/xml/XmlWriter.h"

#include <gtest/gtest.h>
#include <pugixml.hpp>

#include <random>

namespace {

class PugiString : public pugi::xml_writer {
public:
  void write(const void* data, std::size_t size) override {
    text.append(static_cast<const char*>(data), size);
  }
  std::string text;
};

std::string randomText(std::mt19937& random) {
  static const char* const pieces[] = {"a", "Wort", " ", "&", "<", ">", "\"", "'", "\t", "\n",
                                       "\r", "\xC3\xA4", "\xE2\x82\xAC", "x y", ";", "="};
  std::string text;
  for (int n = std::uniform_int_distribution<>(0, 4)(random); n > 0; --n) {
    text += pieces[std::uniform_int_distribution<>(0, 15)(random)];
  }
  return text;
}

// Appends the same random subtree to the DOM and to the streaming writer.
void grow(std::mt19937& random, pugi::xml_node parent, qent::base::xml::XmlWriter& writer,
          int depth) {
  static const char* const names[] = {"div", "span", "p", "br"};
  const int children = depth > 4 ? 0 : std::uniform_int_distribution<>(0, 4)(random);
  for (int i = 0; i < children; ++i) {
    if (std::uniform_int_distribution<>(0, 3)(random) == 0) {
      const std::string text = randomText(random);
      parent.append_child(pugi::node_pcdata).set_value(text.c_str());
      writer.text(text);
      continue;
    }
    const char* name = names[std::uniform_int_distribution<>(0, 3)(random)];
    pugi::xml_node element = parent.append_child(name);
    writer.startElement(name);
    for (int a = std::uniform_int_distribution<>(0, 2)(random); a > 0; --a) {
      const std::string key = "k" + std::to_string(a);
      const std::string value = randomText(random);
      element.append_attribute(key.c_str()).set_value(value.c_str());
      writer.attribute(key, value);
    }
    grow(random, element, writer, depth + 1);
    writer.endElement();
  }
}

TEST(XmlWriterTest, WritesWhatAnIndentedDomPrintWrites) {
  for (unsigned seed = 1; seed <= 300; ++seed) {
    std::mt19937 random(seed);
    pugi::xml_document document;
    pugi::xml_node declaration = document.append_child(pugi::node_declaration);
    declaration.append_attribute("version").set_value("1.0");
    declaration.append_attribute("encoding").set_value("UTF-8");
    document.append_child(pugi::node_doctype).set_value("html PUBLIC \"x\"");
    pugi::xml_node html = document.append_child("html");

    qent::base::StringSink sink;
    qent::base::xml::XmlWriter writer(sink);
    writer.declaration("1.0", "UTF-8");
    writer.doctype("html PUBLIC \"x\"");
    writer.startElement("html");
    grow(random, html, writer, 0);
    writer.endElement();
    writer.finish();

    PugiString expected;
    document.save(expected, " ", pugi::format_indent, pugi::encoding_utf8);
    ASSERT_EQ(sink.text(), expected.text) << "seed " << seed;
  }
}

}  // namespace
