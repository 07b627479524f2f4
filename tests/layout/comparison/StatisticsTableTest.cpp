// StatisticsTableTest.cpp - several tables over the same nodes, as when two comparisons of one
// layout are alive at once and overwrite each other's lookup hints, against std::map.
#include "layout/Nodes.h"
#include "layout/comparison/StatisticsTable.h"

#include <gtest/gtest.h>

#include <map>
#include <memory>
#include <random>
#include <vector>

namespace qent::test {
namespace {

using namespace qent::text::layout;
using comparison::NodeStatistics;
using comparison::StatisticsTable;

TEST(StatisticsTableTest, TablesSharingNodesFindTheirOwnRecordsOnly) {
  std::mt19937 random(5);
  for (int round = 0; round < 20; ++round) {
    // Enough nodes that the index, once built, has to grow.
    std::vector<std::unique_ptr<Word>> nodes(3000);
    for (auto& node : nodes) node = std::make_unique<Word>();
    const int tableCount = 1 + round % 3;
    std::vector<StatisticsTable> tables(tableCount);
    std::vector<std::map<const Node*, NodeStatistics*>> reference(tableCount);
    for (int step = 0; step < 6000; ++step) {
      const auto t = static_cast<std::size_t>(random() % tableCount);
      Word& node = *nodes[random() % nodes.size()];
      if (random() % 2 == 0) {
        NodeStatistics& record = tables[t].obtain(node);
        const auto at = reference[t].try_emplace(&node, &record).first;
        ASSERT_EQ(at->second, &record) << "round " << round << " step " << step;
      } else {
        const auto at = reference[t].find(&node);
        ASSERT_EQ(tables[t].find(&node), at != reference[t].end() ? at->second : nullptr)
            << "round " << round << " step " << step;
      }
    }
    for (int t = 0; t < tableCount; ++t) {
      EXPECT_EQ(tables[t].size(), reference[t].size());
      for (const auto& [node, record] : reference[t]) EXPECT_EQ(tables[t].find(node), record);
    }
  }
}

}  // namespace
}  // namespace qent::test
