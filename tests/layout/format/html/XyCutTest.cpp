// XyCutTest.cpp - the XY-cut against a plain recursive one on random pages, and the
// reading orders of typical pages.
#include "layout/format/html/XyCut.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <tuple>

namespace {

using qent::text::layout::format::html::XyCut;
using Bounds = XyCut::Bounds;

// The reading order of the areas by a deliberately plain XY-cut: recursion, pairwise scans
// instead of sorted sweeps, doubles for the tolerance.
void referenceOrder(const std::vector<Bounds>& a, std::vector<std::size_t> set,
                    std::size_t depth, std::vector<std::size_t>& out) {
  auto byTop = [&](bool vertical) {
    return [&, vertical](std::size_t x, std::size_t y) {
      return vertical ? std::tie(a[x].top, x) < std::tie(a[y].top, y)
                      : std::tie(a[x].left, x) < std::tie(a[y].left, y);
    };
  };
  for (const bool vertical : {true, false}) {
    if (set.size() < 2 || depth >= XyCut::kMaxDepth) break;
    std::vector<std::size_t> sorted = set;
    std::sort(sorted.begin(), sorted.end(), byTop(vertical));
    std::vector<std::vector<std::size_t>> groups{{sorted[0]}};
    for (std::size_t k = 1; k < sorted.size(); ++k) {
      // The band so far ends where its furthest-reaching area ends (the first of them).
      const auto end = [&](std::size_t i) { return vertical ? a[i].bottom : a[i].right; };
      std::size_t far = groups.back().front();
      for (const std::size_t j : groups.back()) {
        if (end(j) > end(far)) far = j;
      }
      const auto size = [&](std::size_t i) { return vertical ? a[i].height() : a[i].width(); };
      const double start = static_cast<double>(vertical ? a[sorted[k]].top : a[sorted[k]].left);
      const double tolerance = 0.1 * static_cast<double>(std::min(size(sorted[k]), size(far)));
      if (start >= static_cast<double>(end(far)) - tolerance) groups.emplace_back();
      groups.back().push_back(sorted[k]);
    }
    if (groups.size() > 1) {
      for (auto& g : groups) referenceOrder(a, g, depth + 1, out);
      return;
    }
  }
  std::sort(set.begin(), set.end(), [&](std::size_t x, std::size_t y) {
    return std::tie(a[x].top, a[x].left, x) < std::tie(a[y].top, a[y].left, y);
  });
  out.insert(out.end(), set.begin(), set.end());
}

// The areas in the order the cells give them.
std::vector<std::size_t> orderOf(const std::vector<XyCut::Cell>& cells) {
  std::vector<std::size_t> out;
  std::vector<std::size_t> todo{0};
  while (!todo.empty()) {
    const XyCut::Cell& cell = cells[todo.back()];
    todo.pop_back();
    if (cell.kind == XyCut::Kind::Stack) {
      out.insert(out.end(), cell.parts.begin(), cell.parts.end());
    } else {
      todo.insert(todo.end(), cell.parts.rbegin(), cell.parts.rend());
    }
  }
  return out;
}

TEST(XyCutTest, AgreesWithAPlainRecursiveCutOnRandomPages) {
  std::mt19937 random(20);
  for (int round = 0; round < 400; ++round) {
    // Few distinct positions on a coarse grid, so that bands touch, overlap and nest.
    std::uniform_int_distribution<int> count(1, 14), cell(0, 9), span(1, 4);
    std::vector<Bounds> areas(static_cast<std::size_t>(count(random)));
    for (Bounds& b : areas) {
      b.left = cell(random) * 100 + cell(random);
      b.top = cell(random) * 60 + cell(random);
      b.right = b.left + span(random) * 90;
      b.bottom = b.top + span(random) * 50;
    }
    std::vector<std::size_t> all(areas.size()), want;
    for (std::size_t i = 0; i < all.size(); ++i) all[i] = i;
    referenceOrder(areas, all, 0, want);
    ASSERT_EQ(orderOf(XyCut::cut(areas)), want) << "round " << round;
  }
}

struct OrderCase {
  const char* name;
  std::vector<Bounds> areas;
  std::vector<std::size_t> order;
  XyCut::Kind top;
};

TEST(XyCutTest, ReadsTypicalPagesInOrder) {
  const OrderCase cases[] = {
      // Heading over two columns given right column first: heading, left, right.
      {"HeadingOverColumns", {{500, 600, 900, 1000}, {100, 600, 480, 1000}, {100, 100, 900, 200}},
       {2, 1, 0}, XyCut::Kind::Rows},
      // Boxes drawn 5 % into the next row still leave two rows (within the tolerance).
      {"SloppyRows", {{0, 95, 100, 200}, {0, 0, 100, 100}}, {1, 0}, XyCut::Kind::Rows},
      // 20 % overlap is no gap: one row, and the columns are side by side.
      {"OverlapBeyondTolerance", {{300, 80, 400, 180}, {0, 0, 100, 100}}, {1, 0},
       XyCut::Kind::Columns},
      // Overlapping in both directions: a stack by top, then left.
      {"Overlapping", {{50, 50, 150, 150}, {0, 0, 100, 100}, {60, 0, 160, 90}}, {1, 2, 0},
       XyCut::Kind::Stack},
  };
  for (const OrderCase& c : cases) {
    const auto cells = XyCut::cut(c.areas);
    EXPECT_EQ(orderOf(cells), c.order) << c.name;
    EXPECT_EQ(cells.front().kind, c.top) << c.name;
  }
  EXPECT_TRUE(XyCut::cut({}).empty());
}

TEST(XyCutTest, NestsNoDeeperThanItsLimit) {
  // A spiral: each cut peels one area off, so the cuts would nest as deep as there are areas.
  std::vector<Bounds> areas;
  std::int64_t l = 0, t = 0;
  for (int k = 0; k < 400; ++k) {
    areas.push_back(k % 2 == 0 ? Bounds{l, t, 100000, t + 10} : Bounds{l, t, l + 10, 100000});
    (k % 2 == 0 ? t : l) += 20;
  }
  std::vector<std::size_t> all(areas.size()), want;
  for (std::size_t i = 0; i < all.size(); ++i) all[i] = i;
  referenceOrder(areas, all, 0, want);
  EXPECT_EQ(orderOf(XyCut::cut(areas)), want);
}

}  // namespace
