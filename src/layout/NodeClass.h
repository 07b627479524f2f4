// NodeClass.h - class tests on layout nodes without RTTI, for hot loops.
#pragma once

#include "layout/Nodes.h"

#include <type_traits>

namespace qent::text::layout {

// True when the node is a T or derives from T. For the library's node classes this reads the
// class code the constructors set; any other T is tested with dynamic_cast.
template <class T>
bool isA(const Node& node) {
  const NodeClass c = node.nodeClass();
  if constexpr (std::is_same_v<T, Node>) {
    return true;
  } else if constexpr (std::is_same_v<T, Fragment>) {
    return c >= NodeClass::Fragment && c <= NodeClass::Field;
  } else if constexpr (std::is_same_v<T, Page>) {
    return c == NodeClass::Page;
  } else if constexpr (std::is_same_v<T, Image>) {
    return c == NodeClass::Image;
  } else if constexpr (std::is_same_v<T, Content>) {
    return c == NodeClass::Content;
  } else if constexpr (std::is_same_v<T, Box>) {
    return c == NodeClass::Box;
  } else if constexpr (std::is_same_v<T, Line>) {
    return c == NodeClass::Line;
  } else if constexpr (std::is_same_v<T, Word>) {
    return c == NodeClass::Word;
  } else if constexpr (std::is_same_v<T, Glyph>) {
    return c == NodeClass::Glyph;
  } else if constexpr (std::is_same_v<T, Picture>) {
    return c == NodeClass::Picture;
  } else if constexpr (std::is_same_v<T, Field>) {
    return c == NodeClass::Field;
  } else {
    return dynamic_cast<const T*>(&node) != nullptr;
  }
}

}  // namespace qent::text::layout
