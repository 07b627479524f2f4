// HocrStructure.cpp - a structural check of written hOCR, independent of the writer's code.
#include "hocr/HocrStructure.h"

#include <pugixml.hpp>

#include <optional>
#include <regex>
#include <set>
#include <sstream>

namespace qent::test {

namespace {

std::vector<std::string> split(const std::string& text, char delimiter) {
  std::vector<std::string> pieces;
  std::stringstream in(text);
  for (std::string piece; std::getline(in, piece, delimiter);) pieces.push_back(piece);
  return pieces;
}

}  // namespace

std::vector<std::string> hocrStructureProblems(std::string_view hocr) {
  std::vector<std::string> problems;
  pugi::xml_document document;
  const auto parsed = document.load_buffer(hocr.data(), hocr.size());
  if (!parsed) return {std::string("not XML: ") + parsed.description()};

  const pugi::xml_node html = document.child("html");
  if (!html || std::string(html.attribute("xmlns").value()) != "http://www.w3.org/1999/xhtml") {
    problems.push_back("no XHTML html element");
  }
  const pugi::xml_node head = html.child("head");
  if (!html.child("body")) problems.push_back("no body");
  auto metaContent = [&](const char* name) -> std::optional<std::string> {
    const pugi::xml_node meta = head.find_child_by_attribute("meta", "name", name);
    if (!meta) return std::nullopt;
    return std::string(meta.attribute("content").value());
  };
  if (!metaContent("ocr-system")) problems.push_back("no ocr-system meta");

  std::set<std::string> used;
  std::set<std::string> ids;
  int pages = 0;
  static const std::regex kBbox(R"(^(-?\d+) (-?\d+) (-?\d+) (-?\d+)$)");
  static const std::regex kNumber(R"(^-?\d+(\.\d+)?([eE][-+]?\d+)?$)");
  for (const pugi::xpath_node& hit : html.child("body").select_nodes("descendant-or-self::*")) {
    const pugi::xml_node element = hit.node();
    const std::string name = element.name();
    if (name.rfind("ocr_", 0) == 0 || name.rfind("ocrx_", 0) == 0) {
      problems.push_back("element named like a class: " + name);
    }
    const std::string cls = element.attribute("class").value();
    if (cls.rfind("ocr_", 0) == 0 || cls.rfind("ocrx_", 0) == 0) {
      used.insert(cls);
      const std::string want =
          cls == "ocr_par" ? "p" : (cls == "ocr_line" || cls == "ocrx_word") ? "span" : "div";
      if (name != want) problems.push_back(cls + " on <" + name + ">");
      if (cls == "ocr_page") ++pages;
    }
    if (const pugi::xml_attribute id = element.attribute("id")) {
      if (!ids.insert(id.value()).second) problems.push_back(std::string("duplicate id ") + id.value());
    }
    if (element.attribute("lang") || element.attribute("xml:lang")) used.insert("ocrp_lang");
    if (element.attribute("dir")) used.insert("ocrp_dir");
    if (std::string(element.attribute("style").value()).find("font") != std::string::npos) {
      used.insert("ocrp_font");
    }
    static const std::regex kProperty(R"(^\s*(\S*)\s*([\s\S]*?)\s*$)");
    for (const std::string& piece : split(element.attribute("title").value(), ';')) {
      std::smatch m;
      std::regex_match(piece, m, kProperty);
      const std::string key = m[1], value = m[2];
      if (key == "bbox") {
        if (!std::regex_match(value, m, kBbox) || std::stoll(m[1]) > std::stoll(m[3]) ||
            std::stoll(m[2]) > std::stoll(m[4])) {
          problems.push_back("bad bbox \"" + value + "\" on <" + name + ">");
        }
      } else if (key == "x_wconf") {
        used.insert("ocrp_wconf");
        if (cls == "ocrx_word" && !std::regex_match(value, kNumber)) {
          problems.push_back("bad x_wconf " + value);
        }
      } else if (key == "poly") {
        used.insert("ocrp_poly");
      } else if (key.rfind("x_font", 0) == 0 || key.rfind("font-", 0) == 0) {
        used.insert("ocrp_font");
      }
    }
  }

  const std::optional<std::string> capabilities = metaContent("ocr-capabilities");
  if (!capabilities) {
    problems.push_back("no ocr-capabilities meta");
  } else {
    std::set<std::string> listed;
    for (const std::string& c : split(*capabilities, ' ')) {
      if (!c.empty()) listed.insert(c);
    }
    if (listed != used) {
      std::string want;
      for (const std::string& c : used) want += c + " ";
      problems.push_back("capabilities \"" + *capabilities + "\", document uses " + want);
    }
  }
  if (metaContent("ocr-number-of-pages") != std::to_string(pages)) {
    problems.push_back("ocr-number-of-pages does not match " + std::to_string(pages) + " pages");
  }

  static const std::regex kSelfClosed(R"(<(span|div|p)\b[^>]*/>)");
  if (std::regex_search(std::string(hocr), kSelfClosed)) {
    problems.push_back("an empty span, div or p written as <x/>");
  }
  return problems;
}

}  // namespace qent::test
