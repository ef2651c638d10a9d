#include <gtest/gtest.h>

#include "Hosts/Headless/PrintableText.h"

namespace zelkon {
namespace {

TEST(PrintableText, LeavesWhatIsSeenAlone) {
  for (const char* text : {"", "plain", "Käufe 支出 हिन्दी עברית 😀", "a\\n", "\xef\xbf\xbd"})
    EXPECT_EQ(printableText(text), text);
}

TEST(PrintableText, EscapesControlsAndLineEnds) {
  EXPECT_EQ(printableText(std::string("a\0b", 3)), "a\\x00b");
  EXPECT_EQ(printableText("\x1b[1m\t\r\n\x7f"), "\\x1b[1m\\t\\r\\n\\x7f");
  EXPECT_EQ(printableText("\xc2\x85\xe2\x80\xa8\xe2\x80\xa9"), "\\u0085\\u2028\\u2029");
}

TEST(PrintableText, EscapesWhatTurnsALineOrIsNotSeen) {
  EXPECT_EQ(printableText("\xe2\x80\xae\xe2\x81\xa6\xe2\x80\x8b\xef\xbb\xbf\xd8\x9c"),
            "\\u202e\\u2066\\u200b\\ufeff\\u061c");
  EXPECT_EQ(printableText("\xf3\xa0\x81\x81\xef\xbf\xbf\xee\x80\x80"), "\\U000e0041\\uffff\\ue000");
}

TEST(PrintableText, EscapesBytesThatAreNoText) {
  EXPECT_EQ(printableText("a\xff\xc3(\xed\xa0\x80\xc0\x80"), "a\\xff\\xc3(\\xed\\xa0\\x80\\xc0\\x80");
  EXPECT_EQ(printableText("\xe2\x82"), "\\xe2\\x82");
}

TEST(PrintableText, EscapesNothingTwice) {
  const std::string strange = "\x1b\n\xff\xe2\x80\xae\\x1b";
  EXPECT_EQ(printableText(printableText(strange)), printableText(strange));
}

TEST(PrintableText, CutsAfterTheCharactersAskedFor) {
  EXPECT_EQ(printableText("äöü", 3), "äöü");
  EXPECT_EQ(printableText("äöüß", 3), "äöü…");
  EXPECT_EQ(quotedText(std::string(81, 'a')), "\"" + std::string(80, 'a') + "…\"");
}

TEST(PrintableText, NamesOfFilesKeepTheirEnd) {
  EXPECT_EQ(printableName("a/b.json"), "a/b.json");
  EXPECT_EQ(printableName(""), "\"\"");
  const std::string cut = printableName("ä" + std::string(400, 'x') + "/pie.json");
  EXPECT_EQ(cut.substr(0, 4), "…x");
  EXPECT_EQ(cut.substr(cut.size() - 10), "x/pie.json");
  EXPECT_LT(cut.size(), 260u);
}

}  // namespace
}  // namespace zelkon
