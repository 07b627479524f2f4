// NodeIterator.cpp - parent, comparison and dereference of the pre-order cursor.
#include "layout/NodeIterator.h"

#include <stdexcept>

namespace qent::text::layout {

NodeIterator::~NodeIterator() = default;

Node* NodeIterator::parent() const {
  if (path_.empty()) return nullptr;
  if (path_.size() == 1) return start_;
  const Position& above = path_[path_.size() - 2];
  return (*above.siblings)[above.index].get();
}

NodeIterator NodeIterator::operator++(int) {
  NodeIterator before(*this);
  ++*this;
  return before;
}

bool NodeIterator::operator==(const NodeIterator& other) const {
  if (path_.empty() || other.path_.empty()) {
    return path_.empty() && other.path_.empty() && start_ == other.start_;
  }
  const Position& mine = path_.back();
  const Position& theirs = other.path_.back();
  return mine.siblings == theirs.siblings && mine.index == theirs.index;
}

bool NodeIterator::operator!=(const NodeIterator& other) const { return !(*this == other); }

Node& NodeIterator::operator*() const {
  Node* node = current();
  if (node == nullptr) throw std::invalid_argument("Access to invalidated cursor. (nullptr)");
  return *node;
}

Node* NodeIterator::operator->() const { return &**this; }

NodeIterator& NodeIterator::operator=(const NodeIterator& other) {
  start_ = other.start_;
  path_ = other.path_;
  return *this;
}

}  // namespace qent::text::layout
