// StatisticsReport.cpp - the three forms of the statistics report.
#include "wordrecognizer/StatisticsReport.h"

#include "base/Unicode.h"

#include <rapidjson/stringbuffer.h>
#include <rapidjson/writer.h>

#include <algorithm>
#include <functional>
#include <locale>
#include <sstream>

namespace qent::text::wordrecognizer {

namespace {

constexpr std::string_view kEol = "\r\n";

// A default-formatted stream in the classic locale: "55.2", "0.7132", "100".
std::string number(double value) {
  std::ostringstream out;
  out.imbue(std::locale::classic());
  out << value;
  return out.str();
}

std::string number(std::uint64_t value) { return std::to_string(value); }

bool isGerman(const TextStatistics& statistics) { return statistics.language == "deu"; }

std::vector<std::pair<std::u16string, std::uint64_t>> byFrequency(
    const std::map<std::u16string, std::uint64_t>& frequency) {
  std::vector<std::pair<std::u16string, std::uint64_t>> sorted(frequency.begin(), frequency.end());
  std::stable_sort(sorted.begin(), sorted.end(),
                   [](const auto& a, const auto& b) { return a.second > b.second; });
  return sorted;
}

// ---- text ----

class TextReport {
public:
  TextReport(std::string& out, bool all) : out_(out), all_(all) {}

  void write(const TextStatistics& s, std::string_view indent) {
    indent_ = indent;
    counted("small words:", s.small);
    counted("large words:", s.large);
    counted("recognized words:", s.main);
    counted("stop words:", s.stop);
    counted("rejected words:", s.rejected);
    counted("total words:", s.total);
    line("raw glyph count:", number(s.rawGlyphCount));
    line("glyph ratio long words:", number(s.glyphRatioLongWords) + "%");
    line("longer glyph rate:", number(s.longerGlyphRate) + "%");
    digrams("raw", s.rawDigrams, s.rawDigramArithmetic, s.rawDigramGeometric);
    digrams("filtered", s.filteredDigrams, s.filteredDigramArithmetic, s.filteredDigramGeometric);
    line("fulltext quality:", number(s.fulltextQuality));
    if (isGerman(s)) {
      const Readability readability = computeReadability(s.readability);
      line("total syllables:", number(s.readability.totalSyllables));
      line("total sentences:", number(s.readability.totalSentences));
      line("Flesch reading ease:", std::to_string(readability.fre));
      for (int i = 0; i < 4; ++i) {
        // "º" is one character of the 26, two bytes in UTF-8.
        line(std::to_string(i + 1) + "\xC2\xBA Wiener Sachtextformel:",
             std::to_string(readability.wstf[static_cast<std::size_t>(i)]), 1);
      }
    }
    if (all_) writeLists(s);
  }

private:
  void line(const std::string& label, const std::string& value, std::size_t extraBytes = 0) {
    out_ += indent_;
    out_ += label;
    out_.append(26 + extraBytes > label.size() ? 26 + extraBytes - label.size() : 1, ' ');
    out_ += value;
    out_ += kEol;
  }
  void counted(const std::string& label, const ClassCount& count) {
    line(label, number(count.words) + "\t(" + number(count.characters) + " characters)");
  }
  void digrams(const std::string& kind, const DigramSums& sums, double arithmetic,
               double geometric) {
    line(kind + " digram count:", number(sums.count));
    line(kind + " digram score:", number(arithmetic) + " (arithmetic), " + number(geometric) +
                                      " (geometric)");
  }
  void writeLists(const TextStatistics& s) {
    auto lengths = [](const std::vector<std::uint64_t>& perLength) {
      std::string text;
      for (std::uint64_t count : perLength) {
        if (!text.empty()) text += ' ';  // appended apart: GCC 12 -O3 warns falsely otherwise
        text += number(count);
      }
      return text;
    };
    line("main words per length:", lengths(s.mainPerLength));
    line("total words per length:", lengths(s.totalPerLength));
    frequencies("recognized word list:", s.mainFrequency);
    frequencies("stop word list:", s.stopFrequency);
    frequencies("rejected word list:", s.rejectedFrequency);
    for (const GarbageRange& range : s.garbage) {
      line("garbage:", number(range.first) + "-" + number(range.last) + "\t" +
                           base::utf16ToUtf8Lenient(range.text));
    }
  }
  void frequencies(const std::string& label,
                   const std::map<std::u16string, std::uint64_t>& frequency) {
    std::string text;
    for (const auto& [word, count] : byFrequency(frequency)) {
      if (!text.empty()) text += ", ";
      text += base::utf16ToUtf8Lenient(word) + " " + number(count);
    }
    line(label, text);
  }

  std::string& out_;
  bool all_;
  std::string_view indent_;
};

std::string writeText(const ReportInput& input) {
  std::string out;
  TextReport report(out, input.all);
  if (!input.perPage) {
    report.write(input.result.document, "");
    return out;
  }
  out += "document-global:";
  out += kEol;
  report.write(input.result.document, "\t");
  for (const auto& [name, statistics] : input.result.pages) {
    out += "page " + name + ":";
    out += kEol;
    report.write(statistics, "\t");
  }
  return out;
}

// ---- CSV ----

constexpr std::string_view kCsvHeader =
    "InputFilename;Page;Language;SmallWordCount;LargeWordCount;MainWordCount;StopWordCount;"
    "RejectedWordCount;TotalWordCount;SmallWordCoverage;LargeWordCoverage;MainWordCoverage;"
    "StopWordCoverage;RejectedWordCoverage;TotalWordCoverage;RawGlyphCount;GlyphRatioLongWords;"
    "LongerGlyphRate;RawDigramCount;RawDigramScoreArithmetic;RawDigramScoreGeometric;"
    "FilteredDigramCount;FilteredDigramScoreArithmetic;FilteredDigramScoreGeometric;"
    "FulltextQuality";

void csvLine(std::string& out, const std::string& input, const std::string& page,
             const TextStatistics& s) {
  const std::string fields[] = {
      input, page, s.language,
      number(s.small.words), number(s.large.words), number(s.main.words), number(s.stop.words),
      number(s.rejected.words), number(s.total.words),
      number(s.small.characters), number(s.large.characters), number(s.main.characters),
      number(s.stop.characters), number(s.rejected.characters), number(s.total.characters),
      number(s.rawGlyphCount), number(s.glyphRatioLongWords), number(s.longerGlyphRate),
      number(s.rawDigrams.count), number(s.rawDigramArithmetic), number(s.rawDigramGeometric),
      number(s.filteredDigrams.count), number(s.filteredDigramArithmetic),
      number(s.filteredDigramGeometric), number(s.fulltextQuality)};
  bool first = true;
  for (const std::string& field : fields) {
    if (!first) out += ';';
    out += field;
    first = false;
  }
  out += kEol;
}

std::string writeCsv(const ReportInput& input) {
  std::string out(kCsvHeader);
  out += kEol;
  csvLine(out, input.inputName, "", input.result.document);
  if (input.perPage) {
    for (const auto& [name, statistics] : input.result.pages) {
      csvLine(out, input.inputName, name, statistics);
    }
  }
  return out;
}

// ---- JSON ----

using JsonWriter = rapidjson::Writer<rapidjson::StringBuffer>;

void jsonString(JsonWriter& out, std::u16string_view text) {
  out.String(base::utf16ToUtf8Lenient(text));
}

void frequencyObject(JsonWriter& out, const std::map<std::u16string, std::uint64_t>& frequency) {
  // Keys in ascending order of their UTF-8 bytes, as every JSON object the library writes.
  std::map<std::string, std::uint64_t> sorted;
  for (const auto& [word, count] : frequency) sorted.emplace(base::utf16ToUtf8Lenient(word), count);
  out.StartObject();
  for (const auto& [word, count] : sorted) {
    out.Key(word.data(), static_cast<rapidjson::SizeType>(word.size()));
    out.Uint64(count);
  }
  out.EndObject();
}

void countArray(JsonWriter& out, const std::vector<std::uint64_t>& counts) {
  out.StartArray();
  for (std::uint64_t count : counts) out.Uint64(count);
  out.EndArray();
}

void jsonStatistics(JsonWriter& out, const TextStatistics& s, double acceptThreshold) {
  using Member = std::pair<std::string, std::function<void()>>;
  auto unsignedMember = [&](std::string key, std::uint64_t value) {
    return Member{std::move(key), [&out, value] { out.Uint64(value); }};
  };
  auto doubleMember = [&](std::string key, double value) {
    return Member{std::move(key), [&out, value] { out.Double(value); }};
  };
  std::vector<Member> members = {
      unsignedMember("SmallWordCount", s.small.words),
      unsignedMember("SmallWordCoverage", s.small.characters),
      unsignedMember("LargeWordCount", s.large.words),
      unsignedMember("LargeWordCoverage", s.large.characters),
      unsignedMember("MainWordCount", s.main.words),
      unsignedMember("MainWordCoverage", s.main.characters),
      unsignedMember("StopWordCount", s.stop.words),
      unsignedMember("StopWordCoverage", s.stop.characters),
      unsignedMember("RejectedWordCount", s.rejected.words),
      unsignedMember("RejectedWordCoverage", s.rejected.characters),
      unsignedMember("TotalWordCount", s.total.words),
      unsignedMember("TotalWordCoverage", s.total.characters),
      unsignedMember("RawGlyphCount", s.rawGlyphCount),
      doubleMember("GlyphRatioLongWords", s.glyphRatioLongWords),
      doubleMember("LongerGlyphRate", s.longerGlyphRate),
      unsignedMember("RawDigramCount", s.rawDigrams.count),
      doubleMember("RawDigramScoreArithmetic", s.rawDigramArithmetic),
      doubleMember("RawDigramScoreGeometric", s.rawDigramGeometric),
      unsignedMember("FilteredDigramCount", s.filteredDigrams.count),
      doubleMember("FilteredDigramScoreArithmetic", s.filteredDigramArithmetic),
      doubleMember("FilteredDigramScoreGeometric", s.filteredDigramGeometric),
      doubleMember("FulltextQuality", s.fulltextQuality),
      {"Language", [&] { out.String(s.language); }},
      {"TextAccepted", [&] { out.Bool(s.fulltextQuality >= acceptThreshold); }},
      {"MainWordFrequency", [&] { frequencyObject(out, s.mainFrequency); }},
      {"StopWordFrequency", [&] { frequencyObject(out, s.stopFrequency); }},
      {"RejectedWordFrequency", [&] { frequencyObject(out, s.rejectedFrequency); }},
      {"MainWordCountPerLength", [&] { countArray(out, s.mainPerLength); }},
      {"TotalWordCountPerLength", [&] { countArray(out, s.totalPerLength); }},
      {"GarbageList",
       [&] {
         out.StartArray();
         for (const GarbageRange& range : s.garbage) {
           out.StartObject();
           out.Key("first");
           out.Uint64(range.first);
           out.Key("last");
           out.Uint64(range.last);
           out.Key("text");
           jsonString(out, range.text);
           out.EndObject();
         }
         out.EndArray();
       }},
  };
  const Readability readability = computeReadability(s.readability);
  if (isGerman(s)) {
    members.push_back(unsignedMember("TotalSyllables", s.readability.totalSyllables));
    members.push_back(unsignedMember("TotalSentences", s.readability.totalSentences));
    members.push_back({"ReadabilityFRE", [&out, &readability] { out.Int(readability.fre); }});
    members.push_back({"ReadabilityFREClassification",
                       [&out, &readability] { out.String(std::string(freClass(readability.fre))); }});
    for (std::size_t i = 0; i < 4; ++i) {
      const std::string key = "ReadabilityWSTF" + std::to_string(i + 1);
      members.push_back({key, [&out, &readability, i] { out.Int(readability.wstf[i]); }});
      members.push_back({key + "Classification", [&out, &readability, i] {
                           out.String(std::string(wstfClass(readability.wstf[i])));
                         }});
    }
  }
  std::sort(members.begin(), members.end(),
            [](const Member& a, const Member& b) { return a.first < b.first; });
  out.StartObject();
  for (const Member& member : members) {
    out.Key(member.first.data(), static_cast<rapidjson::SizeType>(member.first.size()));
    member.second();
  }
  out.EndObject();
}

std::string writeJson(const ReportInput& input) {
  rapidjson::StringBuffer buffer;
  JsonWriter out(buffer);
  out.StartObject();
  out.Key("DocumentStatistics");
  jsonStatistics(out, input.result.document, input.acceptThreshold);
  if (input.perPage) {
    out.Key("PageStatistics");
    out.StartObject();
    for (const auto& [name, statistics] : input.result.pages) {
      out.Key(name.data(), static_cast<rapidjson::SizeType>(name.size()));
      jsonStatistics(out, statistics, input.acceptThreshold);
    }
    out.EndObject();
  }
  out.EndObject();
  return std::string(buffer.GetString(), buffer.GetSize());
}

}  // namespace

std::string writeReport(const ReportInput& input, ReportFormat format) {
  switch (format) {
    case ReportFormat::Csv: return writeCsv(input);
    case ReportFormat::Json: return writeJson(input);
    case ReportFormat::Text: break;
  }
  return writeText(input);
}

std::string writeWordList(const std::map<std::u16string, std::uint64_t>& frequency) {
  std::string out;
  for (const auto& [word, count] : byFrequency(frequency)) {
    out += base::utf16ToUtf8Lenient(word) + "\t" + number(count);
    out += kEol;
  }
  return out;
}

}  // namespace qent::text::wordrecognizer
