// RandomDump.cpp - see RandomDump.h.
#include "support/RandomDump.h"

#include <iterator>

namespace qent::test {
namespace {

template <class Pool>
std::string pick(std::mt19937& random, const Pool& pool) {
  return pool[random() % std::size(pool)];
}

// Up to `most` entries of the pool, each after a comma.
template <class Pool>
std::string some(std::mt19937& random, const Pool& pool, unsigned most) {
  std::string out;
  for (unsigned i = random() % (most + 1); i > 0; --i) out += "," + pick(random, pool);
  return out;
}

std::string node(std::mt19937& random, int depth, RandomTrees kind) {
  static const char* const kClasses[] = {"Content", "Content", "Page", "Box", "Line", "Word",
      "Word", "Glyph", "Field", "Picture", "Node", "Fragment", "Image"};
  static const char* const kIds[] = {"", "", "", "#n1", "#n1", "#1", "#\"a b\"", "#word_1_1",
      "#block_1_1", "#page_1", "#\"p\xC3\xA9\""};
  static const char* const kTypes[] = {"", ":node", ":body", ":div", ":span", ":br", ":ocr_carea",
      ":ocr_par", ":ocrx_table", ":region", ":em", ":ocrx_word", ":\"\\x06ocr_line\"", ":ocr_page",
      ":\"x y\"", ":\"\xC3\xBCnicode\""};
  static const char* const kTexts[] = {"", "\"word\"", "\"x;y\"", "\"  pad  \"",
      "\"\xC3\xA4\xE2\x82\xAC\"", "\"a\\x01b\"", "\"\\\"q\\\" <&>\"", "\"line_1_1\"", "\"1\"",
      "\"\xF0\x9F\x98\x80/\\\\\xEF\xBC\x81\"", "\"x_.\\n\xC3\x9F\""};
  static const char* const kRects[] = {"", "", "[0,0,5,5]", "[-20,10,0,3]", "[2147483600,500,99,1]",
      "[10,1,0,0]", "[-2147483648,-50,900,0]"};
  static const char* const kAttributes[] = {"@x_foo=\"1 2 3 4\"", "@lang=\"a;b\"", "@dir=rtl",
      "@bbox=\"1 2 3 4\"", "@x_wconf=x", "@style=\"font-weight: bold\"", "@class=bold", "@\"\"=1",
      "@\"a b\"=\" pad \"", "@image=\"\"", "@font-weight=bold", "@ppageno=-7",
      "@x_size=99999999999", "@title=1", "@id=x", "@\"xml:lang\"=x", "@data-x=\"rgb(1,2,3)\"",
      "@x_bboxes=\"1 2 3 4\"", "@\"\\x06x_wconf\"=1", "@\"\\x06bbox\"=\"1 2 3 4\"",
      "@poly=\"a;b\"", "@x_entity=E", "@max_ascenders=old", "@image_source=s",
      "@baseline_coefficients=\"1 2\"", "@\"\xEF\xBC\x81\"=a", "@\"\xF0\x90\x80\x80\"=b",
      "&aux=\"not written\""};
  static const char* const kFragmentFields[] = {"conf=93", "conf=1e-07", "conf=0.5",
      "conf=123456.789012", "size=12345.678", "size=-0", "family=\"x;y\"", "family=word",
      "style=3", "weight=2", "color=\"7 0 255\"", "bg=\"1 200 3\"", "color=\"unset 4 5 6\"",
      "angle=-1", "angle=1e+20", "base=\"0.5 -1\"", "base=\"-987654.321 2.5e-13 0\"",
      "poly=\"2147483600 2;3 0\"", "sens=0.5", "entity=PER", "entity=\"a;b\""};
  static const char* const kUnfaithfulFields[] = {"style=4", "weight=5"};
  static const char* const kPageFields[] = {"w=2147483600", "h=2999", "h=4294967295", "lang=deu",
      "lang=\"\xC3\xA4\"", "angle=0.5", "index=7", "pnum=2", "pfloat=1"};
  static const char* const kLineFields[] = {"asc=93", "desc=-1", "gh=0.5", "asc=1e+21",
      "desc=-3.25e-05"};
  static const char* const kWordFields[] = {"checked=2", "checked=18446744073709551615",
      "rejected=1099511627776"};
  static const char* const kBoxFields[] = {"kind=3", "kind=12", "kind=29"};

  const bool any = kind == RandomTrees::Any;
  std::string cls = depth == 0 ? "Content" : pick(random, kClasses);
  if (!any && cls == "Fragment") cls = "Line";
  std::string result = cls + pick(random, kIds);
  std::string fields = some(random, kAttributes, 3);
  std::string children;
  if (cls == "Content") result += pick(random, kTypes);
  if (cls == "Box" && any) result += pick(random, kTypes);
  const bool fragment = cls != "Content" && cls != "Page" && cls != "Node" && cls != "Image";
  if (fragment) {
    result += pick(random, kRects);
    fields += some(random, kFragmentFields, 4);
    if (any) fields += some(random, kUnfaithfulFields, 1);
  }
  if (cls != "Page" && cls != "Node") result += pick(random, kTexts);
  if (cls == "Page") {
    fields += some(random, kPageFields, 3);
    if (random() % 2 == 0) children += ",Image" + pick(random, kTexts);
  }
  if (cls == "Box" && any) fields += some(random, kBoxFields, 1);
  if (cls == "Line") fields += some(random, kLineFields, 3);
  if (cls == "Word") fields += some(random, kWordFields, 2);
  if (cls == "Picture") fields += ",src=\"x;y\"";
  if (!fields.empty()) result += "(" + fields.substr(1) + ")";
  for (unsigned i = depth < 6 ? random() % (depth == 0 ? 4 : 3) : 0; i > 0; --i) {
    children += "," + node(random, depth + 1, kind);
  }
  return children.empty() ? result : result + "{" + children.substr(1) + "}";
}

}  // namespace

std::string randomDump(std::mt19937& random, RandomTrees kind) { return node(random, 0, kind); }

}  // namespace qent::test
