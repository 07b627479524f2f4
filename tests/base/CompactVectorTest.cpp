// CompactVectorTest.cpp - the one-pointer vector against std::vector under random edits,
// with an element type whose moves a bitwise copy would break (short strings point into
// themselves).
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
      switch (random() % 6) {
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

}  // namespace
}  // namespace qent::test
