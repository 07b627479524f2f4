// CopierTest.cpp - shallow, deep and single-page copies, and the split of a layout into pages.
#include "layout/DeepCopier.h"
#include "layout/Layout.h"
#include "layout/MoveSinglePageCopier.h"
#include "layout/Nodes.h"
#include "layout/ShallowCopier.h"
#include "support/LayoutDump.h"

#include <gtest/gtest.h>

#include <string>

namespace qent::test {
namespace {

using namespace qent::text::layout;

std::string shallowCopy(const std::string& tree) {
  auto node = parseDump(tree);
  ShallowCopier copier;
  node->accept(copier);
  auto copy = copier.takeResult();
  EXPECT_EQ(copier.result(), nullptr);
  return copy ? dump(*copy) : "none";
}

std::string deepCopy(const std::string& tree) {
  auto node = parseDump(tree);
  DeepCopier copier;
  node->accept(copier);
  auto copy = copier.takeResult();
  EXPECT_EQ(dump(*node), tree) << "the source must stay as it was";
  return copy ? dump(*copy) : "none";
}

TEST(ShallowCopierTest, CopiesOwnFieldsOfSupportedClassesOnly) {
  const std::pair<const char*, const char*> cases[] = {
      {"Glyph#g[1,2,3,4]\"a\"(conf=50,color=\"1 2 3\",@k=v){Glyph}",
       "Glyph#g[1,2,3,4]\"a\"(conf=50,color=\"1 2 3\",@k=v)"},
      {"Word[1,1,1,1]\"w\"(conf=9,size=12,family=F,style=2,weight=3,sens=0.5,angle=90,"
       "entity=PER,poly=\"1 2;3 4\",base=\"1 2\",bg=\"unset 4 5 6\",checked=1,rejected=2,"
       "&aux=1){Glyph\"w\"}",
       "Word[1,1,1,1]\"w\"(conf=9,size=12,family=F,style=2,weight=3,sens=0.5,angle=90,"
       "entity=PER,poly=\"1 2;3 4\",base=\"1 2\",bg=\"unset 4 5 6\",checked=1,rejected=2,"
       "&aux=1)"},
      // The auxiliary map first: a fragment's extras are its details all the same.
      {"Word(&aux=1,size=12)", "Word(size=12,&aux=1)"},
      {"Line(asc=1,desc=2,gh=3){Word}", "Line(asc=1,desc=2,gh=3)"},
      {"Box:my_area{Line}", "Box:my_area"},
      {"Box:ocrx_box(kind=22)", "Box:ocrx_box(kind=22)"},
      {"Page(w=1,h=2,lang=en,index=3,angle=4,pfloat=5,pnum=6){Line}",
       "Page(w=1,h=2,lang=en,index=3,angle=4,pfloat=5,pnum=6)"},
      {"Image#i\"a.png\"", "Image#i\"a.png\""},
      {"Content:node\"t\"(@a=b){Page}", "Content:node\"t\"(@a=b)"},
      // The unsupported classes leave the copy of the last supported node reached.
      {"Picture(src=s)", "none"},
      {"Fragment", "none"},
      // Supported classes do not descend, so "c" below "b" is never reached.
      {"Field{Word\"a\",Picture{Glyph\"b\"{Glyph\"c\"}},Field}", "Glyph\"b\""}};
  for (const auto& [tree, copy] : cases) EXPECT_EQ(shallowCopy(tree), copy) << tree;
}

TEST(DeepCopierTest, CopiesTheSubtreeWithoutTheUnsupportedClasses) {
  const std::pair<const char*, const char*> cases[] = {
      {"Page(w=5){Line[0,0,9,9]{Word\"ab\"(conf=1){Glyph\"a\",Glyph\"b\"},Word\"c\"},"
       "Box:ocrx_table{Line}}",
       "Page(w=5){Line[0,0,9,9]{Word\"ab\"(conf=1){Glyph\"a\",Glyph\"b\"},Word\"c\"},"
       "Box:ocrx_table{Line}}"},
      // Without a supported descendant an unsupported node drops out with its subtree...
      {"Content:node{Image\"i\",Page{Picture,Field{Field},Word\"kept\"},Node}",
       "Content:node{Image\"i\",Page{Word\"kept\"}}"},
      // ...with one, that descendant's copy stands in and receives the node's children.
      {"Page{Picture{Word\"w\"{Glyph\"g\"}}}", "Page{Word\"w\"{Word\"w\"{Glyph\"g\"}}}"},
      {"Picture", "none"}};
  for (const auto& [tree, copy] : cases) EXPECT_EQ(deepCopy(tree), copy) << tree;
}

TEST(MoveSinglePageCopierTest, KeepsOnlyTheWantedPageAndMovesItsSubtree) {
  auto root = parseDump(
      "Content:node{Image\"a\",Page(index=0){Word\"p0\"},Page{Word\"p1\",Page{Word\"p2\"}},"
      "Box{Page{Word\"p3\"},Word\"shared\"}}");
  struct Expected {
    std::uint32_t index;
    const char* copy;
  };
  // Each copier runs on a fresh tree, since the wanted page's children are moved out.
  for (const Expected& e :
       {Expected{0, "Content:node{Image\"a\",Page{Word\"p0\"},Box{Word\"shared\"}}"},
        Expected{1, "Content:node{Image\"a\",Page{Word\"p1\",Page{Word\"p2\"}},"
                    "Box{Word\"shared\"}}"},
        // Page p2 sits in page p1, which is either skipped or moved whole, so the copier
        // never counts it: p3 is index 2, and index 3 finds no page.
        Expected{2, "Content:node{Image\"a\",Box{Page{Word\"p3\"},Word\"shared\"}}"},
        Expected{3, "Content:node{Image\"a\",Box{Word\"shared\"}}"},
        Expected{4, "Content:node{Image\"a\",Box{Word\"shared\"}}"}}) {
    auto source = parseDump(dump(*root));
    MoveSinglePageCopier copier(e.index);
    source->accept(copier);
    EXPECT_EQ(dump(*copier.takeResult()), e.copy) << e.index;
  }
  // Index 1 keeps page 2 because page 2 is moved as part of page 1's subtree, unvisited.
  MoveSinglePageCopier copier(1);
  root->accept(copier);
  EXPECT_EQ(dump(*root),
            "Content:node{Image\"a\",Page{Word\"p0\"},Page,Box{Page{Word\"p3\"},Word\"shared\"}}");
}

TEST(LayoutTest, SplitIntoPagesGivesOneLayoutPerPageAndEmptiesTheSource) {
  auto layout = parseLayout(
      "Content:node{Page(index=0){Line{Word\"a\"}},Page(index=1){Word\"b\"},Page(index=2){Box{"
      "Word\"c\"}}}");
  auto pages = layout->splitIntoPages();
  ASSERT_EQ(pages.size(), 3u);
  EXPECT_EQ(dump(*pages[0]), "Content:node{Page{Line{Word\"a\"}}}");
  EXPECT_EQ(dump(*pages[1]), "Content:node{Page(index=1){Word\"b\"}}");
  EXPECT_EQ(dump(*pages[2]), "Content:node{Page(index=2){Box{Word\"c\"}}}");
  EXPECT_EQ(dump(*layout), "Content:node{Page,Page(index=1),Page(index=2)}");
  EXPECT_TRUE(parseLayout("Content:node{Word\"a\"}")->splitIntoPages().empty());
  EXPECT_TRUE(Layout().splitIntoPages().empty());
}

TEST(LayoutTest, SplitOfNestedPagesMovesTheInnerPageWithTheOuterOne) {
  auto layout = parseLayout("Content:node{Page{Word\"a\",Page{Word\"b\"}}}");
  auto pages = layout->splitIntoPages();
  // Two pages are counted, but the inner one travels inside the outer one, so the second
  // layout finds no page of its own.
  ASSERT_EQ(pages.size(), 2u);
  EXPECT_EQ(dump(*pages[0]), "Content:node{Page{Word\"a\",Page{Word\"b\"}}}");
  EXPECT_EQ(dump(*pages[1]), "Content:node");
}

}  // namespace
}  // namespace qent::test
