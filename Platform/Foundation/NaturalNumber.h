// A natural number of any size, for exact conversions between binary and decimal.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace zelkon {

class NaturalNumber {
 public:
  explicit NaturalNumber(uint64_t value = 0);

  bool isZero() const { return words_.empty(); }
  // The position of the highest bit set, counted from 1; 0 for zero.
  int bitCount() const;
  // Negative, 0 or positive as this is less than, equal to or greater than the other.
  int compare(const NaturalNumber& other) const;

  void multiplyAdd(uint32_t factor, uint32_t addend);
  void multiplyByPower(uint32_t base, int exponent);
  // Precondition: the other is not greater.
  void subtract(const NaturalNumber& other);
  // Divides and answers the remainder.
  uint32_t divide(uint32_t divisor);

 private:
  void trim();

  std::vector<uint32_t> words_;  // the lowest first, the highest not zero
};

}  // namespace zelkon
