// A very small test runner for drawing inside a page, where GoogleTest is not at hand.
#pragma once

#include <cmath>
#include <memory>
#include <string>
#include <vector>

#include "Backends/Canvas/CanvasDevice.h"
#include "CoreGraphics/CGBitmapContext.h"
#include "Foundation/PlatformSession.h"

namespace zelkon {

struct Pixel {
  int red, green, blue, alpha;  // premultiplied, 0...255
};

// A device, a bitmap to draw on, and what went wrong.
class CanvasTest {
 public:
  CanvasTest();
  ~CanvasTest();
  CanvasTest(const CanvasTest&) = delete;
  CanvasTest& operator=(const CanvasTest&) = delete;

  // A fresh transparent bitmap of a size in points, or the canvas of an element of that size.
  void start(int width, int height, double scale = 1);
  void startOnScreen(int width, int height, double scale = 1);
  void fill(const RGBA& color, CGRect rect);
  void fillInGroup(const CGGroupEffects& effects, const RGBA& color, CGRect rect);
  // Column from the left, row from the top.
  Pixel pixel(int column, int row);
  double alphaAt(int column, int row) { return pixel(column, row).alpha / 255.0; }
  double redAt(int column, int row) { return pixel(column, row).red / 255.0; }

  void expect(bool holds, const std::string& what);
  void expectNear(double actual, double expected, double tolerance, const std::string& what);
  void expectPixel(int column, int row, Pixel expected, int tolerance = 0);
  const std::string& failures() const { return failures_; }

  CanvasDevice device;
  std::shared_ptr<Surface> surface;
  std::unique_ptr<CGContext> context;

 private:
  PlatformSession session_;
  PlatformSession::Scope scope_{session_};
  std::string failures_;
};

struct NamedCanvasTest {
  const char* name;
  void (*run)(CanvasTest&);
};
std::vector<NamedCanvasTest> canvasDrawingTests();
std::vector<NamedCanvasTest> canvasEffectsTests();
std::vector<NamedCanvasTest> canvasTextTests();

}  // namespace zelkon
