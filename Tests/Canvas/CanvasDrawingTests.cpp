#include "Backends/Canvas/CanvasSurface.h"
#include "Canvas/CanvasTests.h"

namespace zelkon {

namespace {

constexpr RGBA black{0, 0, 0, 1}, white{1, 1, 1, 1}, red{1, 0, 0, 1};

void line(CGContext& context, CGPoint from, CGPoint to) {
  context.moveToPoint(from.x, from.y);
  context.addLineToPoint(to.x, to.y);
  context.strokePath();
}

void colours(CanvasTest& t) {
  t.start(2, 1);
  t.fill({0.2, 0.4, 0.6, 1}, CGRectMake(0, 0, 1, 1));
  t.fill({1, 0, 0, 0.5}, CGRectMake(1, 0, 1, 1));
  t.expectPixel(0, 0, {51, 102, 153, 255}, 1);
  t.expectPixel(1, 0, {128, 0, 0, 128}, 1);
}

void orientation(CanvasTest& t) {
  t.start(3, 3, 2);
  t.fill(black, CGRectMake(1, 0, 1, 1));
  t.expectPixel(2, 4, {0, 0, 0, 255});
  t.expectPixel(3, 5, {0, 0, 0, 255});
  t.expectPixel(1, 5, {0, 0, 0, 0});
  t.expectPixel(2, 3, {0, 0, 0, 0});
}

void wholeLine(CanvasTest& t) {
  t.start(10, 10);
  t.fill(white, CGRectMake(0, 0, 10, 10));
  t.context->setStrokeColor({0.55, 0.55, 0.55, 1});
  line(*t.context, {0, 5}, {10, 5});
  t.expectNear(t.redAt(4, 4), 0.775, 1.5 / 255, "row above");
  t.expectNear(t.redAt(4, 5), 0.775, 1.5 / 255, "row below");
  t.expectPixel(4, 3, {255, 255, 255, 255});
  t.expectPixel(4, 6, {255, 255, 255, 255});
}

void halfLine(CanvasTest& t) {
  t.start(10, 10);
  line(*t.context, {2, 5.5}, {8, 5.5});
  t.expectPixel(2, 4, {0, 0, 0, 255});
  t.expectPixel(1, 4, {0, 0, 0, 0});
  t.expectPixel(8, 4, {0, 0, 0, 0});
  t.expectPixel(4, 5, {0, 0, 0, 0});
}

void noLine(CanvasTest& t) {
  t.start(4, 4);
  t.context->setLineWidth(0);
  line(*t.context, {0, 2}, {4, 2});
  t.context->setLineWidth(2);
  line(*t.context, {2, 2}, {2, 2});
  for (int row = 0; row < 4; ++row) t.expectPixel(2, row, {0, 0, 0, 0});
}

void clips(CanvasTest& t) {
  t.start(4, 4);
  t.context->saveGState();
  t.context->clipToRect(CGRectMake(0, 0, 2, 4));
  t.context->clipToRect(CGRectMake(0, 0, 4, 2));
  t.fill(black, CGRectMake(0, 0, 4, 4));
  t.expectPixel(1, 3, {0, 0, 0, 255});
  t.expectPixel(2, 3, {0, 0, 0, 0});
  t.expectPixel(1, 1, {0, 0, 0, 0});
  t.context->restoreGState();
  t.fill(black, CGRectMake(3, 3, 1, 1));
  t.expectPixel(3, 0, {0, 0, 0, 255});
  t.context->beginPath();
  t.context->clip();
  t.fill(red, CGRectMake(0, 0, 4, 4));
  t.expectPixel(3, 0, {0, 0, 0, 255});
}

// On the canvases of elements engines smooth the edges of clips, which is what layers on the move want.
void clipsOfScreens(CanvasTest& t) {
  t.startOnScreen(6, 4);
  t.context->clipToRect(CGRectMake(0.5, 0, 3.75, 4));
  t.fill(black, CGRectMake(0, 0, 6, 4));
  t.expectNear(t.alphaAt(0, 1), 0.5, 0.02, "the left edge");
  t.expectNear(t.alphaAt(4, 1), 0.25, 0.02, "the right edge");
}

void clipsOfPictures(CanvasTest& t) {
  for (const double scale : {1.0, 2.0}) {
    t.start(6, 4, scale);
    t.context->scaleCTM(1 / scale, 1 / scale);
    t.context->clipToRect(CGRectMake(0.6, 1.5, 3.8, 1.4));
    t.fill(black, CGRectMake(0, 0, 12, 8));
    const int bottom = static_cast<int>(4 * scale) - 1;
    t.expectPixel(0, bottom - 2, {0, 0, 0, 0});
    t.expectPixel(1, bottom - 2, {0, 0, 0, 255});
    t.expectPixel(3, bottom - 2, {0, 0, 0, 255});
    t.expectPixel(4, bottom - 2, {0, 0, 0, 0});
    t.expectPixel(2, bottom - 3, {0, 0, 0, 0});
    t.expectPixel(2, bottom, {0, 0, 0, 0});
  }
}

void evenOdd(CanvasTest& t) {
  t.start(6, 6);
  t.context->addRect(CGRectMake(0, 0, 6, 6));
  t.context->addRect(CGRectMake(2, 2, 2, 2));
  t.context->drawPath(CGPathDrawingMode::eoFill);
  t.expectPixel(3, 3, {0, 0, 0, 0});
  t.expectPixel(0, 0, {0, 0, 0, 255});
}

void clearing(CanvasTest& t) {
  t.start(4, 4);
  t.fill(white, CGRectMake(0, 0, 4, 4));
  t.context->clipToRect(CGRectMake(0, 0, 2, 4));
  t.context->clearRect(CGRectMake(0, 0, 4, 2.5));
  t.expectPixel(0, 3, {0, 0, 0, 0});
  t.expectPixel(2, 3, {255, 255, 255, 255});
  t.expectPixel(0, 0, {255, 255, 255, 255});
  t.expectPixel(0, 1, {128, 128, 128, 128}, 1);
}

void collapsed(CanvasTest& t) {
  t.start(2, 2);
  t.context->saveGState();
  t.context->scaleCTM(0, 1);
  t.fill(black, CGRectMake(0, 0, 2, 2));
  t.context->restoreGState();
  t.expectPixel(0, 0, {0, 0, 0, 0});
  t.fill(black, CGRectMake(0, 0, 2, 2));
  t.expectPixel(0, 0, {0, 0, 0, 255});
}

void impossibleSizes(CanvasTest& t) {
  t.expect(!t.device.makeSurface(0, 5), "no width");
  t.expect(!t.device.makeSurface(5, -1), "negative height");
  t.expect(!t.device.makeSurface(32768, 1), "too wide");
  t.expect(!t.device.makeSurface(32767, 32767), "too many pixels");
  t.expect(t.device.makeSurface(3000, 1) != nullptr, "an ordinary size");
}

void copying(CanvasTest& t) {
  t.start(4, 4);
  t.fill(white, CGRectMake(0, 0, 4, 4));
  t.context->setBlendMode(CGBlendMode::copy);
  t.fill({1, 0, 0, 0.5}, CGRectMake(0, 0, 2, 4));
  t.expectPixel(0, 0, {128, 0, 0, 128}, 1);
  t.expectPixel(3, 0, {255, 255, 255, 255});
}

CGImageRef halfRed() {
  const auto bitmap = CGBitmapContext::create(nullptr, 2, 2, 0, nullptr, CGImageAlphaInfo::premultipliedLast);
  bitmap->clipToRect(CGRectMake(0, 0, 2, 2));  // a clip keeps it from being replayed
  bitmap->setFillColor(red);
  bitmap->fillRect(CGRectMake(0, 1, 2, 1));
  return bitmap->createImage();
}

void images(CanvasTest& t) {
  t.start(6, 6, 2);
  t.context->drawImage(CGRectMake(1, 1, 2, 2), halfRed());
  t.expectPixel(2, 6, {255, 0, 0, 255});
  t.expectPixel(5, 7, {255, 0, 0, 255});
  t.expectPixel(2, 8, {0, 0, 0, 0});
  t.expectPixel(1, 6, {0, 0, 0, 0});
  t.expectPixel(2, 5, {0, 0, 0, 0});
}

void stretchedImages(CanvasTest& t) {
  t.start(8, 8);
  t.context->drawImage(CGRectMake(0, 0, 8, 8), halfRed());
  t.expectPixel(3, 0, {255, 0, 0, 255});
  t.expectPixel(3, 7, {0, 0, 0, 0});
  t.expectNear(t.alphaAt(3, 3) + t.alphaAt(3, 4), 1, 0.02, "a smooth seam");
}

void replayedImages(CanvasTest& t) {
  const auto bitmap = CGBitmapContext::create(nullptr, 2, 2, 0, nullptr, CGImageAlphaInfo::premultipliedLast);
  bitmap->setFillColor(red);
  bitmap->fillRect(CGRectMake(0, 1, 5, 5));
  t.start(8, 8);
  t.context->drawImage(CGRectMake(0, 0, 4, 8), bitmap->createImage());
  t.expectPixel(3, 3, {255, 0, 0, 255});
  t.expectPixel(3, 4, {0, 0, 0, 0});
  t.expectPixel(4, 0, {0, 0, 0, 0});
}

CGImageRef opaqueDrawing() {
  const auto bitmap = CGBitmapContext::create(nullptr, 12, 10, 0, nullptr, CGImageAlphaInfo::premultipliedLast);
  const auto gradient = std::make_shared<const CGGradient>(std::vector<RGBA>{{0.75, 0.88, 0.96, 1}, {1, 1, 1, 1}});
  bitmap->drawLinearGradient(gradient, {6, 0}, {6, 10}, kCGGradientDrawsBeforeStartLocation);
  bitmap->moveToPoint(1, 4);
  bitmap->addLineToPoint(30, 7);
  bitmap->strokePath();
  bitmap->clipToRect(CGRectMake(1.3, 1.4, 7.3, 7.2));
  bitmap->showTextRun({FontFaceHelvetica(), 9, "8g", {1.25, 2}});
  return bitmap->createImage();
}

// How many surfaces are made while `draw` runs: they are numbered in turn.
template <typename Draw>
int surfacesMadeBy(CanvasTest& t, Draw draw) {
  const auto number = [&] { return static_cast<const CanvasSurface&>(*t.device.makeSurface(1, 1)).id(); };
  const int before = number();
  draw();
  return number() - before - 1;
}

// Shown for the first time it is drawn straight, then from pixels of its own: nobody may see a difference.
void expectSameEveryTime(CanvasTest& t, double scale, double x, bool isClipped, bool isOnScreen) {
  const std::string place = " at " + std::to_string(x) + ", scale " + std::to_string(scale);
  const bool isStraight = x == 0 && !isClipped;
  const CGImageRef image = opaqueDrawing();
  std::vector<uint8_t> shown[3];
  for (int i = 0; i < 3; ++i) {
    if (isOnScreen)
      t.startOnScreen(20, 14, scale);
    else
      t.start(20, 14, scale);
    t.fill({1, 0, 0, 1}, CGRectMake(0, 0, 20, 14));
    if (isClipped) {
      t.context->addEllipseInRect(CGRectMake(0, 4, 12, 10));
      t.context->clip();
    }
    const int made = surfacesMadeBy(t, [&] { t.context->drawImage(CGRectMake(x, 4 - x, 12, 10), image); });
    t.expectNear(made, i == (isStraight ? 1 : 0) ? 1 : 0, 0, "surfaces of showing " + std::to_string(i) + place);
    shown[i] = t.device.readPixels(*t.surface);
  }
  t.expect(!shown[0].empty() && shown[0] == shown[1] && shown[1] == shown[2], "pixels" + place);
}

// While a chart moves, every frame shows the pixels of its pictures.
void shownWhileMoving(CanvasTest& t) {
  const CGImageRef image = opaqueDrawing();
  const std::shared_ptr<Surface> surface = t.device.makeSurface(12, 10);
  std::vector<uint8_t> shown[2];
  for (int i = 0; i < 2; ++i) {
    const auto context = t.device.contextForMovingFrame(surface, 1);
    const int made = surfacesMadeBy(t, [&] { context->drawImage(CGRectMake(0, 0, 12, 10), image); });
    t.expectNear(made, i == 0 ? 1 : 0, 0, "surfaces of frame " + std::to_string(i));
    shown[i] = t.device.readPixels(*surface);
  }
  t.expect(!shown[0].empty() && shown[0] == shown[1], "the same pixels");
}

void shownTwice(CanvasTest& t) {
  for (const double scale : {1.0, 1.5, 2.0})
    for (const double x : {0.0, 0.25, 2.0}) expectSameEveryTime(t, scale, x, false, false);
}

void shownTwiceOnScreen(CanvasTest& t) {
  for (const double scale : {1.0, 1.5, 2.0})
    for (const double x : {0.0, 0.25, 2.0}) expectSameEveryTime(t, scale, x, false, true);
}

void shownTwiceWithinClip(CanvasTest& t) {
  expectSameEveryTime(t, 1, 0, true, false);
  expectSameEveryTime(t, 2, 0, true, true);
}

void usedAgain(CanvasTest& t) {
  for (int i = 0; i < 4; ++i) {
    t.start(7, 5);
    t.expectPixel(3, 2, {0, 0, 0, 0});
    t.expectPixel(6, 0, {0, 0, 0, 0});
    t.fill({0, 0, 1, 1}, CGRectMake(0, 0, 7, 5));
    t.context->translateCTM(1, 1);
    t.context->clipToRect(CGRectMake(0, 0, 4, 3));
    t.fill({1, 0, 0, 1}, CGRectMake(0, 0, 7, 5));
    t.expectPixel(3, 2, {255, 0, 0, 255});
    t.expectPixel(6, 0, {0, 0, 255, 255});
  }
}

void brokenScale(CanvasTest& t) {
  const auto bitmap = CGBitmapContext::create(nullptr, 3, 3, 0, nullptr, CGImageAlphaInfo::premultipliedLast);
  bitmap->clipToRect(CGRectMake(0, 0, 3, 3));
  bitmap->setFillColor(red);
  bitmap->fillRect(CGRectMake(0, 0, 2, 3));
  t.start(4, 4, 1.5);
  t.context->drawImage(CGRectMake(0, 0, 3, 3), bitmap->createImage());
  t.expectPixel(2, 5, {255, 0, 0, 255});
  t.expectPixel(3, 5, {0, 0, 0, 0});
}

void fadedImages(CanvasTest& t) {
  t.start(2, 2);
  t.context->setAlpha(0.5);
  t.context->drawImage(CGRectMake(0, 0, 2, 2), halfRed());
  t.expectPixel(0, 0, {128, 0, 0, 128}, 1);
}

void unknownPictures(CanvasTest& t) {
  const uint8_t bytes[] = {1, 2, 3};
  t.expect(!t.device.decodePNG(bytes, sizeof bytes), "a surface out of no picture");
}

void longFrames(CanvasTest& t) {
  t.start(100, 100);
  for (int i = 0; i < 30000; ++i) t.fill({0, 0, 0, 1}, CGRectMake(i % 100, i / 100 % 100, 1, 1));
  t.expectPixel(99, 0, {0, 0, 0, 255});
  t.expectPixel(0, 99, {0, 0, 0, 255});
}

}  // namespace

std::vector<NamedCanvasTest> canvasDrawingTests() {
  return {{"colours become rounded premultiplied bytes", colours},
          {"the origin is at the bottom left, a point has the scale's pixels", orientation},
          {"a line on a whole coordinate covers two rows half", wholeLine},
          {"a line on a half coordinate covers one row and ends without caps", halfLine},
          {"nothing is stroked without width or length", noLine},
          {"clips intersect and end with the state; an empty one leaves nothing", clips},
          {"clips on screens end within pixels", clipsOfScreens},
          {"rectangular clips of pictures end on the nearest whole pixels", clipsOfPictures},
          {"even-odd leaves a hole", evenOdd},
          {"clearing makes transparent within the clip, softly at fractions", clearing},
          {"a transform of no extent hides only what stands under it", collapsed},
          {"surfaces of impossible sizes are refused", impossibleSizes},
          {"copying replaces what is painted and nothing else", copying},
          {"a recording's pixels are shown one to one, first row on top", images},
          {"a stretched picture is smoothed", stretchedImages},
          {"a simple recording is drawn again when stretched, within its own edges", replayedImages},
          {"an opaque drawing looks the same every time", shownTwice},
          {"an opaque drawing looks the same every time on a screen", shownTwiceOnScreen},
          {"an opaque drawing looks the same every time within a clip", shownTwiceWithinClip},
          {"an opaque drawing is shown from pixels while a chart moves", shownWhileMoving},
          {"a surface of the size of an earlier one is clear", usedAgain},
          {"at a broken scale pixels stay on pixels", brokenScale},
          {"pictures take the alpha in force", fadedImages},
          {"bytes that the page did not prepare give no picture", unknownPictures},
          {"a frame longer than the buffer is drawn whole", longFrames}};
}

}  // namespace zelkon
