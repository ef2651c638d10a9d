#include "Classes/Plotting/LinePlot.h"

#include <algorithm>
#include <cmath>

namespace zelkon {
namespace {

constexpr double kRevealSeconds = 1;
constexpr double kClearance = 3;  // of the line from the zero line, so that it stays visible beside it
constexpr RGBA kFillBottom{1, 1, 1, 0}, kFillTop{0.66, 0.79, 0.16, 1};
constexpr double kDarkGray = 1.0 / 3;

class Flag {
 public:
  explicit Flag(bool& flag) : flag_(flag) { flag_ = true; }
  ~Flag() { flag_ = false; }
  Flag(const Flag&) = delete;
  Flag& operator=(const Flag&) = delete;

 private:
  bool& flag_;
};

double clearOfZero(double y) {
  if (y > 0 && y < kClearance) return kClearance;
  if (y < 0 && y > -kClearance) return -kClearance;
  return y;
}

}  // namespace

void LinePlot::generatePlot() {
  if (generatingPlot_) return;
  const Flag generating(generatingPlot_);
  BarPlot::generatePlot();
}

void LinePlot::createPlot() {
  createYLabels();
  computeGeometry();
  createXLabels();
  renderBackground();
  renderYGridlinesAndLabels();
  renderXGridlinesAndLabels();
}

void LinePlot::doDisplay() {
  renderPlotBody();
  initialDisplay_ = true;
}

void LinePlot::redisplay() {
  if (initialDisplay_) renderPlotBody();
}

void LinePlot::renderPlotBody() {
  const CALayerRef root = rootLayer();
  if (!root) return;
  // A rectangle of negative width would be turned round and show a line where there is no room for one.
  CGRect plot = plotRect_;
  plot.size.width = std::max(plot.size.width, 0.0);
  const CALayerRef body = CALayer::layer();
  body->setFrame(plot);
  body->setDelegate(std::static_pointer_cast<LinePlot>(shared_from_this()));
  body->setNeedsDisplay();
  body->setNeedsDisplayOnBoundsChange(true);

  const CGRect start = CGRectMake(plot.origin.x, plot.origin.y, 0, plot.size.height);
  const CALayerRef clip = CALayer::layer();
  clip->setMasksToBounds(true);
  clip->setAnchorPoint({0, 0.5});
  clip->setFrame(start);
  clip->setNeedsDisplay();
  clip->setNeedsDisplayOnBoundsChange(true);
  clip->addSublayer(body);
  root->addSublayer(clip);

  if (!initialDisplay_) {
    CABasicAnimation reveal = CABasicAnimation::animationWithKeyPath("bounds");
    reveal.fromValue = start;
    reveal.toValue = plot;
    reveal.duration = kRevealSeconds;
    reveal.timingFunction = kCAMediaTimingFunctionLinear;
    reveal.removedOnCompletion = false;
    reveal.fillMode = CAFillMode::forwards;
    tellOfAnimation(reveal, "bounds");
    clip->addAnimation(std::move(reveal), "bounds");
  }
  // The same rectangle, origin included: the body then keeps its place in the root layer's coordinates.
  clip->setBounds(plot);
}

void LinePlot::drawLayer(CALayer& layer, CGContext& context) {
  const CGRect bounds = layer.bounds();
  const double minX = CGRectGetMinX(bounds), minY = CGRectGetMinY(bounds), height = CGRectGetHeight(bounds);
  const CGPoint origin = layer.frame().origin;
  const bool allPositive = optionIsTrue("AllValuesPositive");
  entryRects_.clear();

  CGPath line;
  double top = -3.4028234663852886e38;
  const size_t count = plotData() ? plotData()->count() : 0;
  for (size_t i = 0; i < count; ++i) {
    const double x = static_cast<double>(i) * pixelsPerRenderPoint_ + minX;
    const double y = clearOfZero(fractionForValue(amountAt(i, allPositive), yTickmarks_) * (height - 2) + minY);
    top = std::max(top, y);
    if (i == 0)
      line.moveTo({x, y});
    else
      line.addLineTo({x, y});
    entryRects_.set(plotData()->entry(i), CGRectMake(x + origin.x - 0.5 * pixelsPerRenderPoint_, minY + origin.y,
                                                     pixelsPerRenderPoint_, y - minY));
  }
  if (line.isEmpty()) return;

  context.saveGState();
  context.saveGState();
  CGPath area = line;
  area.addLineTo({line.currentPoint()->x, minY});
  area.addLineTo({minX, minY});
  area.close();
  context.addPath(area);
  context.clip();
  static const auto gradient = std::make_shared<const CGGradient>(std::vector<RGBA>{kFillBottom, kFillTop});
  context.drawLinearGradient(gradient, {minX, minY}, {minX, top}, kCGGradientDrawsNothingOutside);
  context.restoreGState();

  context.setFillColor({kDarkGray, kDarkGray, kDarkGray, 1});
  context.setStrokeColor({kDarkGray, kDarkGray, kDarkGray, 1});
  context.addPath(line);
  context.setLineWidth(2);
  context.strokePath();
  context.restoreGState();
}

}  // namespace zelkon
