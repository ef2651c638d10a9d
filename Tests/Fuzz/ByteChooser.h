// Makes choices out of bytes; when they run out, the first choice of each.
#pragma once

#include <cstring>
#include <initializer_list>
#include <string>

#include "CoreGraphics/CGGeometry.h"
#include "Foundation/Value.h"

namespace zelkon {

class ByteChooser {
 public:
  ByteChooser(const uint8_t* bytes, size_t size) : bytes_(bytes), size_(size) {}

  bool isEmpty() const { return at_ == size_; }
  uint8_t byte() { return at_ < size_ ? bytes_[at_++] : 0; }
  size_t below(size_t count) { return byte() % count; }
  bool yes() { return byte() % 2 == 1; }
  template <typename T>
  T oneOf(std::initializer_list<T> choices) {
    return *(choices.begin() + below(choices.size()));
  }
  // Whole numbers mostly, but also what is tiny, immense or no number.
  double number();
  // A number from 0 to `limit`.
  double length(double limit) { return limit * (byte() * 256 + byte()) / 65535; }
  CGSize size() { return {length(800), length(600)}; }
  CGPoint point() { return {length(1000) - 100, length(800) - 100}; }
  // Words, numbers as text, line ends, several scripts, and bytes that are no UTF-8.
  std::string text();
  Value value(int depth);

 private:
  const uint8_t* bytes_;
  size_t size_;
  size_t at_ = 0;
};

}  // namespace zelkon
