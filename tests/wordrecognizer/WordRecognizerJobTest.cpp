// WordRecognizerJobTest.cpp - the word recognizer through the C interface: reports against
// golden files, option and resource errors, languages, layout marks and real samples.
#include "base/FileIo.h"
#include "base/platform/platform.h"
#include "support/Golden.h"
#include "support/JobApi.h"
#include "support/TempDir.h"

#include <gtest/gtest.h>
#include <rapidjson/document.h>

#include <random>

namespace {

using qent::test::Job;
using qent::test::readAll;
using qent::test::TempDir;

// Absolute with its drive: on Windows a path that starts at the root but names no drive
// would be taken on the drive of the workspace it is resolved against.
const std::filesystem::path kData =
    std::filesystem::absolute(std::filesystem::path(ORMIDA_TEST_DATA_DIR) / "wordrecognizer");
const std::filesystem::path kFixture = kData / "fixture";

std::string errorOf(Job& job) {
  const std::string text = job.errorText();
  return text.rfind("error in OrmidaJobExecute: ", 0) == 0 ? text.substr(27) : "<" + text + ">";
}

// A job on the two-page fixture text with the fixture's made-up dictionaries.
void onFixture(Job& job, const std::string& input = "d;zwei-seiten.txt") {
  job.set("WorkSpace", kFixture.string());
  job.set("InputFilename", input);
  job.set("WordRecognizer", "true");
  job.set("WordRecognizer.DictionaryWorkSpace", kFixture.string());
}

std::string resultOf(Job& job) {
  EXPECT_EQ(job.execute(), 0u) << job.errorText();
  auto [code, value] = job.get("WordRecognizer.Result");
  EXPECT_EQ(code, 0u);
  return value;
}

// The CSV names the input by its full path; the golden file keeps it relative.
void expectReport(const std::string& name, std::string actual) {
  const std::string folder = (kFixture / "").string();
  for (std::size_t at; (at = actual.find(folder)) != std::string::npos;) actual.erase(at, folder.size());
  qent::test::expectGolden("wordrecognizer/golden/" + name, actual);
}

TEST(WordRecognizerGoldenTest, ReportsInEveryFormWithAndWithoutPages) {
  for (const char* format : {"text", "csv", "json"}) {
    for (const char* perPage : {"false", "true"}) {
      Job job;
      onFixture(job);
      job.set("WordRecognizer.StatisticsOutputFormat", format);
      job.set("WordRecognizer.StatisticsPerPage", perPage);
      const std::string suffix = std::string(perPage) == "true" ? "-pages." : ".";
      expectReport(std::string("zwei-seiten") + suffix + format, resultOf(job));
    }
  }
}

TEST(WordRecognizerJobTest, WritesReportAndWordListFiles) {
  TempDir out;
  Job job;
  onFixture(job);
  job.set("WordRecognizer.Options", "FormatCsv");
  job.set("WordRecognizer.StatisticsFilename", (out / "stats.csv").string());
  job.set("WordRecognizer.RecognizedWordsFilename", (out / "ok.txt").string());
  job.set("WordRecognizer.RejectedWordsFilename", (out / "bad.txt").string());
  const std::string result = resultOf(job);
  EXPECT_EQ(readAll(out / "stats.csv"), result);
  EXPECT_TRUE(result.starts_with("InputFilename;Page;Language;"));
  // Most frequent first, then by word.
  EXPECT_TRUE(readAll(out / "ok.txt").starts_with("Haus\t2\r\nBitte\t1\r\nFreitag\t1\r\n"));
  EXPECT_EQ(readAll(out / "bad.txt"), "Xqzt\t1\r\n");  // "Sie" is a stop word
}

TEST(WordRecognizerJobTest, BadOptionsAndResourcesNameWhatIsWrong) {
  TempDir broken, badLists;
  broken.write("de_DE.aff", "SET UTF-8\n");
  broken.write("de_DE.dic", "Haus\nBaum\n");
  badLists.write("de_DE.aff", "SET UTF-8\n");
  badLists.write("de_DE.dic", "1\nHaus\n");
  badLists.write("deu.stop", "der\ndi\xE9\n");
  const std::string odd = broken.write("odd.txt", "abc").string();
  const std::string latin1 = broken.write("latin1.txt", "Gr\xFC\xDF" "en").string();
  struct Case {
    std::string name, value, error, input = "d;zwei-seiten.txt";
  };
  const Case cases[] = {
      {"Options", "ALL;Shiny", "unknown option in WordRecognizer.Options: Shiny"},
      {"InputFormat", "ebcdic", "unsupported WordRecognizer.InputFormat: ebcdic"},
      {"StatisticsOutputFormat", "pdf", "unsupported WordRecognizer.StatisticsOutputFormat: pdf"},
      {"SmallWordLimit", "6", "WordRecognizer.SmallWordLimit must be smaller than LargeWordLimit"},
      {"Options", "DigramTable=none.digram",
       (kFixture / "none.digram").string() + ": digram score table not found"},
      {"DictionaryWorkSpace", kData.string(),
       "WordRecognizer: no dictionary for language 'deu' in '" + kData.string() +
           "' (expected de_DE.aff/.dic)"},
      {"DictionaryWorkSpace", broken.path().string(),
       "WordRecognizer: dictionary '" + (broken / "de_DE.dic").string() +
           "' is broken: its first line is not the word count"},
      {"DictionaryWorkSpace", badLists.path().string(),
       (badLists / "deu.stop").string() + ": line 2 is not valid UTF-8"},
      {"InputFormat", "utf16le", "WordRecognizer: " + odd + " is not UTF-16: odd number of bytes", odd},
      {"InputFormat", "utf8", "WordRecognizer: " + latin1 + " is not valid UTF-8 at byte 2", latin1},
  };
  for (const Case& c : cases) {
    Job job;
    onFixture(job, c.input);
    job.set("WordRecognizer." + c.name, c.value);
    EXPECT_EQ(job.execute(), 20020u) << c.name;
    EXPECT_EQ(errorOf(job), c.error);
  }
}

TEST(WordRecognizerJobTest, LanguageComesFromLetterOrOptionsAndGatesReadability) {
  Job english, overridden;
  onFixture(english, "e;zwei-seiten.txt");
  EXPECT_EQ(resultOf(english).find("Flesch"), std::string::npos);
  onFixture(overridden, "e;zwei-seiten.txt");
  overridden.set("WordRecognizer.Options", "Language=German");
  EXPECT_NE(resultOf(overridden).find("Flesch reading ease:      "), std::string::npos);
}

TEST(WordRecognizerJobTest, MarksCheckedAndRejectedWordsOfALayout) {
  TempDir dir;
  dir.write("in.json",
            R"({"root":{"children":[{"children":[{"children":[)"
            R"({"text":"Vertrag","type":"word","left":0,"top":0,"width":9,"height":9},)"
            R"({"text":"Xqzt","type":"word","left":10,"top":0,"width":9,"height":9},)"
            R"({"text":"4711","type":"word","left":20,"top":0,"width":9,"height":9}],)"
            R"("type":"line"}],"language":"de-DE","type":"page"}],"type":"node"}})");
  Job job;
  onFixture(job, "in.json");
  job.set("WorkSpace", dir.path().string());
  job.set("OutputFilename", "out.json");
  job.set("OutputFilename.Format", "json");
  ASSERT_EQ(job.execute(), 0u) << job.errorText();
  const std::string out = readAll(dir / "out.json");
  // Numbers are not words and stay unmarked; the page counts its marked words.
  EXPECT_NE(out.find(R"({"x_checked":"2","x_rejected":"1"})"), std::string::npos) << out;
  EXPECT_NE(out.find(R"({"x_checked":1.0},"height":9,"left":0,"text":"Vertrag")"), std::string::npos);
  EXPECT_NE(out.find(R"({"x_checked":1.0,"x_rejected":1.0},"height":9,"left":10,"text":"Xqzt")"),
            std::string::npos);
  EXPECT_NE(out.find(R"({"height":9,"left":20,"text":"4711")"), std::string::npos);
}

TEST(WordRecognizerJobTest, TextInputsAreReadInTheirEncodingDictionariesFromAnyFolder) {
  // "Grüßen Haus" in four encodings; each must give the German report of the UTF-8 text.
  TempDir words;
  const std::filesystem::path folder = words.path() / std::filesystem::path(u"W\u00F6rterb\u00FCcher");
  std::filesystem::create_directories(folder);
  for (const char* file : {"de_DE.aff", "de_DE.dic"}) std::filesystem::copy(kFixture / file, folder / file);
  struct Case {
    const char* format;
    std::string bytes;
  };
  const Case cases[] = {{"auto", "Gr\xC3\xBC\xC3\x9F" "en Haus"},
                        {"auto", "Gr\xFC\xDF" "en Haus"},  // not UTF-8: Windows-1252
                        {"auto", std::string("\xFF\xFEG\0r\0\xFC\0\xDF\0e\0n\0 \0H\0a\0u\0s\0", 24)},
                        {"latin1", "Gr\xFC\xDF" "en Haus"}};
  std::string expected;
  for (const Case& c : cases) {
    TempDir dir;
    dir.write("in.txt", c.bytes);
    Job job;
    onFixture(job, "d;" + (dir / "in.txt").string());
    job.set("WordRecognizer.InputFormat", c.format);
    job.set("WordRecognizer.DictionaryWorkSpace", qent::base::platform::pathToUtf8(folder));
    job.set("WordRecognizer.Options", "FormatJSON");
    const std::string result = resultOf(job);
    EXPECT_NE(result.find(R"("MainWordFrequency":{"Grüßen":1,"Haus":1})"), std::string::npos) << result;
    if (expected.empty()) expected = result;
    EXPECT_EQ(result, expected) << c.format;
  }
}

// On random texts the page statistics add up to the document's, and every garbage range is
// at least GarbageThreshold tokens long, in ascending order.
TEST(WordRecognizerJobTest, PagesAddUpToTheDocument) {
  const char* pieces[] = {"Haus", "Vertrag.", "der", "Rechnungs-\n", "nummer", "z.B.", "4711",
                          ",:;", "~~~~", "Xqzt!", "\u201EWort\u201C", "\f", "\n", "im", "ab-"};
  std::mt19937 random(7);
  for (int round = 0; round < 20; ++round) {
    std::string text;
    for (int i = 0; i < 200; ++i) text += std::string(pieces[random() % std::size(pieces)]) + " ";
    TempDir dir;
    Job job;
    onFixture(job, "d;" + dir.write("in.txt", text).string());
    job.set("WordRecognizer.StatisticsPerPage", "true");
    job.set("WordRecognizer.StatisticsOutputFormat", "json");
    job.set("WordRecognizer.GarbageThreshold", "2");
    rapidjson::Document report;
    report.Parse(resultOf(job).c_str());
    ASSERT_TRUE(report.IsObject()) << text;
    const auto& document = report["DocumentStatistics"];
    for (const char* key : {"TotalWordCount", "RejectedWordCount", "StopWordCoverage",
                            "LargeWordCount", "RawGlyphCount", "RawDigramCount",
                            "FilteredDigramCount", "TotalSyllables", "TotalSentences"}) {
      std::uint64_t sum = 0;
      for (const auto& page : report["PageStatistics"].GetObject()) sum += page.value[key].GetUint64();
      EXPECT_EQ(sum, document[key].GetUint64()) << key << " in " << text;
    }
    EXPECT_EQ(document["TotalWordCount"].GetUint64(),
              document["StopWordCount"].GetUint64() + document["SmallWordCount"].GetUint64() +
                  document["MainWordCount"].GetUint64());
    std::uint64_t previousLast = 0;
    for (const auto& range : document["GarbageList"].GetArray()) {
      EXPECT_GE(range["last"].GetUint64(), range["first"].GetUint64() + 1);
      EXPECT_TRUE(previousLast == 0 || range["first"].GetUint64() > previousLast + 1);
      previousLast = range["last"].GetUint64();
    }
  }
}

// Real prose against OCR debris, with Debian's dictionaries and the shipped data.
TEST(WordRecognizerJobTest, CleanProseIsAcceptedAndGarbageIsNot) {
#if defined(_WIN32)
  GTEST_SKIP() << "Debian's dictionary folder is the default on Linux only";
#endif
  if (!std::filesystem::exists("/usr/share/hunspell/de_DE.dic") ||
      !std::filesystem::exists("/usr/share/hunspell/en_US.dic")) {
    GTEST_SKIP() << "hunspell-de-de and hunspell-en-us are not installed (tools/install-deps)";
  }
  const std::pair<const char*, const char*> cases[] = {
      {"d;prose-deu.txt", "\"TextAccepted\":true"}, {"e;prose-eng.txt", "\"TextAccepted\":true"},
      {"d;garbage.txt", "\"TextAccepted\":false"}, {"e;garbage.txt", "\"TextAccepted\":false"}};
  for (const auto& [input, verdict] : cases) {
    Job job;
    job.set("WorkSpace", (kData / "samples").string());
    job.set("InputFilename", input);
    job.set("WordRecognizer", "true");
    job.set("WordRecognizer.StatisticsOutputFormat", "json");
    const std::string result = resultOf(job);
    EXPECT_NE(result.find(verdict), std::string::npos) << input << ": " << result.substr(0, 400);
  }
}

}  // namespace
