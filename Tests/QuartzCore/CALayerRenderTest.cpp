#include <numbers>

#include "QuartzCore/CATextLayer.h"
#include "QuartzCore/Commands.h"
#include "QuartzCore/LayerFixture.h"

namespace zelkon {
namespace {

const CGColorRef red = CGColorCreateGenericRGB(1, 0, 0, 1);
const CGColorRef blue = CGColorCreateGenericRGB(0, 0, 1, 1);

CALayerRef filled(CGRect frame, const CGColorRef& color) {
  const CALayerRef layer = CALayer::layer();
  layer->setFrame(frame);
  layer->setBackgroundColor(color);
  return layer;
}

Lines rendered(const CALayerRef& layer) {
  RecordingContext context;
  layer->renderInContext(context);
  return CommandPrinter::print(*context.snapshot());
}

struct Stripe : CALayerDelegate {
  int draws = 0;
  void drawLayer(CALayer& layer, CGContext& context) override {
    ++draws;
    context.setFillColor({0, 1, 0, 1});
    context.fillRect(CGRectMake(layer.bounds().origin.x, layer.bounds().origin.y, 5, 5));
  }
};

TEST(CALayerRender, UsesTheReceiversOwnCoordinates) {
  const CALayerRef layer = filled(CGRectMake(30, 40, 20, 10), red);
  layer->setBounds(CGRectMake(100, 50, 20, 10));
  layer->setTransform(CATransform3DScale(CATransform3DIdentity, 3, 3, 1));
  EXPECT_EQ(rendered(layer), Lines{"fill [100 50 20 10] 1,0,0,1"});
}

TEST(CALayerRender, PlacesSublayersByTheirTransforms) {
  const CALayerRef layer = filled(CGRectMake(0, 0, 100, 100), red);
  const CALayerRef inner = filled(CGRectMake(10, 20, 40, 20), blue);
  inner->setTransform(CATransform3DRotate(CATransform3DIdentity, std::numbers::pi / 2, 0, 0, 1));
  layer->addSublayer(inner);
  EXPECT_EQ(rendered(layer), (Lines{"fill [0 0 100 100] 1,0,0,1", "fill [20 10 20 40] 0,0,1,1"}));
}

TEST(CALayerRender, LeavesOutHiddenMaskedAndCompositedLayersButNotFiltersAndShadows) {
  const CALayerRef layer = CALayer::layer();
  const CALayerRef hidden = filled(CGRectMake(0, 0, 1, 1), red), masked = filled(CGRectMake(0, 0, 2, 2), red),
                   composited = filled(CGRectMake(0, 0, 3, 3), red), filtered = filled(CGRectMake(0, 0, 4, 4), red);
  hidden->setHidden(true);
  masked->setMask(filled(CGRectMake(0, 0, 1, 1), red));
  masked->addSublayer(filled(CGRectMake(0, 0, 1, 1), blue));
  composited->setCompositingFilter(CIFilterCreate(CIOverlayBlendMode{}));
  filtered->setFilters({CIFilterCreate(CIExposureAdjust{0.5})});
  filtered->setShadowOpacity(0.5);
  for (const CALayerRef& sublayer : {hidden, masked, composited, filtered}) layer->addSublayer(sublayer);
  EXPECT_EQ(rendered(layer), Lines{"fill [0 0 4 4] 1,0,0,1"});
}

TEST(CALayerRender, OpacityIsAGroups) {
  const CALayerRef layer = CALayer::layer(), inner = filled(CGRectMake(0, 0, 10, 10), red);
  inner->setOpacity(0.5);
  inner->addSublayer(filled(CGRectMake(0, 0, 5, 5), blue));
  layer->addSublayer(inner);
  EXPECT_EQ(rendered(layer), (Lines{"group a0.5", "fill [0 0 10 10] 1,0,0,1", "fill [0 0 5 5] 0,0,1,1", "end"}));
}

TEST(CALayerRender, BorderLiesInsideAndAboveSublayers) {
  const CALayerRef layer = filled(CGRectMake(0, 0, 20, 20), red);
  layer->setBorderWidth(2);
  layer->setBorderColor(blue);
  layer->addSublayer(filled(CGRectMake(5, 5, 5, 5), red));
  EXPECT_EQ(rendered(layer),
            (Lines{"fill [0 0 20 20] 1,0,0,1", "fill [5 5 5 5] 1,0,0,1", "eofill [0 0 20 20] 0,0,1,1"}));
}

TEST(CALayerRender, MaskingClipsSublayersAlone) {
  const CALayerRef layer = filled(CGRectMake(0, 0, 20, 20), red);
  layer->setMasksToBounds(true);
  layer->addSublayer(filled(CGRectMake(5, 5, 50, 50), blue));
  EXPECT_EQ(rendered(layer), (Lines{"fill [0 0 20 20] 1,0,0,1", "clip [0 0 20 20]", "fill [5 5 50 50] 0,0,1,1"}));
}

TEST(CALayerRender, SatisfiesAPendingDisplayAndReplaysTheDrawing) {
  const auto stripe = std::make_shared<Stripe>();
  const CALayerRef layer = CALayer::layer();
  layer->setBounds(CGRectMake(100, 50, 30, 120));
  layer->setDelegate(stripe);
  layer->setNeedsDisplay();
  EXPECT_EQ(rendered(layer), (Lines{"clip [100 50 30 120]", "fill [100 50 5 5] 0,1,0,1"}));
  EXPECT_EQ(rendered(layer), (Lines{"clip [100 50 30 120]", "fill [100 50 5 5] 0,1,0,1"}));
  EXPECT_EQ(stripe->draws, 1);
}

TEST(CALayerRender, StretchesTheDrawingWithTheBounds) {
  const auto stripe = std::make_shared<Stripe>();
  const CALayerRef layer = CALayer::layer();
  layer->setBounds(CGRectMake(0, 0, 10.5, 10));
  layer->setDelegate(stripe);
  layer->setNeedsDisplay();
  EXPECT_EQ(rendered(layer), (Lines{"clip [0 0 10.5 10]", "fill [0 0 5 5] 0,1,0,1"})) << "as drawn, though rounded up";
  layer->setBounds(CGRectMake(0, 0, 21, 5));
  EXPECT_EQ(rendered(layer), (Lines{"clip [0 0 21 5]", "fill [0 0 10 2.5] 0,1,0,1"}));
}

struct TenPixels : Surface {
  int pixelWidth() const override { return 10; }
  int pixelHeight() const override { return 10; }
};

TEST(CALayerRender, UnsmoothedEdgesLieOnWholePointsAndMeet) {
  const CALayerRef layer = CALayer::layer(), strip = filled(CGRectMake(49.625, 0, 200.75, 17), red);
  strip->setMasksToBounds(true);
  strip->setEdgeAntialiasingMask(0);
  layer->addSublayer(strip);
  for (const CGRect piece : {CGRectMake(0, 0, 98, 17), CGRectMake(98, 0, 4.75, 17)}) {
    const CALayerRef part = CALayer::layer();
    part->setFrame(piece);
    part->setEdgeAntialiasingMask(0);
    part->setContents(std::make_shared<const CGImage>(std::make_shared<TenPixels>()));
    strip->addSublayer(part);
  }
  EXPECT_EQ(rendered(layer), (Lines{"fill [50 0 200 17] 1,0,0,1", "clip [50 0 200 17]", "image [50 0 98 17] a1",
                                    "image [148 0 4 17] a1"}));
}

TEST(CALayerRender, SmoothedEdgesStayBetweenThePoints) {
  EXPECT_EQ(rendered(filled(CGRectMake(0, 0, 20.4, 10.6), red)), Lines{"fill [0 0 20.4 10.6] 1,0,0,1"});
}

TEST(CALayerRender, IgnoresAnimations) {
  const CALayerRef layer = filled(CGRectMake(0, 0, 20, 20), red);
  CABasicAnimation fade = CABasicAnimation::animationWithKeyPath("opacity");
  fade.fromValue = 0.0;
  fade.toValue = 0.0;
  layer->addAnimation(fade, "x");
  EXPECT_EQ(rendered(layer), Lines{"fill [0 0 20 20] 1,0,0,1"});
}

TEST(CALayerRender, DrawsByZPositionThenByOrder) {
  const CALayerRef layer = CALayer::layer(), high = filled(CGRectMake(0, 0, 1, 1), red);
  high->setZPosition(1);
  layer->addSublayer(high);
  layer->addSublayer(filled(CGRectMake(0, 0, 2, 2), red));
  layer->addSublayer(filled(CGRectMake(0, 0, 3, 3), red));
  EXPECT_EQ(rendered(layer), (Lines{"fill [0 0 2 2] 1,0,0,1", "fill [0 0 3 3] 1,0,0,1", "fill [0 0 1 1] 1,0,0,1"}));
}

TEST(CALayerRender, DeepTreesDoNotOverflow) {
  const CALayerRef layer = CALayer::layer();
  CALayerRef innermost = layer;
  for (int i = 0; i < 10000; ++i) {
    const CALayerRef inner = CALayer::layer();
    innermost->addSublayer(inner);
    innermost = inner;
  }
  innermost->setBounds(CGRectMake(0, 0, 4, 4));
  innermost->setPosition({2, 2});
  innermost->setBackgroundColor(red);
  EXPECT_EQ(rendered(layer), Lines{"fill [0 0 4 4] 1,0,0,1"});
}

// ---- text layers ----

class CATextLayerTest : public LayerFixture {};

TEST_F(CATextLayerTest, StartsAsThePlatformsDoes) {
  const auto text = CATextLayer::layer();
  EXPECT_EQ(text->className(), "CATextLayer");
  EXPECT_EQ(text->plainString(), "");
  EXPECT_EQ(text->font().face(), FontFaceHelvetica());
  EXPECT_EQ(text->fontSize(), 36);
  EXPECT_EQ(text->foregroundColor()->rgba(), (RGBA{1, 1, 1, 1}));
  EXPECT_FALSE(text->isWrapped());
  EXPECT_TRUE(text->needsDisplayOnBoundsChange());
}

TEST_F(CATextLayerTest, APlainTextTakesTheLayersAttributesAndTheSizeDecides) {
  const auto text = CATextLayer::layer();
  text->setString(std::string("Rent"));
  text->setFont(CTFont(FontFaceLucidaGrande(), 99));
  text->setFontSize(11);
  text->setForegroundColor(kCGColorBlack());
  const TextAttributes attributes = text->attributedString().attributesAtStart();
  EXPECT_EQ(attributes.font->face(), FontFaceLucidaGrande());
  EXPECT_EQ(attributes.font->pointSize(), 11);
  EXPECT_EQ(attributes.color->rgba(), (RGBA{0, 0, 0, 1}));
}

TEST_F(CATextLayerTest, AnAttributedTextKeepsItsOwn) {
  const auto text = CATextLayer::layer();
  TextAttributes attributes;
  attributes.font = CTFont(FontFaceLucidaGrande(), 9);
  text->setString(NSAttributedString(std::string("Rent"), attributes));
  text->setFontSize(40);
  EXPECT_EQ(text->attributedString().attributesAtStart().font->pointSize(), 9);
  EXPECT_EQ(text->attributedString().attributesAtStart().color, nullptr);
}

TEST_F(CATextLayerTest, EveryChangeMarksItAndNoChangeDoesNot) {
  const auto text = CATextLayer::layer();
  text->setBounds(CGRectMake(0, 0, 100, 20));
  root->addSublayer(text);
  const auto marks = [&](auto change) {
    CATransaction::flush();
    EXPECT_FALSE(text->needsDisplay());
    change();
    return text->needsDisplay();
  };
  EXPECT_TRUE(marks([&] { text->setString(std::string("a")); }));
  EXPECT_FALSE(marks([&] { text->setString(std::string("a")); }));
  EXPECT_TRUE(marks([&] { text->setString(NSAttributedString(std::string("a"), TextAttributes{})); }));
  EXPECT_TRUE(marks([&] { text->setString(std::string("b")); }));
  EXPECT_TRUE(marks([&] { text->setFontSize(10); }));
  EXPECT_FALSE(marks([&] { text->setFontSize(10); }));
  EXPECT_TRUE(marks([&] { text->setFont(CTFont(FontFaceLucidaGrande(), 10)); }));
  EXPECT_TRUE(marks([&] { text->setForegroundColor(red); }));
  EXPECT_FALSE(marks([&] { text->setForegroundColor(CGColorCreateGenericRGB(1, 0, 0, 1)); }));
  EXPECT_TRUE(marks([&] { text->setWrapped(true); }));
  EXPECT_TRUE(marks([&] { text->setAlignmentMode(NSTextAlignment::center); }));
  EXPECT_TRUE(marks([&] { text->setTruncationMode(CTLineTruncation::end); }));
  EXPECT_TRUE(marks([&] { text->setBounds(CGRectMake(0, 0, 90, 20)); }));
  EXPECT_FALSE(marks([&] { text->setOpacity(0.5); }));
}

TEST_F(CATextLayerTest, TheFirstLineTouchesTheTop) {
  const auto text = CATextLayer::layer();
  text->setString(std::string("Rent"));
  text->setFontSize(12);
  text->setBounds(CGRectMake(10, 20, 100, 40));
  root->addSublayer(text);
  CATransaction::flush();
  ASSERT_NE(text->contents(), nullptr);
  CGPoint origin{-1, -1};
  for (const DisplayList::Command& command : text->contents()->recording()->commands())
    if (const auto* run = std::get_if<DisplayList::Text>(&command)) origin = run->run.origin;
  EXPECT_NEAR(origin.x, 10, 1e-9);
  EXPECT_NEAR(origin.y, 60 - 12 * 1577.0 / 2048, 1e-9);
}

}  // namespace
}  // namespace zelkon
