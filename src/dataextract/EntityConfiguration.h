// EntityConfiguration.h - the entity types an extraction looks for: a pattern each, an
// optional validator, the sensibility their words are marked with.
#pragma once

#include "dataextract/Validators.h"

#include <filesystem>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace re2 {
class RE2;
}

namespace qent::dataextract {

struct EntityType {
  std::string name;  // no blanks: the words' entity marks are "<name> <id>"
  std::shared_ptr<const re2::RE2> pattern;
  Validator validator = Validator::None;
  double sensibility = 1.0;
};

// Limits that keep a hostile configuration from costing much: RE2 matches in linear time,
// and these bound what it compiles.
inline constexpr std::size_t kMaxPatternBytes = 64 * 1024;
inline constexpr std::size_t kMaxWordListBytes = 4 * 1024 * 1024;
inline constexpr std::int64_t kMaxPatternMemory = 64 * 1024 * 1024;

class EntityConfiguration {
public:
  // Reads {"entities":[{"type":..., "pattern":..., "validate":..., "sensibility":...,
  // "words":...}, ...]}. A "words" file (one word a line, "#" starts a comment line) is
  // looked up relative to `folder` and replaces "{words}" in the pattern by the
  // alternation of its words. Any fault throws QentException 20020 "Entity configuration:
  // ..." naming the entity and the member.
  static EntityConfiguration parse(std::string_view json, const std::filesystem::path& folder);
  // parse() of a file; words files are found beside it.
  static EntityConfiguration load(const std::filesystem::path& file);

  const std::vector<EntityType>& types() const { return types_; }

private:
  std::vector<EntityType> types_;
};

}  // namespace qent::dataextract
