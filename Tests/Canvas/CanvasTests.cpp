#include "Canvas/CanvasTests.h"

#include <emscripten.h>

#include "Backends/Canvas/PageImport.h"

// The number of a canvas element that the page has bound as a screen.
extern "C" ZELKON_PAGE_IMPORT(canvasTestScreen) int canvasTestScreen() noexcept;

namespace zelkon {

CanvasTest::CanvasTest() { GraphicsDevice::install(&device); }

CanvasTest::~CanvasTest() {
  context.reset();
  surface.reset();
  device.flush();
}

void CanvasTest::start(int width, int height, double scale) {
  context.reset();
  surface = device.makeSurface(static_cast<int>(std::ceil(width * scale)), static_cast<int>(std::ceil(height * scale)));
  context = device.contextForSurface(surface, scale);
}

void CanvasTest::startOnScreen(int width, int height, double scale) {
  context.reset();
  surface = device.screenSurface(canvasTestScreen(), static_cast<int>(std::ceil(width * scale)),
                                 static_cast<int>(std::ceil(height * scale)));
  context = device.contextForSurface(surface, scale);
}

void CanvasTest::fill(const RGBA& color, CGRect rect) {
  context->setFillColor(color);
  context->fillRect(rect);
}

void CanvasTest::fillInGroup(const CGGroupEffects& effects, const RGBA& color, CGRect rect) {
  context->beginGroup(effects, rect);
  fill(color, rect);
  context->endGroup();
}

Pixel CanvasTest::pixel(int column, int row) {
  const std::vector<uint8_t> bytes = device.readPixels(*surface);
  const size_t at = 4 * static_cast<size_t>(row * surface->pixelWidth() + column);
  if (at + 3 >= bytes.size()) return {-1, -1, -1, -1};
  return {bytes[at], bytes[at + 1], bytes[at + 2], bytes[at + 3]};
}

void CanvasTest::expect(bool holds, const std::string& what) {
  if (!holds) failures_ += what + "\n";
}

void CanvasTest::expectNear(double actual, double expected, double tolerance, const std::string& what) {
  expect(std::abs(actual - expected) <= tolerance,
         what + ": " + std::to_string(actual) + " instead of " + std::to_string(expected));
}

void CanvasTest::expectPixel(int column, int row, Pixel expected, int tolerance) {
  const Pixel p = pixel(column, row);
  const std::string place = "(" + std::to_string(column) + ", " + std::to_string(row) + ") ";
  expectNear(p.red, expected.red, tolerance, place + "red");
  expectNear(p.green, expected.green, tolerance, place + "green");
  expectNear(p.blue, expected.blue, tolerance, place + "blue");
  expectNear(p.alpha, expected.alpha, tolerance, place + "alpha");
}

namespace {

const std::vector<NamedCanvasTest>& allTests() {
  static const std::vector<NamedCanvasTest> tests = [] {
    std::vector<NamedCanvasTest> all;
    for (const auto& some : {canvasDrawingTests(), canvasEffectsTests(), canvasTextTests()})
      all.insert(all.end(), some.begin(), some.end());
    return all;
  }();
  return tests;
}

}  // namespace

}  // namespace zelkon

extern "C" {

EMSCRIPTEN_KEEPALIVE int canvasTestCount() { return static_cast<int>(zelkon::allTests().size()); }

EMSCRIPTEN_KEEPALIVE const char* canvasTestName(int index) {
  return zelkon::allTests()[static_cast<size_t>(index)].name;
}

// What went wrong, a line each; empty when nothing did. Valid until the next call.
EMSCRIPTEN_KEEPALIVE const char* canvasTestRun(int index) {
  static std::string failures;
  zelkon::CanvasTest test;
  zelkon::allTests()[static_cast<size_t>(index)].run(test);
  failures = test.failures();
  return failures.c_str();
}

}  // extern "C"
