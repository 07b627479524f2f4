// AddressRecognitionJobTest.cpp - address recognition through the C interface: the text
// decisions, the output text of layout documents and every message of the step.
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

// A page with lines at (left, top): each word 20 pixels per byte wide, 10 apart, 40 high,
// each group of lines in a content area of its own.
std::string hocrPage(const std::vector<std::vector<std::pair<std::pair<int, int>, std::string>>>& areas) {
  std::string out = "<html><body><div class='ocr_page' title='bbox 0 0 2480 3508'>";
  for (const auto& area : areas) {
    out += "<div class='ocr_carea'>";
    for (const auto& [at, text] : area) {
      out += "<span class='ocr_line'>";
      int left = at.first;
      for (std::size_t start = 0; start < text.size();) {
        const std::size_t end = std::min(text.find(' ', start), text.size());
        const int width = 20 * static_cast<int>(end - start);
        out += "<span class='ocrx_word' title='bbox " + std::to_string(left) + " " +
               std::to_string(at.second) + " " + std::to_string(left + width) + " " +
               std::to_string(at.second + 40) + "'>" + text.substr(start, end - start) + "</span>";
        left += width + 10;
        start = end + 1;
      }
      out += "</span>";
    }
    out += "</div>";
  }
  return out + "</div></body></html>";
}

// A path as the output names it: a JSON string, so Windows' backslashes come doubled.
std::string quoted(const std::filesystem::path& path) {
  std::string out = "\"";
  for (const char c : path.string()) {
    if (c == '\\' || c == '"') out += '\\';
    out += c;
  }
  return out + "\"";
}

const char* kRecipient = "Herrn\nMax M\xC3\xBCller\nHauptstra\xC3\x9F" "e 5\n10115 Berlin\n";
const char* kSender = "M\xC3\xBCller Bau GmbH \xC2\xB7 Hauptstra\xC3\x9F" "e 5 \xC2\xB7 10115 Berlin";

struct TextCase {
  const char* label;
  const char* inputs;
  std::vector<const char*> tests;  // sub names set in this order
  uint32_t code;
  const char* error;      // the whole error text after "error in OrmidaJobExecute: "
  const char* recipient;  // AddressRecognition.TestRecipient, "-" when not stored
  const char* sender;
};

TEST(AddressRecognitionJobTest, TextInputsAreTestedAsRecipientAndSenderInTheOrderSet) {
  const TextCase cases[] = {
      {"Recipient", "recipient.txt", {"TestRecipient"}, ORMIDA_OK, "", "1", "-"},
      {"ReturnAddressIsASender", "sender.txt", {"TestSender"}, ORMIDA_OK, "", "-", "1"},
      {"BothRightWayRound", "recipient.txt;sender.txt", {"TestRecipientSender"}, ORMIDA_OK, "",
       "1", "1"},
      {"BothSwapped", "sender.txt;recipient.txt", {"TestRecipientSender"}, ORMIDA_OK, "", "0", "0"},
      {"OtherSubNamesAreIgnored", "recipient.txt", {"Output", "Mode"}, ORMIDA_OK, "", "-", "-"},
      {"OneInput", "recipient.txt", {"TestRecipientSender"}, ORMIDA_FAILED,
       "TestRecipientSender expects 2 text inputs: recipient and sender", "-", "-"},
      {"ThreeInputsAfterAnEarlierTest", "recipient.txt;sender.txt;note.txt",
       {"TestRecipient", "TestRecipientSender"}, ORMIDA_FAILED,
       "TestRecipientSender expects 2 text inputs: recipient and sender", "1", "-"},
      {"LayoutAsSecondText", "recipient.txt;letter.hocr", {"TestRecipientSender"}, ORMIDA_FAILED,
       "Address recognition: @ is a layout, where a text input was expected", "-", "-"},
  };
  TempDir dir;
  dir.write("recipient.txt", kRecipient);
  dir.write("sender.txt", kSender);
  dir.write("note.txt", "Berlin, 12.03.2024\n");
  dir.write("letter.hocr", hocrPage({{{{236, 400}, "Anna"}}}));
  for (const TextCase& k : cases) {
    Job job;
    job.set("WorkSpace", dir.path().string());
    job.set("InputFilename", k.inputs);
    job.set("AddressRecognition", "true");
    for (const char* test : k.tests) job.set(std::string("AddressRecognition.") + test, "");
    EXPECT_EQ(job.execute(), k.code) << k.label;
    std::string error = k.error;
    if (const auto at = error.find('@'); at != std::string::npos) {
      error.replace(at, 1, (dir / "letter.hocr").string());
    }
    EXPECT_EQ(job.errorText(), k.code == ORMIDA_OK ? "" : "error in OrmidaJobExecute: " + error)
        << k.label;
    auto result = [&](const char* name) {
      const auto [code, value] = job.get(std::string("AddressRecognition.") + name);
      return code == ORMIDA_OK ? value : code == ORMIDA_UNKNOWN_PROPERTY ? "-" : "?";
    };
    EXPECT_EQ(result("TestRecipient"), k.recipient) << k.label;
    EXPECT_EQ(result("TestSender"), k.sender) << k.label;
  }
}

TEST(AddressRecognitionJobTest, LayoutsGiveOneTextWithAnEntryPerDocumentInsteadOfTheOutput) {
  TempDir dir;
  dir.write("a.hocr", hocrPage({{{{236, 400}, "Frau"},
                                 {{236, 450}, "Anna Schmidt"},
                                 {{236, 500}, "Gartenweg 3a"},
                                 {{236, 550}, "80331 M\xC3\xBCnchen"}},
                                {{{1476, 140}, "Nordbau GmbH"},
                                 {{1476, 190}, "Ringstra\xC3\x9F" "e 12"},
                                 {{1476, 240}, "20095 Hamburg"},
                                 {{1476, 290}, "Tel. 040 123456"}}}));
  dir.write("in/recipient", kRecipient);  // a plain text among layouts, without extension
  dir.write("out.txt", "earlier output");
  Job job;
  job.set("WorkSpace", dir.path().string());
  job.set("InputFilename", "a.hocr;in/recipient");
  job.set("AddressRecognition", "true");
  job.set("OutputFilename", "out.txt");
  job.set("OutputFilename.Format", "json");
  ASSERT_EQ(job.execute(), ORMIDA_OK) << job.errorText();
  const std::string want =
      "{\n" + quoted(dir / "a.json") +
      ": "
      R"({"recipient":{"company":null,"confidence":0.96,"country":null,"houseNumber":"3a",)"
      R"("lines":["Frau","Anna Schmidt","Gartenweg 3a","80331 München"],"name":"Anna Schmidt",)"
      R"("page":1,"postalCode":"80331","rect":{"height":190,"left":236,"top":400,"width":270},)"
      R"("street":"Gartenweg","town":"München"},)"
      R"("sender":{"company":"Nordbau GmbH","confidence":0.92,"country":null,"email":null,)"
      R"("houseNumber":"12","lines":["Nordbau GmbH","Ringstraße 12","20095 Hamburg",)"
      R"("Tel. 040 123456"],"name":null,"page":1,"phone":"040 123456","postalCode":"20095",)"
      R"("rect":{"height":190,"left":1476,"top":140,"width":280},"street":"Ringstraße",)"
      R"("town":"Hamburg","web":null}}, )"
      "\n" + quoted(dir / "in/recipient.json") +
      ": "
      R"({"recipient":{"company":null,"confidence":0.61,"country":null,"houseNumber":"5",)"
      R"("lines":["Herrn","Max Müller","Hauptstraße 5","10115 Berlin"],"name":"Max Müller",)"
      R"("page":null,"postalCode":"10115","rect":null,"street":"Hauptstraße","town":"Berlin"},)"
      R"("sender":null}, )"
      "\n}";
  EXPECT_EQ(job.get("AddressRecognition.Output"), std::make_pair(uint32_t{ORMIDA_OK}, want));
  EXPECT_EQ(readAll(dir / "out.txt"), want) << "the result, not a JSON layout";
}

}  // namespace
