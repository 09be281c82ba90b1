#pragma once

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <new>
#include <type_traits>
#include <utility>

namespace toml {

/// A growing list of plain values. It differs from a vector in what a large document pays for: growing
/// and trimming move pages where the system can, and copy nothing.
template <typename T>
class FlatList {
  static_assert(std::is_trivially_copyable_v<T>);

 public:
  FlatList() = default;
  FlatList(FlatList&& other) noexcept { swap(other); }
  FlatList& operator=(FlatList&& other) noexcept {
    swap(other);
    return *this;
  }
  FlatList(const FlatList&) = delete;
  FlatList& operator=(const FlatList&) = delete;
  ~FlatList() { std::free(items_); }

  std::uint32_t size() const { return size_; }
  bool empty() const { return size_ == 0; }
  T& operator[](std::uint32_t index) { return items_[index]; }
  const T& operator[](std::uint32_t index) const { return items_[index]; }
  T& back() { return items_[size_ - 1]; }
  const T* begin() const { return items_; }
  const T* end() const { return items_ + size_; }

  /// The index of the new item.
  std::uint32_t add(const T& item) {
    if (size_ == capacity_) grow();
    items_[size_] = item;
    return size_++;
  }

  /// New items are copies of `item`.
  void resize(std::uint32_t size, const T& item) {
    makeRoom(size);
    for (std::uint32_t index = size_; index < size; ++index) items_[index] = item;
    size_ = size;
  }

  void append(const T* items, std::uint32_t count) {
    if (count == 1) {
      add(*items);
      return;
    }
    const std::size_t wanted = std::size_t{size_} + count;
    makeRoom(wanted);
    if (count > 0) std::memcpy(items_ + size_, items, count * sizeof(T));
    size_ += count;
  }

  void shrinkTo(std::uint32_t size) { size_ = size; }
  /// Gives back what isn't used.
  void trim() {
    if (size_ > 0 && size_ < capacity_) setCapacity(size_);
  }

 private:
  /// By a large factor while it is small: `trim` gives back what was taken in advance.
  void grow() { setCapacity(capacity_ == 0 ? 8 : capacity_ * std::size_t{capacity_ < 100'000 ? 4U : 2U}); }

  void makeRoom(std::size_t wanted) {
    if (wanted > capacity_) setCapacity(std::max(wanted, capacity_ * std::size_t{2}));
  }

  void setCapacity(std::size_t capacity) {
    T* const items = static_cast<T*>(std::realloc(static_cast<void*>(items_), capacity * sizeof(T)));
    if (!items) throw std::bad_alloc();
    items_ = items;
    capacity_ = static_cast<std::uint32_t>(capacity);
  }

  void swap(FlatList& other) noexcept {
    std::swap(items_, other.items_);
    std::swap(size_, other.size_);
    std::swap(capacity_, other.capacity_);
  }

  T* items_ = nullptr;
  std::uint32_t size_ = 0;
  std::uint32_t capacity_ = 0;
};

}  // namespace toml
