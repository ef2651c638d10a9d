#include <gtest/gtest.h>

#include "AppKit/NSColor.h"
#include "AppKit/NSGraphicsContext.h"
#include "CoreGraphics/DisplayList.h"
#include "Foundation/NSException.h"

namespace zelkon {
namespace {

template <typename Operation>
std::string nameRaisedBy(Operation operation) {
  try {
    operation();
  } catch (const NSException& exception) {
    return exception.name();
  }
  return "nothing";
}

struct HueRow {
  double hue, red, green, blue;
};

class HueTable : public testing::TestWithParam<HueRow> {};

TEST_P(HueTable, GivesTheComponents) {
  const HueRow row = GetParam();
  const auto rgb = NSColor::colorWithCalibratedHue(row.hue, 0.75, 0.82, 1).getRedGreenBlueAlpha();
  EXPECT_NEAR(rgb.red, row.red, 0.00005);
  EXPECT_NEAR(rgb.green, row.green, 0.00005);
  EXPECT_NEAR(rgb.blue, row.blue, 0.00005);
  EXPECT_EQ(rgb.alpha, 1);
}

constexpr HueRow hueRows[] = {
    {0.66, 0.205, 0.2296, 0.82}, {0.32, 0.2542, 0.82, 0.205}, {0.99, 0.82, 0.205, 0.2419}, {0.86, 0.82, 0.205, 0.7216},
    {0.06, 0.82, 0.4264, 0.205}, {0.26, 0.4756, 0.82, 0.205}, {0.46, 0.205, 0.82, 0.6724}, {0.16, 0.82, 0.7954, 0.205},
};
INSTANTIATE_TEST_SUITE_P(NSColor, HueTable, testing::ValuesIn(hueRows));

TEST(NSColor, HuesGivenToFourPlaces) {
  const auto violet = NSColor::colorWithCalibratedHue(0.8267, 0.75, 0.82, 1).rgba();
  EXPECT_NEAR(violet.red, 0.7954, 0.0002);
  EXPECT_NEAR(violet.green, 0.205, 0.00005);
  EXPECT_NEAR(violet.blue, 0.82, 0.00005);
  const auto red = NSColor::colorWithCalibratedHue(0.9933, 0.75, 0.82, 1).rgba();
  EXPECT_NEAR(red.red, 0.82, 0.00005);
  EXPECT_NEAR(red.green, 0.205, 0.00005);
  EXPECT_NEAR(red.blue, 0.2296, 0.0002);
}

TEST(NSColor, HueOneIsHueZeroAndComponentsAreClamped) {
  const auto one = NSColor::colorWithCalibratedHue(1, 0.75, 0.82, 1).rgba();
  EXPECT_EQ(one, NSColor::colorWithCalibratedHue(0, 0.75, 0.82, 1).rgba());
  EXPECT_EQ(NSColor::colorWithCalibratedHue(7, 0.75, 0.82, 1).rgba(), one);
  EXPECT_EQ(NSColor::colorWithCalibratedHue(-3, 0.75, 0.82, 1).rgba(), one);
  EXPECT_EQ(NSColor::colorWithCalibratedRed(-1, 2, 0.5, 9).rgba(), (RGBA{0, 1, 0.5, 1}));
  EXPECT_EQ(NSColor::colorWithCalibratedHue(0.3, 0, 0.4, 1).rgba(), (RGBA{0.4, 0.4, 0.4, 1}));
}

TEST(NSColor, NamedGreysAreCalibratedWhites) {
  EXPECT_DOUBLE_EQ(NSColor::darkGrayColor().components().at(0), 1.0 / 3);
  EXPECT_EQ(NSColor::darkGrayColor().components().at(1), 1);
  EXPECT_EQ(NSColor::blackColor().components(), (std::vector<double>{0, 1}));
  EXPECT_EQ(NSColor::whiteColor().components(), (std::vector<double>{1, 1}));
  EXPECT_EQ(NSColor::darkGrayColor().colorSpace()->name, "CalibratedWhite");
}

TEST(NSColor, ComponentsCountAlpha) {
  EXPECT_EQ(NSColor::colorWithCalibratedWhite(0.5, 0.8).numberOfComponents(), 2);
  EXPECT_EQ(NSColor::colorWithDeviceWhite(0.5, 0.8).numberOfComponents(), 2);
  const NSColor rgb = NSColor::colorWithDeviceRed(0.1, 0.2, 0.3, 0.4);
  EXPECT_EQ(rgb.numberOfComponents(), 4);
  EXPECT_EQ(rgb.components(), (std::vector<double>{0.1, 0.2, 0.3, 0.4}));
  EXPECT_EQ(rgb.colorSpace()->name, "DeviceRGB");
}

TEST(NSColor, GreysHaveNoRedGreenAndBlue) {
  EXPECT_EQ(nameRaisedBy([] { NSColor::blackColor().getRedGreenBlueAlpha(); }), NSInvalidArgumentException);
  EXPECT_EQ(NSColor::darkGrayColor().rgba(), (RGBA{1.0 / 3, 1.0 / 3, 1.0 / 3, 1}));
}

TEST(NSColor, PatternAndNamedColoursHaveNoComponents) {
  const NSColor pattern = NSColor::colorWithPatternImage();
  EXPECT_EQ(nameRaisedBy([&] { pattern.numberOfComponents(); }), NSInternalInconsistencyException);
  EXPECT_EQ(nameRaisedBy([&] { pattern.components(); }), NSInternalInconsistencyException);
  EXPECT_EQ(nameRaisedBy([&] { pattern.colorSpace(); }), NSInternalInconsistencyException);
  EXPECT_EQ(nameRaisedBy([&] { pattern.getRedGreenBlueAlpha(); }), NSInternalInconsistencyException);
  const NSColor named = NSColor::colorWithCatalogName("controlColor");
  EXPECT_EQ(nameRaisedBy([&] { named.numberOfComponents(); }), NSInvalidArgumentException);
  EXPECT_EQ(nameRaisedBy([&] { named.getRedGreenBlueAlpha(); }), NSInvalidArgumentException);
}

TEST(NSColor, SetGoesToTheCurrentContextsFillAndStroke) {
  NSColor::whiteColor().set();
  RecordingContext port;
  NSGraphicsContext::setCurrentContext(NSGraphicsContext::graphicsContextWithGraphicsPort(&port, false));
  NSColor::colorWithCalibratedRed(0.1, 0.2, 0.3, 0.4).set();
  EXPECT_EQ(port.fillColor(), (RGBA{0.1, 0.2, 0.3, 0.4}));
  EXPECT_EQ(port.strokeColor(), (RGBA{0.1, 0.2, 0.3, 0.4}));
  NSGraphicsContext::setCurrentContext(nullptr);
}

}  // namespace
}  // namespace zelkon
