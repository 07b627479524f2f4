// XmlEventReaderTest.cpp - the streaming XML reader against pugixml's DOM on the cases its
// rules single out, whole and in pieces; and the hOCR reader streamed against itself whole.
#include "hocr/PugiHocrReader.h"

#include "XmlEvents.h"
#include "base/QentException.h"
#include "layout/Layout.h"
#include "layout/Node.h"
#include "support/LayoutDump.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>

namespace {

using qent::test::domEvents;
using qent::test::streamedEvents;
using qent::text::hocr::PugiHocrReader;

TEST(XmlEventReaderTest, AgreesWithPugixmlWholeAndInPieces) {
  using namespace std::string_literals;
  const std::string cases[] = {
      // elements and attributes
      "<a/>", "<a></a>", "<a b='1' c=\"2\" b='3'/>", "<a b = '1' >x</a >", "<a/ >",
      "<a b='1'c='2'/>", "<a b/>", "<a b=1/>", "<a b='1'=/>", "<a b='<>&quot;'/>",
      "<é ñ='ü'>ä</é>", "<a:b.c-d_e f:g='h'/>", "<1a/>", "<a></b>", "</a>", "<a><b></a></b>",
      "<a></a><b/>", "text<a/>more", "", " \n ", "<a>x", "<a", "<", "<a>x</a", "<a b='x",
      // text
      "<a>&amp;&lt;&gt;&quot;&apos;&#65;&#x42;&#X43;&#x6a;&#x4A;&#x;&#;&ampx &foo; &#12a &a &</a>",
      "<a>&#0;rest</a>", "<a b='x&#0;y'/>", "<a>&#xD800;&#x110000;&#4294967361;&#x7FFFFFFF;</a>",
      "<a b='t\tn\nr\r\nq\rz'/>", "<a>l1\r\nl2\rl3\n</a>", "<a>\n  </a>", "<a> x <b/> </a>",
      "<a>x<b/>y<!--c-->z<?p?>w</a>", "<a>]]> > y</a>", "<a>&#32;<b/>t</a>",
      // CDATA, comments, instructions, DOCTYPE
      "<a><![CDATA[ <x> \r\n ]]></a>", "<a><![CDATA[]]>after</a>", "<a><![CDAT[x]]></a>",
      "<a><![CDATA[x]></a>", "<![CDATA[top]]><a/>", "<a><!-- c -- d ---></a>", "<a><!- x --></a>",
      "<!-- x --", "<?xml version='1.0'?><a/>", "<?xml version='1.0'><a/>", "<? x?><a/>",
      "<?x", "<a><?pi body?></a>", "<!DOCTYPE html PUBLIC \"-//W3C\" \"x.dtd\"><a/>",
      "<!DOCTYPE a [<!ENTITY x 'y>'> <!-- > --> <?p >?> <![IGNORE[ <![ ]]> ]]> ]><a/>",
      "<!DOCTYPE a [<x>]><a/>", "<!DOCTYPE a \"x><a/>", "<a><!DOCTYPE a></a>",
      "<!doctype html><a/>", "<!x><a/>", "<!DOCTYPE a",
      // byte order mark, NUL
      "\xEF\xBB\xBF<a/>", "<a/>\0<b"s, "<a>x\0</a>"s, "\0<a/>"s};
  for (const std::string& text : cases) {
    const std::string want = domEvents(text);
    EXPECT_EQ(streamedEvents(text), want) << text;
    for (const auto& [head, piece] : {std::pair{0, 1}, {3, 2}, {5, 7}}) {
      EXPECT_EQ(streamedEvents(text, head, piece), want) << text << " in pieces of " << piece;
    }
  }
}

std::string readWith(const std::string& text, PugiHocrReader::Dialect dialect, std::size_t piece) {
  try {
    PugiHocrReader reader(dialect);
    if (piece == 0) return qent::test::dump(*reader.read(text));
    qent::test::PieceSource rest(std::string_view(text).substr(1), piece);
    return qent::test::dump(*reader.readStream(text.substr(0, 1), rest));
  } catch (const std::exception& e) {
    return std::string("error: ") + e.what();
  }
}

// Every hOCR and HTML document of the test data, in both dialects: streamed in pieces of a
// few bytes it reads to the same tree or fails with the same message as read whole.
TEST(HocrReaderStreamTest, StreamedDocumentsReadAsWholeOnes) {
  namespace fs = std::filesystem;
  std::size_t documents = 0;
  for (const char* folder : {"hocr", "html", "third_party/hocr", "fuzz/HocrReaderFuzz"}) {
    const fs::path root = fs::path(ORMIDA_TEST_DATA_DIR) / folder;
    if (!fs::exists(root)) continue;
    for (const auto& entry : fs::recursive_directory_iterator(root)) {
      if (!entry.is_regular_file()) continue;
      std::ostringstream bytes;
      bytes << std::ifstream(entry.path(), std::ios::binary).rdbuf();
      const std::string text = bytes.str();
      if (text.empty()) continue;
      ++documents;
      for (const auto dialect : {PugiHocrReader::Dialect::Strict, PugiHocrReader::Dialect::Tolerant}) {
        const std::string whole = readWith(text, dialect, 0);
        EXPECT_EQ(readWith(text, dialect, 3), whole) << entry.path();
      }
    }
  }
  EXPECT_GE(documents, 20u);
}

}  // namespace
