// Draws amounts over time as vertical bars. What never moves (background, gridlines, labels) is painted once into a
// bitmap that becomes the root layer's contents; each bar is a layer of its own, growing out of the zero line when the
// chart first appears.
//
// All lengths in points; rectangles in root-layer coordinates, y up.
#pragma once

#include <optional>

#include "Classes/Plotting/CashFlowPlot.h"
#include "Classes/Plotting/EntryRects.h"
#include "CoreGraphics/CGBitmapContext.h"

namespace zelkon {

// Hears of each opening animation before it is added to its layer, and may tag it and make itself its delegate.
class AnimationsCreatedProtocol {
 public:
  virtual ~AnimationsCreatedProtocol() = default;
  virtual void animationCreated(CABasicAnimation& animation, const std::string& key) = 0;
};

class BarPlot : public CashFlowPlot, public CALayerDelegate {
 public:
  using Labels = std::vector<NSAttributedString>;

  std::string className() const override { return "BarPlot"; }
  static constexpr double minimumBarWidth() { return 10; }
  static constexpr double minimumBarSpacing() { return 40; }

  // Raises NSInternalInconsistencyException when the bars cannot be made to fit; the old picture then stays.
  void generatePlot() override;
  Value defaultPlotOptionValueForKey(std::string_view key) const override;

  // Shows the bars, growing. Each call adds a complete set of layers.
  virtual void doDisplay();
  // Shows them at their full size, once the chart has been displayed.
  virtual void redisplay();
  // Whether the chart has been displayed.
  bool isDisplayed() const { return initialDisplay_; }
  // Hides the root layer and lets go of it.
  void doHide();

  // The entry whose rectangle holds the point (root-layer coordinates), or null.
  PlotEntryRef entryForPoint(CGPoint point) const { return entryRects_.entryAt(point); }
  CGRect rectForEntry(const PlotEntryRef& entry) const { return entryRects_.rectFor(entry); }

  void setAnimationsCreatedDelegate(std::weak_ptr<AnimationsCreatedProtocol> delegate) {
    animationsCreatedDelegate_ = std::move(delegate);
  }

  // Draws a bar's layer.
  void drawLayer(CALayer& layer, CGContext& context) override;

  const Gridlines& yTickmarks() const { return yTickmarks_; }
  const Labels& xLabels() const { return xLabels_; }
  const Labels& xMediumLabels() const { return xMediumLabels_; }
  const Labels& xShortLabels() const { return xShortLabels_; }
  const Labels& xSubtitleLabels() const { return xSubtitleLabels_; }
  const Labels& yLabels() const { return yLabels_; }
  CGRect plotRect() const { return plotRect_; }
  double barWidth() const { return barWidth_; }
  double barMargin() const { return barMargin_; }
  // What the chart works with, by name.
  virtual std::vector<std::pair<std::string, Value>> properties() const;
  // Null but for the time of a generation.
  const std::shared_ptr<CGBitmapContext>& renderContext() const { return renderContext_; }

  // Lucida Grande 12 centred, and 9 right-aligned.
  static const TextAttributes& xLabelAttributes();
  static const TextAttributes& yLabelAttributes();

  // The steps of a generation, in the order createPlot runs them.
  virtual void createPlot();
  virtual void createXLabels();
  void createYLabels();
  void computeGeometry();
  void _computeBarWidth();
  void renderBackground();
  virtual void renderXGridlinesAndLabels();
  void renderYGridlinesAndLabels();
  virtual void renderPlotBody();
  void doDisplayWithAnimation(bool animated);

  struct Amounts {
    double min = 0, max = 0;
  };
  Amounts _findMinAmount() const;  // zero is always between them
  // Whether the value axis of the data ends on both sides. That of amounts near the largest number may not.
  bool hasFiniteAxis() const;

  // `count` rectangles edge to edge, the first 4 points right of `barStartX`.
  std::vector<CGRect> subtitleRectsWithStartingRect(CGRect start, size_t count, double barStartX) const;
  // The subtitles to draw: the first of each run of equal ones, thinned until none overlap; nothing when the counts
  // differ. A label whose subtitle was thinned away is emptied.
  std::optional<Labels> adjustedSubtitles(const Labels& subtitles, std::vector<CGRect>& rects, Labels& labels) const;
  static bool _rectsOverlap(const std::vector<CGRect>& rects);
  // Each makes the layer of one bar. Animated, it grows out of the zero line and the delegate hears of it.
  void _renderUpwardFacingBarInRect(CGRect rect, bool animated);
  void _renderDownwardFacingBarInRect(CGRect rect, bool animated);
  // Linear, a thousandth of a second a point; it stays when it is over.
  CABasicAnimation _barBoundsAnimationWithStartRect(CGRect start, CGRect end) const;

 protected:
  bool optionIsTrue(std::string_view key) const { return valueForPlotOptionKey(key).boolValue(); }
  // The amount of an entry as drawn: its magnitude where all values count as positive.
  double amountAt(size_t index, bool allPositive) const;
  CGRect rootBounds() const;
  double zeroLineY() const;
  // Fills the four label sets from the plot data.
  void createLabelSets();
  static Gridlines gridlinesForAmounts(const Amounts& amounts);
  // One slot per label, edge to edge.
  static LabelRow row(const Labels& labels, CGRect firstSlot);
  static bool anyIsEmpty(const Labels& labels);
  // A vertical line 1 point wide in the zero line's grey.
  void strokeSeparator(double x, double fromY, double toY);
  void tellOfAnimation(CABasicAnimation& animation, const std::string& key) const;

  Gridlines yTickmarks_;
  Labels xLabels_, xMediumLabels_, xShortLabels_, xSubtitleLabels_, yLabels_;
  std::shared_ptr<CGBitmapContext> renderContext_;
  CGRect plotRect_;
  double barWidth_ = 0, barMargin_ = 0;
  double xLabelMaxHeight_ = 0;
  CGSize yLabelMaxSize_;
  double yLabelCalloutWidth_ = 0, yLabelCalloutToPlotMargin_ = 0, yLabelToYCalloutMargin_ = 0;
  bool initialDisplay_ = false;  // set once the chart has been displayed
  EntryRects entryRects_;

 private:
  enum class Facing { upward, downward };
  void renderBars(Facing facing, double zeroY);
  void addBarLayer(Facing facing, CGRect rect, bool animated);

  std::weak_ptr<AnimationsCreatedProtocol> animationsCreatedDelegate_;
  std::vector<CGRect> animationUpwardRectsQueue_, animationDownwardRectsQueue_;
};

}  // namespace zelkon
