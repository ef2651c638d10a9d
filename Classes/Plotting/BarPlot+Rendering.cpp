// The static chart and the drawing of a bar.
#include <algorithm>
#include <cmath>

#include "AppKit/NSStringDrawing.h"
#include "Classes/Plotting/BarPlot.h"
#include "Foundation/NSAssertionHandler.h"

namespace zelkon {
namespace {

constexpr RGBA kBackgroundBottom{0.75, 0.88, 0.96, 1};
constexpr RGBA kBackgroundTop{1, 1, 1, 1};
constexpr RGBA kGridline{0.55, 0.55, 0.55, 1};
constexpr RGBA kZeroLine{0.29, 0.29, 0.29, 1};
constexpr RGBA kOutline{0.5, 0.5, 0.5, 1};
constexpr RGBA kUpwardBottom{0.44, 0.66, 0.10, 1}, kUpwardTop{0.66, 0.79, 0.16, 1};
constexpr RGBA kDownwardBottom{0.984, 0.227, 0.227, 1}, kDownwardTop{0.80, 0.094, 0.094, 1};
constexpr double kShortestUpwardBar = 2;

// The bar's shape within its layer: 3 points narrower on each side, the corners away from the zero line rounded.
CGPath barPath(const CALayer& layer) {
  const CGRect r = CGRectInset(layer.bounds(), 3, 0);
  const double left = CGRectGetMinX(r) - 0.5, right = CGRectGetMaxX(r) - 0.5, middle = CGRectGetMidX(r);
  const double radius = layer.cornerRadius();
  CGPath path;
  if (layer.name() == "upwardFacing") {
    const double base = CGRectGetMinY(r), end = CGRectGetMaxY(r) - 0.5;
    path.moveTo({left, base});
    path.addLineTo({right, base});
    path.addArcToPoint({right, end}, {middle, end}, radius);
    path.addArcToPoint({left, end}, {left, base}, radius);
    path.addLineTo({left, base});
  } else if (layer.name() == "downwardFacing") {
    const double base = CGRectGetMaxY(r), end = CGRectGetMinY(r) + 0.5;
    path.moveTo({left, base});
    path.addLineTo({right, base});
    path.addArcToPoint({right, end}, {middle, end}, radius);
    path.addArcToPoint({left, end}, {left, base}, radius);
    path.addLineTo({left, base});
  }
  path.close();
  return path;
}

}  // namespace

void BarPlot::renderBackground() {
  static const auto gradient = std::make_shared<const CGGradient>(std::vector<RGBA>{kBackgroundBottom, kBackgroundTop});
  const CGRect bounds = rootBounds();
  renderContext_->clearRect(bounds);
  renderContext_->drawLinearGradient(gradient, {CGRectGetMidX(bounds), CGRectGetMinY(bounds)},
                                     {CGRectGetMidX(bounds), CGRectGetMaxY(bounds)},
                                     kCGGradientDrawsBeforeStartLocation);
}

void BarPlot::renderYGridlinesAndLabels() {
  const double bandX = CGRectGetMinX(rootBounds()) + 20;
  const double startX = bandX + yLabelMaxSize_.width + yLabelToYCalloutMargin_;
  const double tickEnd = startX + yLabelCalloutWidth_;
  const bool fullWidth = optionIsTrue("YTickMarksExtendFullWidth");
  for (size_t i = 0; i < yTickmarks_.size(); ++i) {
    const double value = yTickmarks_[i];
    const double y = std::floor(fractionForValue(value, yTickmarks_) * plotRect_.size.height) + plotRect_.origin.y;
    renderContext_->setStrokeColor(value == 0 ? kZeroLine : kGridline);
    renderContext_->moveToPoint(startX, y);
    renderContext_->addLineToPoint(value == 0 || fullWidth ? CGRectGetMaxX(plotRect_) : tickEnd, y);
    renderContext_->strokePath();
    if (i >= yLabels_.size()) continue;
    NSDrawInRect(yLabels_[i], CGRectMake(bandX, std::floor(y - yLabelMaxSize_.height / 2), yLabelMaxSize_.width,
                                         yLabelMaxSize_.height));
  }
}

void BarPlot::renderPlotBody() {
  entryRects_.clear();
  animationUpwardRectsQueue_.clear();
  animationDownwardRectsQueue_.clear();
  const double zeroY = zeroLineY();
  renderBars(Facing::upward, zeroY);
  renderBars(Facing::downward, zeroY);
}

void BarPlot::renderBars(Facing facing, double zeroY) {
  const size_t count = plotData() ? plotData()->count() : 0;
  const bool allPositive = count > 0 && optionIsTrue("AllValuesPositive");
  const std::string operation = "-[" + className() + " renderPlotBody]";
  double x = CGRectGetMinX(plotRect_) + barMargin_;
  for (size_t i = 0; i < count; ++i, x += barWidth_ + barMargin_) {
    const double value = amountAt(i, allPositive);
    const double end = std::floor(fractionForValue(value, yTickmarks_) * plotRect_.size.height) + plotRect_.origin.y;
    if (facing == Facing::upward && value > 0) {
      const CGRect rect = CGRectMake(x, zeroY, barWidth_, std::max(zeroY + kShortestUpwardBar, end) - zeroY);
      entryRects_.set(plotData()->entry(i), rect);
      animationUpwardRectsQueue_.push_back(rect);
    } else if (facing == Facing::downward && value < 0) {
      NSParameterAssert(end <= zeroY, "bottom <= zeroLineY", operation, this, "Classes/Plotting/BarPlot", 882);
      const CGRect rect = CGRectMake(x, end, barWidth_, zeroY - end);
      entryRects_.set(plotData()->entry(i), rect);
      animationDownwardRectsQueue_.push_back(rect);
    }
  }
}

void BarPlot::drawLayer(CALayer& layer, CGContext& context) {
  static const auto upward = std::make_shared<const CGGradient>(std::vector<RGBA>{kUpwardBottom, kUpwardTop});
  static const auto downward = std::make_shared<const CGGradient>(std::vector<RGBA>{kDownwardBottom, kDownwardTop});
  const bool isUpward = layer.name() == "upwardFacing";
  const CGPath path = barPath(layer);
  context.saveGState();
  if (isUpward || layer.name() == "downwardFacing") {
    context.setShadow({3, isUpward ? -3.0 : 3.0}, 2);
    context.beginTransparencyLayer();
    context.addPath(path);
    context.clip();
    // Laid from the layer's own origin, so bars that stand far from it show the end colour only.
    context.drawLinearGradient(isUpward ? upward : downward, {0, 0}, {0, CGRectGetHeight(layer.bounds())},
                               kCGGradientDrawsBeforeStartLocation | kCGGradientDrawsAfterEndLocation);
    context.endTransparencyLayer();
  }
  context.restoreGState();
  context.addPath(path);
  context.setLineWidth(1);
  context.setStrokeColor(kOutline);
  context.strokePath();
}

}  // namespace zelkon
