#include "Hosts/Headless/NearestName.h"

#include <algorithm>
#include <cctype>

namespace zelkon {
namespace {

constexpr size_t kLongestWord = 40;

bool isSame(char a, char b) {
  return std::tolower(static_cast<unsigned char>(a)) == std::tolower(static_cast<unsigned char>(b));
}

// How many characters have to be put in, left out, exchanged or changed with their neighbour to make one of the other.
size_t distance(std::string_view a, std::string_view b) {
  std::vector<std::vector<size_t>> of(a.size() + 1, std::vector<size_t>(b.size() + 1));
  for (size_t i = 0; i <= a.size(); ++i) of[i][0] = i;
  for (size_t j = 0; j <= b.size(); ++j) of[0][j] = j;
  for (size_t i = 1; i <= a.size(); ++i) {
    for (size_t j = 1; j <= b.size(); ++j) {
      const size_t exchanged = of[i - 1][j - 1] + (isSame(a[i - 1], b[j - 1]) ? 0 : 1);
      of[i][j] = std::min({exchanged, of[i - 1][j] + 1, of[i][j - 1] + 1});
      if (i > 1 && j > 1 && isSame(a[i - 1], b[j - 2]) && isSame(a[i - 2], b[j - 1]))
        of[i][j] = std::min(of[i][j], of[i - 2][j - 2] + 1);
    }
  }
  return of[a.size()][b.size()];
}

}  // namespace

std::string didYouMean(std::string_view word, const std::vector<std::string_view>& names) {
  if (word.size() > kLongestWord) return "";
  std::string_view nearest;
  size_t least = word.size() / 3 + 1;
  for (const std::string_view name : names) {
    const size_t far = distance(word, name);
    if (far >= least) continue;
    least = far;
    nearest = name;
  }
  return nearest.empty() ? "" : "; did you mean \"" + std::string(nearest) + "\"?";
}

}  // namespace zelkon
