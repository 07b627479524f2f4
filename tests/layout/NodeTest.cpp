// NodeTest.cpp - the glyph-mean confidence, box names, rectangles, node text and the
// visitor's slots.
#include "layout/Layout.h"
#include "layout/NodeText.h"
#include "layout/NodeVisitor.h"
#include "layout/Nodes.h"
#include "support/LayoutDump.h"

#include <gtest/gtest.h>

#include <stdexcept>
#include <string>
#include <vector>

namespace qent::test {
namespace {

using namespace qent::text::layout;

Fragment& fragmentOf(const std::unique_ptr<Node>& node) { return static_cast<Fragment&>(*node); }

TEST(FragmentConfidenceTest, MeanOfGlyphsAtAnyDepthIsComputedOnceAndKept) {
  auto w = parseDump("Word\"abc\"{Glyph\"a\"(conf=80),Glyph\"b\"(conf=90),Glyph\"c\"}");
  EXPECT_DOUBLE_EQ(fragmentOf(w).confidence(), 85);
  EXPECT_DOUBLE_EQ(fragmentOf(w).storedConfidence(), 85);
  static_cast<Glyph&>(w->child(0)).setConfidence(10);
  EXPECT_DOUBLE_EQ(fragmentOf(w).confidence(), 85);

  auto l = parseDump("Line{Word{Glyph(conf=60)},Box{Word{Glyph(conf=70),Glyph(conf=100)}}}");
  EXPECT_DOUBLE_EQ(fragmentOf(l).confidence(), 230.0 / 3);
  EXPECT_EQ(fragmentOf(parseDump("Line(conf=0){Glyph(conf=60)}")).confidence(), 0)
      << "a stored value wins";
  auto none = parseDump("Line{Word{Glyph},Word}");
  EXPECT_LT(fragmentOf(none).confidence(), 0);
  EXPECT_EQ(fragmentOf(none).storedConfidence(), -1);
  EXPECT_EQ(fragmentOf(parseDump("Glyph{Glyph(conf=50)}")).confidence(), -1)
      << "a glyph never averages its own children";
}

TEST(FragmentConfidenceTest, MeanOfConfidencesNearTheLargestDoubleStaysFinite) {
  // Their plain sum is infinity, which no writer can put into a document.
  auto w = parseDump("Word{Glyph(conf=1.7e308),Glyph(conf=1.5e308),Glyph(conf=0)}");
  EXPECT_NEAR(fragmentOf(w).confidence(), 1.7e308 / 3 + 1.5e308 / 3, 1e295);
  auto top = parseDump("Word{Glyph(conf=1.7976931348623157e308),Glyph(conf=1.7976931348623157e308)}");
  EXPECT_EQ(fragmentOf(top).confidence(), 1.7976931348623157e308);
}

TEST(BoxTest, TypeNameFollowsTheKindUnlessSetByName) {
  Box b;
  b.setTypeName(u"my_region");
  EXPECT_EQ(b.boxKind(), Box::kCustomKind);
  EXPECT_EQ(b.typeName(), u"my_region");
  b.setBoxKind(4000000000u);
  EXPECT_EQ(b.typeName(), u"ocrx_box") << "unknown kinds fall back to the generic box";
}

TEST(RectTest, InputAcceptsZeroSidesComputedNamesTheSideTooSmall) {
  EXPECT_EQ(Rect::fromInput(-1, -2, 0, 4), (Rect{-1, -2, 0, 4}));
  EXPECT_EQ(Rect::fromComputed(0, 0, 1, 1), (Rect{0, 0, 1, 1}));
  struct Case {
    Rect rect;
    bool computed;
    const char* error;
  };
  for (const Case& c : {Case{{0, 0, -1, 5}, false, "Width or Height of Rectangle must be > 0"},
                        Case{{0, 0, 5, -1}, false, "Width or Height of Rectangle must be > 0"},
                        Case{{0, 0, 0, 5}, true, "Width of Rectangle must be > 0"},
                        Case{{0, 0, 5, -3}, true, "Height of Rectangle must be > 0"},
                        Case{{0, 0, -5, 0}, true, "Width of Rectangle must be > 0"}}) {
    const Rect& r = c.rect;
    try {
      (void)(c.computed ? Rect::fromComputed(r.left, r.top, r.width, r.height)
                        : Rect::fromInput(r.left, r.top, r.width, r.height));
      ADD_FAILURE() << "accepted " << r.width << "x" << r.height;
    } catch (const std::invalid_argument& e) {
      EXPECT_STREQ(e.what(), c.error);
    }
  }
}

TEST(NodeTextTest, FragmentTextsInDocumentOrderThenContentTexts) {
  EXPECT_EQ(nodeText(*parseDump("Word\"ab\"{Glyph\"a\",Glyph\"b\"}")), u"abab");
  EXPECT_EQ(nodeText(*parseDump(
                "Line{Content:x\"C1\",Word\"ab\"{Content:y\"C2\"},Word\"cd\",Content:z\"C3\"}")),
            u"abcdC1C2C3");
  EXPECT_EQ(nodeText(*parseDump("Page{Box{Line{Word\"x\"}},Image\"i.png\"}")), u"x");
  EXPECT_EQ(nodeText(*parseDump("Content:t\"own\"{Word\"w\"}")), u"wown");
  EXPECT_EQ(contentText(*parseDump("Word\"ab\"{Content:x\"1\",Glyph\"a\",Content:y\"2\"}")),
            u"12");
}

// Records every slot a node passes through: each override hands on to the default of its own
// slot, so a node shows its own slot first and then where the defaults forward it.
class SlotRecorder : public NodeVisitor {
public:
  std::string seen;
  void visit(Picture& n) override { note("Picture", n); }
  void visit(Glyph& n) override { note("Glyph", n); }
  void visit(Word& n) override { note("Word", n); }
  void visit(Line& n) override { note("Line", n); }
  void visit(Field& n) override { note("Field", n); }
  void visit(Box& n) override { note("Box", n); }
  void visit(Fragment& n) override { note("Fragment", n); }
  void visit(Page& n) override { note("Page", n); }
  void visit(Image& n) override { note("Image", n); }
  void visit(Content& n) override { note("Content", n); }
  void visit(Node& n) override { note("Node", n); }

private:
  template <class T>
  void note(const char* name, T& node) {
    seen += std::string(name) + " ";
    NodeVisitor::visit(node);
  }
};

TEST(NodeVisitorTest, EveryClassReachesItsOwnSlotAndForwardsToFragmentOrNode) {
  auto tree =
      parseDump("Content:node{Page{Box{Line{Word{Glyph}}},Picture,Field,Fragment,Image,Node}}");
  SlotRecorder recorder;
  tree->accept(recorder);
  EXPECT_EQ(recorder.seen,
            "Content Node Page Node Box Fragment Node Line Fragment Node Word Fragment Node "
            "Glyph Fragment Node Picture Fragment Node Field Fragment Node Fragment Node "
            "Image Node Node ");
}

TEST(LayoutTest, KeepsVersionsInOrderAndRefusesInvalidText) {
  Layout layout;
  layout.addVersion(u"engine", u"5.3");
  layout.addVersion(u"engine", u"5.3");
  layout.addVersion(u"\u00e4", u"1");
  EXPECT_EQ(layout.versions(), (Layout::Versions{{"engine", "5.3"}, {"engine", "5.3"}, {"\xC3\xA4", "1"}}));
  EXPECT_THROW(layout.addVersion(std::u16string(1, u'\xD800'), u"1"), std::invalid_argument);
}

}  // namespace
}  // namespace qent::test
