// RegionTemplate.cpp - checks a region template document member by member.
#include "dataextract/RegionTemplate.h"

#include "base/Unicode.h"
#include "dataextract/ConfigJson.h"

#include <set>
#include <stdexcept>

namespace qent::dataextract {

namespace {

constexpr const char* kWhat = "Region template";
constexpr double kPermilleEnd = 1000.0;

using Value = rapidjson::Value;

// Names the region in every message: by position, and by name once it is known.
class RegionReader {
public:
  RegionReader(const Value& region, std::size_t index) : region_(region), index_(index) {}

  RegionTemplate read() {
    if (!region_.IsObject()) fail("", "must be an object");
    const Value* name = find("name");
    if (name == nullptr || !name->IsString() || name->GetStringLength() == 0) {
      fail("name", "must be a non-empty string");
    }
    result_.name.assign(name->GetString(), name->GetStringLength());
    for (auto member = region_.MemberBegin(); member != region_.MemberEnd(); ++member) {
      const std::string key(member->name.GetString(), member->name.GetStringLength());
      if (kKnown.count(key) == 0) fail(key, "is not a member of a region (a misspelling?)");
    }
    readUnit();
    readPages();
    result_.left = number("left", false);
    result_.top = number("top", false);
    result_.width = number("width", true);
    result_.height = number("height", true);
    if (result_.unit == RegionUnit::Permille) {
      if (result_.left + result_.width > kPermilleEnd) fail("width", "reaches beyond 1000 permille");
      if (result_.top + result_.height > kPermilleEnd) {
        fail("height", "reaches beyond 1000 permille");
      }
    }
    readKeywords();
    return std::move(result_);
  }

private:
  [[noreturn]] void fail(const std::string& member, const std::string& why) const {
    std::string where = "region " + std::to_string(index_ + 1);
    if (!result_.name.empty()) where += " (\"" + result_.name + "\")";
    if (!member.empty()) where += ": \"" + member + "\"";
    failConfig(kWhat, where + " " + why);
  }

  inline static const std::set<std::string> kKnown{"name",   "pages", "left", "top",
                                                   "width",  "height", "unit", "keywords"};

  const Value* find(const char* key) const {
    const auto found = region_.FindMember(key);
    return found == region_.MemberEnd() ? nullptr : &found->value;
  }

  void readUnit() {
    const Value* unit = find("unit");
    if (unit == nullptr) return;
    const std::string_view text =
        unit->IsString() ? std::string_view(unit->GetString(), unit->GetStringLength()) : "";
    if (text == "px") {
      result_.unit = RegionUnit::Pixel;
    } else if (text == "permille") {
      result_.unit = RegionUnit::Permille;
    } else {
      fail("unit", "must be \"px\" or \"permille\"");
    }
  }

  void readPages() {
    const Value* pages = find("pages");
    if (pages == nullptr) return;
    if (!pages->IsString()) fail("pages", "must be a string such as \"all\", \"1\" or \"2-4,last\"");
    try {
      result_.pages = PageSelection::parse({pages->GetString(), pages->GetStringLength()});
    } catch (const std::invalid_argument& e) {
      fail("pages", e.what());
    }
  }

  double number(const char* key, bool size) const {
    const Value* value = find(key);
    if (value == nullptr) fail(key, "is missing; a region needs left, top, width and height");
    if (!value->IsNumber()) fail(key, "must be a number");
    const double number = value->GetDouble();
    if (size && number <= 0) fail(key, "must be greater than 0");
    if (!size && number < 0) fail(key, "must not be negative");
    return number;
  }

  void readKeywords() {
    const Value* keywords = find("keywords");
    if (keywords == nullptr) return;
    if (!keywords->IsArray()) fail("keywords", "must be an array of strings");
    for (const Value& keyword : keywords->GetArray()) {
      if (!keyword.IsString() || keyword.GetStringLength() == 0) {
        fail("keywords", "must hold non-empty strings only");
      }
      result_.keywords.emplace_back(keyword.GetString(), keyword.GetStringLength());
    }
  }

  const Value& region_;
  std::size_t index_;
  RegionTemplate result_;
};

}  // namespace

std::vector<RegionTemplate> parseRegionTemplates(std::string_view json) {
  const rapidjson::Document document = parseConfigJson(json, kWhat);
  if (!document.IsObject()) failConfig(kWhat, "the document must be an object with \"regions\"");
  const auto regions = document.FindMember("regions");
  if (regions == document.MemberEnd() || !regions->value.IsArray()) {
    failConfig(kWhat, "\"regions\" must be an array of regions");
  }
  if (regions->value.Empty()) failConfig(kWhat, "\"regions\" holds no region");
  std::vector<RegionTemplate> result;
  std::set<std::string> names;
  for (const Value& region : regions->value.GetArray()) {
    RegionTemplate read = RegionReader(region, result.size()).read();
    if (!names.insert(read.name).second) {
      failConfig(kWhat, "region " + std::to_string(result.size() + 1) + " (\"" + read.name +
                            "\"): \"name\" is used by an earlier region");
    }
    result.push_back(std::move(read));
  }
  return result;
}

}  // namespace qent::dataextract
