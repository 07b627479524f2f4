// NodeIteratorTest.cpp - pre-order cursors, typed cursors and their parents, checked against
// a plain recursive walk.
#include "layout/IteratorTemplate.h"
#include "layout/Nodes.h"
#include "support/LayoutDump.h"

#include <gtest/gtest.h>

#include <functional>
#include <random>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

namespace qent::test {
namespace {

using namespace qent::text::layout;

// The reference: (node, parent) pairs of a recursive pre-order walk.
void preorder(Node* node, Node* parent, std::vector<std::pair<Node*, Node*>>& out) {
  out.emplace_back(node, parent);
  for (const auto& child : node->children()) preorder(child.get(), node, out);
}

// A random tree of random classes, 1 to 60 nodes, up to 8 levels.
std::unique_ptr<Node> randomTree(std::mt19937& random, int depth = 0) {
  static const char* const kClasses[] = {"Node", "Page", "Line", "Word", "Glyph", "Box",
                                         "Content", "Picture", "Field", "Image", "Fragment"};
  auto node = parseDump(kClasses[random() % 11]);
  const int children = depth >= 7 ? 0 : static_cast<int>(random() % (depth == 0 ? 5 : 4));
  for (int i = 0; i < children; ++i) node->appendChild(randomTree(random, depth + 1));
  return node;
}

TEST(NodeIteratorTest, MatchesARecursiveWalkOnRandomTrees) {
  std::mt19937 random(20240611);
  for (int round = 0; round < 300; ++round) {
    auto tree = randomTree(random);
    std::vector<std::pair<Node*, Node*>> expected;
    preorder(tree.get(), nullptr, expected);
    std::vector<std::pair<Node*, Node*>> seen;
    for (NodeIterator it(tree.get()); it != NodeIterator(); ++it) {
      seen.emplace_back(&*it, it.parent());
    }
    ASSERT_EQ(seen, expected) << dump(*tree);
  }
}

TEST(NodeIteratorTest, TypedCursorsYieldTheNodesOfTheirClassAndSubclasses) {
  std::mt19937 random(7);
  for (int round = 0; round < 100; ++round) {
    auto tree = randomTree(random);
    std::vector<std::pair<Node*, Node*>> all;
    preorder(tree.get(), nullptr, all);
    std::vector<Node*> fragments;
    std::vector<Node*> words;
    for (const auto& [node, parent] : all) {
      if (dynamic_cast<Fragment*>(node) != nullptr) fragments.push_back(node);
      if (dynamic_cast<Word*>(node) != nullptr) words.push_back(node);
    }
    std::vector<Node*> seenFragments;
    for (Fragment& f : nodesOf<Fragment>(*tree)) seenFragments.push_back(&f);
    std::vector<Node*> seenWords;
    for (IteratorTemplate<Word> it(tree.get()); !it.atEnd(); ++it) seenWords.push_back(&*it);
    ASSERT_EQ(seenFragments, fragments) << dump(*tree);
    ASSERT_EQ(seenWords, words) << dump(*tree);
  }
}

TEST(NodeIteratorTest, EndsComparesAndPostIncrements) {
  Word word, other;
  NodeIterator single(&word);
  EXPECT_EQ(single.parent(), nullptr);
  EXPECT_NE(single, NodeIterator(&other)) << "cursors on different start nodes differ";
  ++single;
  EXPECT_EQ(single, NodeIterator());
  ++single;  // advancing an ended cursor changes nothing
  EXPECT_EQ(single, NodeIterator());
  auto tree = parseDump("Page{Word\"a\",Word\"b\"}");
  NodeIterator it(tree.get());
  ++it;
  NodeIterator before = it++;
  EXPECT_EQ(&*before, &tree->child(0));
  EXPECT_EQ(&*it, &tree->child(1));
  IteratorTemplate<Word> words(tree.get());
  IteratorTemplate<Word> first = words++;
  EXPECT_EQ(&*first, &tree->child(0));
  EXPECT_EQ(words->text(), u"b");
  EXPECT_EQ(words.parent(), tree.get());
  // A typed cursor started on a match yields it first.
  auto w = parseDump("Word\"w\"{Glyph\"a\",Word\"inner\"}");
  IteratorTemplate<Word> inner(w.get());
  EXPECT_EQ(&*inner, w.get());
  EXPECT_EQ((++inner)->text(), u"inner");
  EXPECT_TRUE((++inner).atEnd());
}

TEST(NodeIteratorTest, DereferencingAnEndedCursorFails) {
  NodeIterator ended;
  Page page;
  IteratorTemplate<Word> noWord(&page);
  EXPECT_TRUE(noWord.atEnd());
  for (const std::function<void()>& access : std::vector<std::function<void()>>{
           [&] { *ended; }, [&] { (void)ended->id(); }, [&] { *noWord; }}) {
    try {
      access();
      ADD_FAILURE() << "no exception";
    } catch (const std::invalid_argument& e) {
      EXPECT_STREQ(e.what(), "Access to invalidated cursor. (nullptr)");
    }
  }
}

// The tree's destruction at the end would overflow the stack as well if it recursed.
TEST(NodeIteratorTest, WalksAMillionLevelsWithoutRecursion) {
  auto top = std::make_unique<Node>();
  Node* tip = top.get();
  for (int i = 0; i < 1000000; ++i) tip = &tip->appendChild(std::make_unique<Node>());
  tip->appendChild(std::make_unique<Word>());
  IteratorTemplate<Word> it(top.get());
  ASSERT_FALSE(it.atEnd());
  EXPECT_EQ(it.cursor().depth(), 1000001u);
  EXPECT_EQ(it.parent(), tip);
}

// A cursor narrowed by a subclass, the way a comparison walks one chosen level.
class LeafCursor : public IteratorTemplate<Node> {
public:
  explicit LeafCursor(Node* start) : IteratorTemplate<Node>(start) { skipOthers(); }
  bool matches(const Node* node) const override { return node->childCount() == 0; }
};

TEST(NodeIteratorTest, SubclassesCanNarrowTheMatch) {
  auto tree = parseDump("Page{Line{Word\"a\"},Word\"b\"}");
  std::u16string seen;
  for (LeafCursor it(tree.get()); !it.atEnd(); ++it) seen += static_cast<Word&>(*it).text();
  EXPECT_EQ(seen, u"ab");
}

}  // namespace
}  // namespace qent::test
