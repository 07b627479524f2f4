// AttributeMapTest.cpp - the node attribute map against std::map on random operations.
#include "layout/AttributeMap.h"
#include "layout/FaithfulCopier.h"
#include "layout/Nodes.h"

#include <gtest/gtest.h>

#include <cmath>
#include <map>
#include <memory>
#include <random>
#include <string>
#include <vector>

namespace {

using qent::text::layout::AttributeKey;
using qent::text::layout::AttributeMap;
using Reference = std::map<std::u16string, std::u16string>;

void expectSame(const AttributeMap& map, const Reference& reference) {
  std::vector<std::pair<std::u16string, std::u16string>> got;
  for (const auto& [key, value] : map) got.emplace_back(key, value);
  const std::vector<std::pair<std::u16string, std::u16string>> want(reference.begin(),
                                                                     reference.end());
  ASSERT_EQ(got, want);
}

// Shared keys, keys that only resemble them, keys beyond U+D7FF, the empty key and keys too
// long for a one-unit length, so that order, look-up and copies of every kind of key are
// exercised.
const std::u16string kKeys[] = {u"bbox", u"bbo", u"bboxx", u"comp_count", u"x_wconf", u"", u"z",
                                u"\uFF01", u"\U00010000", u"an unusually long key",
                                std::u16string(0x7FFF, u'k'), std::u16string(0x8000, u'k')};

TEST(AttributeMapTest, BehavesLikeAnOrderedMap) {
  std::mt19937 random(17);
  auto key = [&] { return kKeys[random() % std::size(kKeys)]; };
  for (int round = 0; round < 200; ++round) {
    AttributeMap map;
    Reference reference;
    for (int step = 0; step < 30; ++step) {
      const std::u16string k = key();
      const std::u16string v = std::u16string(1, static_cast<char16_t>(u'a' + step % 26));
      switch (random() % 6) {
        case 0:
          map.insert_or_assign(k, v);
          reference.insert_or_assign(k, v);
          break;
        case 1: {  // several at once, one of them a value of the map itself
          const std::u16string k2 = key();
          const std::u16string vv(2, v[0]);
          map.update({{k, v}, {k2, map.value(k)}, {u"z", vv}});
          const std::u16string old = reference.count(k) != 0 ? reference[k] : u"";
          reference[k] = v;  // in turn: the last of equal keys wins
          reference[k2] = old;
          reference[u"z"] = vv;
          break;
        }
        case 2: {  // a value appended to, long enough at times for a three-unit length
          std::u16string grown(map.value(k));
          grown.append(random() % 8 == 0 ? std::u16string(0xFFFF, u'v') : v);
          map.insert_or_assign(k, grown);
          reference[k] = grown;
          break;
        }
        case 3: {  // a batch in any order, duplicates included: the last of a key wins
          AttributeMap::Entries batch;
          Reference replaced;
          for (int i = static_cast<int>(random() % 6); i > 0; --i) {
            const std::u16string bk = key();
            std::u16string value = v;
            value.append(bk);  // not v + bk: GCC 12 warns falsely (-Wrestrict)
            batch.emplace_back(AttributeKey(bk), value);
            replaced.insert_or_assign(bk, value);
          }
          map.assign(std::move(batch));
          reference = replaced;
          break;
        }
        case 4:
          map.erase(k);
          reference.erase(k);
          break;
        default: {
          const AttributeMap copy = map;
          map = AttributeMap();
          map = copy;
          EXPECT_EQ(map, copy);
          EXPECT_EQ(map.count(k), reference.count(k));
          const auto found = map.find(k);
          if (found != map.end()) {
            EXPECT_EQ(found->second, reference.at(k));
          }
        }
      }
      expectSame(map, reference);
    }
  }
}

// The rarely set fields live apart from the node until one is set; copies must keep them,
// and a set value must read back exactly, -0 included.
TEST(AttributeMapTest, NodeCopiesKeepAuxiliaryAttributesAndFragmentDetails) {
  using namespace qent::text::layout;
  Word word;
  EXPECT_TRUE(word.auxiliaryAttributes().empty());
  word.auxiliaryAttributes().insert_or_assign(u"aux", u"1");
  word.setPolygon({{1, 2}, {3, 4}});
  word.setTextangle(-0.0);
  word.setFontSize(-1);
  const std::unique_ptr<Node> copy = FaithfulCopier::copy(word);
  const auto& copied = static_cast<const Word&>(*copy);
  EXPECT_EQ(copied.auxiliaryAttributes(), word.auxiliaryAttributes());
  EXPECT_EQ(copied.polygon(), word.polygon());
  EXPECT_TRUE(std::signbit(copied.textangle()));
  EXPECT_EQ(copied.fontSize(), -1);
}

}  // namespace
