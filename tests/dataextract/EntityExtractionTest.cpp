// EntityExtractionTest.cpp - the validators against published test values, the default
// configuration per entity type, hostile configurations, and precision and recall on a
// generated corpus of letters with planted entities.
#include "ormida/ormida.h"

#include "dataextract/EntityConfiguration.h"
#include "dataextract/EntityExtractor.h"
#include "dataextract/Validators.h"
#include "base/QentException.h"
#include "base/Unicode.h"
#include "layout/Nodes.h"
#include "support/Golden.h"
#include "support/JobApi.h"
#include "support/TempDir.h"

#include <gtest/gtest.h>
#include <rapidjson/document.h>

#include <array>
#include <chrono>
#include <set>
#include <cstdio>
#include <map>
#include <random>
#include <sstream>

namespace {

namespace de = qent::dataextract;
using qent::text::layout::Line;
using qent::text::layout::Page;
using qent::text::layout::Word;

const std::filesystem::path kEntities =
    std::filesystem::path(ORMIDA_SOURCE_DIR) / "data" / "entities";

const de::EntityConfiguration& defaults() {
  static const de::EntityConfiguration configuration =
      de::EntityConfiguration::load(kEntities / "default.json");
  return configuration;
}

// A page with one line per "\n"-separated part of `text`, words split at blanks.
std::unique_ptr<Page> pageOf(const std::string& text) {
  auto page = std::make_unique<Page>();
  std::istringstream lines(text);
  std::int32_t top = 0;
  for (std::string part; std::getline(lines, part); top += 60) {
    Line& line = page->appendChild(std::make_unique<Line>());
    std::istringstream words(part);
    std::int32_t left = 0;
    for (std::string token; words >> token; left += 300) {
      Word& word = line.appendChild(std::make_unique<Word>());
      word.setText(qent::base::utf8ToUtf16(token));
      word.setRect({left, top, 280, 50});
    }
  }
  return page;
}

// "type:text" of every entity found, in order.
std::vector<std::string> found(const std::string& json) {
  rapidjson::Document document;
  document.Parse(json.c_str());
  std::vector<std::string> result;
  for (const auto& entity : document["entities"].GetArray()) {
    result.push_back(std::string(entity["type"].GetString()) + ":" + entity["text"].GetString());
  }
  return result;
}

std::string extract(const std::string& text) {
  std::string joined;
  for (const std::string& item : found(de::extractEntities(*pageOf(text), defaults()))) {
    joined += (joined.empty() ? "" : " | ") + item;
  }
  return joined;
}

struct ValidatorCase {
  de::Validator validator;
  const char* text;
  bool valid;
};

class ValidatorTest : public ::testing::TestWithParam<ValidatorCase> {};

TEST_P(ValidatorTest, AgreesWithPublishedValues) {
  EXPECT_EQ(de::validate(GetParam().validator, GetParam().text), GetParam().valid) << GetParam().text;
}

using V = de::Validator;
INSTANTIATE_TEST_SUITE_P(
    PublishedValues, ValidatorTest,
    ::testing::Values(
        // The examples published with the IBAN standard's registry; O read for 0.
        ValidatorCase{V::Iban, "DE89 3704 0044 0532 0130 00", true},
        ValidatorCase{V::Iban, "GB82 WEST 1234 5698 7654 32", true},
        ValidatorCase{V::Iban, "FR14 2004 1010 0505 0001 3M02 606", true},
        ValidatorCase{V::Iban, "DE89 37O4 0044 0532 0130 00", true},
        ValidatorCase{V::Iban, "DE88 3704 0044 0532 0130 00", false},
        ValidatorCase{V::Iban, "DE89 3704 0044 0532 0130 00 12", false},  // not 22 long
        // Test numbers of the card networks; the classic Luhn example is too short for a card.
        ValidatorCase{V::Luhn, "4111 1111 1111 1111", true}, ValidatorCase{V::Luhn, "5500-0000-0000-0004", true},
        ValidatorCase{V::Luhn, "4111 1111 1111 1112", false}, ValidatorCase{V::Luhn, "79927398713", false},
        // Examples of German tax and pension insurance numbers as published by the authorities.
        ValidatorCase{V::TaxId, "86095742719", true}, ValidatorCase{V::TaxId, "47 036 892 816", true},
        ValidatorCase{V::TaxId, "86095742718", false},
        ValidatorCase{V::TaxId, "12345678903", false},  // right check digit, no digit repeated
        ValidatorCase{V::PensionNumber, "65 170839 J 003", true},
        ValidatorCase{V::PensionNumber, "15070649C103", true},
        ValidatorCase{V::PensionNumber, "65 170839 J 004", false},
        ValidatorCase{V::Date, "29.02.2024", true}, ValidatorCase{V::Date, "29.02.2023", false},
        ValidatorCase{V::Date, "31.04.2026", false}, ValidatorCase{V::Date, "14. MÄRZ 2026", true},
        ValidatorCase{V::Date, "March 14, 2026", true}, ValidatorCase{V::Date, "12/31/2025", true},
        ValidatorCase{V::Email, "max.muster@beispiel.co.uk", true},
        ValidatorCase{V::Email, "max..muster@beispiel.de", false},
        ValidatorCase{V::Bic, "COBADEFFXXX", true}, ValidatorCase{V::Bic, "RECHNUNG", false}));

struct TypeCase {
  const char* text;
  const char* entities;
};

class DefaultConfigurationTest : public ::testing::TestWithParam<TypeCase> {};

TEST_P(DefaultConfigurationTest, FindsExactlyTheseEntities) {
  EXPECT_EQ(extract(GetParam().text), GetParam().entities) << GetParam().text;
}

INSTANTIATE_TEST_SUITE_P(
    Types, DefaultConfigurationTest,
    ::testing::Values(
        TypeCase{"IBAN: DE89 3704 0044 0532 0130 00 BIC", "iban:DE89 3704 0044 0532 0130 00"},
        TypeCase{"IBAN DE88 3704 0044 0532 0130 00", ""},
        TypeCase{"DE89 37040044 0532 013000.", "iban:DE89 37040044 0532 013000"},
        TypeCase{"DE89 37O4 0044 0532 0130 00", "iban:DE89 37O4 0044 0532 0130 00"},
        TypeCase{"Karte 4111 1111 1111 1111", "card:4111 1111 1111 1111"},
        TypeCase{"Karte 4111 1111 1111 1112", ""},
        TypeCase{"Karte 41111111 11111111", "card:41111111 11111111"},
        TypeCase{"Mail an max.muster@beispiel.de.", "email:max.muster@beispiel.de"},
        TypeCase{"max.muster @beispiel.de", "email:max.muster @beispiel.de"},
        TypeCase{"BIC: COBADEFFXXX", "bic:COBADEFFXXX"},
        TypeCase{"Tel. +49 (0) 40 123 4567", "phone:+49 (0) 40 123 4567"},
        TypeCase{"Tel. 040/1234567, PLZ 01067", "phone:040/1234567"},
        TypeCase{"Steuer-ID 86 095 742 719", "taxid:86 095 742 719"},
        TypeCase{"Steuer-ID 86095742718", ""},
        TypeCase{"SV-Nr. 65 170839 J 003", "pension:65 170839 J 003"},
        TypeCase{"SV-Nr. 65 17O839 J 003", "pension:65 17O839 J 003"},
        TypeCase{"SV-Nr. 65 170839 J 004", ""},
        TypeCase{"am 14.03.2026 und 31.04.2026", "date:14.03.2026"},
        TypeCase{"vom 14. 03. 2026", "date:14. 03. 2026"},
        TypeCase{"vom 1O.03.2026", "date:1O.03.2026"},
        TypeCase{"on March 14, 2026", "date:March 14, 2026"},
        TypeCase{"Betrag 1.234,56 EUR oder $ 99.00", "amount:1.234,56 EUR | amount:$ 99.00"},
        TypeCase{"Frau Dr. Erika Beispiel-Muster", "person:Erika Beispiel-Muster"},
        TypeCase{"Erika\nBeispiel", ""},  // a line break ends a name
        TypeCase{"Anna K. Schmidt und Mark Twain", "person:Anna K. Schmidt"}));

// Union rectangles, and words without ids named by page and position; the marks the words
// get are checked through the WebAnno output below.
TEST(EntityExtractionTest, DescribesThePlaceOfEachEntity) {
  auto page = pageOf("Konto DE89 3704 0044 0532 0130 00\nmax@beispiel.de");
  const std::string json = de::extractEntities(*page, defaults());
  EXPECT_EQ(json, R"({"entities":[{"height":50,"id":1,"left":300,"page":1,)"
                  R"("text":"DE89 3704 0044 0532 0130 00","top":0,"type":"iban","width":1780,)"
                  R"("words":["#1.2","#1.3","#1.4","#1.5","#1.6","#1.7"]},{"height":50,"id":2,)"
                  R"("left":0,"page":1,"text":"max@beispiel.de","top":60,"type":"email",)"
                  R"("width":280,"words":["#1.8"]}]})");
}

// The sample letter through the C interface: its planted entities, and nothing else, come
// out as sensitive tokens of the WebAnno output.
TEST(EntityExtractionJobTest, GoldenWebAnnoOfTheSampleLetter) {
  qent::test::TempDir dir;
  qent::test::Job job;
  job.set("WorkSpace", dir.path().string());
  // Copied, so the job reads a path of its own workspace on every platform.
  dir.write("letter.json", qent::test::readAll(kEntities.parent_path() / "samples" / "letter-entities.json"));
  job.set("InputFilename", "letter.json");
  job.set("EntityExtraction", "true");
  job.set("EntityExtraction.OutputFilename", "entities.json");
  job.set("OutputFilename", "letter.webanno");
  job.set("OutputFilename.Format", "webanno");
  ASSERT_EQ(job.execute(), ORMIDA_OK) << job.errorText();
  const std::string webanno = qent::test::readAll(dir / "letter.webanno");
  qent::test::expectGolden("entities/letter-entities.webanno", webanno);
  qent::test::expectGolden("entities/letter-entities.result.json", qent::test::readAll(dir / "entities.json"));
  EXPECT_EQ(job.get("EntityExtraction.Result").second, qent::test::readAll(dir / "entities.json"));
  std::string sensitive;  // the text column of every sensitive row
  std::istringstream rows(webanno);
  for (std::string row; std::getline(rows, row);) {
    const std::size_t text = row.find('\t', row.find('\t') + 1) + 1, label = row.rfind('\t');
    if (row.compare(label + 1, 10, "sensitive[") == 0) sensitive += row.substr(text, label - text) + " ";
  }
  EXPECT_EQ(sensitive, "Erika Beispiel 14.03.2026 2. März 2026 122,21 EUR. 28.03.2026 DE89 3704 0044 0532 0130 00, "
                       "COBADEFFXXX. 4111 1111 1111 1111 86095742719 Jürgen Schmidt +49 40 1234567 "
                       "juergen.schmidt@nordlicht-buero.de. Jürgen Schmidt ");
}

TEST(EntityExtractionJobTest, NeedsALayoutAndAReadableConfiguration) {
  qent::test::TempDir dir;
  qent::test::Job job;
  dir.write("letter.txt", "IBAN DE89 3704 0044 0532 0130 00\n");
  job.set("WorkSpace", dir.path().string());
  job.set("InputFilename", "letter.txt");
  job.set("EntityExtraction", "true");
  EXPECT_EQ(job.execute(), ORMIDA_FAILED);
  EXPECT_EQ(job.errorText().rfind("error in OrmidaJobExecute: Entity extraction needs a layout; ", 0), 0u)
      << job.errorText();
  job.set("EntityExtraction.Configuration", "missing.json");
  EXPECT_EQ(job.execute(), 20020u);
  EXPECT_EQ(job.errorText().rfind("error in OrmidaJobExecute: Entity configuration: cannot read ", 0), 0u)
      << job.errorText();
}

struct HostileCase {
  const char* name;
  std::string configuration;
  const char* error;  // empty: must load and run
};

class HostileConfigurationTest : public ::testing::TestWithParam<HostileCase> {};

TEST_P(HostileConfigurationTest, FailsClearlyOrRunsInLinearTime) {
  try {
    const auto configuration = de::EntityConfiguration::parse(GetParam().configuration, kEntities);
    auto page = pageOf(std::string(200000, 'a') + "!");
    const auto start = std::chrono::steady_clock::now();
    de::extractEntities(*page, configuration);
    EXPECT_STREQ(GetParam().error, "");
    // Generous: a backtracking matcher needs years for this text.
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(20));
  } catch (const qent::base::QentException& e) {
    EXPECT_EQ(e.code(), 20020u);
    EXPECT_EQ(std::string(e.what()), GetParam().error);
  }
}

std::string entity(const std::string& members) { return R"({"entities":[{"type":"x",)" + members + "}]}"; }

INSTANTIATE_TEST_SUITE_P(
    Configurations, HostileConfigurationTest,
    ::testing::Values(
        HostileCase{"Catastrophic", entity(R"("pattern":"(a+)+$")"), ""},
        HostileCase{"HugePattern", entity(R"("pattern":")" + std::string(10 << 20, 'a') + "\""),
                    "Entity configuration: entity 1 (\"x\"): \"pattern\" is longer than 65536 bytes"},
        HostileCase{"HugeRepeat", entity(R"("pattern":"((a{1000}){1000}){1000}")"),
                    "Entity configuration: entity 1 (\"x\"): \"pattern\" is not a valid pattern: "
                    "invalid repetition size: {1000}"},
        HostileCase{"InvalidUtf8", entity("\"pattern\":\"\xC3(\""),
                    "Entity configuration: not valid UTF-8 (byte 36)"},
        HostileCase{"InvalidPattern", entity(R"("pattern":"(a")"),
                    "Entity configuration: entity 1 (\"x\"): \"pattern\" is not a valid pattern: "
                    "missing ): (a"},
        HostileCase{"UnknownValidator", entity(R"("pattern":"a","validate":"crc")"),
                    "Entity configuration: entity 1 (\"x\"): \"validate\" must be one of iban, "
                    "luhn, date, email, taxid, pension, bic, phone"},
        HostileCase{"WordsWithoutPlace", entity(R"("pattern":"a","words":"firstnames.txt")"),
                    "Entity configuration: entity 1 (\"x\"): \"pattern\" must hold {words} where "
                    "the word list goes"}),
    [](const auto& c) { return std::string(c.param.name); });

// A generated corpus: letters whose entities are known because the generator planted them.
// Check digits are computed here the simple way, apart from the validators under test.
class LetterCorpus {
public:
  explicit LetterCorpus(unsigned seed) : random_(seed) {}

  // The letter's text; `planted` gets "type:text" of every entity in it.
  std::string letter(std::multiset<std::string>& planted) {
    const auto plant = [&planted](const std::string& type, const std::string& text) {
      planted.insert(type + ":" + text);
      return text;
    };
    const std::string first = pick(kFirstNames), last = pick(kLastNames);
    std::string text = "Nordlicht GmbH, Hafenstrasse " + number(1, 99) + ", 20457 Hamburg\n";
    text += "Frau " + plant("person", first + " " + last) + "\n";
    text += "Hamburg, den " + plant("date", date()) + "\n";
    text += "Rechnung Nr. " + number(1000, 9999) + "-" + number(10, 99) + " Kundennummer " +
            number(100000, 999999) + "\n";
    text += "Sehr geehrte Frau " + last + ", der Betrag von " + plant("amount", amount()) +
            " ist bis zum " + plant("date", date()) + " faellig.\n";
    text += "IBAN " + plant("iban", iban()) + " BIC " + plant("bic", bic()) + "\n";
    if (chance()) text += "Kreditkarte " + plant("card", card()) + " Seite 1 von 2\n";
    if (chance()) text += "Steuer-ID " + plant("taxid", taxId()) + " Artikel 4711\n";
    if (chance()) text += "SV-Nummer " + plant("pension", pension()) + "\n";
    text += "Telefon " + plant("phone", phone()) + " oder E-Mail " +
            plant("email", lower(first) + "." + lower(last) + "@beispiel-" + number(1, 9) + ".de") +
            "\n";
    text += "Mit freundlichen Gruessen " + plant("person", pick(kFirstNames) + " " + pick(kLastNames));
    return text;
  }

private:
  static constexpr const char* kFirstNames[] = {"Anna", "Thomas", "Sabine", "Michael", "Julia",
                                                "Peter", "Emily", "James", "Sophie", "Lukas"};
  static constexpr const char* kLastNames[] = {"Schmidt", "Meyer", "Wagner", "Becker", "Hoffmann",
                                               "Smith", "Taylor", "Brown", "Klein", "Wolf"};

  template <std::size_t N>
  std::string pick(const char* const (&list)[N]) {
    return list[random_() % N];
  }
  std::string number(int low, int high) {
    return std::to_string(std::uniform_int_distribution<int>(low, high)(random_));
  }
  std::string digits(std::size_t count) {
    std::string result;
    while (result.size() < count) result += static_cast<char>('0' + random_() % 10);
    return result;
  }
  bool chance() { return random_() % 2 == 0; }
  static std::string lower(std::string text) { return text.replace(0, 1, 1, static_cast<char>(text[0] - 'A' + 'a')); }
  static std::string grouped(const std::string& text, std::size_t size) {
    std::string result;
    for (std::size_t i = 0; i < text.size(); i += size) result += (i ? " " : "") + text.substr(i, size);
    return result;
  }
  static std::string two(std::uint64_t n) { return {static_cast<char>('0' + n / 10 % 10), static_cast<char>('0' + n % 10)}; }
  std::string date() { return two(1 + random_() % 28) + "." + two(1 + random_() % 12) + ".20" + two(random_() % 30); }
  std::string amount() {
    const std::string euros = number(1, 999), cents = number(10, 99);
    return chance() ? euros + "," + cents + " EUR" : "€ " + euros + "," + cents;
  }
  std::string iban() {
    const std::string bban = digits(18);
    int rest = 0;
    for (const char c : bban + "131400") rest = (rest * 10 + (c - '0')) % 97;
    const int check = 98 - rest;
    return grouped("DE" + std::to_string(check / 10) + std::to_string(check % 10) + bban, 4);
  }
  char letter() { return static_cast<char>('A' + random_() % 26); }
  std::string bic() {
    return std::string{letter(), letter(), letter(), letter()} + "DE" + (chance() ? "FFXXX" : "MM");
  }
  std::string card() {
    std::string number = "4" + digits(14);
    int sum = 0;
    for (std::size_t i = 0; i < number.size(); ++i) {
      int d = number[number.size() - 1 - i] - '0';
      if (i % 2 == 0) d = d * 2 > 9 ? d * 2 - 9 : d * 2;
      sum += d;
    }
    return grouped(number + static_cast<char>('0' + (10 - sum % 10) % 10), 4);
  }
  std::string taxId() {
    while (true) {
      const std::string first10 = std::to_string(1 + random_() % 9) + digits(9);
      std::map<char, int> counts;
      for (const char c : first10) ++counts[c];
      int repeated = 0, most = 0;
      for (const auto& [c, n] : counts) repeated += n > 1, most = std::max(most, n);
      if (repeated != 1 || most > 3) continue;
      int product = 10;
      for (const char c : first10) {
        const int sum = (c - '0' + product) % 10;
        product = ((sum == 0 ? 10 : sum) * 2) % 11;
      }
      return first10 + static_cast<char>('0' + (11 - product) % 10);
    }
  }
  std::string pension() {
    const std::string birth = two(1 + random_() % 28) + two(1 + random_() % 12) + two(random_() % 100);
    const char initial = letter();
    const std::string area = digits(2), serial = digits(2);
    const int place = initial - 'A' + 1, weights[] = {2, 1, 2, 5, 7, 1, 2, 1, 2, 1, 2, 1};
    const std::string all = area + birth + std::to_string(place / 10) + std::to_string(place % 10) + serial;
    int sum = 0;
    for (int i = 0; i < 12; ++i) sum += (all[i] - '0') * weights[i] / 10 + (all[i] - '0') * weights[i] % 10;
    return area + " " + birth + " " + initial + " " + serial + static_cast<char>('0' + sum % 10);
  }
  std::string phone() {
    return chance() ? "+49 " + number(30, 89) + " " + digits(7) : "0" + number(30, 899) + "/" + digits(6);
  }

  std::mt19937 random_;
};

TEST(EntityExtractionTest, FindsPlantedEntitiesOfAGeneratedCorpus) {
  LetterCorpus corpus(20260314);
  std::map<std::string, std::array<double, 3>> counts;  // type -> planted, found, correct
  for (int letter = 0; letter < 200; ++letter) {
    std::multiset<std::string> planted;
    const std::string text = corpus.letter(planted);
    for (const std::string& p : planted) ++counts[p.substr(0, p.find(':'))][0];
    for (const std::string& item : found(de::extractEntities(*pageOf(text), defaults()))) {
      auto& typeCounts = counts[item.substr(0, item.find(':'))];
      ++typeCounts[1];
      if (const auto it = planted.find(item); it != planted.end()) {
        ++typeCounts[2];
        planted.erase(it);
      }
    }
  }
  for (const auto& [type, n] : counts) {
    const double precision = n[1] == 0 ? 1 : n[2] / n[1], recall = n[0] == 0 ? 1 : n[2] / n[0];
    std::printf("  %-8s planted %4.0f found %4.0f precision %.3f recall %.3f\n", type.c_str(), n[0],
                n[1], precision, recall);
    EXPECT_GE(precision, 0.95) << type;
    EXPECT_GE(recall, 0.90) << type;
  }
}

}  // namespace
