#include "Backends/Cairo/HuffmanCode.h"

#include <algorithm>
#include <array>

namespace zelkon {

namespace {

constexpr size_t mostBits = 15;

struct Node {
  uint64_t count;
  size_t parent;
};

// The depth of each symbol in a tree that joins the two rarest nodes until one is left.
std::vector<uint8_t> treeDepths(const std::vector<uint32_t>& counts) {
  std::vector<size_t> symbols;
  for (size_t symbol = 0; symbol < counts.size(); ++symbol)
    if (counts[symbol] > 0) symbols.push_back(symbol);
  std::stable_sort(symbols.begin(), symbols.end(), [&](size_t a, size_t b) { return counts[a] < counts[b]; });
  const size_t leaves = symbols.size();
  std::vector<Node> nodes;
  nodes.reserve(2 * leaves);
  for (const size_t symbol : symbols) nodes.push_back({counts[symbol], 0});
  // Leaves and joined nodes are each in the order of their counts.
  size_t leaf = 0, joined = leaves;
  const auto rarest = [&] {
    const bool isLeaf = leaf < leaves && (joined == nodes.size() || nodes[leaf].count <= nodes[joined].count);
    return isLeaf ? leaf++ : joined++;
  };
  while (nodes.size() + 1 < 2 * leaves) {
    const size_t first = rarest(), second = rarest();
    nodes[first].parent = nodes[second].parent = nodes.size();
    nodes.push_back({nodes[first].count + nodes[second].count, 0});
  }
  std::vector<uint8_t> depths(nodes.size()), lengths(counts.size());
  for (size_t node = nodes.size() - 1; node-- > 0;)
    depths[node] = static_cast<uint8_t>(std::min(depths[nodes[node].parent] + 1, 255));
  for (size_t i = 0; i < leaves; ++i) lengths[symbols[i]] = depths[i];
  return lengths;
}

}  // namespace

HuffmanCode huffmanCode(const std::vector<uint32_t>& counts, int longest) {
  std::vector<uint32_t> evened = counts;
  std::vector<uint8_t> lengths = treeDepths(evened);
  // The closer the counts lie together, the flatter the tree.
  while (*std::max_element(lengths.begin(), lengths.end()) > longest) {
    for (uint32_t& count : evened) count = count / 2 + (count & 1);
    lengths = treeDepths(evened);
  }
  return huffmanCodeOfLengths(std::move(lengths));
}

HuffmanCode huffmanCodeOfLengths(std::vector<uint8_t> lengths) {
  std::array<uint32_t, mostBits + 2> next{};
  for (const uint8_t length : lengths)
    if (length > 0) ++next[length + 1u];
  for (size_t length = 1; length < next.size(); ++length) next[length] = (next[length] + next[length - 1]) << 1;
  HuffmanCode code{std::move(lengths), {}};
  code.bits.resize(code.lengths.size());
  for (size_t symbol = 0; symbol < code.lengths.size(); ++symbol) {
    const uint32_t length = code.lengths[symbol];
    if (length == 0) continue;
    const uint32_t value = next[length]++;
    for (uint32_t bit = 0; bit < length; ++bit)
      code.bits[symbol] = static_cast<uint16_t>(code.bits[symbol] | (value >> bit & 1) << (length - 1 - bit));
  }
  return code;
}

}  // namespace zelkon
