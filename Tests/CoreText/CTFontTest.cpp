#include <gtest/gtest.h>

#include "CoreText/CTFont.h"
#include "CoreText/NSAttributedString.h"
#include "Tests/CoreText/FixedAdvanceDevice.h"

namespace zelkon {
namespace {

TEST(CTFont, MetricsAreUnroundedAndTheDescenderIsNegative) {
  const NSFont font = NSBoldSystemFontOfSize(11);
  EXPECT_NEAR(font.ascender(), 10.635, 0.0005);
  EXPECT_NEAR(font.descender(), -2.320, 0.0005);
  EXPECT_EQ(font.leading(), 0);
  EXPECT_NEAR(NSFontWithName("Lucida Grande", 13)->ascender(), 12.56836, 0.00001);
  EXPECT_NEAR(NSFontWithName("Lucida Grande", 9)->ascender(), 8.701, 0.0005);
  EXPECT_NEAR(NSFontWithName("Lucida Grande", 9)->descender(), -1.898, 0.0005);
  EXPECT_NEAR(NSFontWithName("Helvetica", 12)->ascender(), 9.240, 0.0005);
  EXPECT_NEAR(NSFontWithName("Helvetica", 12)->descender(), -2.760, 0.0005);
}

struct FontMetrics {
  const char* name;
  double size, ascent, descent, lineHeight;
};

class CTFontMetrics : public testing::TestWithParam<FontMetrics> {};

TEST_P(CTFontMetrics, AreThoseOfTheNamedFace) {
  const FontMetrics& row = GetParam();
  const NSFont font = *NSFontWithName(row.name, row.size);
  EXPECT_NEAR(font.ascender(), row.ascent, 0.0005);
  EXPECT_NEAR(font.descender(), -row.descent, 0.0005);
  EXPECT_EQ(font.leading(), 0);
  EXPECT_EQ(NSAttributedString("x", {font, nullptr, {}}).size().height, row.lineHeight);
}

INSTANTIATE_TEST_SUITE_P(Sizes, CTFontMetrics,
                         testing::Values(FontMetrics{"Lucida Grande", 9, 8.701, 1.898, 11},
                                         FontMetrics{"Lucida Grande", 11, 10.635, 2.320, 13},
                                         FontMetrics{"Lucida Grande", 12, 11.602, 2.531, 15},
                                         FontMetrics{"LucidaGrande-Bold", 9, 8.701, 1.898, 11},
                                         FontMetrics{"LucidaGrande-Bold", 11, 10.635, 2.320, 13},
                                         FontMetrics{"LucidaGrande-Bold", 12, 11.602, 2.531, 15},
                                         FontMetrics{"Helvetica", 9, 6.930, 2.070, 9},
                                         FontMetrics{"Helvetica", 11, 8.470, 2.530, 11},
                                         FontMetrics{"Helvetica", 12, 9.240, 2.760, 12}),
                         [](const auto& row) {
                           std::string name = row.param.name + std::to_string(static_cast<int>(row.param.size));
                           std::erase_if(name, [](char c) { return c == ' ' || c == '-'; });
                           return name;
                         });

TEST(CTFont, TheDefaultIsHelvetica12) {
  EXPECT_EQ(CTFont().face()->family, "Helvetica");
  EXPECT_EQ(CTFont().pointSize(), 12);
}

TEST(CTFont, NamesAreFamilyOrPostScriptNames) {
  EXPECT_EQ(NSFontWithName("Lucida Grande", 12)->face(), FontFaceLucidaGrande());
  EXPECT_EQ(NSFontWithName("LucidaGrande", 12)->face(), FontFaceLucidaGrande());
  EXPECT_EQ(NSFontWithName("LucidaGrande-Bold", 12)->face(), FontFaceLucidaGrandeBold());
  EXPECT_EQ(NSFontWithName("Helvetica", 12)->face(), FontFaceHelvetica());
  EXPECT_FALSE(NSFontWithName("Comic Sans MS", 12));
  EXPECT_FALSE(NSFontWithName("", 12));
}

TEST(CTFont, TheBoldSystemFontIs13PointsForSize0) {
  EXPECT_EQ(NSBoldSystemFontOfSize(0).pointSize(), 13);
  EXPECT_EQ(NSBoldSystemFontOfSize(11).face()->postScriptName, "LucidaGrande-Bold");
}

TEST(CTFont, AWidthTraitBesideTheTraitsChangesNothingButTheSizeDoes) {
  const NSFont font(FontFaceLucidaGrande(), 12);
  NSFontDescriptor descriptor = NSFontDescriptorOfFont(font);
  EXPECT_EQ(descriptor.widthTraitInTraits, 0);
  descriptor.widthAtTopLevel = -0.1;
  EXPECT_EQ(NSFontWithDescriptor(descriptor, 11), NSFont(FontFaceLucidaGrande(), 11));
  EXPECT_EQ(NSFontWithDescriptor(descriptor, 0), font);
  EXPECT_EQ(NSFontDescriptorOfFont(NSFontWithDescriptor(descriptor, 11)).widthTraitInTraits, 0);
  EXPECT_FALSE(NSFontDescriptorOfFont(NSFontWithDescriptor(descriptor, 11)).widthAtTopLevel);
}

TEST(CTFont, ConvertingKeepsTheFace) { EXPECT_EQ(NSFontConvertToSize(CTFont(FontFaceHelvetica(), 36), 12), CTFont()); }

TEST(CTTextAdvance, IsLinearInTheSizeAndMeasuredOnce) {
  FixedAdvanceDevice device;
  EXPECT_DOUBLE_EQ(CTTextAdvance(CTFont(FontFaceHelvetica(), 12), "abc"), 18);
  EXPECT_DOUBLE_EQ(CTTextAdvance(CTFont(FontFaceHelvetica(), 9), "abc"), 13.5);
  EXPECT_EQ(device.measurements, 1);
  EXPECT_DOUBLE_EQ(CTTextAdvance(CTFont(FontFaceLucidaGrande(), 9), "abc"), 13.5);
  EXPECT_EQ(device.measurements, 2);
}

TEST(CTTextAdvance, AnotherDeviceMeasuresAnew) {
  const CTFont font;
  {
    FixedAdvanceDevice device;
    EXPECT_DOUBLE_EQ(CTTextAdvance(font, "abc"), 18);
    {
      FixedAdvanceDevice wider(1);
      EXPECT_DOUBLE_EQ(CTTextAdvance(font, "abc"), 36);
    }
    EXPECT_DOUBLE_EQ(CTTextAdvance(font, "abc"), 18);
  }
  EXPECT_DOUBLE_EQ(CTTextAdvance(font, "WWW"), 18);  // no device: half an em each
}

TEST(CTTextAdvance, WhatIsRememberedStaysBounded) {
  FixedAdvanceDevice device;
  for (int i = 0; i < 50000; ++i) CTTextAdvance(CTFont(), std::to_string(i));
  EXPECT_DOUBLE_EQ(CTTextAdvance(CTFont(), "49999"), 30);
  EXPECT_DOUBLE_EQ(CTTextAdvance(CTFont(), "0"), 6);
}

TEST(CTTextAdvance, MalformedTextIsMeasuredAsItsReplacements) {
  FixedAdvanceDevice device;
  EXPECT_DOUBLE_EQ(CTTextAdvance(CTFont(), "a\xFF\xC3"), 18);
  EXPECT_DOUBLE_EQ(CTTextAdvance(CTFont(), ""), 0);
}

}  // namespace
}  // namespace zelkon
