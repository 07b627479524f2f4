// ComparatorDifferentialTest.cpp - the engine against a deliberately simple reference
// implementation (all-pairs overlaps, map-based reduction, full dynamic programme) on
// random document pairs with OCR-like damage: splits, merges, lost and extra words, shifted
// boxes, duplicate boxes that tie.
#include "layout/Layout.h"
#include "layout/Nodes.h"
#include "layout/comparison/Comparator.h"
#include "layout/comparison/LayoutComparison.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <map>
#include <random>
#include <tuple>

namespace qent::test {
namespace {

using namespace qent::text::layout;
using comparison::CompareOptions;

struct RefWord {
  Rect rect;
  std::u16string text;
};
using RefPage = std::vector<RefWord>;

struct RefResult {
  std::uint64_t count = 0;
  std::uint64_t errors = 0;
  std::uint64_t lengthDifference = 0;
  int partner = -1;
  double f1 = 0.0;
};

std::size_t distance(const std::u16string& a, const std::u16string& b) {
  std::vector<std::vector<std::size_t>> d(a.size() + 1, std::vector<std::size_t>(b.size() + 1));
  for (std::size_t i = 0; i <= a.size(); ++i) d[i][0] = i;
  for (std::size_t j = 0; j <= b.size(); ++j) d[0][j] = j;
  for (std::size_t i = 1; i <= a.size(); ++i) {
    for (std::size_t j = 1; j <= b.size(); ++j) {
      d[i][j] = std::min({d[i - 1][j] + 1, d[i][j - 1] + 1,
                          d[i - 1][j - 1] + (a[i - 1] == b[j - 1] ? 0 : 1)});
    }
  }
  return d[a.size()][b.size()];
}

double overlap(const Rect& a, const Rect& b) {
  const long long w = std::min<long long>(a.right(), b.right()) - std::max(a.left, b.left);
  const long long h = std::min<long long>(a.bottom(), b.bottom()) - std::max(a.top, b.top);
  const long long i = w > 0 && h > 0 ? w * h : 0;
  const long long u = 1LL * a.width * a.height - i + 1LL * b.width * b.height;
  return u == 0 ? 0.0 : static_cast<double>(i) / static_cast<double>(u);
}

using Candidates = std::map<int, std::vector<int>>;

void offer(Candidates& lists, std::map<int, double>& best, int self, int other, double value) {
  if (value > best[self]) {
    best[self] = value;
    lists[self] = {other};
  } else if (std::fabs(value - best[self]) < 2.220446049250313e-16) {
    lists[self].push_back(other);
  }
}

bool reciprocity(Candidates& own, Candidates& other) {
  bool changed = false;
  for (auto& [self, list] : own) {
    std::vector<int> kept;
    for (int candidate : list) {
      const auto& back = other[candidate];
      if (std::find(back.begin(), back.end(), self) != back.end()) kept.push_back(candidate);
    }
    if (kept.size() == list.size()) continue;
    list = kept;
    changed = true;
    if (kept.size() == 1) other[kept[0]] = {self};
  }
  return changed;
}

bool tie(Candidates& own, const RefPage& ownWords, const RefPage& otherWords) {
  for (auto& [self, list] : own) {
    if (list.size() < 2) continue;
    int chosen = list.back();
    for (int candidate : list) {
      if (otherWords[candidate].text == ownWords[self].text) {
        chosen = candidate;
        break;
      }
    }
    list = {chosen};
    return true;
  }
  return false;
}

// Per word results of one page pair, characterwise with partial segmentation errors.
void referencePage(const RefPage& left, const RefPage& right, std::vector<RefResult>& l,
                   std::vector<RefResult>& r) {
  Candidates leftLists, rightLists;
  std::map<int, double> leftBest, rightBest;
  for (int i = 0; i < static_cast<int>(left.size()); ++i) {
    for (int j = 0; j < static_cast<int>(right.size()); ++j) {
      const double value = overlap(left[i].rect, right[j].rect);
      if (value < 2.220446049250313e-16) continue;
      offer(leftLists, leftBest, i, j, value);
      offer(rightLists, rightBest, j, i, value);
    }
  }
  while (reciprocity(leftLists, rightLists) || reciprocity(rightLists, leftLists) ||
         tie(leftLists, left, right) || tie(rightLists, right, left)) {
  }
  l.assign(left.size(), {});
  r.assign(right.size(), {});
  for (const auto& [i, list] : leftLists) {
    if (list.size() != 1) continue;
    const int j = list[0];
    const std::size_t nL = left[i].text.size(), nR = right[j].text.size();
    const std::size_t d = distance(left[i].text, right[j].text);
    const std::size_t good = std::max(nL, nR) > d ? std::max(nL, nR) - d : 0;
    l[i] = {nL, nL - good, nL == nR ? 0 : nL - std::min(nL, nR), j, 0.0};
    r[j] = {nR, nR - good, nL == nR ? 0 : nR - std::min(nL, nR), i, 0.0};
    const double rl = nL == 0 ? 1.0 : 1.0 - double(l[i].errors) / double(nL);
    const double rr = nR == 0 ? 1.0 : 1.0 - double(r[j].errors) / double(nR);
    l[i].f1 = r[j].f1 = rl + rr > 2.220446049250313e-16 ? 2 * rl * rr / (rl + rr) : 0.0;
  }
  for (auto [words, results] : {std::pair(&left, &l), std::pair(&right, &r)}) {
    for (std::size_t i = 0; i < words->size(); ++i) {
      const std::uint64_t n = (*words)[i].text.size();
      if ((*results)[i].partner < 0) (*results)[i] = {n, n, n, -1, 0.0};
    }
  }
}

class DocumentSource {
public:
  explicit DocumentSource(std::uint64_t seed) : random_(seed) {}

  std::vector<RefPage> truth(int pages) {
    std::vector<RefPage> out(pages);
    for (RefPage& page : out) {
      const int lines = pick(6);
      for (int line = 0; line < lines; ++line) {
        int x = 10;
        const int words = 1 + pick(8);
        for (int w = 0; w < words; ++w) {
          const int length = 1 + pick(9);
          page.push_back({Rect{x, 20 + 30 * line, 8 * length, 20}, text(length)});
          x += 8 * length + 4 + pick(3) * 4;
        }
      }
    }
    return out;
  }

  // What an OCR engine might make of the truth.
  std::vector<RefPage> recognise(const std::vector<RefPage>& truth) {
    std::vector<RefPage> out;
    for (const RefPage& page : truth) {
      RefPage recognised;
      for (std::size_t i = 0; i < page.size(); ++i) {
        RefWord word = page[i];
        const int roll = pick(100);
        if (roll < 4) continue;  // lost
        if (roll < 8 && word.text.size() > 1) {  // split in two
          const int cut = 1 + pick(static_cast<int>(word.text.size()) - 1);
          recognised.push_back({Rect{word.rect.left, word.rect.top, 8 * cut, 20},
                                word.text.substr(0, cut)});
          word.rect.left += 8 * cut;
          word.rect.width -= 8 * cut;
          word.text = word.text.substr(cut);
        } else if (roll < 12 && i + 1 < page.size() && page[i + 1].rect.top == word.rect.top) {
          const RefWord& next = page[++i];  // merged with the next word
          word.rect.width = static_cast<std::int32_t>(next.rect.right() - word.rect.left);
          word.text += next.text;
        } else if (roll < 14) {  // a duplicate box: ties
          recognised.push_back(word);
        }
        if (pick(3) == 0) word.rect.left += pick(7) - 3;
        if (pick(3) == 0) word.rect.top += pick(5) - 2;
        word.text = damage(word.text);
        recognised.push_back(word);
      }
      if (pick(10) == 0) recognised.push_back({Rect{400, 400, 30, 20}, text(3)});  // noise
      out.push_back(recognised);
    }
    if (pick(5) == 0) out.pop_back();  // a page that the OCR lost
    if (pick(5) == 0) out.push_back(truth.front());  // or one extra
    return out;
  }

private:
  int pick(int bound) { return static_cast<int>(random_() % static_cast<unsigned>(bound)); }
  std::u16string text(int length) {
    std::u16string out(static_cast<std::size_t>(length), u'a');
    for (char16_t& unit : out) unit = static_cast<char16_t>(u'a' + pick(5));
    return out;
  }
  std::u16string damage(const std::u16string& source) {
    std::u16string out;
    for (const char16_t unit : source) {
      const int roll = pick(100);
      if (roll < 3) continue;
      out.push_back(roll < 8 ? static_cast<char16_t>(u'a' + pick(6)) : unit);
      if (roll >= 97) out.push_back(u'e');
    }
    return out;
  }
  std::mt19937_64 random_;
};

// The tree of a document: each page's words directly below the page, in order.
std::unique_ptr<Layout> build(const std::vector<RefPage>& pages, std::vector<std::vector<Word*>>& words) {
  auto rootNode = std::make_unique<Content>();
  words.clear();
  for (const RefPage& refPage : pages) {
    Page& pageNode = rootNode->appendChild(std::make_unique<Page>());
    words.emplace_back();
    for (const RefWord& w : refPage) {
      Word& word = pageNode.appendChild(std::make_unique<Word>());
      word.setText(w.text);
      word.setRect(w.rect);
      words.back().push_back(&word);
    }
  }
  return std::make_unique<Layout>(std::move(rootNode));
}

TEST(ComparatorDifferentialTest, AgreesWithTheSimpleReference) {
  DocumentSource source(4242);
  CompareOptions options;
  options.alignment = comparison::Alignment::None;
  for (int round = 0; round < 300; ++round) {
    const std::vector<RefPage> truthPages = source.truth(1 + round % 4);
    const std::vector<RefPage> ocrPages = source.recognise(truthPages);
    std::vector<std::vector<Word*>> leftWords, rightWords;
    auto left = build(ocrPages, leftWords);
    auto right = build(truthPages, rightWords);
    const auto comparator = comparison::makeComparator(options, *left, *right);
    comparator->compare();

    std::uint64_t leftCount = 0, leftErrors = 0;
    for (std::size_t p = 0; p < std::max(ocrPages.size(), truthPages.size()); ++p) {
      const RefPage& l = p < ocrPages.size() ? ocrPages[p] : RefPage();
      const RefPage& r = p < truthPages.size() ? truthPages[p] : RefPage();
      std::vector<RefResult> want[2];
      referencePage(l, r, want[0], want[1]);
      const std::vector<Word*> none, *nodes[2] = {p < leftWords.size() ? &leftWords[p] : &none,
                                                  p < rightWords.size() ? &rightWords[p] : &none};
      for (int side = 0; side < 2; ++side) {
        for (std::size_t i = 0; i < want[side].size(); ++i) {
          const auto* got = comparator->statistics((*nodes[side])[i]);
          const RefResult& w = want[side][i];
          ASSERT_NE(got, nullptr);
          const Node* partner = w.partner < 0 ? nullptr : (*nodes[1 - side])[w.partner];
          EXPECT_EQ(std::tuple(got->partner, got->count, got->errors, got->lengthDifference),
                    std::tuple(partner, w.count, w.errors, w.lengthDifference))
              << "round " << round << " page " << p << " side " << side << " word " << i;
          EXPECT_DOUBLE_EQ(got->f1Measure, w.f1) << "round " << round;
          if (side == 0) leftCount += w.count, leftErrors += w.errors;
        }
      }
      if (::testing::Test::HasFailure()) return;
    }
    const auto* rootStats = comparator->statistics(left->root());
    ASSERT_NE(rootStats, nullptr);
    EXPECT_EQ(std::pair(rootStats->count, rootStats->errors), std::pair(leftCount, leftErrors));
  }
}

}  // namespace
}  // namespace qent::test
