// CompactVector.h - a vector that is one pointer wide.
//
// Every node of a layout tree has a list of children and a list of attributes, and most
// nodes (the words of a thousand-page document) have neither. A std::vector is three
// pointers; this keeps its size and capacity in front of the elements on the heap, so an
// empty list costs 8 bytes and a full one 8 bytes more than std::vector's buffer. The
// interface is the part of std::vector's that the tree uses, with plain pointers as
// iterators.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <limits>
#include <memory>
#include <new>
#include <stdexcept>
#include <type_traits>
#include <utility>

namespace qent::base {

template <class T>
class CompactVector {
public:
  using value_type = T;
  using size_type = std::size_t;
  using iterator = T*;
  using const_iterator = const T*;
  using reverse_iterator = std::reverse_iterator<iterator>;
  using const_reverse_iterator = std::reverse_iterator<const_iterator>;

  CompactVector() = default;
  CompactVector(const CompactVector& other) {
    reserve(other.size());
    for (const T& value : other) emplace_back(value);
  }
  CompactVector(CompactVector&& other) noexcept : block_(std::exchange(other.block_, nullptr)) {}
  CompactVector& operator=(const CompactVector& other) {
    if (this != &other) CompactVector(other).swap(*this);
    return *this;
  }
  CompactVector& operator=(CompactVector&& other) noexcept {
    CompactVector(std::move(other)).swap(*this);
    return *this;
  }
  ~CompactVector() { release(); }

  void swap(CompactVector& other) noexcept { std::swap(block_, other.block_); }

  size_type size() const { return block_ != nullptr ? block_->size : 0; }
  size_type capacity() const { return block_ != nullptr ? block_->capacity : 0; }
  bool empty() const { return size() == 0; }

  T* data() { return block_ != nullptr ? elements(block_) : nullptr; }
  const T* data() const { return block_ != nullptr ? elements(block_) : nullptr; }
  iterator begin() { return data(); }
  iterator end() { return data() + size(); }
  const_iterator begin() const { return data(); }
  const_iterator end() const { return data() + size(); }
  const_iterator cbegin() const { return begin(); }
  const_iterator cend() const { return end(); }
  reverse_iterator rbegin() { return reverse_iterator(end()); }
  reverse_iterator rend() { return reverse_iterator(begin()); }
  const_reverse_iterator rbegin() const { return const_reverse_iterator(end()); }
  const_reverse_iterator rend() const { return const_reverse_iterator(begin()); }

  T& operator[](size_type index) { return data()[index]; }
  const T& operator[](size_type index) const { return data()[index]; }
  T& at(size_type index) { return const_cast<T&>(std::as_const(*this).at(index)); }
  const T& at(size_type index) const {
    if (index >= size()) throw std::out_of_range("CompactVector: index out of range");
    return data()[index];
  }
  T& front() { return data()[0]; }
  const T& front() const { return data()[0]; }
  T& back() { return data()[size() - 1]; }
  const T& back() const { return data()[size() - 1]; }

  void reserve(size_type count) {
    if (count > capacity()) reallocate(count);
  }

  // Gives back the room that growth by doubling left beyond the elements.
  void shrink_to_fit() {
    if (empty()) {
      release();
    } else if (size() < capacity()) {
      reallocate(size());
    }
  }

  template <class... Args>
  T& emplace_back(Args&&... args) {
    if (size() == capacity()) {
      // Built first: the arguments may refer to an element that the growth moves.
      T value(std::forward<Args>(args)...);
      reallocate(grownCapacity());
      ::new (static_cast<void*>(end())) T(std::move(value));
    } else {
      ::new (static_cast<void*>(end())) T(std::forward<Args>(args)...);
    }
    ++block_->size;
    return back();
  }
  void push_back(const T& value) { emplace_back(value); }
  void push_back(T&& value) { emplace_back(std::move(value)); }

  template <class... Args>
  iterator emplace(const_iterator at, Args&&... args) {
    const size_type index = static_cast<size_type>(at - begin());
    if (index == size()) {
      emplace_back(std::forward<Args>(args)...);
      return begin() + index;
    }
    T value(std::forward<Args>(args)...);
    emplace_back(std::move(back()));
    std::move_backward(begin() + index, end() - 2, end() - 1);
    (*this)[index] = std::move(value);
    return begin() + index;
  }
  iterator insert(const_iterator at, T&& value) { return emplace(at, std::move(value)); }

  iterator erase(const_iterator at) {
    const size_type index = static_cast<size_type>(at - begin());
    std::move(begin() + index + 1, end(), begin() + index);
    pop_back();
    return begin() + index;
  }
  void pop_back() {
    back().~T();
    --block_->size;
  }
  // Keeps the capacity, as std::vector does.
  void clear() {
    if (block_ == nullptr) return;
    std::destroy(begin(), end());
    block_->size = 0;
  }

  friend bool operator==(const CompactVector& a, const CompactVector& b) {
    return std::equal(a.begin(), a.end(), b.begin(), b.end());
  }

private:
  // The elements follow the header; 8-byte alignment holds every type the tree stores.
  struct alignas(8) Header {
    std::uint32_t size;
    std::uint32_t capacity;
  };
  static_assert(alignof(T) <= alignof(Header), "CompactVector holds types aligned to 8 at most");

  static T* elements(Header* header) { return reinterpret_cast<T*>(header + 1); }
  static const T* elements(const Header* header) {
    return reinterpret_cast<const T*>(header + 1);
  }

  size_type grownCapacity() const {
    const size_type current = capacity();
    return current == 0 ? 1 : 2 * current;
  }

  void reallocate(size_type count) {
    // Sizes are 32-bit: no layout that fits the library's input bound comes near.
    if (count > std::numeric_limits<std::uint32_t>::max()) {
      throw std::length_error("CompactVector: more than 2^32 - 1 elements");
    }
    auto* grown = static_cast<Header*>(::operator new(sizeof(Header) + count * sizeof(T)));
    grown->size = static_cast<std::uint32_t>(size());
    grown->capacity = static_cast<std::uint32_t>(count);
    // The tree's element types move without throwing, so nothing can be half moved.
    static_assert(std::is_nothrow_move_constructible_v<T>);
    std::uninitialized_move(begin(), end(), elements(grown));
    release();
    block_ = grown;
  }

  void release() {
    if (block_ == nullptr) return;
    std::destroy(begin(), end());
    ::operator delete(block_);
    block_ = nullptr;
  }

  Header* block_ = nullptr;
};

}  // namespace qent::base
