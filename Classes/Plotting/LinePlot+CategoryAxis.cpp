// The line plotter's own category axis: thinned data, slots one spacing wide, month labels.
#include <algorithm>
#include <cmath>

#include "AppKit/NSStringDrawing.h"
#include "Classes/Plotting/LinePlot.h"
#include "Foundation/NSAssertionHandler.h"

namespace zelkon {
namespace {

constexpr double kLabelMargin = 10;
constexpr int kJanuary = 1;

}  // namespace

void LinePlot::createXLabels() {
  if (!plotData() || plotData()->count() == 0) return;
  const double width = plotRect_.size.width;
  const auto points = static_cast<size_t>(std::max(0.0, std::floor(width)));
  const size_t count = plotData()->count();
  pixelsPerRenderPoint_ = points >= count ? width / static_cast<double>(count) : 1;
  if (!(width > 0)) return;
  thinPlotData();
  if (!optionIsTrue("DisplayXLabels")) return;
  createLabelSets();
  xLabelMaxHeight_ = std::ceil(maxSizeOfLabels(xLabels_).height);
}

void LinePlot::thinPlotData() {
  const double width = plotRect_.size.width;
  const auto points = static_cast<size_t>(std::max(0.0, std::floor(width)));
  const size_t count = plotData()->count();
  const size_t kept = std::min(count, points);
  const double step = static_cast<double>(count) / width;
  const std::string operation = "-[" + className() + " createXLabels]";
  std::vector<PlotEntryRef> entries;
  entries.reserve(kept);
  for (size_t i = 0; i < kept; ++i) {
    const size_t index = kept == count ? i : static_cast<size_t>(std::floor(static_cast<double>(i) * step));
    NSParameterAssert(index < count, "index < pointCount", operation, this, "Classes/Plotting/LinePlot", 175);
    entries.push_back(std::make_shared<const PlotEntry>(*plotData()->entry(index)));
  }
  // Asks for a generation, which the running one swallows: the thinned data are for the rest of it and for hit testing.
  setPlotData(std::make_shared<const PlotEntryArray>(std::move(entries)));
}

void LinePlot::renderXGridlinesAndLabels() {
  const CGRect inset = NSInsetRect(rootBounds(), 10, 10);
  const double startX = CGRectGetMinX(plotRect_) - pixelsPerRenderPoint_ / 2;
  const CGRect slot = CGRectMake(startX, inset.origin.y + 14, pixelsPerRenderPoint_, xLabelMaxHeight_);
  renderContext_->setStrokeColor({0, 0, 0, 1});

  LabelRow shown = row(xLabels_, slot);
  fitLabelsHorizontally(shown, kLabelMargin);
  if (!xMediumLabels_.empty() && anyIsEmpty(shown.labels)) {
    shown = row(xMediumLabels_, slot);
    fitLabelsHorizontally(shown, kLabelMargin);
  }
  const NSDateFormatter monthReader;
  std::optional<Labels> subtitles;
  std::vector<CGRect> subtitleRects;
  if (!xShortLabels_.empty() && anyIsEmpty(shown.labels)) {
    shown = row(xShortLabels_, slot);
    fitMonthLabelsHorizontally(shown, kLabelMargin, monthReader);
    const CGRect start = CGRectMake(0, inset.origin.y, pixelsPerRenderPoint_, xLabelMaxHeight_);
    subtitleRects = subtitleRectsWithStartingRect(start, xSubtitleLabels_.size(), startX);
    subtitles = adjustedSubtitles(xSubtitleLabels_, subtitleRects, shown.labels);
  }

  const std::string* lastSubtitle = nullptr;
  for (size_t i = 0; i < shown.labels.size(); ++i) {
    const NSAttributedString& label = shown.labels[i];
    if (label.isEmpty()) continue;
    const CGRect& rect = shown.rects[i];
    NSDrawInRect(label, rect);
    if (!subtitles) continue;
    const NSAttributedString& subtitle = (*subtitles)[i];
    if (subtitle.isEmpty() || (lastSubtitle && *lastSubtitle == subtitle.string())) continue;
    CGRect place = subtitleRects[i];
    place.origin.x = std::trunc(rect.origin.x + (rect.size.width - label.size().width) * 0.5);
    NSDrawInRect(subtitle, place);
    const bool isFirst = lastSubtitle == nullptr;
    lastSubtitle = &subtitle.string();
    // A chart that begins in January needs no tick at its edge; one whose first name stands under a later January does.
    const auto isJanuary = [&] {
      return NSCalendar::monthOfDate(monthReader.monthFromString(label.string())) == kJanuary;
    };
    if (isFirst && (i == 0 || !isJanuary())) continue;
    strokeSeparator(std::floor(rect.origin.x) - 1, rect.origin.y + rect.size.height,
                    rect.origin.y + rect.size.height / 3);
  }
}

}  // namespace zelkon
