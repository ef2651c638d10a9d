// The strip of shadow below the pie: which picture lies where, and what a new frame makes of it.
#include <gtest/gtest.h>

#include "Classes/Views/PiePlotView.h"
#include "Support/ViewHost.h"

namespace zelkon {
namespace {

PiePlotView& pieOf(ViewHost& host) { return static_cast<PiePlotView&>(*host.view); }

// The beginning of a PNG that is so many pixels wide and one high.
std::vector<uint8_t> pictureOfWidth(uint8_t width) {
  return {0x89, 'P', 'N', 'G', '\r', '\n', 0x1A, '\n', 0, 0, 0, 13, 'I', 'H', 'D', 'R', 0, 0, 0, width, 0, 0, 0, 1};
}

TEST(PieShadowStrip, ThePictureOfEachCapLiesOnItsSideAndTheCentreBetween) {
  ViewHost host("pie", {0, 0});
  NSBundle::mainBundle().setLoader([](const std::string& name) -> std::optional<std::vector<uint8_t>> {
    if (name == "shadow_left.png") return pictureOfWidth(11);
    if (name == "shadow_center.png") return pictureOfWidth(12);
    if (name == "shadow_right.png") return pictureOfWidth(13);
    return std::nullopt;
  });
  host.setFrame(CGRectMake(0, 0, 300, 200));
  const auto pieces = pieOf(host).dropShadowLayer()->sublayers();
  ASSERT_EQ(pieces.size(), 3u);
  for (const CALayerRef& piece : pieces) {
    ASSERT_NE(piece->contents(), nullptr);
    const double left = piece->frame().origin.x;
    EXPECT_EQ(piece->contents()->size().width, left == 0 ? 11 : left == 98 ? 12 : 13) << "from " << left;
  }
}

TEST(PieShadowStrip, ANewFrameEmptiesItAndLaysItOutForItsNewWidth) {
  ViewHost host;
  host.display();
  const CALayerRef strip = pieOf(host).dropShadowLayer();
  const std::weak_ptr<CALayer> before = strip->sublayers().at(0);
  host.setFrame(CGRectMake(0, 0, 400, 260));
  ASSERT_EQ(pieOf(host).dropShadowLayer(), strip);
  EXPECT_TRUE(before.expired());
  // 100 points wider with the view: 300.75, of which the caps take 98 each.
  ASSERT_EQ(strip->sublayers().size(), 3u);
  EXPECT_EQ(strip->sublayers()[0]->frame(), CGRectMake(0, 0, 98, 17));
  EXPECT_EQ(strip->sublayers()[1]->frame(), CGRectMake(202.75, 0, 98, 17));
  EXPECT_EQ(strip->sublayers()[2]->frame(), CGRectMake(98, 0, 104.75, 17));
}

TEST(PieShadowStrip, AManyTimesChangedFrameKeepsItAtThreePictures) {
  ViewHost host;
  host.display();
  for (int i = 0; i < 50; ++i) host.setFrame(CGRectMake(0, 0, 300 + i, 200));
  EXPECT_EQ(pieOf(host).dropShadowLayer()->sublayers().size(), 3u);
  EXPECT_EQ(pieOf(host).plotHighlightLayer()->sublayers().size(), 2u);
}

}  // namespace
}  // namespace zelkon
