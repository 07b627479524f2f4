// MergeTrace.cpp - the per-page diagnostic JSON, written atomically.
#include "bestof/MergeTrace.h"

#include "base/FileIo.h"
#include "base/Unicode.h"

#include <rapidjson/stringbuffer.h>
#include <rapidjson/writer.h>

#include <cstdio>
#include <stdexcept>
#include <string>
#include <system_error>

namespace qent::bestof {

namespace {

using JsonWriter = rapidjson::Writer<rapidjson::StringBuffer>;

void writeRect(JsonWriter& out, const MatchRect& rect) {
  out.StartArray();
  for (const std::int64_t value : {rect.left, rect.top, rect.width(), rect.height()}) {
    out.Int64(value);
  }
  out.EndArray();
}

void writeText(JsonWriter& out, const std::u16string& text) {
  const std::string utf8 = base::utf16ToUtf8Lenient(text);
  out.String(utf8.data(), static_cast<rapidjson::SizeType>(utf8.size()));
}

}  // namespace

void writeMergeTrace(const std::filesystem::path& directory, std::size_t pageIndex,
                     std::size_t required, std::span<const Candidate> candidates,
                     std::span<const MergedWord> words) {
  rapidjson::StringBuffer buffer;
  JsonWriter out(buffer);
  // Members in ascending key order, as every JSON text of the library.
  out.StartObject();
  out.Key("clusters");
  out.StartArray();
  for (const MergedWord& word : words) {
    out.StartObject();
    out.Key("confidence");
    out.Double(word.confidence);
    out.Key("kept");
    out.Bool(word.kept);
    out.Key("members");
    out.StartArray();
    for (const std::uint32_t member : word.members) {
      const Candidate& candidate = candidates[member];
      out.StartObject();
      out.Key("input");
      out.Uint(candidate.input);
      out.Key("rect");
      writeRect(out, candidate.rect);
      out.Key("text");
      writeText(out, candidate.text);
      out.EndObject();
    }
    out.EndArray();
    out.Key("rect");
    writeRect(out, word.rect);
    out.Key("text");
    writeText(out, word.text);
    out.EndObject();
  }
  out.EndArray();
  out.Key("page");
  out.Uint64(pageIndex + 1);
  out.Key("required");
  out.Uint64(required);
  out.EndObject();

  std::error_code error;
  std::filesystem::create_directories(directory, error);
  char name[40];
  std::snprintf(name, sizeof name, "bestof-page-%04zu.json", pageIndex + 1);
  base::writeFileAtomic(directory / name, std::string_view(buffer.GetString(), buffer.GetSize()));
}

}  // namespace qent::bestof
