// The tooltip bubble: its text, size and place, and when it comes and goes.
#include <gtest/gtest.h>

#include <cmath>

#include "QuartzCore/CATextLayer.h"
#include "Support/ChartHost.h"

namespace zelkon {
namespace {

std::shared_ptr<CATextLayer> textLayerOf(const CALayerRef& bubble) {
  return std::dynamic_pointer_cast<CATextLayer>(bubble->sublayers().back());
}
std::string textOfBubble(const ChartHost& host) { return textLayerOf(host.chart().currentHoverLayer())->plainString(); }

// Two bars, (102, ...) and so on, shown and at rest.
struct Bars : ChartHost {
  Bars() {
    setOptions({ValueDictionary{{"key", "DisplayYLabels"}, {"value", false}}});
    show(chartAmounts({"100", "50", "0"}));
  }
};
// A line of twelve entries, drawn and at rest.
struct Line : ChartHost {
  Line() : ChartHost({357, 296}) {
    setOptions({ValueDictionary{{"key", "DisplayYLabels"}, {"value", false}}});
    show(chartAmounts({"100", "50", "40", "60", "70", "80", "90", "20", "30", "40", "50", "100"}));
  }
};

// ---- text and sizes: bold 11 points, 6.6 a character, lines 13 high ----

TEST(Tooltip, TheHeaderIsGreyAboveTheAmount) {
  const PlainDevice device;
  const NSAttributedString text = BarOrLineView::_createAttributedStringForValue("$12", "May");
  EXPECT_EQ(text.string(), "May\n$12");
  ASSERT_EQ(text.runs().size(), 2u);
  EXPECT_EQ(text.runs()[0].begin, 0u);
  EXPECT_EQ(text.runs()[0].end, 3u);
  ASSERT_NE(text.runs()[0].attributes.color, nullptr);
  EXPECT_NEAR(text.runs()[0].attributes.color->components()[0], 1.0 / 3, 1e-9);
  EXPECT_EQ(text.runs()[1].end, 7u);
  EXPECT_EQ(text.runs()[1].attributes.color, nullptr);
  for (const NSAttributedString::Run& run : text.runs()) {
    EXPECT_EQ(run.attributes.font->face(), FontFaceLucidaGrandeBold());
    EXPECT_EQ(run.attributes.font->pointSize(), 11);
  }
}

TEST(Tooltip, AnEmptyHeaderLeavesOneLineWithoutGrey) {
  const PlainDevice device;
  const NSAttributedString text = BarOrLineView::_createAttributedStringForValue("$12", "");
  EXPECT_EQ(text.string(), "$12");
  ASSERT_EQ(text.runs().size(), 1u);
  EXPECT_EQ(text.runs()[0].attributes.color, nullptr);
}

CGSize sizeOf(const std::string& text) {
  const auto layer = CATextLayer::layer();
  layer->setFont(NSBoldSystemFontOfSize(11));
  layer->setString(BarOrLineView::_createAttributedStringForValue(text, ""));
  return BarOrLineView::_sizeForTextLayer(*layer);
}

TEST(Tooltip, ATextIsAsHighAsItsLinesAndTwiceTheDescent) {
  const PlainDevice device;
  EXPECT_NEAR(sizeOf("AAAAAA").width, 39.6, 1e-9);
  EXPECT_NEAR(sizeOf("AAAAAA").height, 17.641, 0.001);
  EXPECT_NEAR(sizeOf("May\n$12").height, 30.641, 0.001);
  EXPECT_NEAR(sizeOf("May\n$12").width, 19.8, 1e-9);
}

TEST(Tooltip, ALongTextWrapsAtAHundredAndTwentyPoints) {
  const PlainDevice device;
  // 18 characters of 6.6 fit a line: two words of eight and the blank between them.
  const CGSize size = sizeOf("AAAAAAAA BBBBBBBB CCCCCCCC");
  EXPECT_LE(size.width, 120);
  EXPECT_NEAR(size.width, 17 * 6.6, 1e-9);
  EXPECT_NEAR(size.height, 30.641, 0.001);
}

TEST(Tooltip, ATextHasAtMostTheSixLinesThatFitNinetyPoints) {
  const PlainDevice device;
  std::string words;
  for (int i = 0; i < 60; ++i) words += "word ";
  EXPECT_NEAR(sizeOf(words).height, 6 * 13 + 4.641, 0.001);
  EXPECT_LE(sizeOf(words).width, 120);
}

TEST(Tooltip, NoTextIsNoWiderThanNothing) {
  const PlainDevice device;
  EXPECT_EQ(sizeOf("").width, 0);
}

TEST(Tooltip, ABubbleOfOneLineIsEightPointsWiderOnEachSideAndTenHigher) {
  const Bars host;
  // 39.6 by 17.641: a text of 40 by 18.
  const CALayerRef bubble = host.chart()._createHoverLayerWithText("AAAAAA", "");
  const auto text = textLayerOf(bubble);
  EXPECT_EQ(text->bounds(), CGRectMake(0, 0, 40, 18));
  EXPECT_EQ(bubble->bounds(), CGRectMake(-8, -10, 56, 38));
  EXPECT_EQ(text->position(), CGPointMake(20, 13));
  EXPECT_EQ(text->frame(), CGRectMake(0, 4, 40, 18));
  EXPECT_EQ(bubble->anchorPoint(), CGPointMake(0.5, 0));
  EXPECT_TRUE(bubble->isHidden());
  EXPECT_TRUE(bubble->needsDisplay());
  EXPECT_EQ(bubble->delegate().get(), static_cast<CALayerDelegate*>(&host.chart()));
  EXPECT_EQ(bubble->valueForKey("com.zelkon.textLayer").object(), text);
}

TEST(Tooltip, TheTextLayerWrapsAndIsBlackInBoldEleven) {
  const Bars host;
  const auto text = textLayerOf(host.chart()._createHoverLayerWithText("A", "B"));
  EXPECT_TRUE(text->isWrapped());
  EXPECT_EQ(text->fontSize(), 11);
  EXPECT_EQ(text->font(), NSBoldSystemFontOfSize(11));
  EXPECT_EQ(text->foregroundColor(), kCGColorBlack());
}

TEST(Tooltip, ATextBeyondNinetyPointsIsCutInTheMiddleOfItsLastLine) {
  const Bars host;
  std::string words;
  for (int i = 0; i < 60; ++i) words += "word ";
  const auto text = textLayerOf(host.chart()._createHoverLayerWithText(words, "Header"));
  EXPECT_LE(text->bounds().size.height, 90);
  EXPECT_LE(text->bounds().size.width, 120);
  RecordingContext context;
  text->drawInContext(context);
  const Drawn drawn(*context.snapshot());
  bool isCut = false;
  for (const CGTextRun& run : drawn.texts) isCut = isCut || run.text.find("\xE2\x80\xA6") != std::string::npos;
  EXPECT_TRUE(isCut);
  EXPECT_EQ(drawn.texts.front().text, "Header");
}

TEST(Tooltip, AnEntryWithoutNamesHasItsAmountAlone) {
  const Bars host;
  auto entry = std::make_shared<PlotEntry>();
  entry->humanY = std::make_shared<const std::string>("$12");
  host.chart()._hoverEntry(entry, {100, 100});
  EXPECT_EQ(textOfBubble(host), "$12");
}

TEST(Tooltip, AnEntryWithoutAnAmountHasAnEmptyLineForIt) {
  const Bars host;
  auto entry = std::make_shared<PlotEntry>();
  entry->humanX = std::make_shared<const std::string>("May");
  host.chart()._hoverEntry(entry, {100, 100});
  EXPECT_EQ(textOfBubble(host), "May\n");
  host.chart()._clearHoverEntry();
  host.chart()._moveAndResizeLayerForEntry(entry, {100, 100});
  EXPECT_EQ(textOfBubble(host), "May\n");
}

TEST(Tooltip, WithoutARootLayerABubbleIsShownToNobody) {
  Bars host;
  host.view->webPlugInStop();
  const PlotEntryRef entry = host.plotter()->plotData()->entry(0);
  host.chart()._hoverEntry(entry, {100, 100});
  EXPECT_EQ(textOfBubble(host), "A\n$A");
  EXPECT_EQ(host.chart().currentHoverLayer()->superlayer(), nullptr);
  EXPECT_FALSE(host.chart().currentHoverLayer()->isHidden());
}

TEST(Tooltip, LayersLandOnWholePoints) {
  const CALayerRef layer = CALayer::layer();
  layer->setAnchorPoint({0.5, 0});
  layer->setBounds(CGRectMake(-8, -10, 57, 38));
  BarOrLineView::_setPosition({100, 50.5}, layer);
  EXPECT_EQ(layer->frame(), CGRectIntegral(layer->frame()));
  EXPECT_TRUE(CGRectContainsPoint(layer->frame(), {100, 51}));
}

// ---- over bars ----

TEST(TooltipOverBars, StandsFivePointsAboveTheMiddleOfTheBar) {
  Bars host;
  host.moveOver(0);
  const CALayerRef bubble = host.chart().currentHoverLayer();
  ASSERT_NE(bubble, nullptr);
  EXPECT_EQ(host.chart().currentHoverEntry(), host.plotter()->plotData()->entry(0));
  EXPECT_EQ(textOfBubble(host), "A\n$A");
  EXPECT_FALSE(bubble->isHidden());
  EXPECT_EQ(bubble->superlayer(), host.view->layer());
  const CGRect bar = host.plotter()->rectForEntry(host.chart().currentHoverEntry());
  EXPECT_EQ(bubble->frame().origin.y, CGRectGetMaxY(bar) + 5);
  EXPECT_NEAR(CGRectGetMidX(bubble->frame()), CGRectGetMidX(bar), 0.5);
}

TEST(TooltipOverBars, AMediumNameIsTheHeaderWhereThereIsOne) {
  ChartHost host;
  ValueDictionary entry = chartEntry("September 2009", "5", "$5.00");
  entry["mediumHumanX"] = "Sep 2009";
  host.show(pageArray({entry}));
  host.moveOver(0);
  EXPECT_EQ(textOfBubble(host), "Sep 2009\n$5.00");
}

TEST(TooltipOverBars, MovingWithinABarLeavesTheBubble) {
  Bars host;
  host.moveOver(0);
  const CALayerRef bubble = host.chart().currentHoverLayer();
  const CGRect bar = host.plotter()->rectForEntry(host.chart().currentHoverEntry());
  host.move(CGRectGetMinX(bar) + 1, CGRectGetMinY(bar) + 1);
  EXPECT_EQ(host.chart().currentHoverLayer(), bubble);
}

TEST(TooltipOverBars, AnotherBarHasABubbleOfItsOwn) {
  Bars host;
  host.moveOver(0);
  const CALayerRef first = host.chart().currentHoverLayer();
  host.moveOver(1);
  EXPECT_NE(host.chart().currentHoverLayer(), first);
  EXPECT_EQ(first->superlayer(), nullptr);
  EXPECT_TRUE(first->isHidden());
  EXPECT_EQ(textOfBubble(host), "B\n$B");
}

TEST(TooltipOverBars, GoesOverAGapAndWhenThePointerLeaves) {
  Bars host;
  host.moveOver(0);
  const CALayerRef bubble = host.chart().currentHoverLayer();
  host.move(1, 1);
  EXPECT_EQ(host.chart().currentHoverLayer(), nullptr);
  EXPECT_EQ(host.chart().currentHoverEntry(), nullptr);
  EXPECT_EQ(bubble->superlayer(), nullptr);
  host.moveOver(0);
  host.exit();
  EXPECT_EQ(host.chart().currentHoverLayer(), nullptr);
  host.exit();
}

TEST(TooltipOverBars, AZeroHasNone) {
  Bars host;
  host.move(550, 60);
  EXPECT_EQ(host.chart().currentHoverLayer(), nullptr);
}

TEST(TooltipOverBars, WithoutAPlotterThereIsNone) {
  ChartHost host;
  host.move(100, 100);
  EXPECT_EQ(host.chart().currentHoverLayer(), nullptr);
}

TEST(TooltipOverBars, ARebuiltTreeDetachesTheBubbleUntilAnotherEntry) {
  Bars host;
  host.moveOver(0);
  const CALayerRef bubble = host.chart().currentHoverLayer();
  host.setFrame(CGRectMake(0, 0, 657, 320));
  EXPECT_EQ(bubble->superlayer(), nullptr);
  EXPECT_EQ(host.chart().currentHoverLayer(), bubble);
  host.moveOver(0);
  EXPECT_EQ(bubble->superlayer(), nullptr);  // the same entry: nothing happens
  host.moveOver(1);
  ASSERT_NE(host.chart().currentHoverLayer(), bubble);
  EXPECT_EQ(host.chart().currentHoverLayer()->superlayer(), host.view->layer());
}

TEST(TooltipOverBars, MayReachBeyondTheViewsEdge) {
  ChartHost host({150, 311});
  host.setOptions({ValueDictionary{{"key", "DisplayYLabels"}, {"value", false}}});
  host.show(pageArray({chartEntry("A", "5", "a long amount in words")}));
  host.moveOver(0);
  EXPECT_GT(CGRectGetMaxY(host.chart().currentHoverLayer()->frame()), 256);
}

// ---- over a line ----

TEST(TooltipOverLine, OneBubbleMovesFromEntryToEntry) {
  Line host;
  ASSERT_TRUE(host.isLine());
  host.moveOver(3);
  const CALayerRef bubble = host.chart().currentHoverLayer();
  ASSERT_NE(bubble, nullptr);
  EXPECT_EQ(bubble->superlayer(), host.view->layer());
  EXPECT_FALSE(bubble->isHidden());
  EXPECT_EQ(textOfBubble(host), "D\n$D");
  const CGRect before = bubble->frame();
  host.moveOver(4);
  EXPECT_EQ(host.chart().currentHoverLayer(), bubble);
  EXPECT_EQ(textOfBubble(host), "E\n$E");
  EXPECT_GT(bubble->frame().origin.x, before.origin.x);
  const CGRect rect = host.plotter()->rectForEntry(host.chart().currentHoverEntry());
  EXPECT_NEAR(bubble->frame().origin.y, std::floor(CGRectGetMaxY(rect) + 5), 1e-9);
}

TEST(TooltipOverLine, MovingWithinAnEntryLeavesTheBubble) {
  Line host;
  host.moveOver(3);
  const CALayerRef bubble = host.chart().currentHoverLayer();
  host.turn(1);
  const NSAttributedString shown = textLayerOf(bubble)->attributedString();
  const CGRect rect = host.plotter()->rectForEntry(host.chart().currentHoverEntry());
  host.move(CGRectGetMinX(rect) + 1, CGRectGetMinY(rect) + 1);
  EXPECT_EQ(host.chart().currentHoverLayer(), bubble);
  EXPECT_EQ(textLayerOf(bubble)->attributedString(), shown);
  EXPECT_TRUE(bubble->animationKeys().empty());
  EXPECT_FALSE(bubble->needsDisplay());
}

TEST(TooltipOverLine, ItsFirstPlaceIsNotAnimated) {
  Line host;
  host.moveOver(3);
  const CALayerRef bubble = host.chart().currentHoverLayer();
  EXPECT_TRUE(bubble->animationKeys().empty());
  EXPECT_TRUE(textLayerOf(bubble)->animationKeys().empty());
}

TEST(TooltipOverLine, MovesAndGrowsFromWhereItIsSeenInAQuarterOfASecond) {
  ChartHost host({357, 296});
  host.setOptions({ValueDictionary{{"key", "DisplayYLabels"}, {"value", false}}});
  ValueArray entries;
  for (int i = 0; i < 12; ++i) entries.emplace_back(chartEntry("Day", "5", i == 3 ? "a long amount" : "$5"));
  host.show(pageArray(entries));
  host.moveOver(3);
  host.turn(1);
  const CALayerRef bubble = host.chart().currentHoverLayer();
  const std::shared_ptr<CATextLayer> text = textLayerOf(bubble);
  const CGPoint place = bubble->position(), textPlace = text->position();
  const CGRect bounds = bubble->bounds(), textBounds = text->bounds();
  host.moveOver(4);
  const auto expectAnimated = [](const CALayer& layer, const char* key, const CAAnimatableValue& from) {
    const CABasicAnimation* animation = layer.animationForKey(key);
    ASSERT_NE(animation, nullptr) << key;
    EXPECT_EQ(*animation->fromValue, from) << key;
    EXPECT_FALSE(animation->toValue.has_value()) << key;
    EXPECT_EQ(animation->duration, 0.25) << key;
    EXPECT_EQ(animation->timingFunction, kCAMediaTimingFunctionDefault) << key;
  };
  expectAnimated(*bubble, "position", place);
  expectAnimated(*bubble, "bounds", bounds);
  expectAnimated(*text, "position", textPlace);
  expectAnimated(*text, "bounds", textBounds);
  host.turn(0.3);
  EXPECT_TRUE(bubble->animationKeys().empty());
}

TEST(TooltipOverLine, TheBubbleTakesTheSizeOfEachText) {
  ChartHost host({357, 296});
  ValueArray entries;
  host.setOptions({ValueDictionary{{"key", "DisplayYLabels"}, {"value", false}}});
  for (int i = 0; i < 12; ++i) entries.emplace_back(chartEntry("Day", "5", i == 3 ? "a long amount" : "$5"));
  host.show(pageArray(entries));
  ASSERT_TRUE(host.isLine());
  host.moveOver(3);
  const CALayerRef bubble = host.chart().currentHoverLayer();
  EXPECT_EQ(bubble->bounds(), CGRectMake(-8, -10, 86 + 16, 31 + 20));  // 13 characters: 85.8
  host.moveOver(5);
  EXPECT_EQ(bubble->bounds(), CGRectMake(-8, -10, 20 + 16, 31 + 20));  // "Day": 19.8
  EXPECT_EQ(textLayerOf(bubble)->bounds(), CGRectMake(0, 0, 20, 31));
  EXPECT_EQ(textLayerOf(bubble)->frame(), CGRectMake(0, 4, 20, 31));
}

TEST(TooltipOverLine, ARebuiltTreeLeavesTheBubbleDetachedUntilThePointerIsOverNothing) {
  Line host;
  host.moveOver(3);
  const CALayerRef bubble = host.chart().currentHoverLayer();
  host.setFrame(CGRectMake(0, 0, 357, 300));
  host.turn();
  host.moveOver(4);
  EXPECT_EQ(host.chart().currentHoverLayer(), bubble);
  EXPECT_EQ(textOfBubble(host), "E\n$E");
  EXPECT_EQ(bubble->superlayer(), nullptr);
  host.move(1, 1);
  EXPECT_EQ(host.chart().currentHoverLayer(), nullptr);
  host.moveOver(4);
  EXPECT_EQ(host.chart().currentHoverLayer()->superlayer(), host.view->layer());
}

}  // namespace
}  // namespace zelkon
