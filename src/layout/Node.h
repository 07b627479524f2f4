// Node.h - the base of every layout tree node: identifier, free attributes and owned children.
#pragma once

#include "base/CompactU16String.h"
#include "base/CompactVector.h"
#include "layout/AttributeMap.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace qent::text::layout {

class NodeVisitor;
class ShallowCopier;
class FaithfulCopier;

// The library class a node is, or derives from. Set by the constructors, so hot loops can
// test a node's class without RTTI (see isA in NodeClass.h).
enum class NodeClass : std::uint8_t {
  Node, Page, Image, Content, Fragment, Box, Line, Word, Glyph, Picture, Field
};

// What a node seldom has, held apart so that the nodes of a long document do not pay for
// it: allocated when first changed. Fragments extend it with their own seldom set fields
// (FragmentDetails), so that a word holds one pointer for both.
struct NodeExtras {
  NodeExtras() = default;
  NodeExtras(const NodeExtras&) = default;
  NodeExtras& operator=(const NodeExtras&) = delete;
  virtual ~NodeExtras() = default;
  virtual std::unique_ptr<NodeExtras> clone() const {
    return std::make_unique<NodeExtras>(*this);
  }

  AttributeMap auxiliaryAttributes;
};

// A node owns its children; there is no parent pointer (iterators keep the path instead).
// Any node kind may be the child of any other. Destroying a node destroys its subtree
// without recursion, so even a tree built in code far deeper than any reader accepts is
// released safely.
class Node {
public:
  using Attributes = AttributeMap;
  using Children = base::CompactVector<std::unique_ptr<Node>>;

  Node() = default;
  virtual ~Node();
  Node& operator=(const Node&) = delete;

  // Calls the visitor's visit for this node's most derived class.
  virtual void accept(NodeVisitor& visitor);

  NodeClass nodeClass() const { return nodeClass_; }

  std::u16string_view id() const { return id_.view(); }
  void setId(std::u16string_view id) { id_.assign(id); }

  // Free attributes, sorted by key; numbers read from files are kept as their text.
  const Attributes& attributes() const { return attributes_; }
  Attributes& attributes() { return attributes_; }
  void setAttribute(std::u16string_view key, std::u16string_view value) {
    attributes_.insert_or_assign(key, value);
  }

  // A second map that no operation of the library fills; it is carried along by copies
  // so that layouts built by other tools lose nothing. Held among the extras, since nearly
  // every node has none.
  const Attributes& auxiliaryAttributes() const;
  Attributes& auxiliaryAttributes();

  const Children& children() const { return children_; }
  std::size_t childCount() const { return children_.size(); }
  Node& child(std::size_t index) const { return *children_.at(index); }
  // Takes ownership and returns the child with its own type, for building trees:
  //   Line& line = page.appendChild(std::make_unique<Line>());
  template <class T>
  T& appendChild(std::unique_ptr<T> child) {
    T& added = *child;
    children_.push_back(std::move(child));
    return added;
  }
  void reserveChildren(std::size_t count) { children_.reserve(count); }
  // For readers, once a node's children are complete: the list keeps no room to grow.
  void fitChildren() { children_.shrink_to_fit(); }
  // Detaches all children; the node is left without any.
  Children takeChildren();

  // A number an operation keeps in the node to find its own record of it again without a
  // search (the comparison's statistics table). It means nothing to anyone else, and the
  // operation checks it before it trusts it: another operation may have left its own there.
  // It sits in what would be padding, so it costs no memory. 0 until an operation sets it;
  // operations set only other values.
  std::uint32_t lookupHint() const { return lookupHint_; }
  void setLookupHint(std::uint32_t hint) { lookupHint_ = hint; }

protected:
  explicit Node(NodeClass nodeClass) : nodeClass_(nodeClass) {}
  // Copies the node's own fields, not its children: only the copiers ask for it.
  Node(const Node& other);
  friend class FaithfulCopier;

  const NodeExtras* extras() const { return extras_.get(); }
  NodeExtras& extrasForChange();
  // The extras this kind of node holds, made when one of them is first changed.
  virtual std::unique_ptr<NodeExtras> newExtras() const;

private:
  base::CompactU16String id_;
  Attributes attributes_;
  std::unique_ptr<NodeExtras> extras_;
  Children children_;
  NodeClass nodeClass_ = NodeClass::Node;
  std::uint32_t lookupHint_ = 0;
};

}  // namespace qent::text::layout
