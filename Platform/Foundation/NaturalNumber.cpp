#include "Foundation/NaturalNumber.h"

namespace zelkon {

namespace {

constexpr int wordBits = 32;

}  // namespace

NaturalNumber::NaturalNumber(uint64_t value)
    : words_{static_cast<uint32_t>(value), static_cast<uint32_t>(value >> wordBits)} {
  trim();
}

int NaturalNumber::bitCount() const {
  int count = static_cast<int>(words_.size()) * wordBits;
  if (count > 0)
    for (uint32_t mask = uint32_t{1} << (wordBits - 1); !(words_.back() & mask); mask >>= 1) --count;
  return count;
}

int NaturalNumber::compare(const NaturalNumber& other) const {
  if (words_.size() != other.words_.size()) return words_.size() < other.words_.size() ? -1 : 1;
  for (size_t i = words_.size(); i-- > 0;)
    if (words_[i] != other.words_[i]) return words_[i] < other.words_[i] ? -1 : 1;
  return 0;
}

void NaturalNumber::multiplyAdd(uint32_t factor, uint32_t addend) {
  uint64_t carry = addend;
  for (uint32_t& word : words_) {
    carry += uint64_t{word} * factor;
    word = static_cast<uint32_t>(carry);
    carry >>= wordBits;
  }
  if (carry != 0) words_.push_back(static_cast<uint32_t>(carry));
}

void NaturalNumber::multiplyByPower(uint32_t base, int exponent) {
  for (; exponent > 0; --exponent) multiplyAdd(base, 0);
}

void NaturalNumber::subtract(const NaturalNumber& other) {
  uint64_t borrow = 0;
  for (size_t i = 0; i < words_.size(); ++i) {
    const uint64_t taken = borrow + (i < other.words_.size() ? other.words_[i] : 0);
    borrow = words_[i] < taken ? 1 : 0;
    words_[i] -= static_cast<uint32_t>(taken);
  }
  trim();
}

uint32_t NaturalNumber::divide(uint32_t divisor) {
  uint64_t remainder = 0;
  for (size_t i = words_.size(); i-- > 0;) {
    remainder = remainder << wordBits | words_[i];
    words_[i] = static_cast<uint32_t>(remainder / divisor);
    remainder %= divisor;
  }
  trim();
  return static_cast<uint32_t>(remainder);
}

void NaturalNumber::trim() {
  while (!words_.empty() && words_.back() == 0) words_.pop_back();
}

}  // namespace zelkon
