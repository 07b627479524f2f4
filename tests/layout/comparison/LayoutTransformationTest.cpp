// LayoutTransformationTest.cpp - aligning a layout's pages onto another's, and undoing it.
#include "layout/comparison/LayoutTransformation.h"

#include "layout/Layout.h"
#include "support/LayoutDump.h"

#include <gtest/gtest.h>

#include <memory>

namespace qent::test {
namespace {

using text::layout::comparison::Alignment;
using text::layout::comparison::LayoutTransformation;

struct TransformCase {
  const char* name;
  const char* moving;
  const char* fixed;
  Alignment alignment;
  int pageOffset;
  const char* want;
};

void PrintTo(const TransformCase& c, std::ostream* out) { *out << c.name; }

class LayoutTransformationTest : public ::testing::TestWithParam<TransformCase> {};

TEST_P(LayoutTransformationTest, MovesThePagesAndPutsThemBack) {
  const TransformCase& c = GetParam();
  auto moving = parseLayout(c.moving);
  auto fixed = parseLayout(c.fixed);
  {
    LayoutTransformation transformation(*moving, *fixed, c.alignment, c.pageOffset);
    EXPECT_EQ(dump(*moving), c.want);
  }
  EXPECT_EQ(dump(*moving), c.moving) << "restored when the transformation ends";
}

INSTANTIATE_TEST_SUITE_P(
    Alignments, LayoutTransformationTest,
    ::testing::Values(
        TransformCase{"corner translates rectangles and polygons",
                      "Content:node{Page{Line[10,20,50,10]{Word[10,20,20,10]\"a\"(poly=\"10 20;30 30\")}}}",
                      "Content:node{Page{Word[110,70,5,5]\"x\"}}", Alignment::Corner, 0,
                      "Content:node{Page{Line[110,70,50,10]{Word[110,70,20,10]\"a\"(poly=\"110 70;130 80\")}}}"},
        TransformCase{"none leaves everything",
                      "Content:node{Page{Word[10,20,20,10]\"a\"}}",
                      "Content:node{Page{Word[110,70,5,5]\"x\"}}", Alignment::None, 0,
                      "Content:node{Page{Word[10,20,20,10]\"a\"}}"},
        TransformCase{"center scales to the other page's size",
                      "Content:node{Page(w=100,h=100){Word[10,10,20,10]\"a\",Word[50,40,10,10]\"b\"}}",
                      "Content:node{Page(w=200,h=200){Word[20,20,100,80]\"x\"}}", Alignment::Center, 0,
                      "Content:node{Page(w=200,h=200){Word[20,20,40,20]\"a\",Word[100,80,20,20]\"b\"}}"},
        TransformCase{"the page offset picks the counterpart; pages without one stay",
                      "Content:node{Page{Word[0,0,5,5]\"a\"},Page{Word[0,0,5,5]\"b\"}}",
                      "Content:node{Page{Word[7,7,5,5]\"x\"},Page{Word[50,60,5,5]\"y\"}}",
                      Alignment::Corner, 1,
                      "Content:node{Page{Word[50,60,5,5]\"a\"},Page{Word[0,0,5,5]\"b\"}}"}),
    [](const auto& param) { return "Case" + std::to_string(param.index); });

}  // namespace
}  // namespace qent::test
