// PropertyStore.cpp - a job's set properties.
#include "job/PropertyStore.h"

#include "base/Unicode.h"
#include "job/PropertyValues.h"
#include "job/property_table.h"

namespace qent::job {

void PropertyStore::setPlain(std::uint32_t number, std::u16string value) {
  ++revision_;
  plain_[number] = std::move(value);
}

void PropertyStore::appendSub(std::uint32_t mainNumber, std::u16string subName,
                              std::u16string value) {
  ++revision_;
  std::erase_if(subs_, [&](const SubPropertyRecord& record) {
    return record.mainNumber == mainNumber && record.subName == subName;
  });
  subs_.push_back({mainNumber, std::move(subName), std::move(value)});
}

void PropertyStore::appendUnknown(std::u16string name, std::u16string value) {
  ++revision_;
  for (auto& [knownName, knownValue] : unknown_) {
    if (knownName == name) {
      knownValue = std::move(value);
      return;
    }
  }
  unknown_.emplace_back(std::move(name), std::move(value));
}

std::optional<std::u16string> PropertyStore::plain(std::uint32_t number) const {
  const auto found = plain_.find(number);
  if (found == plain_.end()) return std::nullopt;
  return found->second;
}

bool PropertyStore::isSet(std::uint32_t number) const {
  const auto found = plain_.find(number);
  return found != plain_.end() && !found->second.empty();
}

std::u16string PropertyStore::string(std::uint32_t number) const {
  return plain(number).value_or(std::u16string());
}

bool PropertyStore::boolean(std::uint32_t number) const { return toBoolean(string(number)); }

std::int32_t PropertyStore::integer(std::uint32_t number, std::int32_t fallback) const {
  const auto value = plain(number);
  return value && !value->empty() ? toInteger(*value) : fallback;
}

double PropertyStore::floatingPoint(std::uint32_t number, double fallback) const {
  const auto value = plain(number);
  return value && !value->empty() ? toDouble(*value) : fallback;
}

std::vector<std::pair<std::uint32_t, std::u16string>> PropertyStore::subProperties(
    std::uint32_t mainNumber) const {
  std::vector<std::pair<std::uint32_t, std::u16string>> result;
  for (const SubPropertyRecord& record : subs_) {
    if (record.mainNumber != mainNumber) continue;
    result.emplace_back(propertyNumber(base::utf16ToUtf8Lenient(record.subName)), record.value);
  }
  return result;
}

}  // namespace qent::job
