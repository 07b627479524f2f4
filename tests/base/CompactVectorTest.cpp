// CompactVectorTest.cpp - the one-pointer vector against std::vector under random edits,
// with an element type whose moves a bitwise copy would break (short strings point into
// themselves); and the one-pointer string under the same kind of edits.
#include "base/CompactU16String.h"
#include "base/CompactVector.h"

#include <gtest/gtest.h>

#include <random>
#include <string>
#include <vector>

namespace qent::test {
namespace {

TEST(CompactVectorTest, RandomEditsMatchStdVector) {
  std::mt19937 random(7);
  for (int round = 0; round < 200; ++round) {
    base::CompactVector<std::u16string> compact;
    std::vector<std::u16string> reference;
    for (int step = 0; step < 60; ++step) {
      // Short values stay in the string's own buffer, long ones on the heap.
      const std::u16string value(random() % 2 != 0 ? 3 : 40,
                                 static_cast<char16_t>(u'a' + step % 26));
      const std::size_t at = reference.empty() ? 0 : random() % (reference.size() + 1);
      switch (random() % 7) {
        case 0: compact.push_back(value); reference.push_back(value); break;
        case 1:
          compact.emplace(compact.begin() + at, value);
          reference.emplace(reference.begin() + static_cast<std::ptrdiff_t>(at), value);
          break;
        case 2:
          if (at < reference.size()) {
            compact.erase(compact.begin() + at);
            reference.erase(reference.begin() + static_cast<std::ptrdiff_t>(at));
          }
          break;
        case 3: compact.reserve(at * 2); break;
        case 5:
          compact.shrink_to_fit();
          ASSERT_EQ(compact.capacity(), compact.size());
          break;
        case 4:
          // An element of the vector itself as the new value, while it grows.
          if (!reference.empty()) {
            compact.emplace_back(compact.front());
            reference.emplace_back(reference.front());
          }
          break;
        default: {
          base::CompactVector<std::u16string> copy = compact;
          compact = std::move(copy);
        }
      }
      ASSERT_EQ(std::vector<std::u16string>(compact.begin(), compact.end()), reference)
          << "round " << round << " step " << step;
    }
    if (round % 50 == 0) compact.clear();
  }
  EXPECT_THROW(base::CompactVector<int>().at(0), std::out_of_range);
}

TEST(CompactU16StringTest, RandomAssignmentsMatchStdU16String) {
  std::mt19937 random(11);
  base::CompactU16String compact;
  std::u16string reference;
  for (int step = 0; step < 2000; ++step) {
    const std::size_t from = reference.empty() ? 0 : random() % reference.size();
    const std::size_t count = random() % (reference.size() - from + 1);
    switch (random() % 4) {
      case 0: {
        // Units past ASCII and a NUL, which the length in front keeps.
        const char16_t unit = static_cast<char16_t>(step % 3 == 0 ? 0 : 0x4E00 + step);
        const std::u16string value(random() % 40, unit);
        compact.assign(value);
        reference = value;
        break;
      }
      case 1:
        // A part of the string itself as its new text.
        compact.assign(compact.view().substr(from, count));
        reference = reference.substr(from, count);
        break;
      case 2: {
        base::CompactU16String copy = compact;
        compact = std::move(copy);
        break;
      }
      default: compact = base::CompactU16String(compact.view());
    }
    ASSERT_EQ(compact.view(), reference) << "step " << step;
    ASSERT_EQ(compact.empty(), reference.empty());
  }
}

}  // namespace
}  // namespace qent::test
