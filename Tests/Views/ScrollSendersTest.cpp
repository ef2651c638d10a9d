// A chart in a scroll view looks at the bounds and the frame of that scroll view's content view and of no other.
#include <gtest/gtest.h>

#include "Foundation/NSNotificationCenter.h"
#include "Support/ChartHost.h"

namespace zelkon {
namespace {

struct Scroller {
  std::shared_ptr<NSScrollView> view = std::make_shared<NSScrollView>(CGRectMake(0, 0, 200, 200));
  std::shared_ptr<NSClipView> content = std::make_shared<NSClipView>(CGRectMake(0, 0, 200, 200));
  explicit Scroller(NSWindow& window) {
    window.contentView()->addSubview(view);
    view->setContentView(content);
  }
};

class ScrolledChart : public testing::TestWithParam<const char*> {
 protected:
  ScrolledChart() {
    host.view->removeFromSuperview();
    own.content->addSubview(document);
    document->addSubview(host.view);
    settle();
  }
  void settle() {
    document->setNeedsDisplay(false);
    own.content->setNeedsDisplay(false);
  }
  ViewHost host{GetParam(), {600, 400}};
  Scroller own{*host.window}, other{*host.window};
  std::shared_ptr<NSView> document = std::make_shared<NSView>(CGRectMake(0, 0, 600, 1000));
};

TEST_P(ScrolledChart, MarksItsSuperviewWhenItsOwnContentScrolls) {
  own.content->scrollToPoint({0, 50});
  EXPECT_TRUE(document->needsDisplay());
}

TEST_P(ScrolledChart, MarksItsSuperviewWhenTheFrameOfItsContentChanges) {
  own.content->setFrame(CGRectMake(0, 0, 180, 180));
  EXPECT_TRUE(document->needsDisplay());
}

TEST_P(ScrolledChart, TakesNoNoticeOfAnotherContentView) {
  other.content->setPostsBoundsChangedNotifications(true);
  other.content->setPostsFrameChangedNotifications(true);
  int posted = 0;
  NSNotificationCenter& center = NSNotificationCenter::defaultCenter();
  for (const char* name : {NSViewBoundsDidChangeNotification, NSViewFrameDidChangeNotification})
    center.addObserver(
        this, [&](const NSNotification&) { ++posted; }, name, other.content.get());
  other.content->scrollToPoint({0, 50});
  other.content->setFrame(CGRectMake(0, 0, 180, 180));
  center.removeObserver(this);
  EXPECT_GE(posted, 2);
  EXPECT_FALSE(document->needsDisplay());
}

TEST_P(ScrolledChart, TakesNoNoticeOfOtherNotificationsOfItsContentView) {
  NSNotificationCenter::defaultCenter().post("SomethingElse", own.content.get());
  EXPECT_FALSE(document->needsDisplay());
}

TEST_P(ScrolledChart, TakesNoNoticeOnceDestroyed) {
  host.view->webPlugInDestroy();
  own.content->scrollToPoint({0, 50});
  own.content->setFrame(CGRectMake(0, 0, 180, 180));
  EXPECT_FALSE(document->needsDisplay());
}

std::string nameOf(const testing::TestParamInfo<const char*>& test) {
  return std::string(test.param) == "pie" ? "Pie" : "BarsOrLine";
}

INSTANTIATE_TEST_SUITE_P(Scrolling, ScrolledChart, testing::Values("pie", "spendingOverTimeBarOrLine"), nameOf);

}  // namespace
}  // namespace zelkon
