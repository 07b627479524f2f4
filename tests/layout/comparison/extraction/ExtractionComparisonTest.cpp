// ExtractionComparisonTest.cpp - zones, assignment, partial nodes, scoring and page pairing of
// the extraction comparison, on trees stated as dump text.
#include "base/QentException.h"
#include "base/Unicode.h"
#include "layout/Layout.h"
#include "layout/Node.h"
#include "layout/comparison/extraction/ExtractionComparison.h"
#include "support/LayoutDump.h"

#include <gtest/gtest.h>

#include <functional>
#include <random>

namespace qent::test {
namespace {

using text::layout::comparison::Alignment;
using text::layout::comparison::CompareLevel;
using text::layout::comparison::ExtractionOptions;
using namespace text::layout::comparison::extraction;

std::string index(const std::optional<std::uint32_t>& page) {
  return page ? std::to_string(*page) : "-";
}

// "[main,reference] errors/count: id'extracted'errors/count ..." per page, joined by " | ".
// Appended piece by piece: GCC 12 warns falsely on "literal" + a temporary string.
std::string describe(const ExtractionResult& result) {
  std::string out;
  auto counts = [&](std::uint64_t errors, std::uint64_t count) {
    out += std::to_string(errors);
    out += '/';
    out += std::to_string(count);
  };
  for (const PageResult& page : result.pages) {
    out += out.empty() ? "[" : " | [";
    out += index(page.mainPage);
    out += ',';
    out += index(page.referencePage);
    out += "] ";
    counts(page.errors, page.count);
    out += ':';
    for (const ZoneResult& zone : page.zones) {
      out += ' ';
      out += base::utf16ToUtf8(zone.id);
      out += '\'';
      out += base::utf16ToUtf8(zone.extracted);
      out += '\'';
      counts(zone.errors, zone.count);
    }
  }
  return out;
}

std::string run(const std::string& mainPages, const std::string& referencePages,
                const std::function<void(ExtractionOptions&)>& change = {}) {
  ExtractionOptions options;
  options.alignment = Alignment::None;
  if (change) change(options);
  const auto main = parseLayout("Content:node{" + mainPages + "}");
  const auto reference = parseLayout("Content:node{" + referencePages + "}");
  return describe(compareExtraction(options, *main, *reference));
}

// Two zones side by side, a line of text in each.
const std::string kTwoZones =
    "Page{Box#A[0,0,100,100]{Line[10,10,80,20]\"abc\"},Box#B[100,0,100,100]{Line[110,10,80,20]\"xyz\"}}";

TEST(ExtractionComparisonTest, AssignsScoresAndPairsAsTheOptionsSay) {
  struct Case {
    const char* title;
    std::string main;
    std::string reference;
    std::function<void(ExtractionOptions&)> change;
    const char* want;
  };
  auto set = [](auto member, auto value) {
    return [=](ExtractionOptions& o) { o.*member = value; };
  };
  const auto removal = &ExtractionOptions::removeMatchingBoxes;
  const auto partial = &ExtractionOptions::partialSegmentationErrors;
  const auto offset = &ExtractionOptions::pageOffset;
  // 60 % of this line lies in A, 40 % in B.
  const std::string straddling = "Page{Line[40,10,100,20]\"abcxyz\"}";
  // A quarter of this line lies in A, the rest below every zone.
  const std::string mostlyOutside = "Page{Line[10,90,80,40]\"abc\"}";
  const Case cases[] = {
      {"exact", "Page{Line[10,10,80,20]\"abd\",Line[110,10,80,20]\"xyz\"}", kTwoZones, {},
       "[0,0] 1/6: A'abd'1/3 B'xyz'0/3"},
      {"whole zones", "Page{Line[10,10,80,20]\"abd\"}", kTwoZones,
       set(&ExtractionOptions::editDistance, false), "[0,0] 2/2: A'abd'1/1 B''1/1"},
      {"straddling, removed", straddling, kTwoZones, {}, "[0,0] 6/6: A'abcxyz'3/3 B''3/3"},
      // B holds 40 %: a partial node there, 3 edits and 4 of 6 characters outside.
      {"straddling, kept", straddling, kTwoZones, set(removal, false),
       "[0,0] 10/6: A'abcxyz'3/3 B'abcxyz'7/3"},
      {"straddling, kept, no partials", straddling, kTwoZones,
       [=](ExtractionOptions& o) { o.*removal = false; o.*partial = false; },
       "[0,0] 6/6: A'abcxyz'3/3 B''3/3"},
      {"partial counted", mostlyOutside, kTwoZones, {}, "[0,0] 5/6: A'abc'2/3 B''3/3"},
      {"partial left out", mostlyOutside, kTwoZones, set(partial, false),
       "[0,0] 6/6: A''3/3 B''3/3"},
      {"partial, whole zones", mostlyOutside, kTwoZones,
       set(&ExtractionOptions::editDistance, false), "[0,0] 2/2: A'abc'1/1 B''1/1"},
      {"reading order", "Page{Word[60,0,40,10]\"cd\",Word[0,2,40,10]\"ab\",Word[0,20,40,10]\"ef\"}",
       "Page{Box#A[0,0,100,40]{Word[0,0,40,10]\"ab\",Word[60,0,40,10]\"cd\",Word[0,20,40,10]\"ef\"}}",
       set(&ExtractionOptions::level, CompareLevel::Word), "[0,0] 0/8: A'ab cd ef'0/8"},
      {"lines as zones", "Page{Line[0,0,100,20]\"ab\",Line[0,30,100,20]\"cx\"}",
       "Page{Line#l1[0,0,100,20]\"ab\",Line#l2[0,30,100,20]\"cd\",Box[0,60,9,9]}", {},
       "[0,0] 1/4: l1'ab'0/2 l2'cx'1/2"},
      {"nested areas and a field", "Page{Line[0,60,100,20]\"cell\",Line[0,0,200,20]\"head\"}",
       "Page{Box#T[0,0,200,100]{Line[0,0,200,20]\"head\",Box#C[0,50,100,50]{Line[0,60,100,20]"
       "\"cell\"}},Field#F[300,0,50,20]\"42\"}",
       {}, "[0,0] 2/10: T'head'0/4 C'cell'0/4 F''2/2"},
      {"positive offset", "Page{Line[10,10,80,20]\"abc\"},Page{Line[10,10,80,20]\"q\"}",
       kTwoZones + "," + kTwoZones, set(offset, 1),
       "[-,0] 6/6: A''3/3 B''3/3 | [0,1] 3/6: A'abc'0/3 B''3/3 | [1,-] 1/1:"},
      {"negative offset", "Page{Line[0,0,9,9]\"sep\"},Page{Line[10,10,80,20]\"abc\"}", kTwoZones,
       set(offset, -1), "[0,-] 3/3: | [1,0] 3/6: A'abc'0/3 B''3/3"},
      {"offset beyond the pages", "Page{Line[10,10,80,20]\"abc\"}", kTwoZones,
       set(offset, 2147483647), "[-,0] 6/6: A''3/3 B''3/3 | [0,-] 3/3:"},
  };
  for (const Case& c : cases) {
    EXPECT_EQ(run(c.main, c.reference, c.change), c.want) << c.title;
  }
}

TEST(ExtractionComparisonTest, RefusesARecognisedNodeWithoutArea) {
  EXPECT_THROW(
      {
        try {
          run("Page{Line\"abc\"}", kTwoZones);
        } catch (const base::QentException& e) {
          EXPECT_STREQ(e.what(), "Width or Height of Rectangle must be > 0");
          throw;
        }
      },
      base::QentException);
}

// A recognition that is its own reference scores perfectly with every option, whatever the
// zones look like, as long as each line lies inside its own area.
TEST(ExtractionComparisonTest, AGridOfZonesAgainstItselfHasNoErrors) {
  std::mt19937 random(7);
  for (int round = 0; round < 50; ++round) {
    std::string page = "Page{";
    std::uint64_t characters = 0;
    auto rect = [&](int left, int top, const char* size) {
      page += '[';
      page += std::to_string(left);
      page += ',';
      page += std::to_string(top);
      page += size;
    };
    for (int z = 0; z < 12; ++z) {
      const int left = (z % 3) * 300 + static_cast<int>(random() % 50);
      const int top = (z / 3) * 200 + static_cast<int>(random() % 50);
      page += z == 0 ? "Box" : ",Box";
      rect(left, top, ",200,150]{");
      for (int l = 0; l < 3; ++l) {
        const std::string text = std::to_string(random());
        characters += text.size() + (l == 0 ? 0 : 1);  // joined by blanks
        page += l == 0 ? "Line" : ",Line";
        rect(left + 5, top + 5 + l * 45, ",190,40]\"");
        page += text;
        page += '"';
      }
      page += '}';
    }
    page += '}';
    const auto layout = parseLayout("Content:node{" + page + "}");
    ExtractionOptions options;
    options.removeMatchingBoxes = round % 2 == 0;
    options.editDistance = round % 3 != 0;
    const ExtractionResult result = compareExtraction(options, *layout, *layout);
    EXPECT_EQ(result.errors, 0u) << describe(result);
    EXPECT_EQ(result.count, options.editDistance ? characters : 12u);
  }
}

}  // namespace
}  // namespace qent::test
