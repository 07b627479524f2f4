// BestOfJobTest.cpp - the Best-Of step through the C interface: page size, raster and
// threshold rules with their trace lines, failures, and the merged layout as the new main
// document.
#include "ormida/ormida.h"

#include "support/JobApi.h"
#include "support/TempDir.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <utility>
#include <vector>

namespace {

using qent::test::Job;
using qent::test::readAll;
using qent::test::TempDir;

// One page of 1000 x 1400 pixels times `scale` with one line of words 150 pixels apart; a
// scale of 0 leaves the page without a size.
std::string layout(const std::vector<std::string>& words, double scale = 1) {
  const auto px = [&](int value) { return std::to_string(static_cast<int>(value * (scale ? scale : 1))); };
  std::string line = R"({"type":"line","left":)" + px(100) + R"(,"top":)" + px(100) +
                     R"(,"width":)" + px(400) + R"(,"height":)" + px(30) + R"(,"children":[)";
  for (std::size_t i = 0; i < words.size(); ++i) {
    line += (i ? "," : "");
    line += R"({"type":"word","text":")" + words[i] + R"(","left":)" +
            px(100 + static_cast<int>(i) * 150) + R"(,"top":)" + px(100) + R"(,"width":)" +
            px(100) + R"(,"height":)" + px(30) + "}";
  }
  std::string page = R"({"type":"page")";
  if (scale > 0) page += R"(,"width":)" + px(1000) + R"(,"height":)" + px(1400);
  return R"({"root":{"type":"node","children":[)" + page + R"(,"children":[)" + line + "]}]}]}}";
}

// A PNG's signature and header chunk: all that is read of it.
std::string pngHeader(std::uint32_t width, std::uint32_t height) {
  std::string png("\x89PNG\r\n\x1a\n\0\0\0\x0dIHDR", 16);
  for (const std::uint32_t v : {width, height}) {
    for (int shift = 24; shift >= 0; shift -= 8) png += static_cast<char>((v >> shift) & 0xff);
  }
  return png + std::string("\x08\x02\0\0\0\0\0\0\0", 9);
}

struct StepCase {
  const char* label;
  std::vector<std::pair<std::string, std::string>> properties;
  uint32_t code;
  std::string error;                 // the error text without the prefix; empty on success
  std::vector<std::string> trace;    // lines the trace must hold
  std::string output;                // the merged text; empty when the run fails
  std::string pageSize = "";         // "width height" of the merged page
};

class BestOfJobTest : public ::testing::TestWithParam<StepCase> {};

TEST_P(BestOfJobTest, RunsTheStepAsConfigured) {
  const StepCase& c = GetParam();
  TempDir dir;
  // Two inputs read "Hello world", one misreads a letter, one misses the second word.
  dir.write("a.json", layout({"Hello", "world"}));
  dir.write("b.json", layout({"Hello", "wor1d"}));
  dir.write("c.json", layout({"He1lo"}, 0.5));
  dir.write("sizeless.json", layout({"Hello"}, 0));
  dir.write("page.png", pngHeader(2000, 2800));
  dir.write("text.txt", "plain words\n");
  dir.write("file", "not a folder");
  {
    Job job;
    ASSERT_EQ(job.set("TraceFilename", (dir / "trace.log").string()), ORMIDA_OK);
    job.set("WorkSpace", dir.path().string());
    job.set("InputFilename", "a.json;b.json;c.json");
    job.set("BestOfLayout", "true");
    job.set("OutputFilename", "out.txt");
    job.set("OutputFilename.Format", "txtutf8;json");
    for (const auto& [name, value] : c.properties) job.set(name, value);
    EXPECT_EQ(job.execute(), c.code);
    const std::string error = job.errorText();
    const auto prefix = error.find(": ");
    EXPECT_EQ(c.code == ORMIDA_OK ? "" : error.substr(prefix == std::string::npos ? 0 : prefix + 2), c.error);
  }
  const std::string trace = readAll(dir / "trace.log");
  for (const std::string& line : c.trace) EXPECT_NE(trace.find(line), std::string::npos) << line << "\n" << trace;
  if (c.output.empty()) {
    EXPECT_FALSE(std::filesystem::exists(dir / "out.txt"));
    return;
  }
  EXPECT_EQ(readAll(dir / "out.txt"), c.output);
  const std::string json = readAll(dir / "out.json");
  const std::string width = c.pageSize.substr(0, c.pageSize.find(' '));
  EXPECT_NE(json.find("\"width\":" + width), std::string::npos) << json;
}

const std::string kNoSize =
    "No valid reference Image scaling was set. Calcluations require information from the image "
    "used for OCR!";

INSTANTIATE_TEST_SUITE_P(
    Rules, BestOfJobTest,
    ::testing::Values(
        // Two of three agree by default; the largest page (a's) gives the size.
        StepCase{"Defaults", {}, ORMIDA_OK, "", {}, "Hello world\n", "1000 1400"},
        StepCase{"ThresholdAboveOne",
                 {{"BestOfLayout.OverlapThreshold", "1.5"}},
                 ORMIDA_OK, "",
                 {"Threshold was set to a value that would require more collisions than there are "
                  "input layouts! Defaulted to 1."},
                 "Hello\n", "1000 1400"},
        StepCase{"RasterLargerThanThePage",
                 {{"BestOfLayout.PageWidth", "500"}},
                 ORMIDA_OK, "",
                 {"rasterSizeX is larger than layout. Set rasterSizeX to: 250",
                  "rasterSizeY is larger than layout. Set rasterSizeY to: 0"},
                 "Hello world\n", "500 1400"},
        StepCase{"ReferenceImage", {{"BestOfLayout.ReferenceImageFilename", "page.png"}},
                 ORMIDA_OK, "", {}, "Hello world\n", "2000 2800"},
        StepCase{"BadReferenceImageFallsBackToTheLargestPage",
                 {{"BestOfLayout.ReferenceImageFilename", "text.txt"}},
                 ORMIDA_OK, "",
                 {"Invalid Reference Image. Make sure the file is in PNG or JPEG format!"},
                 "Hello world\n", "1000 1400"},
        StepCase{"UnknownSubNameIsSkipped", {{"BestOfLayout.Colour", "red"}}, ORMIDA_OK, "",
                 {"Unknown subproperty was set: "}, "Hello world\n", "1000 1400"},
        StepCase{"NoPageSizeAnywhere", {{"InputFilename", "sizeless.json"}}, 20020, kNoSize,
                 {kNoSize}, ""},
        StepCase{"PlainTextInput", {{"InputFilename", "a.json;text.txt"}}, ORMIDA_FAILED,
                 "Merging Failed!",
                 {"is plain text, not a layout", "Merge Failed! Check log for details!"}, ""},
        StepCase{"TraceDirectoryThatIsAFile", {{"BestOfLayout.TraceDirectory", "file"}},
                 ORMIDA_FAILED, "Merging Failed!", {"Merge Failed! Check log for details!"}, ""}),
    [](const auto& row) { return std::string(row.param.label); });

TEST(BestOfJobTraceTest, WritesOneFilePerPageAndACompareSeesTheMergedLayout) {
  TempDir dir;
  dir.write("a.json", layout({"Hello", "world"}));
  dir.write("b.json", layout({"Hello", "wor1d"}));
  Job job;
  job.set("WorkSpace", dir.path().string());
  job.set("InputFilename", "a.json;b.json;b.json");
  job.set("BestOfLayout", "true");
  job.set("BestOfLayout.TraceDirectory", "trace");
  ASSERT_EQ(job.execute(), ORMIDA_OK) << job.errorText();
  const std::string trace = readAll(dir / "trace" / "bestof-page-0001.json");
  EXPECT_EQ(trace.rfind(R"({"clusters":[{"confidence":)", 0), 0u) << trace;
  EXPECT_NE(trace.find(R"("text":"wor1d"}],"rect":[250,100,100,30],"text":"wor1d"})"),
            std::string::npos) << trace;
  EXPECT_NE(trace.find(R"("page":1,"required":2})"), std::string::npos) << trace;
}

}  // namespace
