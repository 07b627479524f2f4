// EntityConfiguration.cpp - checks the configuration member by member and compiles the
// patterns with RE2.
#include "dataextract/EntityConfiguration.h"

#include "base/FileIo.h"
#include "base/Unicode.h"
#include "base/platform/platform.h"
#include "dataextract/ConfigJson.h"

#include <re2/re2.h>

#include <set>

namespace qent::dataextract {

namespace {

constexpr const char* kWhat = "Entity configuration";
constexpr std::string_view kWordsPlaceholder = "{words}";

using Value = rapidjson::Value;

class EntityReader {
public:
  EntityReader(const Value& entity, std::size_t index, const std::filesystem::path& folder)
      : entity_(entity), index_(index), folder_(folder) {}

  EntityType read() {
    if (!entity_.IsObject()) fail("", "must be an object");
    const Value* type = find("type");
    if (type == nullptr || !type->IsString() || type->GetStringLength() == 0) {
      fail("type", "must be a non-empty string");
    }
    result_.name.assign(type->GetString(), type->GetStringLength());
    if (result_.name.find_first_of(" \t\r\n") != std::string::npos) {
      fail("type", "must not hold blanks (words are marked \"<type> <number>\")");
    }
    for (auto member = entity_.MemberBegin(); member != entity_.MemberEnd(); ++member) {
      const std::string key(member->name.GetString(), member->name.GetStringLength());
      if (kKnown.count(key) == 0) fail(key, "is not a member of an entity (a misspelling?)");
    }
    if (const Value* validate = find("validate")) {
      const auto validator =
          validate->IsString()
              ? validatorNamed({validate->GetString(), validate->GetStringLength()})
              : std::nullopt;
      if (!validator) fail("validate", std::string("must be one of ") + validatorNames());
      result_.validator = *validator;
    }
    if (const Value* sensibility = find("sensibility")) {
      if (!sensibility->IsNumber() || sensibility->GetDouble() < 0 ||
          sensibility->GetDouble() > 1) {
        fail("sensibility", "must be a number from 0 to 1");
      }
      result_.sensibility = sensibility->GetDouble();
    }
    compilePattern();
    return std::move(result_);
  }

private:
  inline static const std::set<std::string> kKnown{"type", "pattern", "validate", "sensibility",
                                                   "words"};

  [[noreturn]] void fail(const std::string& member, const std::string& why) const {
    std::string where = "entity " + std::to_string(index_ + 1);
    if (!result_.name.empty()) where += " (\"" + result_.name + "\")";
    if (!member.empty()) where += ": \"" + member + "\"";
    failConfig(kWhat, where + " " + why);
  }

  const Value* find(const char* key) const {
    const auto found = entity_.FindMember(key);
    return found == entity_.MemberEnd() ? nullptr : &found->value;
  }

  // "(?:w1|w2|...)" of the words of the list, each matched literally.
  std::string wordAlternation(const Value& words) const {
    if (!words.IsString() || words.GetStringLength() == 0) fail("words", "must name a file");
    const std::filesystem::path file =
        folder_ / base::platform::pathFromUtf8({words.GetString(), words.GetStringLength()});
    std::string text;
    try {
      text = base::readFile(file);
    } catch (const std::exception& e) {
      fail("words", "cannot be read: " + std::string(e.what()));
    }
    if (text.size() > kMaxWordListBytes) {
      fail("words", "is larger than " + std::to_string(kMaxWordListBytes) + " bytes");
    }
    if (base::findInvalidUtf8(text) != std::string::npos) fail("words", "is not valid UTF-8");
    std::string alternation = "(?:";
    std::size_t count = 0;
    std::size_t start = 0;
    while (start < text.size()) {
      std::size_t end = text.find('\n', start);
      if (end == std::string::npos) end = text.size();
      std::string_view word(text.data() + start, end - start);
      while (!word.empty() && (word.back() == '\r' || word.back() == ' ')) word.remove_suffix(1);
      while (!word.empty() && word.front() == ' ') word.remove_prefix(1);
      if (!word.empty() && word.front() != '#') {
        if (count++ > 0) alternation += '|';
        alternation += re2::RE2::QuoteMeta(re2::StringPiece(word.data(), word.size()));
      }
      start = end + 1;
    }
    if (count == 0) fail("words", "holds no word");
    alternation += ')';
    return alternation;
  }

  void compilePattern() {
    const Value* pattern = find("pattern");
    if (pattern == nullptr || !pattern->IsString() || pattern->GetStringLength() == 0) {
      fail("pattern", "must be a non-empty string");
    }
    if (pattern->GetStringLength() > kMaxPatternBytes) {
      fail("pattern", "is longer than " + std::to_string(kMaxPatternBytes) + " bytes");
    }
    std::string text(pattern->GetString(), pattern->GetStringLength());
    if (const Value* words = find("words")) {
      const std::size_t at = text.find(kWordsPlaceholder);
      if (at == std::string::npos) fail("pattern", "must hold {words} where the word list goes");
      text.replace(at, kWordsPlaceholder.size(), wordAlternation(*words));
    }
    re2::RE2::Options options;
    options.set_log_errors(false);
    options.set_max_mem(kMaxPatternMemory);
    auto compiled = std::make_shared<re2::RE2>(text, options);
    if (!compiled->ok()) fail("pattern", "is not a valid pattern: " + compiled->error());
    result_.pattern = std::move(compiled);
  }

  const Value& entity_;
  std::size_t index_;
  const std::filesystem::path& folder_;
  EntityType result_;
};

}  // namespace

EntityConfiguration EntityConfiguration::parse(std::string_view json,
                                               const std::filesystem::path& folder) {
  const rapidjson::Document document = parseConfigJson(json, kWhat);
  if (!document.IsObject()) failConfig(kWhat, "the document must be an object with \"entities\"");
  const auto entities = document.FindMember("entities");
  if (entities == document.MemberEnd() || !entities->value.IsArray()) {
    failConfig(kWhat, "\"entities\" must be an array of entity types");
  }
  if (entities->value.Empty()) failConfig(kWhat, "\"entities\" holds no entity type");
  EntityConfiguration configuration;
  std::set<std::string> names;
  for (const Value& entity : entities->value.GetArray()) {
    EntityType type = EntityReader(entity, configuration.types_.size(), folder).read();
    if (!names.insert(type.name).second) {
      failConfig(kWhat, "entity " + std::to_string(configuration.types_.size() + 1) + " (\"" +
                            type.name + "\"): \"type\" is used by an earlier entity");
    }
    configuration.types_.push_back(std::move(type));
  }
  return configuration;
}

EntityConfiguration EntityConfiguration::load(const std::filesystem::path& file) {
  std::string text;
  try {
    text = base::readFile(file);
  } catch (const std::exception& e) {
    failConfig(kWhat, "cannot read " + base::platform::pathToUtf8(file) + ": " + e.what());
  }
  return parse(text, file.parent_path());
}

}  // namespace qent::dataextract
