// RegionTemplatesTest.cpp - region templates through the C interface: the bundled form,
// words on a region's edge, keywords, page selections and every template error.
#include "ormida/ormida.h"

#include "dataextract/PageSelection.h"
#include "support/Golden.h"
#include "support/JobApi.h"
#include "support/TempDir.h"

#include <gtest/gtest.h>

#include <stdexcept>
#include <string>

namespace {

using qent::dataextract::PageSelection;
using qent::test::Job;
using qent::test::readAll;
using qent::test::TempDir;

const std::filesystem::path kSamples = std::filesystem::path(ORMIDA_SOURCE_DIR) / "data" / "samples";

// One page of 1000 x 1000 pixels; the lines stand in reverse reading order in the file and
// "12,50" lies 40 % inside the region used below (left 0, top 0, width 524, height 300).
constexpr const char* kEdgePage = R"({"root":{"type":"page","width":1000,"height":1000,"children":[
 {"type":"line","left":100,"top":200,"width":400,"height":40,"children":[
  {"type":"word","text":"Betrag","left":100,"top":200,"width":100,"height":40,"confidence":60}]},
 {"type":"line","left":100,"top":100,"width":500,"height":40,"children":[
  {"type":"word","text":"12,50","left":500,"top":100,"width":60,"height":40,"confidence":90},
  {"type":"word","text":"TOTAL:","left":100,"top":100,"width":100,"height":40}]}]}})";

class RegionTemplatesTest : public ::testing::Test {
protected:
  void SetUp() override {
    job_.set("WorkSpace", dir_.path().string());
    job_.set("CheckMask", "true");
  }
  std::string run(const std::string& input, const std::string& regions) {
    dir_.write("in.json", input);
    job_.set("InputFilename", "in.json");
    job_.set("CheckMask.Regions", regions);
    EXPECT_EQ(job_.execute(), ORMIDA_OK) << job_.errorText();
    return job_.get("CheckMask.Result").second;
  }

  TempDir dir_;
  Job job_;
};

TEST_F(RegionTemplatesTest, GoldenResultOfTheBundledForm) {
  job_.set("CheckMask.OutputFilename", "result.json");
  const std::string result = run(readAll(kSamples / "form-invoice.json"),
                                 readAll(kSamples / "form-invoice.template.json"));
  qent::test::expectGolden("regions/form-invoice.result.json", result);
  EXPECT_EQ(readAll(dir_ / "result.json"), result);
}

struct EdgeCase {
  const char* threshold;
  const char* keywords;
  const char* result;
};

class RegionEdgeTest : public RegionTemplatesTest, public ::testing::WithParamInterface<EdgeCase> {};

TEST_P(RegionEdgeTest, SelectsOrdersAndSearches) {
  job_.set("CheckMask.OverlapThreshold", GetParam().threshold);
  const std::string regions = std::string(R"({"regions":[{"name":"sum","left":0,"top":0,)") +
                              R"("width":524,"height":300,"keywords":)" + GetParam().keywords +
                              "}]}";
  EXPECT_EQ(run(kEdgePage, regions), GetParam().result);
}

INSTANTIATE_TEST_SUITE_P(
    Thresholds, RegionEdgeTest,
    ::testing::Values(
        // Any overlap takes the word in; lines top to bottom, words left to right.
        EdgeCase{"0", R"(["total", "tot", "Betrag"])",
                 R"({"matched":true,"regions":[{"confidence":75.0,"keywordsFound":["total","Betrag"],)"
                 R"("keywordsMissing":["tot"],"name":"sum","page":1,"text":"TOTAL: 12,50\nBetrag","words":3}]})"},
        // 40 % inside is not half; a keyword with blanks spans the line break.
        EdgeCase{"0.5", R"(["total:  betrag", "12,50"])",
                 R"({"matched":true,"regions":[{"confidence":60.0,"keywordsFound":["total:  betrag"],)"
                 R"("keywordsMissing":["12,50"],"name":"sum","page":1,"text":"TOTAL:\nBetrag","words":2}]})"},
        EdgeCase{"0.4", R"(["50", "TAL"])",
                 R"({"matched":true,"regions":[{"confidence":75.0,"keywordsFound":["50"],)"
                 R"("keywordsMissing":["TAL"],"name":"sum","page":1,"text":"TOTAL: 12,50\nBetrag","words":3}]})"},
        EdgeCase{"1", R"(["12"])",
                 R"({"matched":false,"regions":[{"confidence":60.0,"keywordsFound":[],)"
                 R"("keywordsMissing":["12"],"name":"sum","page":1,"text":"TOTAL:\nBetrag","words":2}]})"}));

struct TemplateError {
  const char* name;
  std::string regions;
  const char* message;
};

class RegionTemplateErrorTest : public RegionTemplatesTest,
                                public ::testing::WithParamInterface<TemplateError> {};

TEST_P(RegionTemplateErrorTest, FailsWithAMessageNamingRegionAndMember) {
  dir_.write("in.json", kEdgePage);
  job_.set("InputFilename", "in.json");
  job_.set("CheckMask.Regions", GetParam().regions);
  EXPECT_EQ(job_.execute(), 20020u);
  EXPECT_EQ(job_.errorText(), std::string("error in OrmidaJobExecute: ") + GetParam().message);
  EXPECT_EQ(job_.get("CheckMask.Result").first, ORMIDA_UNKNOWN_PROPERTY);
}

const std::string kRect = R"("left":1,"top":2,"width":3,"height":4)";

INSTANTIATE_TEST_SUITE_P(
    Templates, RegionTemplateErrorTest,
    ::testing::Values(
        TemplateError{"NotJson", "{regions:[]}",
                      "Region template: not valid JSON: Missing a name for object member. (byte 1)"},
        TemplateError{"TooDeep", std::string(40, '[') + std::string(40, ']'),
                      "Region template: values nested deeper than 32 levels"},
        TemplateError{"KeywordEscapesALoneSurrogate",
                      R"({"regions":[{"name":"a","left":1,"top":2,"width":3,"height":4,"keywords":["x\udc00"]}]})",
                      "Region template: a string escapes a lone surrogate (\\ud800 to \\udfff unpaired)"},
        TemplateError{"NoRegions", R"({"regions":[]})", "Region template: \"regions\" holds no region"},
        TemplateError{"MissingRectangle", R"({"regions":[{"name":"a","left":1,"top":2,"width":3}]})",
                      "Region template: region 1 (\"a\"): \"height\" is missing; a region needs "
                      "left, top, width and height"},
        TemplateError{"NegativeSize", R"({"regions":[{"name":"a","left":1,"top":2,"width":-3,"height":4}]})",
                      "Region template: region 1 (\"a\"): \"width\" must be greater than 0"},
        TemplateError{"UnknownUnit", R"({"regions":[{"name":"a","unit":"mm","left":1,"top":2,"width":3,"height":4}]})",
                      "Region template: region 1 (\"a\"): \"unit\" must be \"px\" or \"permille\""},
        TemplateError{"BeyondThePage", R"({"regions":[{"name":"a","unit":"permille","left":900,"top":2,"width":300,"height":4}]})",
                      "Region template: region 1 (\"a\"): \"width\" reaches beyond 1000 permille"},
        TemplateError{"BadPages", R"({"regions":[{"name":"a","pages":"1,4-2","left":1,"top":2,"width":3,"height":4}]})",
                      "Region template: region 1 (\"a\"): \"pages\" \"4-2\" ends before it begins"},
        TemplateError{"UnknownMember", R"({"regions":[{"name":"a","widht":3}]})",
                      "Region template: region 1 (\"a\"): \"widht\" is not a member of a region (a misspelling?)"},
        TemplateError{"NameTwice", R"({"regions":[{"name":"a","left":1,"top":2,"width":3,"height":4},{"name":"a","left":1,"top":2,"width":3,"height":4}]})",
                      "Region template: region 2 (\"a\"): \"name\" is used by an earlier region"}),
    [](const auto& c) { return std::string(c.param.name); });

TEST_F(RegionTemplatesTest, RefusesAThresholdOutsideZeroToOneAndPermilleWithoutAPageSize) {
  dir_.write("in.json", R"({"root":{"type":"page","children":[]}})");
  job_.set("InputFilename", "in.json");
  job_.set("CheckMask.Regions", R"({"regions":[{"name":"a","unit":"permille",)" + kRect + "}]}");
  EXPECT_EQ(job_.execute(), 20020u);
  EXPECT_EQ(job_.errorText(), "error in OrmidaJobExecute: Region template: region \"a\" is "
                              "measured in permille, but page 1 states no size");
  job_.set("CheckMask.OverlapThreshold", "1.5");
  EXPECT_EQ(job_.execute(), 20020u);
  EXPECT_EQ(job_.errorText(), "error in OrmidaJobExecute: CheckMask.OverlapThreshold: must be "
                              "between 0 and 1, is 1.500000");
}

struct SelectionCase {
  const char* text;
  const char* pages;  // of five, or the start of the error message
};

class PageSelectionTest : public ::testing::TestWithParam<SelectionCase> {};

TEST_P(PageSelectionTest, SelectsPagesOfFive) {
  std::string pages;
  try {
    const PageSelection selection = PageSelection::parse(GetParam().text);
    for (std::uint32_t page = 0; page <= 6; ++page) {
      if (selection.selects(page, 5)) pages += std::to_string(page) + " ";
    }
  } catch (const std::invalid_argument& e) {
    pages = e.what();
  }
  EXPECT_EQ(pages, GetParam().pages);
}

INSTANTIATE_TEST_SUITE_P(
    Selections, PageSelectionTest,
    ::testing::Values(SelectionCase{"all", "1 2 3 4 5 "}, SelectionCase{"first", "1 "},
                      SelectionCase{" LAST , 1 ", "1 5 "}, SelectionCase{"2-4", "2 3 4 "},
                      SelectionCase{"4-last", "4 5 "}, SelectionCase{"last-last", "5 "},
                      SelectionCase{"3-3,7", "3 "}, SelectionCase{"1,3,last", "1 3 5 "},
                      SelectionCase{"0", "\"0\" names page 0; pages count from 1"},
                      SelectionCase{"last-2", "\"last-2\" ends before it begins"},
                      SelectionCase{"1,,2", "\"1,,2\" has an empty item"},
                      SelectionCase{"two", "\"two\" is not a page number, a range such as 2-4, "
                                           "first, last or all"},
                      SelectionCase{"1-", "\"1-\" is not a page number, a range such as 2-4, "
                                          "first, last or all"}));

}  // namespace
