// Sorting and dividing vectors, short where the standard library's ways are long: each kind of item that it sorts takes
// kilobytes of the page's module.
#pragma once

#include <algorithm>
#include <utility>
#include <vector>

namespace zelkon {

// Sorts; equal items stay in order.
template <typename Item, typename Less>
void StableSort(std::vector<Item>& items, Less isLess) {
  if (std::is_sorted(items.begin(), items.end(), isLess)) return;
  const size_t count = items.size();
  std::vector<Item> merged;
  merged.reserve(count);
  for (size_t width = 1; width < count; width *= 2) {
    for (size_t begin = 0; begin < count; begin += 2 * width) {
      const size_t middle = std::min(begin + width, count), end = std::min(middle + width, count);
      size_t left = begin, right = middle;
      while (left < middle || right < end) {
        const bool takesRight = left == middle || (right < end && isLess(items[right], items[left]));
        merged.push_back(std::move(items[takesRight ? right++ : left++]));
      }
    }
    items.swap(merged);
    merged.clear();
  }
}

// Takes the items that match out of the vector; those taken and those left stay in order.
template <typename Item, typename Matches>
std::vector<Item> ExtractIf(std::vector<Item>& items, Matches matches) {
  std::vector<Item> taken, left;
  if (std::none_of(items.begin(), items.end(), matches)) return taken;
  for (Item& item : items) (matches(std::as_const(item)) ? taken : left).push_back(std::move(item));
  items.swap(left);
  return taken;
}

}  // namespace zelkon
