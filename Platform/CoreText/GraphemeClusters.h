// What a reader takes for one character: a letter with its marks, a syllable of Hangul, a flag, a joined emoji. These
// are Unicode's extended grapheme clusters (Unicode Standard Annex #29).
#pragma once

#include <cstddef>
#include <string_view>

namespace zelkon {

// Byte offset of the end of the cluster that begins at the offset; precondition offset < text.size().
size_t GraphemeClusterEnd(std::string_view text, size_t offset);
// Byte offset of the beginning of the cluster that ends at the offset; precondition 0 < offset <= text.size().
size_t GraphemeClusterBegin(std::string_view text, size_t offset);

}  // namespace zelkon
