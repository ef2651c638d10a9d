#include <gtest/gtest.h>

#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include "CoreText/GraphemeClusters.h"

namespace zelkon {
namespace {

std::string utf8(char32_t value) {
  std::string bytes;
  if (value < 0x80) return {static_cast<char>(value)};
  const int continuations = value < 0x800 ? 1 : value < 0x10000 ? 2 : 3;
  constexpr unsigned leads[] = {0, 0xC0, 0xE0, 0xF0};
  bytes += static_cast<char>(leads[continuations] | (value >> (6 * continuations)));
  for (int i = continuations - 1; i >= 0; --i) bytes += static_cast<char>(0x80 | ((value >> (6 * i)) & 0x3F));
  return bytes;
}

std::string utf8(std::u32string_view text) {
  std::string bytes;
  for (const char32_t value : text) bytes += utf8(value);
  return bytes;
}

// The clusters of a text from its front, and from its back in the same order.
std::vector<std::string> clustersForwards(const std::string& text) {
  std::vector<std::string> clusters;
  for (size_t begin = 0, end = 0; begin < text.size(); begin = end) {
    end = GraphemeClusterEnd(text, begin);
    clusters.push_back(text.substr(begin, end - begin));
  }
  return clusters;
}

std::vector<std::string> clustersBackwards(const std::string& text) {
  std::vector<std::string> clusters;
  for (size_t begin = 0, end = text.size(); end > 0; end = begin) {
    begin = GraphemeClusterBegin(text, end);
    clusters.insert(clusters.begin(), text.substr(begin, end - begin));
  }
  return clusters;
}

void expectClusters(const std::vector<std::u32string>& expected) {
  std::string text;
  std::vector<std::string> clusters;
  for (const std::u32string& cluster : expected) {
    clusters.push_back(utf8(cluster));
    text += clusters.back();
  }
  EXPECT_EQ(clustersForwards(text), clusters);
  EXPECT_EQ(clustersBackwards(text), clusters);
}

TEST(GraphemeClusters, AFlagIsTwoIndicatorsCountedFromTheFirstOfTheirRow) {
  const std::u32string germany = U"\U0001F1E9\U0001F1EA", france = U"\U0001F1EB\U0001F1F7";
  expectClusters({germany, france, germany});
  expectClusters({U"a", germany, france, U"\U0001F1E9", U"b", germany});
  expectClusters({germany + U"\u0301", france});
}

TEST(GraphemeClusters, AKeycapIsItsDigitItsSelectorAndItsFrame) {
  expectClusters({U"1\uFE0F\u20E3", U"2\uFE0F\u20E3", U"#\u20E3", U"3"});
}

TEST(GraphemeClusters, JoinedPictographsAreOne) {
  const std::u32string family = U"\U0001F468\u200D\U0001F469\u200D\U0001F467\u200D\U0001F466";
  const std::u32string handshake = U"\U0001F468\U0001F3FB\u200D\u2764\uFE0F\u200D\U0001F468\U0001F3FF";
  expectClusters({family, handshake, U"\U0001F44D\U0001F3FD", family});
  // A joiner after a letter, or one after another joiner, joins no pictograph to it.
  expectClusters({U"a\u200D", U"\U0001F467"});
  expectClusters({U"\U0001F468\u200D\u200D", U"\U0001F467"});
}

TEST(GraphemeClusters, ALetterKeepsItsMarksAndItsPrefixes) {
  expectClusters({U"e\u0301\u0323", U"x"});
  expectClusters({U"\u0915\u093E", U"\u0928\u093F"});  // Devanagari vowel signs
  expectClusters({U"\u0915\u094D", U"\u0937"});        // a conjunct's two letters are two in this version
  expectClusters({U"\u0E01\u0E33", U"\u0E01"});        // Thai sara am
  expectClusters({U"\u0600\u0661", U"\u0662"});        // an Arabic number sign goes before its number
  expectClusters({U"\U0001D15F\U0001D165", U"\U00011107\U00011127"});  // beyond the first plane
}

TEST(GraphemeClusters, HangulJamoMakeUpSyllables) {
  expectClusters({U"\u1112\u1161\u11AB", U"\u1100\u1173\u11AF"});
  expectClusters({U"\uAC00\u11A8", U"\uAC01\u11A8", U"\uAC01", U"\u1161"});
  expectClusters({U"\u1100\u1100\uAC00\u1161\u11A8\u11A8", U"\u1100"});
}

TEST(GraphemeClusters, LineEndsAndControlsStandAlone) {
  expectClusters({U"a", U"\r\n", U"\n", U"\r", U"\u200B", U"\u0301", U"\u2028", U"b"});
}

// Unicode's own test of its rules, from Debian's package.
TEST(GraphemeClusters, UnicodesOwnTestPasses) {
  std::ifstream file("/usr/share/unicode/auxiliary/GraphemeBreakTest.txt");
  ASSERT_TRUE(file) << "the package unicode-data is missing";
  std::string line;
  std::getline(file, line);
  if (line != "# GraphemeBreakTest-15.0.0.txt")
    GTEST_SKIP() << "the rules are those of Unicode 15.0.0, not of " << line;
  int tests = 0;
  while (std::getline(file, line)) {
    std::istringstream words(line.substr(0, line.find('#')));
    std::string word, text;
    std::vector<std::string> clusters;
    while (words >> word) {
      if (word == "\xC3\xB7") {  // ÷
        clusters.emplace_back();
      } else if (word != "\xC3\x97") {  // ×
        const std::string character = utf8(static_cast<char32_t>(std::stoul(word, nullptr, 16)));
        clusters.back() += character;
        text += character;
      }
    }
    if (clusters.empty()) continue;
    clusters.pop_back();  // the one that the last ÷ opened
    EXPECT_EQ(clustersForwards(text), clusters) << line;
    EXPECT_EQ(clustersBackwards(text), clusters) << line;
    ++tests;
  }
  EXPECT_EQ(tests, 602);
}

}  // namespace
}  // namespace zelkon
