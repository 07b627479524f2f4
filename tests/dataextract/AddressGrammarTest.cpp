// AddressGrammarTest.cpp - which texts are recipient and sender blocks, near-misses
// included, and the fields read from them.
#include "base/Unicode.h"
#include "dataextract/address/AddressGrammar.h"
#include "dataextract/address/AddressRecognizer.h"

#include <gtest/gtest.h>

#include <string>

namespace {

using namespace qent::dataextract;
using qent::base::utf8ToUtf16;

struct Decision {
  const char* text;
  bool recipient;
  bool sender;
};

TEST(AddressGrammarTest, DecidesRecipientAndSenderBlocks) {
  const Decision cases[] = {
      // Recipients of the five countries.
      {"Herrn\nMax Müller\nHauptstraße 5\n10115 Berlin", true, false},
      {"Nordbau GmbH\nz. Hd. Frau Dr. Anna Schmidt\nPostfach 10 20 30\nD-20095 Hamburg", true, false},
      {"Alpen AG\nRingstraße 12\nA-1010 Wien\nÖsterreich", true, false},
      {"Sonnenweg 3 a\n06108 Halle (Saale)", true, false},
      {"Mr John Smith\n12 High Street\nLONDON\nSW1A 2AA", true, false},
      {"Oak Supplies Ltd\n221B Baker Street\nLondon NW1 6XE\nUnited Kingdom", true, false},
      {"Jane Doe\nMaple Inc.\n1600 Pennsylvania Avenue\nWashington, DC 20500-0003", true, false},
      {"  Herrn \n\n Max   Müller\nHauptstraße 5\n10115 Berlin\n\n", true, false},
      {"Mr John Smith\n12 High Street\nLONDON SW1A 2A]", true, false},  // OCR: "]" for "J"
      // Near-misses.
      {"Berlin, 12. März 2024", false, false},
      {"Rechnung Nr. 12345\nHauptstraße 5\n10115 Berlin", false, false},
      {"Pos. Artikel Menge Preis\n1 Bau 3 12,50 EUR\n12345 Summe 1234,00", false, false},
      {"Max Müller\n10115 Berlin", false, false},
      {"John Doe\n12 Main Street\nSpringfield, XX 62701", false, false},
      {"Max Müller\nHauptstraße 5\n10115 Berlin 3", false, false},
      {"Firma\nNordbau GmbH\nAbteilung Einkauf\nHerrn\nJens Wolf\nHauptstraße 5\n10115 Berlin\n"
       "Deutschland", false, false},
      {"IBAN DE89 3704 0044 · BIC COBADEFFXXX", false, false},
      {"Hauptstraße 5 · 10115 Berlin", false, false},
      // Senders: return addresses with every separator, letterheads with contact data.
      {"Müller Bau GmbH · Hauptstraße 5 · 10115 Berlin", false, true},
      {"Oak Ltd | 12 High Street | London SW1A 2AA", false, true},
      {"Maple Inc., 12 Main Street, Springfield, IL 62701", false, true},
      {"Alpen AG - Ringstraße 12 - A-1010 Wien", false, true},
      {"Alpen AG +» Ringstraße 12 « A-1010 Wien", false, true},  // OCR of the middle dot
      {"Stern GmbH • Postfach 12 34 • 8001 Zürich • Schweiz", false, true},
      {"Nordbau GmbH\nRingstraße 12\n20095 Hamburg\nTel. 040 123456\nwww.nordbau.de", false, true},
      {"Nordbau GmbH\nRingstraße 12\n20095 Hamburg\nTel. 040 123456\nHerzliche Grüße", false, false},
  };
  for (const Decision& k : cases) {
    EXPECT_EQ(isRecipientText(utf8ToUtf16(k.text)), k.recipient) << k.text;
    EXPECT_EQ(isSenderText(utf8ToUtf16(k.text)), k.sender) << k.text;
  }
}

struct Fields {
  const char* text;
  const char* want;  // name|company|street|houseNumber|postalCode|town|country
};

std::string fieldsOf(const AddressFields& f) {
  std::u16string all;
  for (const std::u16string* field : {&f.name, &f.company, &f.street, &f.houseNumber,
                                      &f.postalCode, &f.town, &f.country}) {
    if (!all.empty() || field != &f.name) all += u'|';
    all += *field;
  }
  return qent::base::utf16ToUtf8(all);
}

TEST(AddressGrammarTest, ReadsTheFieldsOfARecipient) {
  const Fields cases[] = {
      {"Nordbau GmbH\nAbteilung Einkauf\nz. Hd. Herrn Dr. Jens Wolf\nPostfach 10 20 30\nD-20095 Hamburg",
       "Dr. Jens Wolf|Nordbau GmbH|Postfach|10 20 30|20095|Hamburg|"},
      {"Frau\nAnna Koch\nAm Mühlbach 12-14\nCH-8001 Zürich\nSCHWEIZ",
       "Anna Koch||Am Mühlbach|12-14|8001|Zürich|SCHWEIZ"},
      {"Mrs. Mary Brown\n7 Church Lane\nStoke-on-Trent\nST4 7AB", "Mary Brown||Church Lane|7|ST4 7AB|Stoke-on-Trent|"},
      {"Attn: George White\nEagle Media LLC\nPO Box 4411\nSalt Lake City, UT 84101\nUSA",
       "George White|Eagle Media LLC|PO Box|4411|84101|Salt Lake City|USA"},
  };
  for (const Fields& k : cases) {
    const auto fields = parseRecipientBlock(addressLines(utf8ToUtf16(k.text)));
    ASSERT_TRUE(fields) << k.text;
    EXPECT_EQ(fieldsOf(*fields), k.want);
  }
}

TEST(AddressGrammarTest, ReadsTheContactDataOfALetterhead) {
  const auto fields = parseSender(addressLines(
      u"Oak Ltd\n12 High Street\nLondon SW1A 2AA\nPhone: +44 20 7946 0000\n"
      u"Email: office@oak.co.uk\nwww.oak.co.uk\nRegistered in England No. 1234567"));
  ASSERT_TRUE(fields);
  EXPECT_EQ(fields->phone + u"|" + fields->email + u"|" + fields->web,
            u"+44 20 7946 0000|office@oak.co.uk|www.oak.co.uk");
}

}  // namespace
