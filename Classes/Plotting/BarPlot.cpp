// Generation and geometry; the labels, the drawing and the bars' layers have files of their own.
#include "Classes/Plotting/BarPlot.h"

#include <cmath>

#include "AppKit/NSGraphicsContext.h"
#include "Classes/Utilities/PiePlotDrawingUtilities.h"
#include "Foundation/NSAssertionHandler.h"
#include "Foundation/NSException.h"

namespace zelkon {
namespace {

constexpr const char* kFile = "Classes/Plotting/BarPlot";
constexpr double kWidestBar = 230;

// Makes a context the current one for AppKit's text drawing and brings the earlier one back, whatever happens between.
class CurrentContext {
 public:
  explicit CurrentContext(CGContext* context) {
    NSGraphicsContext::saveGraphicsState();
    NSGraphicsContext::setCurrentContext(NSGraphicsContext::graphicsContextWithGraphicsPort(context, false));
  }
  ~CurrentContext() { NSGraphicsContext::restoreGraphicsState(); }
  CurrentContext(const CurrentContext&) = delete;
  CurrentContext& operator=(const CurrentContext&) = delete;
};

// Lets go of the render context at the end of a generation, also of one that failed.
class ContextReset {
 public:
  explicit ContextReset(std::shared_ptr<CGBitmapContext>& context) : context_(context) {}
  ~ContextReset() { context_.reset(); }
  ContextReset(const ContextReset&) = delete;
  ContextReset& operator=(const ContextReset&) = delete;

 private:
  std::shared_ptr<CGBitmapContext>& context_;
};

}  // namespace

Value BarPlot::defaultPlotOptionValueForKey(std::string_view key) const {
  if (key == "DisplayXLabels" || key == "DisplayYLabels") return true;
  if (key == "AllValuesPositive" || key == "YTickMarksExtendFullWidth") return false;
  return CashFlowPlot::defaultPlotOptionValueForKey(key);
}

CGRect BarPlot::rootBounds() const {
  const CALayerRef root = rootLayer();
  return root ? root->bounds() : NSZeroRect;
}

void BarPlot::generatePlot() {
  CashFlowPlot::generatePlot();
  if (!plotData()) return;
  const std::string operation = "-[" + className() + " generatePlot]";
  renderContext_ = PiePlotDrawingUtilities::sharedUtilities().createBitmapContextOfSize(rootBounds().size);
  NSParameterAssert(renderContext_ != nullptr, "NULL != renderContext", operation, this, kFile, 319);
  const ContextReset reset(renderContext_);
  const CurrentContext current(renderContext_.get());
  createPlot();
  const CGImageRef image = renderContext_->createImage();
  NSParameterAssert(image != nullptr, "NULL != cgImage", operation, this, kFile, 333);
  if (const CALayerRef root = rootLayer()) root->setContents(image);
}

void BarPlot::createPlot() {
  createXLabels();
  createYLabels();
  computeGeometry();
  _computeBarWidth();
  renderBackground();
  renderXGridlinesAndLabels();
  renderYGridlinesAndLabels();
  renderPlotBody();
  if (initialDisplay_) doDisplayWithAnimation(false);
}

double BarPlot::amountAt(size_t index, bool allPositive) const {
  const double y = plotData()->y(index);
  return allPositive ? std::abs(y) : y;
}

BarPlot::Amounts BarPlot::_findMinAmount() const {
  Amounts amounts;
  if (!plotData()) return amounts;
  const size_t count = plotData()->count();
  // An option is only asked for where there is an amount to take by it.
  const bool allPositive = count > 0 && optionIsTrue("AllValuesPositive");
  for (size_t i = 0; i < count; ++i) {
    const double v = amountAt(i, allPositive);
    if (v > amounts.max) amounts.max = v;
    if (amounts.min > v) amounts.min = v;
  }
  return amounts;
}

void BarPlot::computeGeometry() {
  yLabelCalloutWidth_ = 8;
  yLabelCalloutToPlotMargin_ = 5;
  yLabelToYCalloutMargin_ = 12;
  barMargin_ = 40;
  if (optionIsTrue("YTickMarksExtendFullWidth")) yLabelCalloutWidth_ = yLabelCalloutToPlotMargin_ = 0;
  // The long labels decide even where shorter ones are drawn, so that a chart keeps its height as it gets narrower.
  xLabelMaxHeight_ = std::ceil(maxSizeOfLabels(xLabels_).height);
  const CGSize widest = maxSizeOfLabels(yLabels_);
  yLabelMaxSize_ = {std::ceil(widest.width), std::ceil(widest.height)};
  if (yLabelMaxSize_.width == 0) yLabelToYCalloutMargin_ = 0;

  const double left = yLabelToYCalloutMargin_ + yLabelCalloutWidth_ + yLabelCalloutToPlotMargin_ + yLabelMaxSize_.width;
  const CGRect bounds = rootBounds();
  const double height = xLabelMaxHeight_;
  plotRect_ = CGRectMake(CGRectGetMinX(bounds) + 20 + left, CGRectGetMinY(bounds) + 34 + height + 7,
                         CGRectGetWidth(bounds) - left - 4 - 40, CGRectGetHeight(bounds) - height - 7 - 34 - 55);
}

void BarPlot::_computeBarWidth() {
  const auto count = static_cast<double>(plotData() ? plotData()->count() : 0);
  if (count == 0) {
    // A chart with axes and no bars.
    barWidth_ = 0;
    return;
  }
  for (;;) {
    barWidth_ = std::floor((plotRect_.size.width - barMargin_ * (count + 1)) / count);
    if (barMargin_ > barWidth_ && barMargin_ > 5) {
      barMargin_ = std::ceil(barMargin_ * 0.5);
    } else if (minimumBarWidth() > barWidth_) {
      if (barMargin_ - 1 <= 2)
        NSRaise(NSInternalInconsistencyException,
                "DEBUGGING: " + className() +
                    " cannot handle too many bars yet, the margins have shrunk to less than 2 pixels.");
      barMargin_ -= 1;
    } else {
      break;
    }
  }
  if (barWidth_ > kWidestBar) {
    barMargin_ += std::floor((barWidth_ - kWidestBar) / (count + 1));
    barWidth_ = kWidestBar;
  }
}

double BarPlot::zeroLineY() const {
  return std::floor(fractionForValue(0, yTickmarks_) * plotRect_.size.height) + plotRect_.origin.y;
}

}  // namespace zelkon
