// The bookkeeping that tells the page once that the opening animations have finished.
#include <gtest/gtest.h>

#include "Classes/Views/CALayerPlotView.h"
#include "Support/ViewHost.h"

namespace zelkon {
namespace {

class NamedView : public CALayerPlotView {
 public:
  NamedView(Value arguments, std::string function)
      : CALayerPlotView(std::move(arguments)), function_(std::move(function)) {}
  std::string startupAnimationsDidCompleteJSFunction() const override { return function_; }

 private:
  std::string function_;
};

struct Fixture {
  std::shared_ptr<RecordingPage> page = std::make_shared<RecordingPage>();
  std::shared_ptr<CALayerPlotView> view;
  explicit Fixture(const std::string& function = "HasDisplayed")
      : view(std::make_shared<NamedView>(
            ValueDictionary{
                {WebPlugInContainerKey, std::make_shared<WebPlugInContainer>(std::make_shared<WebFrame>(page))}},
            function)) {}
  void stop(const char* key, bool finished = true) {
    CABasicAnimation animation = CABasicAnimation::animationWithKeyPath("opacity");
    if (key != nullptr) animation.setValue(key, "key");
    view->animationDidStop(animation, finished);
  }
};

TEST(StartupAnimations, TheLastOfTwoStopsCallsThePageOnceWithoutArguments) {
  Fixture f;
  f.view->doDisplay();
  f.view->registerStartupAnimationKey("one");
  f.view->registerStartupAnimationKey("two");
  EXPECT_EQ(f.view->numberOfPendingAnimations(), 2u);
  f.stop("one");
  EXPECT_TRUE(f.page->calls.empty());
  EXPECT_EQ(f.view->numberOfPendingAnimations(), 1u);
  f.stop("two");
  EXPECT_EQ(f.page->calls, (std::vector<PageCall>{{"HasDisplayed", {}}}));
  f.stop("one");
  f.stop("two");
  EXPECT_EQ(f.page->calls.size(), 1u);
  EXPECT_EQ(f.view->numberOfPendingAnimations(), 0u);
}

TEST(StartupAnimations, ACutShortAnimationCountsAsDone) {
  Fixture f;
  f.view->doDisplay();
  f.view->registerStartupAnimationKey("one");
  f.stop("one", false);
  EXPECT_EQ(f.page->calls.size(), 1u);
}

TEST(StartupAnimations, AStopWithoutAKeyOrWithAnUnknownOneChangesNothing) {
  Fixture f;
  f.view->doDisplay();
  f.view->registerStartupAnimationKey("one");
  f.stop(nullptr);
  f.stop("two");
  EXPECT_EQ(f.view->numberOfPendingAnimations(), 1u);
  EXPECT_TRUE(f.page->calls.empty());
}

TEST(StartupAnimations, AKeyIsDroppedWhenNoDisplayHasBegun) {
  Fixture f;
  f.view->registerStartupAnimationKey("one");
  EXPECT_EQ(f.view->numberOfPendingAnimations(), 0u);
  f.stop("one");
  EXPECT_TRUE(f.page->calls.empty());
}

TEST(StartupAnimations, ANewDisplayForgetsPendingKeys) {
  Fixture f;
  f.view->doDisplay();
  f.view->registerStartupAnimationKey("old");
  f.view->doDisplay();
  EXPECT_EQ(f.view->numberOfPendingAnimations(), 0u);
  f.view->registerStartupAnimationKey("new");
  f.stop("old");
  EXPECT_TRUE(f.page->calls.empty());
  f.stop("new");
  EXPECT_EQ(f.page->calls.size(), 1u);
}

TEST(StartupAnimations, AViewWithoutAFunctionNeverCallsThePage) {
  Fixture f("");
  f.view->doDisplay();
  f.view->registerStartupAnimationKey("one");
  f.stop("one");
  EXPECT_TRUE(f.page->calls.empty());
  EXPECT_EQ(std::make_shared<CALayerPlotView>(Value())->startupAnimationsDidCompleteJSFunction(), "");
}

TEST(StartupAnimations, WithoutAPageNothingIsCalled) {
  for (const Value& arguments :
       {Value(), Value(ValueDictionary{}),
        Value(ValueDictionary{{WebPlugInContainerKey, std::make_shared<WebPlugInContainer>(nullptr)}}),
        Value(ValueDictionary{
            {WebPlugInContainerKey, std::make_shared<WebPlugInContainer>(std::make_shared<WebFrame>(nullptr))}})}) {
    Fixture f;
    f.view->setArguments(arguments);
    f.view->doDisplay();
    f.view->registerStartupAnimationKey("one");
    f.stop("one");
    EXPECT_TRUE(f.page->calls.empty());
  }
}

TEST(StartupAnimations, ThePageMayBeginANewDisplayAndDropTheView) {
  Fixture f;
  f.view->doDisplay();
  f.view->registerStartupAnimationKey("one");
  const std::weak_ptr<CALayerPlotView> watched = f.view;
  f.page->onCall = [&] {
    f.view->doDisplay();
    f.view->registerStartupAnimationKey("again");
    EXPECT_EQ(f.view->numberOfPendingAnimations(), 1u);
    f.view = nullptr;
  };
  CABasicAnimation animation = CABasicAnimation::animationWithKeyPath("opacity");
  animation.setValue("one", "key");
  CALayerPlotView& view = *f.view;
  view.animationDidStop(animation, true);
  EXPECT_EQ(f.page->calls.size(), 1u);
  EXPECT_TRUE(watched.expired());
}

}  // namespace
}  // namespace zelkon
