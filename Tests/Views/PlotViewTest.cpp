#include <gtest/gtest.h>

#include "Classes/Views/PiePlotView.h"
#include "Classes/Views/PlotView.h"
#include "Classes/Views/SpendingOverTimeBarView.h"

namespace zelkon {
namespace {

Value argumentsWithPlot(Value plot) {
  return ValueDictionary{{WebPlugInAttributesKey, ValueDictionary{{"plot", std::move(plot)}}}, {"other", 7}};
}

std::string reasonOfRefusal(const Value& arguments) {
  try {
    PlotView::plugInViewWithArguments(arguments);
  } catch (const NSException& exception) {
    EXPECT_EQ(exception.name(), NSInvalidArgumentException);
    return exception.reason();
  }
  return "accepted";
}

TEST(PlotView, PieMakesAPieViewWithoutFrameLayerOptionsAndData) {
  const Value arguments = argumentsWithPlot("pie");
  const std::shared_ptr<CALayerPlotView> view = PlotView::plugInViewWithArguments(arguments);
  EXPECT_EQ(view->className(), "PiePlotView");
  EXPECT_NE(std::dynamic_pointer_cast<PiePlotView>(view), nullptr);
  EXPECT_EQ(view->arguments(), arguments);
  EXPECT_EQ(view->frame(), NSZeroRect);
  EXPECT_EQ(view->layer(), nullptr);
  EXPECT_EQ(view->plotOptions(), nullptr);
  EXPECT_EQ(view->plotData(), nullptr);
}

TEST(PlotView, SpendingOverTimeMakesItsOwnKindOfBarOrLineView) {
  const Value arguments = argumentsWithPlot("spendingOverTimeBarOrLine");
  const std::shared_ptr<CALayerPlotView> view = PlotView::plugInViewWithArguments(arguments);
  EXPECT_EQ(view->className(), "SpendingOverTimeBarView");
  EXPECT_NE(std::dynamic_pointer_cast<SpendingOverTimeBarView>(view), nullptr);
  EXPECT_EQ(view->arguments(), arguments);
  EXPECT_EQ(view->frame(), NSZeroRect);
  EXPECT_EQ(view->layer(), nullptr);
}

TEST(PlotView, NamesOfOtherCaseOrWithoutTextAreRefused) {
  EXPECT_EQ(reasonOfRefusal(argumentsWithPlot("Pie")), "Unknown plotName parameter \"Pie\"");
  EXPECT_EQ(reasonOfRefusal(argumentsWithPlot("")), "Unknown plotName parameter \"\"");
  EXPECT_EQ(reasonOfRefusal(argumentsWithPlot(3)), "Unknown plotName parameter \"3\"");
}

TEST(PlotView, AMissingNameIsRefusedAsNothing) {
  EXPECT_EQ(reasonOfRefusal(argumentsWithPlot({})), "Unknown plotName parameter \"(null)\"");
  EXPECT_EQ(reasonOfRefusal(Value()), "Unknown plotName parameter \"(null)\"");
  EXPECT_EQ(reasonOfRefusal(ValueDictionary{}), "Unknown plotName parameter \"(null)\"");
}

}  // namespace
}  // namespace zelkon
