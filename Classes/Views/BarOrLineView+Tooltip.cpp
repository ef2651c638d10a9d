// The bubble over the entry under the pointer: period in grey, amount below it.
#include <algorithm>

#include "Classes/Plotting/LinePlot.h"
#include "Classes/Views/BarOrLineView.h"

namespace zelkon {
namespace {

constexpr double kFontSize = 11;
constexpr CGSize kLargestText{120, 90};
constexpr const char* kTextLayerKey = "com.zelkon.textLayer";
constexpr double kAnchorLift = 5;
constexpr double kDarkGray = 1.0 / 3;

const std::string& textOrNothing(const PlotEntry::Text& text) {
  static const std::string nothing;
  return text ? *text : nothing;
}

const std::string& headerOf(const PlotEntry& entry) {
  return textOrNothing(entry.mediumHumanX ? entry.mediumHumanX : entry.humanX);
}

bool isShown(const PlotEntryRef& shown, const PlotEntryRef& entry) {
  return shown == entry || (shown && entry && *shown == *entry);
}

}  // namespace

void BarOrLineView::mouseMoved(const NSEvent& event) {
  const CGPoint p = layerPointForWindowPoint(event.locationInWindow);
  const PlotEntryRef entry = plotter_ ? plotter_->entryForPoint(p) : nullptr;
  if (!entry) return _clearHoverEntry();
  const CGRect rect = plotter_->rectForEntry(entry);
  const CGPoint anchor{CGRectGetMidX(rect), CGRectGetMaxY(rect) + kAnchorLift};
  if (dynamic_cast<const LinePlot*>(plotter_.get()))
    _moveAndResizeLayerForEntry(entry, anchor);
  else
    _hoverEntry(entry, anchor);
}

void BarOrLineView::mouseExited(const NSEvent&) { _clearHoverEntry(); }

void BarOrLineView::_clearHoverEntry() {
  currentHoverEntry_ = nullptr;
  if (!currentHoverLayer_) return;
  currentHoverLayer_->setHidden(true);
  currentHoverLayer_->removeFromSuperlayer();
  currentHoverLayer_ = nullptr;
}

void BarOrLineView::_hoverEntry(const PlotEntryRef& entry, CGPoint anchor) {
  if (isShown(currentHoverEntry_, entry)) return;
  currentHoverEntry_ = entry;
  if (!currentHoverLayer_) currentHoverLayer_ = _createHoverLayerWithText("", "");
  currentHoverLayer_->setHidden(true);
  currentHoverLayer_->removeFromSuperlayer();
  currentHoverLayer_ = _createHoverLayerWithText(textOrNothing(entry->humanY), headerOf(*entry));
  _setPosition(anchor, currentHoverLayer_);
  showHoverLayer();
}

void BarOrLineView::showHoverLayer() {
  if (layer()) {
    layer()->addSublayer(currentHoverLayer_);
    layer()->setNeedsLayout();
  }
  currentHoverLayer_->setHidden(false);
}

void BarOrLineView::_moveAndResizeLayerForEntry(const PlotEntryRef& entry, CGPoint anchor) {
  if (isShown(currentHoverEntry_, entry)) return;
  currentHoverEntry_ = entry;
  if (!currentHoverLayer_) {
    currentHoverLayer_ = _createHoverLayerWithText("", "");
    showHoverLayer();
  }
  const auto text = std::dynamic_pointer_cast<CATextLayer>(currentHoverLayer_->sublayersInPlace().back());
  text->setString(_createAttributedStringForValue(textOrNothing(entry->humanY), headerOf(*entry)));
  fitBubbleToText(currentHoverLayer_, text);
  _setPosition(anchor, currentHoverLayer_);
  if (layer()) layer()->setNeedsLayout();
}

void BarOrLineView::fitBubbleToText(const CALayerRef& bubble, const std::shared_ptr<CATextLayer>& text) {
  const CGSize size = _sizeForTextLayer(*text);
  text->setBounds(CGRectIntegral({{0, 0}, size}));
  bubble->setBounds(CGRectInset(text->bounds(), -8, -10));
  const CGRect bounds = bubble->bounds();
  _setPosition({CGRectGetMidX(bounds), CGRectGetMidY(bounds) + 4}, text);
}

CALayerRef BarOrLineView::_createHoverLayerWithText(const std::string& string, const std::string& header) {
  const auto text = CATextLayer::layer();
  text->setFont(NSBoldSystemFontOfSize(kFontSize));
  text->setFontSize(kFontSize);
  text->setForegroundColor(kCGColorBlack());
  text->setWrapped(true);
  text->setTruncationMode(CTLineTruncation::middle);
  text->setAlignmentMode(NSTextAlignment::center);
  text->setString(_createAttributedStringForValue(string, header));
  const CALayerRef bubble = CALayer::layer();
  fitBubbleToText(bubble, text);
  bubble->addSublayer(text);
  bubble->setNeedsDisplay();
  bubble->setNeedsDisplayOnBoundsChange(true);
  bubble->setHidden(true);
  bubble->setDelegate(std::static_pointer_cast<BarOrLineView>(shared_from_this()));
  bubble->setAnchorPoint({0.5, 0});
  bubble->setValue(text, kTextLayerKey);
  return bubble;
}

NSAttributedString BarOrLineView::_createAttributedStringForValue(const std::string& value, const std::string& header) {
  TextAttributes plain;
  plain.font = NSBoldSystemFontOfSize(kFontSize);
  if (header.empty()) return {value, plain};
  TextAttributes grey = plain;
  grey.color = std::make_shared<const CGColor>(CGColorSpaceCalibratedWhite(), std::vector<double>{kDarkGray, 1});
  const std::string text = header + "\n" + value;
  return NSAttributedString(text, {{0, header.size(), grey}, {header.size(), text.size(), plain}});
}

CGSize BarOrLineView::_sizeForTextLayer(const CATextLayer& textLayer) {
  NSParagraphStyle style;
  style.alignment = NSTextAlignment::center;
  // Measured as it will be shown, wrapped: only what is left over of the largest box is cut in the middle.
  style.lineBreakMode = NSLineBreakMode::wordWrapping;
  TextAttributes attributes;
  attributes.font = textLayer.font();
  const CTFramesetter framesetter({textLayer.plainString(), attributes}, style);
  const CGSize suggested = framesetter.suggestFrameSize(kLargestText);
  return {std::min(kLargestText.width, suggested.width),
          std::min(kLargestText.height, suggested.height - 2 * textLayer.font().descender())};
}

void BarOrLineView::_setPosition(CGPoint position, const CALayerRef& layer) {
  layer->setPosition(position);
  layer->setFrame(CGRectIntegral(layer->frame()));
}

void BarOrLineView::drawLayer(CALayer& layer, CGContext& context) {
  static const auto gradient = std::make_shared<const CGGradient>(
      std::vector<RGBA>{{1, 1, 1, 1}, {1, 1, 1, 1}, {0.9, 0.9, 0.9, 1}}, std::vector<double>{1, 0.3, 0});
  context.setShadow({2, -2}, 1);
  context.beginTransparencyLayer();
  const CGRect r = CGRectInset(layer.bounds(), 4, 4);
  const double minX = CGRectGetMinX(r), midX = CGRectGetMidX(r), maxX = CGRectGetMaxX(r);
  const double minY = CGRectGetMinY(r), midY = CGRectGetMidY(r), maxY = CGRectGetMaxY(r);
  const double radius = std::min({5.0, CGRectGetWidth(r) / 2, CGRectGetHeight(r) / 2});
  CGPath outline;
  outline.moveTo({minX, midY + 3});
  outline.addArcToPoint({minX, minY + 6}, {midX - 6, minY + 6}, radius);
  outline.addLineTo({midX - 6, minY + 6});
  outline.addLineTo({midX, minY});
  outline.addLineTo({midX + 6, minY + 6});
  outline.addArcToPoint({maxX, minY + 6}, {maxX, midY + 3}, radius);
  outline.addArcToPoint({maxX, maxY}, {midX, maxY}, radius);
  outline.addArcToPoint({minX, maxY}, {minX, midY + 3}, radius);
  outline.addLineTo({minX, midY + 3});
  outline.close();

  context.saveGState();
  context.addPath(outline);
  context.eoClip();
  context.drawLinearGradient(gradient, {0, 0}, {0, CGRectGetHeight(layer.bounds())},
                             kCGGradientDrawsBeforeStartLocation | kCGGradientDrawsAfterEndLocation);
  context.restoreGState();
  context.addPath(outline);
  context.setStrokeColor({0.3, 0.3, 0.3, 1});
  context.setLineWidth(0.5);
  context.strokePath();
  context.endTransparencyLayer();
}

}  // namespace zelkon
