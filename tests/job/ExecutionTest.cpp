// ExecutionTest.cpp - one execution through the C interface: loading inputs from files,
// patterns and memory, writing outputs, and the errors of the loaders, writers and every
// reader (the output callback is used in FormatConversionTest).
#include "ormida/ormida.h"

#include "support/JobApi.h"
#include "support/TempDir.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

namespace {

using qent::test::Job;
using qent::test::readAll;
using qent::test::TempDir;

// A small JSON layout with one word whose text names the document.
std::string layoutNamed(const std::string& word) {
  return R"({"root":{"children":[{"children":[{"children":[{"height":10,"left":0,"text":")" +
         word +
         R"(","top":0,"type":"word","width":40}],"height":10,"left":0,"top":0,"type":"line","width":40}],"index_in_layout":0,"type":"page"}],"type":"node"}})";
}

// Points the job at `input` inside the test's directory and, when `output` is given, asks for
// it there as a JSON layout.
void inWorkspace(Job& job, const TempDir& dir, const std::string& input,
                 const char* output = nullptr) {
  job.set("WorkSpace", dir.path().string());
  job.set("InputFilename", input);
  if (output != nullptr) {
    job.set("OutputFilename", output);
    job.set("OutputFilename.Format", "json");
  }
}

std::string errorOf(Job& job) {
  const std::string text = job.errorText();
  return text.rfind("error in OrmidaJobExecute: ", 0) == 0 ? text.substr(27) : "<" + text + ">";
}

std::string addressOf(const std::string& text) {
  return std::to_string(reinterpret_cast<uintptr_t>(text.data())) + ":" +
         std::to_string(text.size());
}

TEST(ExecutionTest, MainDocumentFromMemoryFileListsAndPatterns) {
  TempDir dir;
  for (const char* name : {"b.json", "a.json", "c.json", "a.txt"}) {
    dir.write(std::string("in/") + name, layoutNamed(name));
  }
  // The main document's text as written; `file` is set before `property`.
  auto run = [&](const char* property, const std::string& value, const char* file = nullptr) {
    Job job;
    job.set("WorkSpace", dir.path().string());
    if (file != nullptr) job.set("InputFilename", file);
    job.set(property, value);
    job.set("OutputFilename", "out.json");
    job.set("OutputFilename.Format", "JSON");
    EXPECT_EQ(job.execute(), ORMIDA_OK) << job.errorText();
    return readAll(dir / "out.json");
  };
  const std::string first = layoutNamed("first"), second = layoutNamed("second");
  EXPECT_EQ(run("InputMemoryAddress", addressOf(first) + ";" + addressOf(second), "in/b.json"),
            first)
      << "memory wins over files, and the first document is the main one";
  EXPECT_EQ(run("InputFilename", "in/*.json"), layoutNamed("a.json"));
  EXPECT_EQ(run("InputFilename", "in/c.json;in/a.json"), layoutNamed("c.json"));
  EXPECT_EQ(run("InputFilenamePattern", "in/?.JSON"), layoutNamed("a.json"));
  EXPECT_EQ(run("InputFilename", (dir / "in" / "b.json").string()), layoutNamed("b.json"))
      << "absolute paths ignore the workspace";
}

// Every input that cannot be loaded or read, every output that cannot be written and every
// operation that cannot run fails with its code and text, and the output written by an
// earlier run stays as it was.
struct BadInputCase {
  const char* label;
  const char* property;
  std::string value;
  uint32_t code;
  const char* error;  // how errorOf() starts
  std::string content = "";  // of in.txt, for the readers' errors
};

std::string repeat(std::string_view text, int count) {
  std::string result;
  for (int i = 0; i < count; ++i) result += text;
  return result;
}

BadInputCase badContent(const char* label, std::string content, uint32_t code, const char* error) {
  return {label, "InputFilename", "in.txt", code, error, std::move(content)};
}

TEST(ExecutionTest, BadInputFailsWithAClearErrorAndKeepsTheEarlierOutput) {
  const BadInputCase cases[] = {
      {"MissingFile", "InputFilename", "missing.json", ORMIDA_FAILED, "stat failed for file "},
      {"EmptyFile", "InputFilename", "in.txt", ORMIDA_FAILED, "No document loaded: "},
      {"BlankFile", "InputFilename", "blank.json", ORMIDA_FAILED, "No document loaded: "},
      {"Directory", "InputFilename", "folder.json", ORMIDA_FAILED, "reading error (errno "},
      {"PatternMatchesNothing", "InputFilename", "*.hocr", ORMIDA_FAILED,
       "No document loaded: no file matches the pattern "},
      {"PatternInMissingDirectory", "InputFilename", "nodir/*.json", ORMIDA_FAILED,
       "No document loaded: cannot list the directory "},
      {"OnlySeparators", "InputFilename", ";;", ORMIDA_FAILED, "No document loaded"},
      {"AddressZero", "InputMemoryAddress", "0:10", ORMIDA_FAILED,
       "InputMemoryAddress item 1 \"0:10\" has the address 0"},
      {"SizeZero", "InputMemoryAddress", "4096:0", ORMIDA_FAILED,
       "InputMemoryAddress item 1 \"4096:0\" has the size 0"},
      {"LargerThanADocumentMayBe", "InputMemoryAddress", "4096:268435457", ORMIDA_FAILED,
       "InputMemoryAddress item 1 has 268435457 bytes, more than the 268435456 a document "
       "may have"},
      {"MalformedItem", "InputMemoryAddress", "12345", ORMIDA_FAILED,
       "InputMemoryAddress item 1 \"12345\" is not of the form ADDRESS:SIZE"},
      {"HugeNumber", "InputMemoryAddress", "99999999999999999999999:1", ORMIDA_FAILED,
       "InputMemoryAddress item 1 \"99999999999999999999999:1\" has a number"},
      // Formats are all checked before anything is written; a writer that fails once its
      // file is open leaves neither a truncated file nor the temporary one behind.
      {"UnknownFormatInAList", "OutputFilename.Format", "json;pdf", ORMIDA_FAILED,
       "unsupported output format specified"},
      {"NoFormat", "OutputFilename.Format", ";", ORMIDA_FAILED,
       "unsupported output format specified"},
      {"CompareWithoutASecondDocument", "Compare", "true", ORMIDA_FAILED,
       "No CompareWidth document loaded"},
      badContent("PlainTextHasNoLayoutToWrite", "just some text\n", ORMIDA_FAILED,
                 "the main document "),
      badContent("JsonLayoutThatIsNotJson", R"({"root": [})", 20039, "Failed to parse JSON layout"),
      badContent("HocrWithoutHtml", "<xml><body/></xml>", ORMIDA_ERROR_HOCR, "No HOCR file found"),
      // Standard invalid-argument errors are not runtime errors: code 9 at the boundary.
      badContent("HocrWithABadNumber",
                 "<html><body><span class='ocrx_word' title='x_wconf high'/></body></html>",
                 ORMIDA_FAILED, "<undefined error in OrmidaJobExecute>"),
      badContent("WebAnnoRowThatIsNoToken", "#FORMAT=WebAnno TSV 3.2\n\n#Text=a\nnonsense\n",
                 20001, "WebAnno TSV: row 4 is not a token row (a token id such as 1-3, a tab "
                 "and offsets such as 0-5 must begin it): \"nonsense\""),
      badContent("CloudOcrWordWithoutBox",
                 R"({"responses":[{"fullTextAnnotation":{"pages":[{"blocks":[{"paragraphs":[{"words":[{"symbols":[]}]}]}]}]}}]})",
                 20039, "Bounding box for a word is not found"),
      badContent("CloudOcrWithoutAnnotation", R"({"responses":[{"error":{"code":7}}]})", 20039,
                 "Incorrect format"),
      badContent("CloudOcrThatIsNotJson", R"({"fullTextAnnotation": {"pages": [}})", 20039,
                 "Incorrect format"),
      // ALTO and PAGE are told by their root element, so their errors are their own.
      {"XmlLayoutFormatWithoutOptIn", "OutputFilename.Format", "alto", ORMIDA_FAILED,
       "unsupported output format specified"},
      badContent("AltoThatIsNotXml", "<alto><Layout></alto>", 20001,
                 "ALTO: malformed XML (Start-end tags mismatch) at offset 16"),
      badContent("AltoInAnotherNamespace", "<alto xmlns='urn:x'/>", 20001,
                 "ALTO: element <alto> at offset 0 is in the namespace \"urn:x\", not in that"),
      badContent("AltoPositionWithoutSize", "<alto><Layout><Page><PrintSpace HPOS='1' VPOS='2'/>"
                 "</Page></Layout></alto>", 20001,
                 "ALTO: element <PrintSpace> at offset 20 has coordinates but no WIDTH"),
      badContent("AltoNegativeSize", "<alto><Layout><Page WIDTH='-5'/></Layout></alto>", 20001,
                 "ALTO: element <Page> at offset 14 has the negative WIDTH -5"),
      badContent("AltoUnknownUnit", "<alto><Description><MeasurementUnit>furlong"
                 "</MeasurementUnit></Description></alto>", 20001,
                 "ALTO: element <MeasurementUnit> at offset 19 names the unit \"furlong\""),
      badContent("AltoCoordinateOutOfRange", "<alto><Layout><Page HEIGHT='1e300'/></Layout></alto>",
                 20001, "ALTO: element <Page> at offset 14 has HEIGHT 1e300, which is out of range"),
      badContent("AltoNestedTooDeep", "<alto><Layout><Page>" + repeat("<ComposedBlock>", 1100) +
                 repeat("</ComposedBlock>", 1100) + "</Page></Layout></alto>",
                 20001, "ALTO: element <ComposedBlock> at offset 14990 is nested deeper than 1000"),
      badContent("PageWithoutCoords",
                 "<PcGts xmlns='http://schema.primaresearch.org/PAGE/gts/pagecontent/2019-07-15'>"
                 "<Page><TextRegion id='r'/></Page></PcGts>", 20001,
                 "PAGE: element <TextRegion> at offset 85 has no Coords"),
      badContent("PageOfAnUnknownVersion",
                 "<pc:PcGts xmlns:pc='http://schema.primaresearch.org/PAGE/gts/pagecontent/2010-03-19'/>",
                 20001, "PAGE: element <pc:PcGts> at offset 0 is in the namespace"),
      badContent("PagePointsThatAreNoNumbers",
                 "<PcGts xmlns='http://schema.primaresearch.org/PAGE/gts/pagecontent/2013-07-15'>"
                 "<Page><TextRegion id='r'><Coords points='1,2 x,4'/></TextRegion></Page></PcGts>",
                 20001, "PAGE: element <Coords> at offset 104 has points with \"x,4\""),
      badContent("PageConfidenceAbove1",
                 "<PcGts xmlns='http://schema.primaresearch.org/PAGE/gts/pagecontent/2013-07-15'>"
                 "<Page><TextRegion id='r'><Coords points='1,2 3,4'/><TextEquiv conf='7'>"
                 "<Unicode>a</Unicode></TextEquiv></TextRegion></Page></PcGts>",
                 20001, "PAGE: element <TextEquiv> at offset 130 has conf=\"7\", outside 0 to 1")};
  for (const BadInputCase& k : cases) {
    TempDir dir;
    dir.write("in.txt", k.content);
    dir.write("good.json", layoutNamed("good"));  // the input of rows that name no input
    dir.write("blank.json", " \n\t ");
    dir.write("out.json", "earlier output");
    std::filesystem::create_directories(dir / "folder.json");
    Job job;
    job.set("WorkSpace", dir.path().string());
    job.set("InputFilename", "good.json");
    job.set("OutputFilename", "out.json");
    job.set("OutputFilename.Format", "json");
    job.set(k.property, k.value);
    EXPECT_EQ(job.execute(), k.code) << k.label;
    const std::string error = errorOf(job);
    EXPECT_EQ(error.rfind(k.error, 0), 0u) << k.label << ": " << error;
    EXPECT_EQ(readAll(dir / "out.json"), "earlier output") << k.label;
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(dir.path()), {}), 5)
        << k.label << ": a temporary file was left";
  }
}

#if !defined(_WIN32)
// A device has no size to check beforehand; reading stops at the limit instead of filling
// the memory.
TEST(ExecutionTest, AnEndlessDeviceIsReadOnlyUpToTheSizeLimit) {
  Job job;
  job.set("InputFilename", "/dev/zero");
  EXPECT_EQ(job.execute(), ORMIDA_FAILED);
  EXPECT_EQ(errorOf(job), "reading error (errno 27): /dev/zero is larger than 268435456 bytes, "
                          "the most the library reads from one file");
}
#endif

TEST(ExecutionTest, RepeatedExecuteReloadsTheDocumentFromUtf8Utf16OrWithAByteOrderMark) {
  TempDir dir;
  Job job;
  inWorkspace(job, dir, "in.json", "out.json");
  for (const std::string encoding : {"utf8", "utf16", "bom"}) {
    const std::string layout = layoutNamed("Stra\xC3\x9F" "e " + encoding);
    std::string bytes = encoding == "bom" ? "\xEF\xBB\xBF" + layout : layout;
    if (encoding == "utf16") {
      bytes = "\xFF\xFE";
      for (char16_t c : qent::test::u16(layout)) {
        bytes.push_back(static_cast<char>(c & 0xFF));
        bytes.push_back(static_cast<char>(c >> 8));
      }
    }
    dir.write("in.json", bytes);
    ASSERT_EQ(job.execute(), ORMIDA_OK) << job.errorText();
    EXPECT_EQ(readAll(dir / "out.json"), layout) << encoding;
  }
}

}  // namespace
