// HocrPropertiesTest.cpp - the hOCR title/style grammar: property maps, the stream-style
// bbox numbers and the "\s+" split (both checked against the standard facilities they
// replace) and colours; version lists are read with the reader's meta elements.
#include "hocr/HocrProperties.h"

#include <gtest/gtest.h>

#include <locale>
#include <map>
#include <random>
#include <regex>
#include <sstream>
#include <stdexcept>

namespace {

using namespace qent::text::hocr;
using Map = std::map<std::string, std::string>;

Map entriesOf(const PropertyMap& map) {
  Map out;
  for (const auto& e : map.entries()) out.emplace(std::string(e.key), std::string(e.value));
  return out;
}

struct MapCase {
  const char* title;  // nullptr: no title attribute
  const char* style;  // nullptr: no style attribute
  Map want;
};

TEST(PropertyMapTest, SplitsTitleAndStyle) {
  const MapCase cases[] = {
      {"bbox 0 0 100 50; x_wconf 93", nullptr, {{"bbox", "0 0 100 50"}, {"x_wconf", "93"}}},
      {"image \"1.jpg\";bbox 1 2 3 4", nullptr, {{"image", "\"1.jpg\""}, {"bbox", "1 2 3 4"}}},
      {"  x_foo   1 2  ", nullptr, {{"x_foo", "1 2"}}},
      {"hardbreak", nullptr, {{"hardbreak", ""}}},
      {"x_wconf 1; x_wconf 2; x_wconf 3", nullptr, {{"x_wconf", "3"}}},
      {"bbox 1 2 3 4;", nullptr, {{"bbox", "1 2 3 4"}, {"", ""}}},
      {nullptr, "font-weight: bold; font-size:12pt",
       {{"font-weight", "bold"}, {"font-size", "12pt"}}},
      {nullptr, "color : rgb(1, 2, 3)", {{"color", "rgb(1, 2, 3)"}}},
      {nullptr, "font-family: a:b", {{"font-family", "a:b"}}},
      {"font-weight normal", "font-weight: bold; font-style: italic",
       {{"font-weight", "normal"}, {"font-style", "italic"}}},
      {"bbox\t1 2", nullptr, {{"bbox\t1", "2"}}}};
  for (const MapCase& k : cases) {
    PropertyMap map;
    if (k.title) map.addTitle(k.title);
    if (k.style) map.addStyle(k.style);
    EXPECT_EQ(entriesOf(map), k.want) << (k.title ? k.title : "-") << " / " << (k.style ? k.style : "-");
  }
}

TEST(PropertyMapTest, ManyDistinctKeysStayFast) {
  // A hostile title with 200,000 pieces must not take quadratic time.
  std::string title;
  for (int i = 0; i < 200000; ++i) title += "k" + std::to_string(i) + " v;";
  PropertyMap map;
  map.addTitle(title);
  EXPECT_EQ(map.entries().size(), 200001u);
  EXPECT_EQ(map.take("k199999"), "v");
}

// --- stream-style integers, against std::istringstream itself --------------------------

std::array<std::int32_t, 4> streamReference(const std::string& text) {
  std::istringstream in(text);
  in.imbue(std::locale::classic());
  std::array<int, 4> v{0, 0, 0, 0};
  in >> v[0] >> v[1] >> v[2] >> v[3];
  return {v[0], v[1], v[2], v[3]};
}

TEST(ReadFourIntegersTest, AgreesWithStreamExtraction) {
  std::vector<std::string> texts = {
      "10.5 20 30 40", "abc 1 2 3", "0x10 2 3 4", "+5 -6 7 8", "99999999999 1 2 3",
      "-99999999999 1 2 3", "3000000000 1 2 3", "- 5 1 2 3", "12abc 1 2 3", "1\t2\n3 4",
      "-2147483648 2147483647 0 0", "2147483648 1 1 1", "-2147483649 1 1 1",
      "99999999999999999999999999 1", "007 -0 +0 8", "1e3 4 5 6", "  \v\f 3 4 5 6"};
  std::mt19937 random(20240517);
  const std::string alphabet = "0123456789 -+.x\t9";
  for (int round = 0; round < 20000; ++round) {
    std::string& text = texts.emplace_back();
    for (int i = static_cast<int>(random() % 40); i > 0; --i) {
      text.push_back(alphabet[random() % alphabet.size()]);
    }
  }
  for (const std::string& text : texts) {
    ASSERT_EQ(readFourIntegers(text), streamReference(text)) << '"' << text << '"';
  }
}

// --- "\s+" split, against std::regex -----------------------------------------------------

std::vector<std::string> regexSplit(const std::string& text) {
  static const std::regex separator("\\s+");
  std::vector<std::string> out;
  for (std::sregex_token_iterator it(text.begin(), text.end(), separator, -1), end; it != end;
       ++it) {
    out.push_back(it->str());
  }
  return out;
}

TEST(SplitAtSpaceTest, AgreesWithRegularExpressionSplit) {
  std::mt19937 random(7);
  const std::string alphabet = "ab1 \t\n";
  std::vector<std::string> texts = {"", " ", "a", " a b", "a b ", "a  b", "0.01 -3"};
  for (int round = 0; round < 5000; ++round) {
    std::string text;
    const int length = static_cast<int>(random() % 12);
    for (int i = 0; i < length; ++i) text.push_back(alphabet[random() % alphabet.size()]);
    texts.push_back(text);
  }
  for (const std::string& text : texts) {
    std::vector<std::string> got;
    for (const std::string_view piece : splitAtSpace(text)) got.emplace_back(piece);
    ASSERT_EQ(got, regexSplit(text)) << '"' << text << '"';
  }
}

// --- colours -----------------------------------------------------------------------------

// "r g b", "none", or the text of the conversion error.
std::string colorOf(const char* text) {
  try {
    const auto rgb = parseColor(text);
    if (!rgb) return "none";
    return std::to_string((*rgb)[0]) + " " + std::to_string((*rgb)[1]) + " " +
           std::to_string((*rgb)[2]);
  } catch (const std::exception& e) {
    return e.what();
  }
}

TEST(ParseColorTest, ReadsTheRgbForm) {
  const std::pair<const char*, const char*> cases[] = {
      {"rgb(255, 0, 10)", "255 0 10"}, {"RGB( 1 ,2, 3 )", "1 2 3"},
      {" r g b ( 4,5,6)", "4 5 6"},    {"rgb(300,-1,256)", "44 255 0"},
      {"rgb(1,2,3)trailing", "1 2 3"}, {"rgb(1.9,2,3)", "1 2 3"},
      {"rgb(\t7\t,8,9)", "7 8 9"},     {"#ff0000", "none"},
      {"rgba(1,2,3,4)", "none"},       {"rgb(1,2)", "none"},
      {"rgb(1,2,3,4)", "none"},        {"rgb(1,2,3", "none"},
      {"", "none"},                    {"rgb(a,b,c)", "invalid stoi argument"},
      {"rgb(1,2,)", "invalid stoi argument"},
      {"rgb(1,2,99999999999)", "stoi argument out of range"}};
  for (const auto& [text, want] : cases) EXPECT_EQ(colorOf(text), want) << text;
}

}  // namespace
