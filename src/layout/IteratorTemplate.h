// IteratorTemplate.h - the pre-order cursor filtered to the nodes of one class.
#pragma once

#include "layout/NodeClass.h"
#include "layout/NodeIterator.h"

namespace qent::text::layout {

// Common base of the typed cursors: holds the inner pre-order cursor.
class IteratorBase {
public:
  explicit IteratorBase(Node* start) : cursor_(start) {}
  IteratorBase(const IteratorBase&) = default;
  IteratorBase& operator=(const IteratorBase&) = default;
  virtual ~IteratorBase() = default;

  const NodeIterator& cursor() const { return cursor_; }
  // The node whose child is the current node (null at the start node).
  Node* parent() const { return cursor_.parent(); }

protected:
  NodeIterator cursor_;
};

// Yields the start node and the nodes of its subtree that are a T or derived from T, in
// document order. Meant for Page, Image, Content, Fragment, Box, Line, Word, Glyph, Picture
// and Node; other classes are matched with dynamic_cast.
//
//   for (IteratorTemplate<Word> it(&root); !it.atEnd(); ++it) use(*it);
//   for (Word& word : nodesOf<Word>(root)) use(word);
template <class T>
class IteratorTemplate : public IteratorBase {
public:
  explicit IteratorTemplate(Node* start = nullptr) : IteratorBase(start) { skipOthers(); }
  IteratorTemplate(const IteratorTemplate&) = default;
  ~IteratorTemplate() override = default;

  virtual bool matches(const Node* node) const { return isA<T>(*node); }
  virtual IteratorTemplate operator++(int) {
    IteratorTemplate before(*this);
    ++*this;
    return before;
  }
  virtual IteratorTemplate& operator++() {
    ++cursor_;
    skipOthers();
    return *this;
  }
  virtual bool operator==(const IteratorTemplate& other) const { return cursor_ == other.cursor_; }
  virtual bool operator!=(const IteratorTemplate& other) const { return cursor_ != other.cursor_; }
  // Throw std::invalid_argument("Access to invalidated cursor. (nullptr)") at the end.
  virtual T& operator*() const { return static_cast<T&>(*cursor_); }
  virtual T* operator->() const { return &**this; }
  virtual IteratorTemplate& operator=(const IteratorTemplate& other) {
    cursor_ = other.cursor_;
    return *this;
  }
  // True once the inner cursor has run out.
  virtual bool atEnd() const { return cursor_.current() == nullptr; }

protected:
  // Moves on to the first matching node, the current one included. The constructor runs it
  // before a derived class exists, so a subclass that narrows matches() calls it again in
  // its own constructor.
  void skipOthers() {
    while (cursor_.current() != nullptr && !matches(cursor_.current())) {
      ++cursor_;
    }
  }
};

// A range for range-based for loops over the T nodes of a subtree.
template <class T>
class NodeRange {
public:
  explicit NodeRange(Node& start) : start_(&start) {}
  IteratorTemplate<T> begin() const { return IteratorTemplate<T>(start_); }
  IteratorTemplate<T> end() const { return IteratorTemplate<T>(); }

private:
  Node* start_;
};

template <class T>
NodeRange<T> nodesOf(Node& start) {
  return NodeRange<T>(start);
}

}  // namespace qent::text::layout
