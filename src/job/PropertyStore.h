// PropertyStore.h - the properties a caller has set on a job.
//
// Plain properties are keyed by their number; a later set replaces the value. Dotted
// sub-properties ("Compare.Level") are kept as a list in the order set, so the operation
// that reads them walks them in that order and the last one wins. Setting a dotted name
// again drops its earlier record and appends the new one: a job reused for many requests
// keeps one record per name instead of growing with every set. Names that resolve to
// nothing are kept, unread, in a list of their own, one entry per name.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

namespace qent::job {

struct SubPropertyRecord {
  std::uint32_t mainNumber;
  std::u16string subName;
  std::u16string value;
};

class PropertyStore {
public:
  void setPlain(std::uint32_t number, std::u16string value);
  void appendSub(std::uint32_t mainNumber, std::u16string subName, std::u16string value);
  void appendUnknown(std::u16string name, std::u16string value);

  // The stored value, or nothing when the property was never set.
  std::optional<std::u16string> plain(std::uint32_t number) const;
  // Set and not empty.
  bool isSet(std::uint32_t number) const;
  // The stored value, or an empty string.
  std::u16string string(std::uint32_t number) const;
  bool boolean(std::uint32_t number) const;
  std::int32_t integer(std::uint32_t number, std::int32_t fallback) const;
  double floatingPoint(std::uint32_t number, double fallback) const;

  // (sub number, value) of every record under mainNumber, in the order set; the sub
  // number is 0 for a sub name that is not in the property table.
  std::vector<std::pair<std::uint32_t, std::u16string>> subProperties(
      std::uint32_t mainNumber) const;

  const std::vector<SubPropertyRecord>& subRecords() const { return subs_; }
  // Counts every set; a result computed from the properties is stale once it moved on.
  std::uint64_t revision() const { return revision_; }
  const std::vector<std::pair<std::u16string, std::u16string>>& unknown() const {
    return unknown_;
  }

private:
  std::unordered_map<std::uint32_t, std::u16string> plain_;
  std::vector<SubPropertyRecord> subs_;
  std::vector<std::pair<std::u16string, std::u16string>> unknown_;
  std::uint64_t revision_ = 0;
};

}  // namespace qent::job
