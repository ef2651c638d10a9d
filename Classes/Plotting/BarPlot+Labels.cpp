// The labels of both axes.
#include <algorithm>
#include <cmath>

#include "AppKit/NSStringDrawing.h"
#include "Classes/Plotting/BarPlot.h"

namespace zelkon {
namespace {

constexpr double kLabelMargin = 20;
constexpr unsigned kGridlineCount = 5;
constexpr double kSeparatorGray = 0.29;

TextAttributes attributes(double size, NSTextAlignment alignment) {
  NSParagraphStyle style;
  style.alignment = alignment;
  return {NSFontWithName("Lucida Grande", size), CashFlowPlot::defaultTextColor(), style};
}

// Neighbours of the same text share a label, and so its measurements.
void addLabel(std::vector<NSAttributedString>& labels, const std::shared_ptr<const std::string>& text) {
  if (!labels.empty() && labels.back().string() == *text)
    labels.push_back(labels.back());
  else
    labels.emplace_back(text, BarPlot::xLabelAttributes());
}

}  // namespace

const TextAttributes& BarPlot::xLabelAttributes() {
  static const TextAttributes result = attributes(12, NSTextAlignment::center);
  return result;
}

const TextAttributes& BarPlot::yLabelAttributes() {
  static const TextAttributes result = attributes(9, NSTextAlignment::right);
  return result;
}

void BarPlot::createXLabels() {
  if (optionIsTrue("DisplayXLabels")) createLabelSets();
}

void BarPlot::createLabelSets() {
  Labels longer, medium, shorter, subtitles;
  const size_t count = plotData() ? plotData()->count() : 0;
  longer.reserve(count);
  for (size_t i = 0; i < count; ++i) {
    const PlotEntryRef entry = plotData()->entry(i);
    addLabel(longer, entry->humanX);
    if (entry->mediumHumanX) addLabel(medium, entry->mediumHumanX);
    if (entry->shortHumanX) addLabel(shorter, entry->shortHumanX);
    if (entry->shortHumanXSubtitle.isString()) addLabel(subtitles, entry->shortHumanXSubtitle.sharedString());
  }
  xLabels_ = std::move(longer);
  xMediumLabels_ = std::move(medium);
  xShortLabels_ = std::move(shorter);
  xSubtitleLabels_ = std::move(subtitles);
}

Gridlines BarPlot::gridlinesForAmounts(const Amounts& amounts) {
  return computeGridlinesForMinAmount(computeDisplayGridValueForValue(amounts.min),
                                      computeDisplayGridValueForValue(amounts.max), true, kGridlineCount);
}

bool BarPlot::hasFiniteAxis() const {
  const Gridlines lines = gridlinesForAmounts(_findMinAmount());
  return std::isfinite(lines.back() - lines.front());
}

void BarPlot::createYLabels() {
  // The gridlines are needed with or without labels: bars and lines stand on them.
  yTickmarks_ = gridlinesForAmounts(_findMinAmount());
  if (!optionIsTrue("DisplayYLabels")) return;
  NSNumberFormatter formatter;
  const Value currency = valueForPlotOptionKey("CurrencyID");
  if (!currency.isNull()) {
    formatter.style = NSNumberFormatter::Style::currency;
    formatter.currencyCode = currency.isString() ? currency.string() : currency.description();
  }
  formatter.maximumFractionDigits = 0;
  Labels labels;
  for (const double value : yTickmarks_) labels.emplace_back(formatter.stringFromNumber(value), yLabelAttributes());
  yLabels_ = std::move(labels);
}

LabelRow BarPlot::row(const Labels& labels, CGRect firstSlot) {
  LabelRow result{labels, {}};
  result.rects.reserve(labels.size());
  for (size_t i = 0; i < labels.size(); ++i) {
    result.rects.push_back(firstSlot);
    firstSlot.origin.x = CGRectGetMaxX(firstSlot);
  }
  return result;
}

bool BarPlot::anyIsEmpty(const Labels& labels) {
  return std::any_of(labels.begin(), labels.end(), [](const NSAttributedString& label) { return label.isEmpty(); });
}

void BarPlot::renderXGridlinesAndLabels() {
  const double labelY = CGRectGetMinY(rootBounds()) + 34;
  const double barStartX = CGRectGetMinX(plotRect_) + barMargin_ / 2;
  const CGRect slot = CGRectMake(barStartX, labelY, barWidth_ + barMargin_, xLabelMaxHeight_);
  const auto fitted = [&](const Labels& labels) {
    LabelRow result = row(labels, slot);
    fitLabelsHorizontally(result, kLabelMargin);
    return result;
  };

  LabelRow shown = fitted(xLabels_);
  if (!xMediumLabels_.empty() && anyIsEmpty(shown.labels)) shown = fitted(xMediumLabels_);
  std::optional<Labels> subtitles;
  std::vector<CGRect> subtitleRects;
  if (!xShortLabels_.empty() && anyIsEmpty(shown.labels)) {
    shown = fitted(xShortLabels_);
    const CGRect start = CGRectMake(0, labelY - xLabelMaxHeight_ + 1, barWidth_, xLabelMaxHeight_);
    subtitleRects = subtitleRectsWithStartingRect(start, xSubtitleLabels_.size(), barStartX);
    subtitles = adjustedSubtitles(xSubtitleLabels_, subtitleRects, shown.labels);
  }

  const double separatorTop = zeroLineY() - 1;
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
    place.origin.x = std::trunc(rect.origin.x + (rect.size.width - label.size().width) / 2);
    NSDrawInRect(subtitle, place);
    if (lastSubtitle) strokeSeparator(std::floor(rect.origin.x), separatorTop, CGRectGetMinY(rect));
    lastSubtitle = &subtitle.string();
  }
}

void BarPlot::strokeSeparator(double x, double fromY, double toY) {
  renderContext_->saveGState();
  renderContext_->setStrokeColor({kSeparatorGray, kSeparatorGray, kSeparatorGray, 1});
  renderContext_->setLineWidth(1);
  renderContext_->moveToPoint(x, fromY);
  renderContext_->addLineToPoint(x, toY);
  renderContext_->strokePath();
  renderContext_->restoreGState();
}

std::vector<CGRect> BarPlot::subtitleRectsWithStartingRect(CGRect start, size_t count, double barStartX) const {
  start.origin.x = barStartX + 4;
  std::vector<CGRect> rects;
  rects.reserve(count);
  for (size_t i = 0; i < count; ++i) {
    rects.push_back(start);
    start.origin.x = CGRectGetMaxX(start);
  }
  return rects;
}

std::optional<BarPlot::Labels> BarPlot::adjustedSubtitles(const Labels& subtitles, std::vector<CGRect>& rects,
                                                          Labels& labels) const {
  const size_t count = subtitles.size();
  if (rects.size() != count || labels.size() != count) return std::nullopt;

  Labels kept(count);
  const std::string* last = nullptr;
  for (size_t i = 0; i < count; ++i) {
    if (!labels[i].isEmpty() && (!last || *last != subtitles[i].string())) {
      // Subtitles follow the size that the labels above them were fitted to.
      kept[i] =
          subtitles[i].isEmpty() ? subtitles[i] : subtitles[i].withFont(labels[i].attributesAtStart().fontOrDefault());
      last = &subtitles[i].string();
    } else {
      rects[i] = NSZeroRect;
    }
    const CGSize size = kept[i].size();
    rects[i] = {{rects[i].origin.x, rects[i].origin.y + rects[i].size.height - size.height}, size};
  }

  Labels result = kept;
  // Each pass starts from the first pass's texts but from the rectangles that earlier passes left, so what was dropped
  // once stays dropped.
  for (size_t step = 2; count > 0 && _rectsOverlap(rects); ++step) {
    size_t counter = 0;
    for (size_t i = 1; i < count; ++i) {
      const bool isCandidate = !kept[i].isEmpty() && rects[i].size.width > 0;
      if (isCandidate && ++counter % step == 0) {
        result[i] = kept[i];
        continue;
      }
      if (isCandidate) labels[i] = {};
      result[i] = {};
      rects[i] = NSZeroRect;
    }
  }
  return result;
}

bool BarPlot::_rectsOverlap(const std::vector<CGRect>& rects) {
  const CGRect* previous = nullptr;
  for (const CGRect& rect : rects) {
    if (rect.size.width == 0) continue;
    if (previous && NSIntersectsRect(*previous, rect)) return true;
    previous = &rect;
  }
  return false;
}

}  // namespace zelkon
