// JSONRoundTripTest.cpp - writer and reader together: random trees survive a round trip
// byte for byte, golden documents, and the JSON conformance suite.
#include "layout/format/JSONReader.h"
#include "layout/format/JSONWriter.h"

#include "base/QentException.h"
#include "layout/Layout.h"
#include "layout/Nodes.h"
#include "support/LayoutBuilders.h"
#include "support/LayoutDump.h"
#include "support/TempDir.h"
#include "support/Golden.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <limits>
#include <random>
#include <stdexcept>
#include <string>
#include <vector>

namespace qent::test {
namespace {

using namespace qent::text::layout;
using qent::text::layout::format::JSONReader;
using qent::text::layout::format::JSONWriter;

// Random trees over every class and field. A faithful tree leaves out what the format
// deliberately does not carry back (boxes of kinds other than content areas, plain fragments,
// font codes without a name), so its document must survive a round trip unchanged.
class RandomTrees {
public:
  RandomTrees(unsigned seed, bool faithful) : random_(seed), faithful_(faithful) {}

  std::unique_ptr<Layout> layout() {
    auto top = root();
    const int pages = pick(0, 3);
    for (int i = 0; i < pages; ++i) top->appendChild(node(1));
    return layoutOf(std::move(top));
  }

private:
  std::mt19937 random_;
  bool faithful_;

  int pick(int low, int high) { return std::uniform_int_distribution<int>(low, high)(random_); }
  bool maybe(int percent = 50) { return pick(1, 100) <= percent; }

  std::u16string text(int maxLength = 6) {
    static const std::u16string kPieces[] = {u"a", u"Z", u"7", u" ", u"\"", u"\\", u"/", u"\n",
                                             u"\x01", u"\u00e4", u"\u20ac", u"\U0001F600",
                                             u"\uFF01", u"\u00df", u"x_", u"."};
    std::u16string out;
    const int length = pick(0, maxLength);
    for (int i = 0; i < length; ++i) out += kPieces[pick(0, 15)];
    return out;
  }
  double number() {
    switch (pick(0, 5)) {
      case 0: return 0;
      case 1: return pick(-100, 100);
      case 2: return pick(-100, 100) / 4.0;
      case 3: return std::uniform_real_distribution<double>(-1e6, 1e6)(random_);
      case 4: return std::uniform_real_distribution<double>(0, 1)(random_) * 1e-12;
      default: return pick(1, 9) * 1e20;
    }
  }
  std::int32_t coordinate() {
    return maybe(80) ? pick(-50, 5000)
                     : (maybe() ? std::numeric_limits<std::int32_t>::max()
                                : std::numeric_limits<std::int32_t>::min());
  }

  void common(Node& n) {
    if (maybe(30)) n.setId(text(4));
    const int attributes = maybe(60) ? 0 : pick(1, 4);
    static const std::u16string kKeys[] = {u"x_entity", u"max_ascenders", u"x_checked",
                                           u"image_source", u"baseline_coefficients",
                                           u"conf", u"\u00e4", u"\U0001F600", u"\uFF01", u"k"};
    for (int i = 0; i < attributes; ++i) n.setAttribute(kKeys[pick(0, 9)] + text(1), text());
    if (maybe(10)) n.auxiliaryAttributes()[u"aux"] = u"not written";
  }

  void fragment(Fragment& f) {
    if (maybe(70)) f.setText(text());
    if (maybe(70)) {
      f.setRect(Rect{coordinate(), coordinate(), maybe(90) ? pick(0, 900) : 0,
                     maybe(90) ? pick(0, 90) : 0});
    }
    if (maybe(40)) f.setConfidence(maybe(20) ? 0 : std::abs(number()));
    if (maybe(20)) f.setFontFamily(text());
    if (maybe(20)) f.setFontSize(maybe() ? -0.0 : std::abs(number()));
    const int lastCode = faithful_ ? 3 : 5;
    if (maybe(20)) f.setFontStyle(static_cast<std::uint32_t>(pick(0, lastCode)));
    if (maybe(20)) f.setFontWeight(static_cast<std::uint32_t>(pick(0, lastCode)));
    if (maybe(20)) f.setTextangle(number());
    if (maybe(20)) f.setXEntity(maybe() ? "PER" : "B-LOC I\xC3\xA4");
    if (maybe(15)) {
      std::vector<Point> points;
      for (int i = pick(1, 4); i > 0; --i) points.push_back(Point{coordinate(), coordinate()});
      f.setPolygon(points);
    }
    if (maybe(15)) {
      std::vector<double> coefficients;
      for (int i = pick(1, 3); i > 0; --i) coefficients.push_back(number());
      f.setBaseline(coefficients);
    }
    auto rgb = [&] {
      return Rgb{static_cast<std::uint8_t>(pick(0, 255)), static_cast<std::uint8_t>(pick(0, 255)),
                 static_cast<std::uint8_t>(pick(0, 255))};
    };
    if (maybe(15)) f.setColor(rgb());
    if (maybe(15)) f.setBackgroundColor(rgb());
    if (maybe(10)) f.setHasColor(false);
  }

  std::unique_ptr<Node> node(int depth) {
    static const std::u16string kContentNames[] = {u"ocrx_note", u"node", u"x y",
                                                   u"\u00fcnicode", u"", u"ocrx_table"};
    std::unique_ptr<Node> made;
    int kind = pick(0, 10);
    if (faithful_ && kind == 7) kind = 4;  // no plain fragment
    switch (kind) {
      case 0: {
        auto p = std::make_unique<Page>();
        if (maybe()) p->setWidth(static_cast<std::uint32_t>(pick(0, 5000)));
        if (maybe()) p->setHeight(maybe(90) ? static_cast<std::uint32_t>(pick(0, 5000)) : 4294967295u);
        if (maybe()) p->setLanguage(maybe() ? "de" : "\xC3\xA4");
        if (maybe()) p->setIndexInLayout(static_cast<std::uint32_t>(pick(0, 9)));
        if (maybe()) p->setTextangle(number());
        if (maybe(10)) p->setAuxiliaryFloat(1);
        made = std::move(p);
        break;
      }
      case 1: made = image(text()); break;
      case 2: made = content(kContentNames[pick(0, 5)], text()); break;
      case 3: {
        auto b = std::make_unique<Box>();
        if (!faithful_ && maybe()) b->setBoxKind(static_cast<std::uint32_t>(pick(0, 30)));
        fragment(*b);
        made = std::move(b);
        break;
      }
      case 4: {
        auto l = std::make_unique<Line>();
        fragment(*l);
        if (maybe(30)) l->setMaxAscenders(number());
        if (maybe(30)) l->setMaxDescenders(number());
        if (maybe(30)) l->setMaxGlyphHeight(number());
        made = std::move(l);
        break;
      }
      case 5: {
        auto w = std::make_unique<Word>();
        fragment(*w);
        if (maybe(20)) w->setXChecked(maybe() ? 1 : std::numeric_limits<std::uint64_t>::max());
        if (maybe(20)) w->setXRejected(static_cast<std::uint64_t>(pick(0, 3)));
        if (maybe(20)) w->setXSensibility(number());
        for (int i = pick(0, 3); i > 0; --i) {
          if (maybe(80)) w->appendChild(glyph(text(1), {}, maybe() ? -1 : pick(0, 100)));
          else w->appendChild(content(u"c", text(2)));
        }
        return w;  // its children are glyphs and contents, never written
      }
      case 6: made = with(std::make_unique<Glyph>(), [&](Glyph& g) { fragment(g); }); break;
      case 7: made = with(std::make_unique<Fragment>(), [&](Fragment& f) { fragment(f); }); break;
      case 8: made = with(std::make_unique<Field>(), [&](Field& f) { fragment(f); }); break;
      case 9:
        made = with(std::make_unique<Picture>(), [&](Picture& p) {
          fragment(p);
          if (maybe()) p.setImageSource(text());
        });
        break;
      default: made = std::make_unique<Node>(); break;
    }
    common(*made);
    if (depth < 6) {
      for (int i = pick(0, depth < 3 ? 4 : 2); i > 0; --i) made->appendChild(node(depth + 1));
    }
    return made;
  }
};

std::string roundTrip(const std::string& json) {
  return JSONWriter().write(*JSONReader().read(json));
}

TEST(JSONRoundTripTest, WriterDocumentsSurviveUnchanged) {
  for (unsigned seed = 1; seed <= 300; ++seed) {
    auto layout = RandomTrees(seed, true).layout();
    const std::string json = JSONWriter().write(*layout);
    ASSERT_EQ(roundTrip(json), json) << "seed " << seed << "\n" << dump(*layout);
  }
}

TEST(JSONRoundTripTest, EveryDocumentIsStableAfterOneRoundTrip) {
  for (unsigned seed = 1; seed <= 300; ++seed) {
    auto layout = RandomTrees(seed, false).layout();
    const std::string once = roundTrip(JSONWriter().write(*layout));
    ASSERT_EQ(roundTrip(once), once) << "seed " << seed << "\n" << dump(*layout);
  }
}

TEST(JSONRoundTripTest, KeepsPagesLinesWordsAndTextsButNotTheGlyphsOfWords) {
  auto layout = parseLayout(
      "Content:node{Page(w=100,h=50){Box[0,0,100,50]{Line[1,2,30,10]{Word[1,2,10,10]\"ab\"{"
      "Glyph[1,2,5,10]\"a\"(conf=90),Glyph[6,2,5,10]\"b\"(conf=70)},Word[15,2,16,10]\"cd\"}}}}");
  // Containers without a confidence of their own are written with their glyphs' mean.
  EXPECT_EQ(dump(*JSONReader().read(JSONWriter().write(*layout))),
            "Content:node{Page(w=100,h=50){Box[0,0,100,50](conf=80){Line[1,2,30,10](conf=80){Word["
            "1,2,10,10]\"ab\"(conf=80),Word[15,2,16,10]\"cd\"}}}}");
}

TEST(JSONRoundTripTest, BoxKindsOtherThanContentAreasComeBackAsContents) {
  auto layout = parseLayout("Content:node{Box:ocrx_table[1,1,5,5]\"t\"(conf=3,@k=v){Line}}");
  EXPECT_EQ(dump(*JSONReader().read(JSONWriter().write(*layout))),
            "Content:node{Content:ocrx_table\"t\"(@k=v){Line}}");
}

// Every member the format knows, once.
const char* const kAllMembers =
    "Content#doc:node(@producer=test){Image\"page1.png\",Page#p1(w=2480,h=3508,lang=de,"
    "index=0,angle=0.5){Box#b1[100,200,2000,300](conf=93,@x_entity=ignored){Line#l1[100,200,"
    "900,40](asc=30,desc=8,gh=38,base=\"0.01 -2.5\",@style=\"heading 1\"){Word#w1[100,200,400,"
    "40]\"Rechnung\"(size=12,family=\"DejaVu Serif\",style=1,weight=3,color=\"0 0 0\",bg=\"255 "
    "255 255\",entity=B-MISC,checked=1,sens=0.75){Glyph\"R\"(conf=96)},Word#w2[520,200,480,"
    "40]\"Nr.\xC3\xA4\"(conf=88.25,rejected=2,poly=\"520 200;1000 200;1000 240;520 240\"),Word{"
    "Content:ocrx_cinfo\"17\"}}},Box:ocrx_table[100,600,2000,900]\"table\"{Field[120,620,300,"
    "50]\"field\"},Picture#pic[100,1600,800,600](src=\"figure 1.png\",angle=90),Fragment[1,1,1,"
    "1],Glyph[0,0,0,5]\"x\"(conf=0),Content:ocrx_note\"note\",Node#n}}";

TEST(JSONGoldenTest, WritesEveryMember) {
  auto layout = parseLayout(kAllMembers);
  expectGolden("json/all-members.json", JSONWriter().write(*layout));
}

TEST(JSONGoldenTest, ReadsTheWrittenDocumentBack) {
  const auto file = std::filesystem::path(ORMIDA_TEST_DATA_DIR) / "json" / "all-members.json";
  const std::string json = readAll(file);
  // The other box kind and the plain fragment come back as contents without geometry; the
  // rest is carried back unchanged, so a second round trip changes nothing.
  const std::string once = roundTrip(json);
  EXPECT_EQ(roundTrip(once), once);
  EXPECT_EQ(dump(*JSONReader().read(json)),
            "Content#doc:node(@producer=test){Image\"page1.png\",Page#p1(w=2480,h=3508,lang=de,"
            "angle=0.5){Box#b1[100,200,2000,300](conf=93,entity=ignored){Line#l1[100,200,900,40]("
            "conf=96,base=\"0.01 -2.5\",asc=30,desc=8,gh=38,@style=\"heading 1\"){Word#w1[100,200,"
            "400,40]\"Rechnung\"(conf=96,size=12,family=\"DejaVu Serif\",style=1,weight=3,sens=0.75,"
            "entity=B-MISC,color=\"0 0 0\",bg=\"255 255 255\",checked=1),Word#w2[520,200,480,40]"
            "\"Nr.\xC3\xA4\"(conf=88.25,poly=\"520 200;1000 200;1000 240;520 240\",rejected=2),Word"
            "\"17\"}},Content:ocrx_table\"table\"{Field[120,620,300,50]\"field\"},Picture#pic[100,"
            "1600,800,600](angle=90,src=\"figure 1.png\"),Content:fragment,Glyph[0,0,0,5]\"x\"("
            "conf=0),Content:ocrx_note\"note\",Content#n:node}}");
}

// A document as a person or another tool might write it: blanks, members in any order,
// numbers in attributes, members the reader does not know.
TEST(JSONGoldenTest, ReadsAHandMadeDocument) {
  const auto file = std::filesystem::path(ORMIDA_TEST_DATA_DIR) / "json" / "hand-made.json";
  auto layout = JSONReader().read(readAll(file));
  EXPECT_EQ(dump(*layout),
            "Content:node{Page(w=1000,h=1400,lang=en){Box[10,10,500,100]{Line[10,10,500,30](@"
            "dpi=300.000000){Word[10,10,100,30]\"Hello\"(conf=91,@lang=en,@score=0.500000),Word["
            "120,10,100,30]\"world\"(conf=80)}},Content:ocrx_table(@rows=3.000000)}}");
  expectGolden("json/hand-made.written.json", JSONWriter().write(*layout));
}

// None of the conformance suite's documents is a layout; each must get the reader's
// documented answer: valid JSON with an object on top lacks a root, everything else is not
// a layout document at all.
TEST(JSONConformanceTest, AnswersEveryDocumentOfTheSuite) {
  const auto folder = std::filesystem::path(ORMIDA_TEST_DATA_DIR) / "third_party" / "json-test-suite";
  int files = 0;
  for (const auto& entry : std::filesystem::directory_iterator(folder)) {
    const std::string name = entry.path().filename().string();
    if (entry.path().extension() != ".json") continue;
    ++files;
    const std::string json = readAll(entry.path());
    std::string message = "read";
    try {
      JSONReader().read(json);
    } catch (const base::QentException& e) {
      message = e.what();
    } catch (const std::invalid_argument& e) {
      message = e.what();
    }
    const std::size_t first = json.find_first_not_of(" \t\r\n");
    const bool object = first != std::string::npos && json[first] == '{';
    if (name[0] == 'y') {
      EXPECT_EQ(message, object ? "Root node is not found" : "Failed to parse JSON layout") << name;
    } else if (name[0] == 'n') {
      EXPECT_EQ(message, "Failed to parse JSON layout") << name;
    } else {
      EXPECT_TRUE(message == "Failed to parse JSON layout" || message == "Root node is not found")
          << name << ": " << message;
    }
  }
  EXPECT_GT(files, 300);
}

}  // namespace
}  // namespace qent::test
