#include <gtest/gtest.h>

#include "Classes/Utilities/NSColor+CGColorRef.h"

namespace zelkon {
namespace {

TEST(NSColorCGColorRef, AGreyColourStaysInItsGreySpace) {
  const NSColor grey = NSColor::colorWithCalibratedWhite(0.25, 0.5);
  const CGColorRef color = NSColorGetCGColor(grey);
  EXPECT_EQ(color->numberOfComponents(), 2);
  EXPECT_EQ(color->components(), (std::vector<double>{0.25, 0.5}));
  EXPECT_EQ(color->colorSpace(), grey.colorSpace());
  EXPECT_EQ(color->colorSpace()->model, CGColorSpace::Model::gray);
}

TEST(NSColorCGColorRef, AnRGBColourKeepsItsComponentsAlphaLast) {
  const NSColor rgb = NSColor::colorWithCalibratedRed(0.1, 0.2, 0.3, 0.4);
  const CGColorRef color = NSColorGetCGColor(rgb);
  EXPECT_EQ(color->components(), (std::vector<double>{0.1, 0.2, 0.3, 0.4}));
  EXPECT_EQ(color->colorSpace(), rgb.colorSpace());
}

TEST(NSColorCGColorRef, APatternYieldsTheConstantClearColour) {
  EXPECT_EQ(NSColorGetCGColor(NSColor::colorWithPatternImage()), kCGColorClear());
}

TEST(NSColorCGColorRef, ANamedColourNotYetConvertedYieldsClear) {
  EXPECT_EQ(NSColorGetCGColor(NSColor::colorWithCatalogName("controlColor")), kCGColorClear());
}

}  // namespace
}  // namespace zelkon
