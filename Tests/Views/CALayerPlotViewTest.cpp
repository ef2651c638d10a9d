#include <gtest/gtest.h>

#include "AppKit/NSGraphicsContext.h"
#include "Classes/Views/CALayerPlotView.h"
#include "Classes/Views/PiePlotView.h"
#include "CoreGraphics/DisplayList.h"
#include "Support/ViewHost.h"

namespace zelkon {
namespace {

class CountingView : public CALayerPlotView {
 public:
  CountingView() : CALayerPlotView(ValueDictionary{}) {}
  std::string className() const override { return "CountingView"; }
  void createLayerHierarchy() override { ++hierarchies; }
  void renderForPrintingInContext(CGContext& context) override {
    ++prints;
    CALayerPlotView::renderForPrintingInContext(context);
  }
  int hierarchies = 0, prints = 0;
};

void hostLayer(NSView& view, const CALayerRef& layer) {
  view.setLayer(layer);
  view.setWantsLayer(true);
}

class CurrentContext {
 public:
  explicit CurrentContext(std::shared_ptr<NSGraphicsContext> context) {
    NSGraphicsContext::setCurrentContext(std::move(context));
  }
  ~CurrentContext() { NSGraphicsContext::setCurrentContext(nullptr); }
};

TEST(CALayerPlotView, EveryFrameChangeBuildsTheHierarchy) {
  const auto view = std::make_shared<CountingView>();
  view->setFrame(CGRectMake(0, 0, 300, 200));
  view->setFrame(CGRectMake(0, 0, 300, 200));
  EXPECT_EQ(view->hierarchies, 2);
  EXPECT_EQ(view->frame(), CGRectMake(0, 0, 300, 200));
}

TEST(CALayerPlotView, HidingAViewThatNeverHadAFrameLeavesItVisible) {
  const auto view = std::make_shared<CALayerPlotView>(ValueDictionary{});
  bool ran = false;
  NSRunLoop::mainRunLoop().performAfterDelay(view.get(), 0, [&] { ran = true; });
  view->webPlugInStop();
  EXPECT_FALSE(view->isHidden());
  NSRunLoop::mainRunLoop().runDue(CACurrentMediaTime());
  EXPECT_FALSE(ran);
}

TEST(CALayerPlotView, HidingDetachesAndHidesTheLayerAndCancelsWhatWasDelayed) {
  const auto view = std::make_shared<CALayerPlotView>(ValueDictionary{});
  const CALayerRef layer = CALayer::layer();
  hostLayer(*view, layer);
  int ran = 0;
  NSRunLoop::mainRunLoop().performAfterDelay(view.get(), 0, [&] { ++ran; });
  NSRunLoop::mainRunLoop().performAfterDelay(layer.get(), 0, [&] { ++ran; });
  view->webPlugInStop();
  EXPECT_EQ(view->layer(), nullptr);
  EXPECT_TRUE(layer->isHidden());
  EXPECT_TRUE(view->isHidden());
  NSRunLoop::mainRunLoop().runDue(CACurrentMediaTime());
  EXPECT_EQ(ran, 0);
}

TEST(CALayerPlotView, DestroyingAHierarchyEmptiesTheLayerInPlace) {
  const auto view = std::make_shared<CALayerPlotView>(ValueDictionary{});
  const CALayerRef root = CALayer::layer(), layer = CALayer::layer(), deeper = CALayer::layer();
  root->addSublayer(layer);
  view->destroyLayerHierarchy(layer);
  EXPECT_EQ(layer->superlayer(), root);
  for (int i = 0; i < 3; ++i) layer->addSublayer(CALayer::layer());
  layer->addSublayer(deeper);
  const CALayerRef deepest = CALayer::layer();
  deeper->addSublayer(deepest);
  view->destroyLayerHierarchy(layer);
  EXPECT_TRUE(layer->sublayers().empty());
  EXPECT_EQ(layer->superlayer(), root);
  EXPECT_EQ(deeper->superlayer(), nullptr);
  EXPECT_EQ(deepest->superlayer(), deeper);
  view->destroyLayerHierarchy(nullptr);
}

TEST(CALayerPlotView, LayerPointsAreViewPointsThroughTheTransformsUpperLeftBlock) {
  NSWindow window(CGSizeMake(500, 500));
  const auto view = std::make_shared<CALayerPlotView>(ValueDictionary{});
  window.contentView()->addSubview(view);
  view->setFrame(CGRectMake(50, 30, 300, 200));
  EXPECT_EQ(view->layerPointForWindowPoint({60, 40}), CGPointMake(0, 0)) << "no layer";
  const CALayerRef layer = CALayer::layer();
  hostLayer(*view, layer);
  EXPECT_EQ(view->layerPointForWindowPoint({60, 50}), CGPointMake(10, 20));
  layer->setTransform(CATransform3DScale(CATransform3DIdentity, 2, 2, 1));
  EXPECT_EQ(view->layerPointForWindowPoint({60, 50}), CGPointMake(20, 40));
  layer->setTransform(CATransform3DTranslate(CATransform3DIdentity, 100, 100, 0));
  EXPECT_EQ(view->layerPointForWindowPoint({60, 50}), CGPointMake(10, 20)) << "no translation term";
  layer->setTransform(CATransform3DRotate(CATransform3DIdentity, 3.141592653589793 / 2, 0, 0, 1));
  const CGPoint turned = view->layerPointForWindowPoint({60, 50});
  EXPECT_NEAR(turned.x, 20, 1e-12) << "m12 y";
  EXPECT_NEAR(turned.y, -10, 1e-12) << "m21 x";
}

TEST(CALayerPlotView, APrintContextWithAPortIsRenderedInto) {
  const auto view = std::make_shared<CountingView>();
  const CALayerRef layer = CALayer::layer();
  hostLayer(*view, layer);
  layer->setBounds(CGRectMake(0, 0, 20, 10));
  layer->setBackgroundColor(kCGColorBlack());
  RecordingContext paper;
  const CurrentContext current(NSGraphicsContext::graphicsContextWithGraphicsPort(&paper, false));
  view->drawRect(CGRectMake(0, 0, 20, 10));
  EXPECT_EQ(view->prints, 1);
  EXPECT_FALSE(paper.snapshot()->isEmpty());
}

TEST(CALayerPlotView, PrintingWithoutALayerRendersNothing) {
  const auto view = std::make_shared<CountingView>();
  RecordingContext paper;
  view->renderForPrintingInContext(paper);
  EXPECT_TRUE(paper.snapshot()->isEmpty());
}

TEST(CALayerPlotView, TheScreenAndContextsWithoutAPortAreLeftToTheView) {
  const auto view = std::make_shared<CountingView>();
  view->drawRect(CGRectMake(0, 0, 20, 10));
  {
    const CurrentContext noPort(NSGraphicsContext::graphicsContextWithGraphicsPort(nullptr, false));
    view->drawRect(CGRectMake(0, 0, 20, 10));
  }
  RecordingContext pixels;
  const CurrentContext screen(std::make_shared<NSGraphicsContext>(&pixels, false, true));
  view->drawRect(CGRectMake(0, 0, 20, 10));
  EXPECT_EQ(view->prints, 0);
}

TEST(CALayerPlotView, AFrameAfterHidingMakesANewRootLayer) {
  ViewHost host;
  const CALayerRef first = host.view->layer();
  host.view->webPlugInStop();
  EXPECT_EQ(host.view->layer(), nullptr);
  host.setFrame(CGRectMake(0, 0, 200, 200));
  EXPECT_NE(host.view->layer(), nullptr);
  EXPECT_NE(host.view->layer(), first);
}

}  // namespace
}  // namespace zelkon
