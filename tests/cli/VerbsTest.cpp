// VerbsTest.cpp - the verbs from the shell: exit codes, folders paired by stem in mixed
// formats, a broken file inside a batch, progress without a terminal, and summaries that
// merge exactly.
#include "support/CliRunner.h"
#include "support/TempDir.h"

#include <gtest/gtest.h>
#include <rapidjson/document.h>

#if !defined(_WIN32)

#include <cstdint>
#include <random>
#include <tuple>
#include <vector>

namespace {

using qent::test::CliRun;
using qent::test::readAll;
using qent::test::runCli;
using qent::test::TempDir;

const std::string kSamples = ORMIDA_SOURCE_DIR "/data/samples/";

rapidjson::Document parse(const std::string& json) {
  rapidjson::Document document;
  document.Parse(json.c_str());
  return document;
}

// A page of one line whose words stand 150 pixels apart; an empty word leaves its place.
std::string layout(const std::vector<std::string>& words) {
  std::string out = R"({"root":{"type":"node","children":[{"type":"page","width":2000,)"
                    R"("height":100,"index_in_layout":0,"children":[{"type":"line","left":0,)"
                    R"("top":0,"width":2000,"height":50,"children":[)";
  for (std::size_t i = 0; i < words.size(); ++i) {
    if (words[i].empty()) continue;
    if (out.back() == '}') out += ",";
    out += R"({"type":"word","text":")" + words[i] + R"(","left":)" + std::to_string(i * 150) +
           R"(,"top":0,"width":100,"height":50})";
  }
  return out + "]}]}]}}";
}

TEST(VerbsTest, ExitCodesAndMessages) {
  TempDir dir;
  dir.write("a.json", readAll(kSamples + "notice-ocr.json"));
  std::filesystem::create_directories(dir / "folder");
  const std::tuple<const char*, int, const char*> cases[] = {
      {"compare a.json a.json", 0, "  CER                 0.00 %  (0 edits / 219 GT characters"},
      {"compare a.json missing.json", 1, "stat failed for file missing.json"},
      {"compare a.json missing.json", 1, "(code 9)"},
      {"compare", 2, "GT is required"},
      {"compare a.json folder", 2, "GT and OCR must both be files or both be folders"},
      {"compare a.json a.json --level page", 2, "--level: page not in {glyph,word,line}"},
      {"compare 'a;b.json' a.json", 2, "a file name with \";\" cannot be read"},
      {"convert a.json a.txt", 0, ""},
      {"convert a.json a.xyz", 2, "cannot tell the format from \"a.xyz\""},
      {"convert a.json a.page.xml", 0, ""},
      {"compare a.page.xml a.json --align none", 0, "  CER                 0.00 %"},
      {"compare a.json a.json --align middle", 2, "--align: middle not in {corner,center,none}"},
      {"convert folder out", 2, "converting a folder needs --to"},
      {"check folder", 2, "checking a folder needs --out FOLDER"},
      {"summarize a.json", 1, "a.json: the summary has no \"level\""},
      {"summarize missing.json", 1, "cannot read missing.json"}};
  for (const auto& [arguments, status, message] : cases) {
    const CliRun run = runCli(arguments, dir);
    EXPECT_EQ(run.status, status) << arguments << "\n" << run.err;
    EXPECT_NE((run.out + run.err).find(message), std::string::npos)
        << arguments << ":\n" << run.out << run.err;
  }
  EXPECT_EQ(readAll(dir / "a.txt").substr(0, 14), "Harbour Notioe");
  EXPECT_NE(readAll(dir / "a.page.xml").find("<PcGts"), std::string::npos);

  // WebAnno offsets count UTF-16 code units unless --strict keeps the library's UTF-8 bytes.
  dir.write("g.json", layout({"Gr\xC3\xBC\xC3\x9F" "e", "aus"}));
  ASSERT_EQ(runCli("convert g.json g.tsv", dir).status, 0);
  ASSERT_EQ(runCli("convert g.json strict.tsv --strict", dir).status, 0);
  EXPECT_NE(readAll(dir / "g.tsv").find("1-2\t6-9\taus"), std::string::npos);
  EXPECT_NE(readAll(dir / "strict.tsv").find("1-2\t8-11\taus"), std::string::npos);
}

// Two pairs in different formats (JSON against hOCR), one pair whose recognition is broken,
// and a ground truth without recognition.
TEST(VerbsTest, FolderComparisonPairsByStemAndSkipsWhatFails) {
  TempDir dir;
  dir.write("gt/notice.json", readAll(kSamples + "notice-truth.json"));
  dir.write("gt/harbour.hocr", readAll(kSamples + "harbour-news-truth.hocr"));
  dir.write("gt/broken.json", readAll(kSamples + "notice-truth.json"));
  dir.write("gt/lonely.json", readAll(kSamples + "notice-truth.json"));
  dir.write("notice-ocr.json", readAll(kSamples + "notice-ocr.json"));
  dir.write("ocr/harbour.hocr", readAll(kSamples + "harbour-news-tesseract.hocr"));
  dir.write("ocr/broken.json", "{\"root\": [");
  ASSERT_EQ(runCli("convert notice-ocr.json ocr/notice.hocr", dir).status, 0);

  const CliRun run = runCli("compare gt ocr -j 2 --json s.json --csv s.csv", dir);
  EXPECT_EQ(run.status, 1) << run.err;
  EXPECT_NE(run.err.find("ormida: broken failed: "), std::string::npos) << run.err;
  EXPECT_NE(run.err.find("lonely.json has no recognition; skipped"), std::string::npos) << run.err;
  // Not a terminal: plain lines, no bar redrawn with carriage returns.
  EXPECT_EQ(run.err.find('\r'), std::string::npos);
  EXPECT_NE(run.err.find("ormida: 3 of 3 done\n"), std::string::npos) << run.err;
  EXPECT_EQ(run.out.substr(0, run.out.find('\n')),
            "2 documents, 2 pages compared at word level, 1 failed");

  const rapidjson::Document summary = parse(readAll(dir / "s.json"));
  ASSERT_TRUE(summary.IsObject());
  ASSERT_EQ(summary["documents"].Size(), 2u);
  EXPECT_STREQ(summary["failed"][0]["name"].GetString(), "broken");
  // The notice read from hOCR counts as the same page read from JSON does.
  const auto& notice = summary["documents"][1];
  EXPECT_STREQ(notice["name"].GetString(), "notice");
  EXPECT_STREQ(notice["recognition"].GetString(), "notice.hocr");
  EXPECT_EQ(notice["characters"].GetUint64(), 223u);
  EXPECT_EQ(notice["character_edits"].GetUint64(), 29u);
  const std::string csv = readAll(dir / "s.csv");
  EXPECT_EQ(csv.substr(0, csv.find(',')), "name");
  EXPECT_NE(csv.find("\nnotice,notice.json,notice.hocr,1,223,29,"), std::string::npos) << csv;
  EXPECT_NE(csv.find("\n(total),,,2,"), std::string::npos) << csv;
}

// A generated corpus compared whole and in three parts: the merged parts give exactly the
// whole's totals and documents.
TEST(VerbsTest, SummarizeMergesPartsIntoTheWhole) {
  TempDir dir;
  std::mt19937 random(20261125);
  const char* words[] = {"ship", "harbour", "tide", "quay", "crane", "rope", "anchor"};
  for (int d = 0; d < 12; ++d) {
    std::vector<std::string> truthWords, ocrWords;
    for (int w = 0; w < 8; ++w) {
      std::string word = words[random() % 7];
      truthWords.push_back(word);
      if (random() % 3 == 0) word[random() % word.size()] = 'x';
      ocrWords.push_back(random() % 5 != 0 ? word : "");
    }
    const std::string truth = layout(truthWords), ocr = layout(ocrWords);
    const std::string name = "doc" + std::to_string(d) + ".json";
    const std::string part = "part" + std::to_string(random() % 3) + "/";
    dir.write("gt/" + name, truth);
    dir.write("ocr/" + name, ocr);
    dir.write(part + "gt/" + name, truth);
    dir.write(part + "ocr/" + name, ocr);
  }
  const CliRun whole = runCli("compare gt ocr --level line --json whole.json", dir);
  ASSERT_EQ(whole.status, 0) << whole.err;
  std::string parts;
  for (const char* part : {"part0", "part1", "part2"}) {
    if (!std::filesystem::exists(dir / part)) continue;
    const std::string arguments = std::string("compare ") + part + "/gt " + part +
                                  "/ocr --level line --json " + part + ".json";
    ASSERT_EQ(runCli(arguments, dir).status, 0) << arguments;
    parts += std::string(" ") + part + ".json";
  }
  const CliRun merged = runCli("summarize" + parts + " --json merged.json", dir);
  ASSERT_EQ(merged.status, 0) << merged.err;
  EXPECT_EQ(merged.out, whole.out);
  const rapidjson::Document a = parse(readAll(dir / "whole.json"));
  const rapidjson::Document b = parse(readAll(dir / "merged.json"));
  ASSERT_TRUE(a.IsObject() && b.IsObject());
  EXPECT_EQ(a["totals"], b["totals"]);
  EXPECT_EQ(a["documents"].Size(), b["documents"].Size());
  // Totals are the sums of the documents' counts.
  std::uint64_t characterEdits = 0, wordEdits = 0;
  for (const auto& document : a["documents"].GetArray()) {
    characterEdits += document["character_edits"].GetUint64();
    wordEdits += document["word_edits"].GetUint64();
  }
  EXPECT_EQ(a["totals"]["character_edits"].GetUint64(), characterEdits);
  EXPECT_EQ(a["totals"]["word_edits"].GetUint64(), wordEdits);
  EXPECT_GT(wordEdits, 0u);

  // The same part twice would count its documents twice; other units cannot be added.
  EXPECT_EQ(runCli("summarize whole.json whole.json", dir).status, 1);
  ASSERT_EQ(runCli("compare gt ocr --level line --graphemes --json g.json", dir).status, 0);
  const CliRun mixed = runCli("summarize whole.json g.json", dir);
  EXPECT_EQ(mixed.status, 1);
  EXPECT_NE(mixed.err.find("summaries count different things"), std::string::npos) << mixed.err;
}

TEST(VerbsTest, ConvertAndCheckFolders) {
  TempDir dir;
  dir.write("in/a.json", readAll(kSamples + "notice-ocr.json"));
  dir.write("in/b.hocr", readAll(kSamples + "harbour-news-tesseract.hocr"));
  dir.write("in/c.json", "not a layout {");
  const CliRun convert = runCli("convert in out --to txt -j 2", dir);
  // c.json is read as plain text, which has no layout to write: only it fails.
  EXPECT_EQ(convert.status, 1) << convert.err;
  EXPECT_NE(convert.out.find("2 of 3 files converted to txt"), std::string::npos) << convert.out;
  EXPECT_EQ(readAll(dir / "out/a.txt").substr(0, 14), "Harbour Notioe");
  EXPECT_TRUE(std::filesystem::exists(dir / "out/b.txt"));

  const CliRun check = runCli("check out --lang eng --format json --out reports", dir);
  EXPECT_EQ(check.status, 0) << check.err;
  const rapidjson::Document report = parse(readAll(dir / "reports/a.check.json"));
  ASSERT_TRUE(report.IsObject());
  EXPECT_STREQ(report["DocumentStatistics"]["Language"].GetString(), "eng");
}

}  // namespace

#endif
