// LayoutBuilders.h - small functions that build layout trees in tests.
//
// Each builder returns the node as std::unique_ptr of its own class and takes its children
// as further arguments, so a tree reads like its shape:
//   auto layout = layoutOf(root(page(line(Rect{0, 0, 50, 10},
//                                         word(u"ab", Rect{0, 0, 20, 10}),
//                                         word(u"cd", Rect{25, 0, 25, 10})))));
// Fields without a builder argument are set with `with`, which hands the node to a lambda:
//   with(word(u"ab"), [](Word& w) { w.setConfidence(90); })
// For trees stated as text see parseDump() in LayoutDump.h.
#pragma once

#include "layout/Layout.h"
#include "layout/Nodes.h"

#include <memory>
#include <string>
#include <utility>

namespace qent::test {

namespace detail {
template <class T, class... Children>
std::unique_ptr<T> withChildren(std::unique_ptr<T> node, Children&&... children) {
  (node->appendChild(std::forward<Children>(children)), ...);
  return node;
}
}  // namespace detail

template <class T, class Fn>
std::unique_ptr<T> with(std::unique_ptr<T> node, Fn&& change) {
  change(*node);
  return node;
}

// A layout root: a Content node with the type name "node", as the readers make it.
template <class... Children>
std::unique_ptr<text::layout::Content> root(Children&&... children) {
  auto node = std::make_unique<text::layout::Content>();
  node->setTypeName(u"node");
  return detail::withChildren(std::move(node), std::forward<Children>(children)...);
}

template <class... Children>
std::unique_ptr<text::layout::Page> page(Children&&... children) {
  return detail::withChildren(std::make_unique<text::layout::Page>(),
                              std::forward<Children>(children)...);
}

inline std::unique_ptr<text::layout::Image> image(std::u16string name) {
  auto node = std::make_unique<text::layout::Image>();
  node->setImage(std::move(name));
  return node;
}

template <class... Children>
std::unique_ptr<text::layout::Content> content(std::u16string typeName, std::u16string text,
                                               Children&&... children) {
  auto node = std::make_unique<text::layout::Content>();
  node->setTypeName(std::move(typeName));
  node->setText(std::move(text));
  return detail::withChildren(std::move(node), std::forward<Children>(children)...);
}

// Any fragment class with a rectangle and children: fragment<Field>(Rect{...}).
template <class T = text::layout::Fragment, class... Children>
std::unique_ptr<T> fragment(const text::layout::Rect& rect, Children&&... children) {
  auto node = std::make_unique<T>();
  node->setRect(rect);
  return detail::withChildren(std::move(node), std::forward<Children>(children)...);
}

template <class... Children>
std::unique_ptr<text::layout::Box> box(std::uint32_t kind, const text::layout::Rect& rect,
                                       Children&&... children) {
  auto node = fragment<text::layout::Box>(rect, std::forward<Children>(children)...);
  node->setBoxKind(kind);
  return node;
}

template <class... Children>
std::unique_ptr<text::layout::Line> line(const text::layout::Rect& rect, Children&&... children) {
  return fragment<text::layout::Line>(rect, std::forward<Children>(children)...);
}

template <class... Children>
std::unique_ptr<text::layout::Word> word(std::u16string text, const text::layout::Rect& rect = {},
                                         Children&&... children) {
  auto node = fragment<text::layout::Word>(rect, std::forward<Children>(children)...);
  node->setText(std::move(text));
  return node;
}

// A glyph with a confidence; -1 leaves it unset.
inline std::unique_ptr<text::layout::Glyph> glyph(std::u16string text,
                                                  const text::layout::Rect& rect = {},
                                                  double confidence = -1) {
  auto node = fragment<text::layout::Glyph>(rect);
  node->setText(std::move(text));
  node->setConfidence(confidence);
  return node;
}

inline std::unique_ptr<text::layout::Layout> layoutOf(std::unique_ptr<text::layout::Node> rootNode) {
  return std::make_unique<text::layout::Layout>(std::move(rootNode));
}

}  // namespace qent::test
