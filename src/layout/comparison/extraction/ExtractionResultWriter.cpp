// ExtractionResultWriter.cpp - streams both documents with RapidJSON's writer.
#include "layout/comparison/extraction/ExtractionResultWriter.h"

#include "base/Unicode.h"

#include <rapidjson/stringbuffer.h>
#include <rapidjson/writer.h>

#include <stdexcept>

namespace qent::text::layout::comparison::extraction {

namespace {

using JsonWriter = rapidjson::Writer<rapidjson::StringBuffer>;

void optionalIndex(JsonWriter& out, const std::optional<std::uint32_t>& index) {
  if (index) {
    out.Uint(*index);
  } else {
    out.Null();
  }
}

void text(JsonWriter& out, const ZoneResult& zone, const std::u16string& value) {
  std::string utf8;
  try {
    utf8 = base::utf16ToUtf8(value);
  } catch (const std::invalid_argument& e) {
    std::string message = "extraction details: a text of the zone \"";
    message += base::utf16ToUtf8Lenient(zone.id);
    message += "\" is not valid Unicode: ";
    message += e.what();
    throw std::invalid_argument(message);
  }
  out.String(utf8.data(), static_cast<rapidjson::SizeType>(utf8.size()));
}

void writeZone(JsonWriter& out, const ZoneResult& zone) {
  out.StartObject();
  out.Key("count");
  out.Uint64(zone.count);
  out.Key("errors");
  out.Uint64(zone.errors);
  out.Key("extracted");
  text(out, zone, zone.extracted);
  out.Key("id");
  text(out, zone, zone.id);
  out.Key("partialNodes");
  out.Uint(zone.partialNodes);
  out.Key("reference");
  text(out, zone, zone.reference);
  out.EndObject();
}

void writePage(JsonWriter& out, const PageResult& page) {
  out.StartObject();
  out.Key("count");
  out.Uint64(page.count);
  out.Key("errorRate");
  out.Double(page.errorRate());
  out.Key("errors");
  out.Uint64(page.errors);
  out.Key("mainPage");
  optionalIndex(out, page.mainPage);
  out.Key("referencePage");
  optionalIndex(out, page.referencePage);
  out.Key("zones");
  out.StartArray();
  for (const ZoneResult& zone : page.zones) writeZone(out, zone);
  out.EndArray();
  out.EndObject();
}

// The three figures, inside an object the caller opened.
void writeRates(JsonWriter& out, const ExtractionResult& result) {
  out.Key("errorRate");
  out.Double(result.errorRate());
  out.Key("maxErrorRate");
  out.Double(result.maxErrorRate());
  out.Key("pageErrorRates");
  out.StartArray();
  for (const PageResult& page : result.pages) out.Double(page.errorRate());
  out.EndArray();
}

}  // namespace

std::string writeErrorRates(const ExtractionResult& result) {
  rapidjson::StringBuffer buffer;
  JsonWriter out(buffer);
  out.StartObject();
  writeRates(out, result);
  out.EndObject();
  return {buffer.GetString(), buffer.GetSize()};
}

std::string writeExtractionDetails(const ExtractionResult& result) {
  rapidjson::StringBuffer buffer;
  JsonWriter out(buffer);
  out.StartObject();
  writeRates(out, result);
  out.Key("pages");
  out.StartArray();
  for (const PageResult& page : result.pages) writePage(out, page);
  out.EndArray();
  out.EndObject();
  return {buffer.GetString(), buffer.GetSize()};
}

}  // namespace qent::text::layout::comparison::extraction
