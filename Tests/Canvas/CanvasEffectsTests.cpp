#include "Canvas/CanvasTests.h"

namespace zelkon {

namespace {

constexpr RGBA black{0, 0, 0, 1}, white{1, 1, 1, 1}, red{1, 0, 0, 1};

CGGradientRef gradientOf(const std::vector<RGBA>& colors, const std::vector<double>& locations = {}) {
  return std::make_shared<const CGGradient>(colors, locations);
}

void translucentGradient(CanvasTest& t) {
  t.start(101, 2);
  t.context->drawLinearGradient(gradientOf({{1, 1, 1, 0}, {0.66, 0.79, 0.16, 1}}), {0, 0}, {101, 0}, 0);
  // (0.83, 0.895, 0.58) at alpha 0.5, premultiplied.
  t.expectPixel(50, 0, {106, 114, 74, 128}, 1);
}

void gradientBand(CanvasTest& t) {
  t.start(10, 10);
  t.context->drawLinearGradient(gradientOf({black, white}), {0, 3}, {0, 7}, 0);
  t.expectPixel(5, 7, {0, 0, 0, 0});
  t.expectPixel(5, 2, {0, 0, 0, 0});
  t.expectNear(t.redAt(5, 6), 0.125, 0.01, "first row");
  t.expectNear(t.redAt(5, 3), 0.875, 0.01, "last row");
  t.expectNear(t.alphaAt(0, 6), 1, 0, "left edge");
}

void gradientOptions(CanvasTest& t) {
  t.start(10, 10);
  t.context->drawLinearGradient(gradientOf({black, white}), {0, 3}, {0, 7}, kCGGradientDrawsBeforeStartLocation);
  t.expectPixel(5, 9, {0, 0, 0, 255});
  t.expectPixel(5, 0, {0, 0, 0, 0});
  t.start(10, 10);
  t.context->drawLinearGradient(gradientOf({black, white}), {0, 3}, {0, 7}, kCGGradientDrawsAfterEndLocation);
  t.expectPixel(5, 0, {255, 255, 255, 255});
  t.expectPixel(5, 9, {0, 0, 0, 0});
}

void gradientStops(CanvasTest& t) {
  t.start(100, 1);
  const RGBA grey{0.9, 0.9, 0.9, 1};
  t.context->drawLinearGradient(gradientOf({white, white, grey}, {1, 0.3, 0}), {0, 0}, {100, 0}, 0);
  t.expectNear(t.redAt(15, 0), 0.9 + 0.1 * 0.155 / 0.3, 1.0 / 255, "between the stops");
  t.expectNear(t.redAt(60, 0), 1, 0, "after the second");
}

void slantedGradient(CanvasTest& t) {
  t.start(20, 20);
  t.context->drawLinearGradient(gradientOf({black, white}), {0, 0}, {20, 20}, 0);
  // The perpendicular through the middle has the middle colour.
  t.expectNear(t.redAt(2, 2), 0.5, 0.01, "upper left");
  t.expectNear(t.redAt(17, 17), 0.5, 0.01, "lower right");
  t.expectNear(t.alphaAt(0, 0), 1, 0, "corner");
}

void radialGradient(CanvasTest& t) {
  t.start(21, 21);
  t.context->drawRadialGradient(gradientOf({black, white}), {10.5, 10.5}, 8, 0);
  t.expectNear(t.redAt(10, 10), 0, 0.02, "centre");
  t.expectNear(t.redAt(14, 10), 0.5, 0.01, "half way");
  t.expectPixel(20, 10, {0, 0, 0, 0});
  t.start(21, 21);
  t.context->drawRadialGradient(gradientOf({black, white}), {10.5, 10.5}, 8, kCGGradientDrawsAfterEndLocation);
  t.expectPixel(0, 0, {255, 255, 255, 255});
}

void softShadow(CanvasTest& t) {
  t.start(80, 40);
  // The caster, far off to the left of the bitmap, throws its shadow's edge onto x = 40.5.
  t.context->setShadow(CGSizeMake(200, 0), 2);
  t.context->fillRect(CGRectMake(-300, -100, 140.5, 300));
  const double expected[] = {0.326, 0.280, 0.167, 0.053, 0.008};
  // Chromium without a graphics card stands boxes in for a small gaussian.
  for (int i = 0; i < 5; ++i) t.expectNear(t.alphaAt(38 + i, 20), expected[i], 0.02, std::to_string(i - 2));
}

void scaledShadow(CanvasTest& t) {
  t.start(80, 40, 2);
  CGGroupEffects effects;
  effects.shadow = CGShadow{CGSizeMake(200, 0), 2.5, {0, 0, 0, 0.2}};
  t.fillInGroup(effects, black, CGRectMake(-300, -100, 140.25, 300));
  const double expected[] = {0.195, 0.168, 0.100, 0.032, 0.005};
  for (int i = 0; i < 5; ++i) t.expectNear(t.alphaAt(70 + 5 * i, 40), expected[i], 0.01, std::to_string(i));
}

void hardShadow(CanvasTest& t) {
  t.start(20, 20);
  t.context->setShadowWithColor(CGSizeMake(5, 3), 0, CGColorCreateGenericRGB(1, 0, 0, 0.5));
  t.context->fillRect(CGRectMake(2, 2, 4, 4));
  t.expectPixel(3, 16, {0, 0, 0, 255});
  t.expectPixel(9, 12, {128, 0, 0, 128}, 1);
  t.expectPixel(11, 12, {0, 0, 0, 0});
  t.expectPixel(9, 10, {0, 0, 0, 0});
}

void shadowAndTransform(CanvasTest& t) {
  t.start(20, 20);
  t.context->setShadowWithColor(CGSizeMake(5, 0), 0, kCGColorBlack());
  t.context->scaleCTM(2, 2);
  t.fill(red, CGRectMake(1, 1, 1, 1));
  t.expectPixel(3, 17, {255, 0, 0, 255});
  t.expectPixel(7, 17, {0, 0, 0, 255});
  t.expectPixel(9, 17, {0, 0, 0, 0});
}

void layerShadow(CanvasTest& t) {
  t.start(30, 30);
  t.context->setShadowWithColor(CGSizeMake(8, 0), 0, CGColorCreateGenericGray(0, 0.5));
  t.context->beginTransparencyLayer();
  t.context->clipToRect(CGRectMake(5, 5, 10, 10));
  t.fill(white, CGRectMake(0, 0, 30, 30));
  t.fill(white, CGRectMake(0, 0, 30, 30));
  t.context->endTransparencyLayer();
  t.expectPixel(7, 20, {255, 255, 255, 255});
  t.expectPixel(20, 20, {0, 0, 0, 128}, 1);
  t.expectPixel(25, 20, {0, 0, 0, 0});
}

// A clipped gradient in a layer that casts a shadow: what a bar is.
void clippedGradient(CanvasTest& t, CGRect clip, const CGGradientRef& gradient, CGPoint start, CGPoint end,
                     unsigned options = kCGGradientDrawsBeforeStartLocation | kCGGradientDrawsAfterEndLocation) {
  t.context->beginTransparencyLayer();
  t.context->clipToRect(clip);
  t.context->drawLinearGradient(gradient, start, end, options);
  t.context->endTransparencyLayer();
}

void gradientShadow(CanvasTest& t) {
  t.start(80, 40);
  t.context->setShadow(CGSizeMake(60, 0), 2);
  t.context->beginTransparencyLayer();
  t.context->moveToPoint(-50, 5);
  t.context->addLineToPoint(-19.5, 5);
  t.context->addArcToPoint(-19.5, 35, -30, 35, 5);
  t.context->addLineToPoint(-50, 35);
  t.context->clip();
  t.context->drawLinearGradient(gradientOf({black, white}), {0, 0}, {10, 0}, 3);
  t.context->endTransparencyLayer();
  const double expected[] = {0.326, 0.280, 0.167, 0.053, 0.008};
  for (int i = 0; i < 5; ++i) t.expectNear(t.alphaAt(38 + i, 20), expected[i], 0.02, std::to_string(i - 2));
}

void gradientAndItsShadow(CanvasTest& t) {
  t.start(30, 30, 2);
  t.context->setShadowWithColor(CGSizeMake(8, 4), 0, CGColorCreateGenericGray(0, 0.5));
  clippedGradient(t, CGRectMake(5, 5, 10, 10), gradientOf({red, white}), {0, 5}, {0, 15});
  t.expectPixel(12, 49, {255, 6, 6, 255}, 2);
  t.expectPixel(20, 40, {255, 121, 121, 255}, 2);
  t.expectPixel(12, 30, {255, 249, 249, 255}, 2);
  t.expectPixel(42, 26, {0, 0, 0, 128}, 1);
  t.expectPixel(45, 23, {0, 0, 0, 128}, 1);
  t.expectPixel(46, 23, {0, 0, 0, 0});
  t.expectPixel(45, 21, {0, 0, 0, 0});
  t.expectPixel(9, 40, {0, 0, 0, 0});
}

void evenOddGradientShadow(CanvasTest& t) {
  t.start(40, 20);
  t.context->setShadowWithColor(CGSizeMake(20, 0), 0, kCGColorBlack());
  t.context->beginTransparencyLayer();
  t.context->addRect(CGRectMake(2, 2, 12, 12));
  t.context->addRect(CGRectMake(6, 6, 4, 4));
  t.context->eoClip();
  t.context->drawLinearGradient(gradientOf({red, red}), {0, 0}, {10, 0}, 3);
  t.context->endTransparencyLayer();
  t.expectPixel(4, 12, {255, 0, 0, 255});
  t.expectPixel(8, 12, {0, 0, 0, 0});
  t.expectPixel(24, 12, {0, 0, 0, 255});
  t.expectPixel(28, 12, {0, 0, 0, 0});
}

// What does not fill its clip with opaque colours casts the shadow of what it paints.
void thinGradientShadow(CanvasTest& t) {
  const RGBA faint{0, 0, 0, 0.5};
  t.start(40, 20);
  t.context->setShadowWithColor(CGSizeMake(20, 0), 0, kCGColorBlack());
  clippedGradient(t, CGRectMake(2, 2, 12, 12), gradientOf({faint, faint}), {0, 0}, {10, 0});
  t.expectPixel(26, 10, {0, 0, 0, 128}, 1);
  t.start(40, 20);
  t.context->setShadowWithColor(CGSizeMake(20, 0), 0, kCGColorBlack());
  clippedGradient(t, CGRectMake(2, 2, 12, 12), gradientOf({red, red}), {4, 0}, {8, 0}, 0);
  t.expectPixel(26, 10, {0, 0, 0, 255});
  t.expectPixel(30, 10, {0, 0, 0, 0});
  t.start(40, 20);
  t.context->setShadowWithColor(CGSizeMake(20, 0), 0, kCGColorBlack());
  t.context->setAlpha(0.5);
  clippedGradient(t, CGRectMake(2, 2, 12, 12), gradientOf({red, red}), {0, 0}, {10, 0});
  t.expectPixel(26, 10, {0, 0, 0, 128}, 1);
  t.expectPixel(6, 10, {128, 0, 0, 128}, 1);
}

void fadedGradientShadow(CanvasTest& t) {
  t.start(40, 20);
  t.context->setShadowWithColor(CGSizeMake(20, 0), 0, kCGColorBlack());
  t.context->beginTransparencyLayer();
  t.context->setAlpha(0.5);
  t.context->clipToRect(CGRectMake(2, 2, 12, 12));
  t.context->drawLinearGradient(gradientOf({red, red}), {0, 0}, {10, 0}, 3);
  t.context->endTransparencyLayer();
  t.expectPixel(26, 10, {0, 0, 0, 128}, 1);
  t.start(40, 20);
  CGGroupEffects dark;
  dark.shadow = CGShadow{CGSizeMake(20, 0), 0, black};
  dark.brightness = 0.5;
  t.context->beginGroup(dark, CGRectMake(0, 0, 20, 20));
  t.context->clipToRect(CGRectMake(2, 2, 12, 12));
  t.context->drawLinearGradient(gradientOf({red, red}), {0, 0}, {10, 0}, 3);
  t.context->endGroup();
  t.expectPixel(6, 10, {128, 0, 0, 255}, 1);
  t.expectPixel(26, 10, {0, 0, 0, 255});
}

// The group of one context ends while that of another is the last begun.
void twoContexts(CanvasTest& t) {
  t.start(40, 20);
  std::shared_ptr<Surface> otherSurface = t.device.makeSurface(40, 20);
  const std::unique_ptr<CGContext> other = t.device.contextForSurface(otherSurface, 1);
  CGGroupEffects effects;
  effects.shadow = CGShadow{CGSizeMake(20, 0), 0, black};
  t.context->beginGroup(effects, CGRectMake(0, 0, 20, 20));
  t.fill(white, CGRectMake(2, 2, 12, 12));
  other->beginGroup(effects, CGRectMake(0, 0, 20, 20));
  other->saveGState();
  other->clipToRect(CGRectMake(2, 2, 12, 12));
  other->drawLinearGradient(gradientOf({red, red}), {0, 0}, {10, 0}, 3);
  other->restoreGState();
  t.context->endGroup();
  other->endGroup();
  t.expectPixel(6, 10, {255, 255, 255, 255});
  t.expectPixel(26, 10, {0, 0, 0, 255});
  std::swap(t.surface, otherSurface);
  t.expectPixel(6, 10, {255, 0, 0, 255});
  t.expectPixel(26, 10, {0, 0, 0, 255});
}

void gradientAndMoreShadow(CanvasTest& t) {
  t.start(40, 20);
  t.context->setShadowWithColor(CGSizeMake(20, 0), 0, kCGColorBlack());
  t.context->beginTransparencyLayer();
  t.context->saveGState();
  t.context->clipToRect(CGRectMake(2, 2, 4, 4));
  t.context->drawLinearGradient(gradientOf({red, red}), {0, 0}, {10, 0}, 3);
  t.context->restoreGState();
  t.fill(white, CGRectMake(8, 2, 4, 4));
  t.context->endTransparencyLayer();
  t.expectPixel(4, 16, {255, 0, 0, 255});
  t.expectPixel(10, 16, {255, 255, 255, 255});
  t.expectPixel(24, 16, {0, 0, 0, 255});
  t.expectPixel(30, 16, {0, 0, 0, 255});
}

void clippedShadow(CanvasTest& t) {
  t.start(30, 30);
  t.context->clipToRect(CGRectMake(0, 0, 18, 30));
  t.context->setShadowWithColor(CGSizeMake(8, 0), 0, kCGColorBlack());
  t.fill(red, CGRectMake(5, 5, 10, 10));
  t.expectPixel(17, 20, {0, 0, 0, 255});
  t.expectPixel(18, 20, {0, 0, 0, 0});
}

void fadedGroup(CanvasTest& t) {
  t.start(4, 4);
  t.context->setAlpha(0.5);
  t.context->beginTransparencyLayer();
  t.fill(black, CGRectMake(0, 0, 4, 4));
  t.fill(black, CGRectMake(0, 0, 4, 4));
  t.context->endTransparencyLayer();
  t.expectPixel(1, 1, {0, 0, 0, 128}, 1);
}

void overlay(CanvasTest& t) {
  const struct {
    double backdrop, source, alpha, result;
  } rows[] = {{0.205, 0, 1, 0}, {0.55, 0, 1, 0.10}, {0.82, 0, 1, 0.64},      {0.205, 1, 1, 0.41},
              {0.55, 1, 1, 1},  {0.82, 1, 1, 1},    {0.82, 0, 0.335, 0.7597}};
  CGGroupEffects effects;
  effects.blend = CGBlendMode::overlay;
  for (const auto& row : rows) {
    t.start(2, 2);
    t.fill({row.backdrop, row.backdrop, row.backdrop, 1}, CGRectMake(0, 0, 2, 2));
    t.fillInGroup(effects, {row.source, row.source, row.source, row.alpha}, CGRectMake(0, 0, 2, 2));
    t.expectNear(t.redAt(0, 0), row.result, 1.6 / 255, std::to_string(row.backdrop));
  }
  t.start(2, 2);
  t.fillInGroup(effects, {0.2, 0.4, 0.6, 1}, CGRectMake(0, 0, 2, 2));
  t.expectPixel(0, 0, {51, 102, 153, 255}, 1);
}

void destinationIn(CanvasTest& t) {
  t.start(6, 6);
  t.fill(red, CGRectMake(0, 0, 6, 6));
  CGGroupEffects effects;
  t.context->beginGroup(effects, CGRectMake(1, 1, 4, 4));
  t.fill(white, CGRectMake(1, 1, 4, 4));
  effects.blend = CGBlendMode::destinationIn;
  t.fillInGroup(effects, {1, 0, 0, 0.5}, CGRectMake(1, 1, 2, 4));
  t.context->endGroup();
  // Inside the outer group white is halved or erased; the red beneath is not touched.
  t.expectPixel(1, 1, {255, 128, 128, 255}, 1);
  t.expectPixel(4, 4, {255, 0, 0, 255});
  t.expectPixel(0, 0, {255, 0, 0, 255});
}

void emptyDestinationIn(CanvasTest& t) {
  t.start(4, 4);
  t.fill(white, CGRectMake(0, 0, 4, 4));
  CGGroupEffects effects;
  effects.blend = CGBlendMode::destinationIn;
  t.fillInGroup(effects, white, CGRectMake(50, 50, 4, 4));
  t.expectPixel(3, 0, {0, 0, 0, 0});
  t.expectPixel(0, 0, {0, 0, 0, 0});
}

void adding(CanvasTest& t) {
  t.start(2, 2);
  t.fill({0.2, 0.4, 0.8, 1}, CGRectMake(0, 0, 2, 2));
  CGGroupEffects effects;
  effects.blend = CGBlendMode::plusLighter;
  t.fillInGroup(effects, {0.4, 0.4, 0.4, 1}, CGRectMake(0, 0, 2, 2));
  t.expectPixel(0, 0, {153, 204, 255, 255}, 1);
}

void brightness(CanvasTest& t) {
  t.start(2, 2);
  CGGroupEffects effects;
  effects.brightness = std::sqrt(2.0);
  t.fillInGroup(effects, {0.205, 0.55, 0.82, 1}, CGRectMake(0, 0, 2, 2));
  t.expectNear(t.redAt(0, 0), 0.2899, 1.5 / 255, "red");
  t.expectPixel(0, 0, {74, 198, 255, 255}, 1);
  t.start(2, 2);
  t.fillInGroup(effects, {0.205, 0.55, 0.82, 0.5}, CGRectMake(0, 0, 2, 2));
  t.expectPixel(0, 0, {37, 99, 128, 128}, 1);
}

void hugeGroup(CanvasTest& t) {
  t.start(4, 4);
  CGGroupEffects effects;
  effects.blend = CGBlendMode::destinationIn;
  effects.shadow = CGShadow{CGSizeMake(1e12, -1e12), 1e9, black};
  t.fill(white, CGRectMake(0, 0, 4, 4));
  t.fillInGroup(effects, red, CGRectMake(-1e9, -1e9, 2e9, 2e9));
  t.expectPixel(1, 1, {255, 255, 255, 255});
  t.fill(black, CGRectMake(0, 0, 4, 4));
  t.expectPixel(1, 1, {0, 0, 0, 255});
}

void groupsOneAfterAnother(CanvasTest& t) {
  t.start(4, 4);
  CGGroupEffects effects;
  t.fillInGroup(effects, red, CGRectMake(0, 0, 4, 4));
  t.context->clearRect(CGRectMake(0, 0, 4, 4));
  t.fillInGroup(effects, red, CGRectMake(0, 0, 1, 1));
  // Nothing of the first group shows up in the second.
  t.expectPixel(3, 0, {0, 0, 0, 0});
  t.expectPixel(0, 3, {255, 0, 0, 255});
}

}  // namespace

std::vector<NamedCanvasTest> canvasEffectsTests() {
  return {{"gradients between different alphas interpolate plain colours", translucentGradient},
          {"without options a linear gradient leaves the rest alone", gradientBand},
          {"options extend a linear gradient with its end colours", gradientOptions},
          {"stops out of order are sorted, the last colour holds", gradientStops},
          {"a slanted gradient reaches every corner", slantedGradient},
          {"radial gradients end at the radius unless extended", radialGradient},
          {"a shadow falls off as a gaussian", softShadow},
          {"a shadow's blur grows with the scale", scaledShadow},
          {"a shadow without blur is a copy moved up and tinted", hardShadow},
          {"the offset of a shadow does not follow the transform", shadowAndTransform},
          {"a layer casts one shadow, which a clip inside does not cut", layerShadow},
          {"the shadow of a clipped gradient falls off as a gaussian", gradientShadow},
          {"a clipped gradient has its colours beside its shadow", gradientAndItsShadow},
          {"a clipped gradient with a hole casts a shadow with a hole", evenOddGradientShadow},
          {"a gradient that is not opaque or ends casts the shadow of what it paints", thinGradientShadow},
          {"a faded or darkened gradient casts the shadow of what it paints", fadedGradientShadow},
          {"groups of two contexts may be open at once", twoContexts},
          {"a gradient and more cast one shadow", gradientAndMoreShadow},
          {"the clip of the beginning cuts the shadow", clippedShadow},
          {"a group is faded as a whole", fadedGroup},
          {"overlay darkens with black and lightens with white", overlay},
          {"destination-in erases within the parent group only", destinationIn},
          {"destination-in with nothing erases everything", emptyDestinationIn},
          {"plus-lighter adds and clamps", adding},
          {"brightness multiplies plain colours and clamps", brightness},
          {"a group too large is lost without harm to anything else", hugeGroup},
          {"a group starts out transparent", groupsOneAfterAnother}};
}

}  // namespace zelkon
