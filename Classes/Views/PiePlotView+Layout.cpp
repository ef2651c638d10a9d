#include <algorithm>
#include <cmath>
#include <utility>

#include "Classes/Utilities/NSColor+CGColorRef.h"
#include "Classes/Utilities/PiePlotDrawingUtilities.h"
#include "Classes/Views/PiePlotView.h"
#include "CoreText/CTFramesetter.h"
#include "QuartzCore/CATextLayer.h"
#include "QuartzCore/CATransaction.h"

namespace zelkon {

namespace {

constexpr double pi = 3.141592653589793;
constexpr double floorHeight = 17;  // points below the plot, where the shadow lies
constexpr const char* plotName = "com.zelkon.plotLayer";
constexpr const char* dropShadowName = "com.zelkon.dropShadowLayer";
constexpr unsigned sizableBothWays = kCALayerWidthSizable | kCALayerHeightSizable;

CGPoint centerOf(CGRect rect) { return {CGRectGetMidX(rect), CGRectGetMidY(rect)}; }

double finiteOr(double value, double otherwise) { return std::isfinite(value) ? value : otherwise; }

CALayerRef layerWithFrame(CGRect frame, CGPoint anchorPoint, unsigned autoresizingMask) {
  const CALayerRef layer = CALayer::layer();
  layer->setAnchorPoint(anchorPoint);
  layer->setFrame(frame);
  layer->setAutoresizingMask(autoresizingMask);
  return layer;
}

// One of the two translucent discs of the gloss: a disc of one colour, shaded by a radial gradient's alpha.
CALayerRef makeGlossDisc(CGRect frame, CGBitmapContext* context, double radius, const RGBA& color, CGPoint center,
                         float opacity) {
  const CALayerRef mask = layerWithFrame(frame, {0.5, 0.5}, sizableBothWays);
  const RGBA transparent{0, 0, 0, 0};
  mask->setFilters({CIFilterCreate(CIGaussianGradient{center, radius * 1.95f, transparent, color})});

  const CALayerRef disc = layerWithFrame(frame, {0.5, 0.5}, sizableBothWays);
  if (context != nullptr) {
    const CGRect whole = CGRectMake(0, 0, 2 * radius, 2 * radius);
    context->clearRect(whole);
    context->setFillColor(color);
    context->fillEllipseInRect(whole);
    disc->setContents(context->createImage());
  }
  disc->setContentsGravity(CAContentsGravity::center);
  disc->setOpacity(opacity);
  disc->setMask(mask);
  return disc;
}

CALayerRef makeShadowPiece(CGRect frame, CGPoint anchorPoint, unsigned autoresizingMask, const char* image) {
  const CALayerRef piece = layerWithFrame(frame, anchorPoint, autoresizingMask);
  piece->setEdgeAntialiasingMask(0);
  piece->setContents(PiePlotDrawingUtilities::sharedUtilities().cgImageNamed(image));
  return piece;
}

// Size of a label's text, whole points, at most 120 by 30: the widest line, and from the top down to the last baseline.
CGSize sizeOfLabel(const std::string& label, const NSFont& font) {
  TextAttributes attributes;
  attributes.font = font;
  attributes.paragraphStyle = NSParagraphStyle{NSTextAlignment::center, NSLineBreakMode::truncatingMiddle};
  const NSAttributedString text(label, attributes);
  const CTFrame frame = CTFramesetter(text, *attributes.paragraphStyle).createFrame(CGRectMake(0, 0, 120, 30));
  if (frame.lines.empty()) return {};
  double width = 0;
  for (const CTFrame::PlacedLine& placed : frame.lines) width = std::max(width, placed.line.width);
  const double height = CGRectGetHeight(frame.rect) - frame.lines.back().origin.y;
  return {std::min(std::ceil(width), 120.0), std::min(std::ceil(height), 30.0)};
}

}  // namespace

CGRect PiePlotView::rootBounds() const { return layer() ? layer()->bounds() : CGRectZero; }

CALayerRef PiePlotView::storedContainer(const char* name) const {
  return layer() ? layer()->valueForKey(name).object<CALayer>() : nullptr;
}

template <typename Make>
CALayerRef PiePlotView::container(const char* name, Make make) {
  if (CALayerRef stored = storedContainer(name)) return stored;
  const CALayerRef root = layer();
  const CALayerRef made = make(root);
  made->setName(name);
  if (root) root->setValue(made, name);
  return made;
}

CGRect PiePlotView::plotFrame() const {
  const CGSize size = rootBounds().size;
  return CGRectMake(0, floorHeight, size.width, std::max(size.height - floorHeight, 0.0));
}

CGRect PiePlotView::dropShadowFrame() const {
  const double width = rootBounds().size.width;
  const double inset = (width - pieRadius() - 20) * 0.25;
  return CGRectMake(inset, 0, width - 2 * inset, floorHeight);
}

CALayerRef PiePlotView::plotLayer() {
  return container(plotName, [this](const CALayerRef& root) {
    const CALayerRef plot = layerWithFrame(plotFrame(), {0.5, 0.5}, sizableBothWays);
    plotIsCutOff_ = rootBounds().size.height < floorHeight;
    if (root) root->addSublayer(plot);
    return plot;
  });
}

CALayerRef PiePlotView::makeLayerOverPlot() {
  const CALayerRef plot = plotLayer();
  const CALayerRef over = layerWithFrame(plot->bounds(), {0.5, 0.5}, sizableBothWays);
  plot->addSublayer(over);
  return over;
}

CALayerRef PiePlotView::slicesLayer() {
  return container("com.zelkon.slicesLayer", [this](const CALayerRef&) {
    const CALayerRef slices = makeLayerOverPlot();
    slices->setEdgeAntialiasingMask(0);
    slices->setShadowOpacity(0.2);
    slices->setShadowOffset({2, -2});
    slices->setShadowRadius(2.5);
    return slices;
  });
}

CALayerRef PiePlotView::plotHighlightLayer() {
  return container("com.zelkon.plotHighlightLayer", [this](const CALayerRef&) { return makeLayerOverPlot(); });
}

CALayerRef PiePlotView::textLabelsLayer() {
  return container("com.zelkon.textLabelsLayer", [this](const CALayerRef&) { return makeLayerOverPlot(); });
}

CALayerRef PiePlotView::dropShadowLayer() {
  return container(dropShadowName, [this](const CALayerRef& root) {
    const CALayerRef shadow = layerWithFrame(dropShadowFrame(), {0.5, 0}, kCALayerWidthSizable | kCALayerMinYMargin);
    dropShadowInset_.reset();
    if (!NSIsEmptyRect(rootBounds())) dropShadowInset_ = dropShadowFrame().origin.x;
    dropShadowIsCutOff_ = false;
    shadow->setEdgeAntialiasingMask(0);
    shadow->setMasksToBounds(true);
    if (root) root->addSublayer(shadow);
    return shadow;
  });
}

// The superlayer carries its sublayers along by the difference of its sizes. A size that ends at zero loses part of it.
void PiePlotView::restoreContainers() {
  const CATransactionWithoutActions transaction;
  const CGSize size = rootBounds().size;
  if (const CALayerRef plot = storedContainer(plotName)) {
    const bool wasCutOff = std::exchange(plotIsCutOff_, size.height < floorHeight);
    if (wasCutOff && !plotIsCutOff_) plot->setFrame(plotFrame());
  }
  const CALayerRef shadow = storedContainer(dropShadowName);
  if (!shadow) return;
  const bool isNew = !dropShadowInset_;
  if (isNew && NSIsEmptyRect(rootBounds())) return;
  if (isNew) dropShadowInset_ = dropShadowFrame().origin.x;
  const double width = size.width - 2 * *dropShadowInset_;
  const bool wasCutOff = std::exchange(dropShadowIsCutOff_, width < 0);
  if (dropShadowIsCutOff_ || !(isNew || wasCutOff)) return;
  // Not by its frame: before the first display it is scaled.
  shadow->setBounds({shadow->bounds().origin, {width, floorHeight}});
  shadow->setPosition({*dropShadowInset_ + width / 2, isNew ? 0 : shadow->position().y});
}

void PiePlotView::createLayerHierarchy() {
  CALayerPlotView::createLayerHierarchy();
  if (!layer()) {
    const CALayerRef root = CALayer::layer();
    root->setAutoresizingMask(sizableBothWays);
    setLayer(root);
    setWantsLayer(true);
  }
  restoreContainers();
  _layoutSublayersOfHighlightLayer();
  _layoutSublayersOfSlicesLayer();
  _layoutSublayersOfDropShadowLayer();
  // Containers are not made for an empty view: their sizes would be no basis for growing with it.
  if (!NSIsEmptyRect(bounds())) {
    plotLayer()->insertSublayerBelow(slicesLayer(), plotHighlightLayer());
    plotLayer()->insertSublayerAbove(textLabelsLayer(), plotHighlightLayer());
  }
  replaceTrackingArea();
}

void PiePlotView::_layoutSublayersOfSlicesLayer() {
  const std::shared_ptr<const PiePlotData> data = piePlotData();
  if (NSIsEmptyRect(bounds()) || !data) return;
  const CATransactionWithoutActions transaction;
  const CALayerRef slices = slicesLayer(), labels = textLabelsLayer();
  destroyLayerHierarchy(slices);
  destroyLayerHierarchy(labels);
  if (data->count() == 0) {
    const std::shared_ptr<PieSliceLayer> slice = PieSliceLayer::layer();
    slice->setRadius(pieRadius());
    if (const CGColorRef color = NSColorGetCGColor(_emptyPieColor())) slice->setSliceColor(color);
    slice->setFraction(1.0);
    slice->setBounds(slices->bounds());
    slice->setPosition(centerOf(slices->bounds()));
    slices->addSublayer(slice);
  } else {
    layOutEntries(*data, slices, labels);
  }
  if (initialDisplay_) {
    slices->setOpacity(0);
    slices->setTransform(CATransform3DScale(slices->transform(), 0.1, 0.1, 1));
    slices->setTransform(CATransform3DRotate(slices->transform(), pi, 0, 0, 1));
  }
}

void PiePlotView::layOutEntries(const PiePlotData& data, const CALayerRef& slices, const CALayerRef& labels) {
  const CGPoint center = centerOf(slices->bounds());
  const double radius = pieRadius();
  const double labelRadius = radius * 0.66;
  const auto count = static_cast<int64_t>(data.count());
  double share = 0;
  for (int64_t i = 0; i < count; ++i) {
    PiePlotEntry& entry = *data.entries()[static_cast<size_t>(i)];
    const std::shared_ptr<PieSliceLayer> slice = PieSliceLayer::layer();
    slice->setRadius(radius);
    if (const CGColorRef color = NSColorGetCGColor(_sliceColorAtIndex(i, count))) slice->setSliceColor(color);
    const double angle = share * 2 * pi;
    // A layer cannot be turned by what is no angle; such a slice stays where it is and draws nothing.
    slice->setTransform(CATransform3DRotate(slice->transform(), finiteOr(angle, 0), 0, 0, 1));
    slice->setBaseTransform(slice->transform());
    const auto middle = static_cast<float>(finiteOr(angle + entry.fraction * pi, 0));
    slice->setFraction(std::isfinite(angle) ? entry.fraction : angle);
    slice->setBounds(slices->bounds());
    slice->setPosition(center);

    const CALayerRef label = _textLayerWithLabel(entry.key.description());
    const CGPoint onBisector{center.x + finiteOr(std::cos(middle), 0) * labelRadius,
                             center.y + finiteOr(std::sin(middle), 0) * labelRadius};
    label->setPosition(count == 1 ? center : onBisector);
    slices->addSublayer(slice);
    labels->addSublayer(label);
    entry.layerValue = slice;
    entry.textLayerValue = label;
    share += entry.fraction;
  }
}

void PiePlotView::_layoutSublayersOfHighlightLayer() {
  if (NSIsEmptyRect(bounds())) return;
  const CATransactionWithoutActions transaction;
  const CALayerRef highlight = plotHighlightLayer();
  destroyLayerHierarchy(highlight);
  const CGRect frame = plotLayer()->bounds();
  const CGPoint center = centerOf(frame);
  const double radius = pieRadius();
  const std::shared_ptr<CGBitmapContext> context =
      PiePlotDrawingUtilities::sharedUtilities().createBitmapContextOfSize({2 * radius, 2 * radius});
  const RGBA black{0, 0, 0, 1}, white{1, 1, 1, 1};
  highlight->addSublayer(
      makeGlossDisc(frame, context.get(), radius, black, {center.x + 0.77f * radius, center.y + 0.92f * radius}, 0.5f));
  highlight->addSublayer(
      makeGlossDisc(frame, context.get(), radius, white, {center.x - 0.72f * radius, center.y - 0.56f * radius}, 0.7f));
  highlight->setCompositingFilter(CIFilterCreate(CIOverlayBlendMode{}));
  if (initialDisplay_) {
    highlight->setOpacity(0);
    highlight->setTransform(CATransform3DScale(highlight->transform(), 0.1, 0.1, 1));
  }
}

void PiePlotView::_layoutSublayersOfDropShadowLayer() {
  if (NSIsEmptyRect(bounds())) return;
  const CATransactionWithoutActions transaction;
  const CALayerRef shadow = dropShadowLayer();
  destroyLayerHierarchy(shadow);
  const double width = CGRectGetWidth(shadow->bounds()), height = CGRectGetHeight(shadow->bounds());
  const double right = CGRectGetMaxX(shadow->bounds());
  const double cap = std::min(width * 0.5, 98.0);
  shadow->addSublayer(makeShadowPiece(CGRectMake(0, 0, cap, height), {0, 0}, kCALayerMinXMargin, "shadow_left.png"));
  shadow->addSublayer(
      makeShadowPiece(CGRectMake(right - cap, 0, cap, height), {0, 0}, kCALayerMaxXMargin, "shadow_right.png"));
  const double middle = right - 2 * cap;
  if (middle > 0)
    shadow->addSublayer(
        makeShadowPiece(CGRectMake(cap, 0, middle, height), {0.5, 0}, kCALayerWidthSizable, "shadow_center.png"));
  if (initialDisplay_) {
    shadow->setOpacity(0);
    shadow->setTransform(CATransform3DScale(shadow->transform(), 0.01, 1, 1));
  }
}

CALayerRef PiePlotView::_textLayerWithLabel(const std::string& label) {
  static const CGColorRef textColor = CGColorCreateGenericGray(0.1, 1);
  static const CGColorRef backgroundColor = CGColorCreateGenericGray(1, 0.6);
  const std::shared_ptr<CATextLayer> text = CATextLayer::layer();
  text->setFontSize(12);
  text->setFont(NSFontConvertToSize(text->font(), 12));
  const CGSize size = sizeOfLabel(label, text->font());
  text->setString(label);
  text->setForegroundColor(textColor);
  text->setWrapped(true);
  text->setTruncationMode(CTLineTruncation::middle);
  text->setAlignmentMode(NSTextAlignment::center);
  text->setBounds({{0, 0}, size});

  const CGRect around = CGRectInset(text->bounds(), -6, -6);
  const CALayerRef background = CALayer::layer();
  background->setCornerRadius(5);
  background->setBackgroundColor(backgroundColor);
  background->setBounds(around);
  text->setPosition(centerOf(around));
  background->addSublayer(text);
  // Upside down at rest; the hover turns the background by half a turn and so brings the text upright.
  text->setTransform(CATransform3DRotate(text->transform(), pi, 0, 0, 1));
  background->setHidden(true);
  return background;
}

}  // namespace zelkon
