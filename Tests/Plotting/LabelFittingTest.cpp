// Rows of labels made to fit. Every character is 0.6 of the font size wide: 7.2 points at 12, 6.6 at 11 and 6 at 10.
#include <gtest/gtest.h>

#include <limits>

#include "Classes/Plotting/LabelFitting.h"
#include "Foundation/Locale.h"
#include "Foundation/NSAssertionHandler.h"
#include "Foundation/NSException.h"
#include "Foundation/NSLog.h"
#include "Support/PlainDevice.h"

namespace zelkon {
namespace {

using namespace labelfitting;

class LabelFitting : public testing::Test {
 public:
  LabelFitting() {
    earlierSink_ = NSSetLogSink([this](std::string_view line) { log.emplace_back(line); });
  }
  ~LabelFitting() override { NSSetLogSink(earlierSink_); }

  static NSAttributedString label(const std::string& text, NSTextAlignment alignment = NSTextAlignment::center,
                                  double size = 12) {
    TextAttributes attributes;
    attributes.font = NSFont(FontFaceLucidaGrande(), size);
    attributes.paragraphStyle = NSParagraphStyle{alignment};
    return {text, attributes};
  }
  // One label per text in slots of that width, edge to edge.
  static LabelRow row(const std::vector<std::string>& texts, double slotWidth,
                      NSTextAlignment alignment = NSTextAlignment::center, double size = 12) {
    LabelRow result;
    for (const std::string& text : texts) {
      result.rects.push_back(CGRectMake(slotWidth * static_cast<double>(result.labels.size()), 34, slotWidth, 15));
      result.labels.push_back(label(text, alignment, size));
    }
    return result;
  }
  static std::vector<std::string> texts(const LabelRow& row) {
    std::vector<std::string> result;
    for (const NSAttributedString& each : row.labels) result.push_back(each.string());
    return result;
  }
  static double sizeOfFirst(const LabelRow& row) {
    for (const NSAttributedString& each : row.labels)
      if (!each.isEmpty()) return each.attributesAtStart().fontOrDefault().pointSize();
    return 0;
  }
  // Natural alignment is logged once for each label that an overlap test looks at.
  size_t labelsLookedAt() const { return log.size(); }

  PlainDevice device;
  std::vector<std::string> log;

 private:
  LogSink earlierSink_;
};

const std::vector<std::string> kMonths{"Jan", "Feb", "Mar", "Apr", "May", "Jun",
                                       "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"};

TEST_F(LabelFitting, TheLargestWidthAndHeightAreTakenSeparately) {
  EXPECT_EQ(maxSize({}), CGSizeMake(0, 0));
  const CGSize size = maxSize({label("AAAAA"), label("A", NSTextAlignment::center, 30)});
  EXPECT_DOUBLE_EQ(size.width, 36);
  EXPECT_DOUBLE_EQ(size.height, label("A", NSTextAlignment::center, 30).size().height);
}

TEST_F(LabelFitting, CentredTextsOverlapWhenTheGapIsSmallerThanTheMargin) {
  const LabelRow centred = row({"AAAAA", "AAAAA"}, 60);  // 12...48 and 72...108
  EXPECT_FALSE(overlap(centred, 20));
  EXPECT_FALSE(overlap(centred, 24));  // touching is no overlap
  EXPECT_TRUE(overlap(centred, 24.5));
}

TEST_F(LabelFitting, TextsStandInTheirSlotsByTheirAlignment) {
  LabelRow pair = row({"AAAAA", "AAAAA"}, 60);
  pair.labels[0] = label("AAAAA", NSTextAlignment::left);   // 0...36
  pair.labels[1] = label("AAAAA", NSTextAlignment::right);  // 84...120
  EXPECT_FALSE(overlap(pair, 47.5));
  EXPECT_TRUE(overlap(pair, 48.5));
  pair.labels[0] = label("AAAAA", NSTextAlignment::right);      // 24...60
  pair.labels[1] = label("AAAAA", NSTextAlignment::justified);  // 60...96
  EXPECT_FALSE(overlap(pair, 0));
  EXPECT_TRUE(overlap(pair, 0.5));
  EXPECT_TRUE(log.empty());
}

TEST_F(LabelFitting, AnotherAlignmentIsLoggedAndKeepsTheMeasuredPlace) {
  const LabelRow natural = row({"AAAAA", "AAAAA"}, 60, NSTextAlignment::natural);
  EXPECT_TRUE(overlap(natural, 0));  // both stay at x = 0
  ASSERT_EQ(log.size(), 2u);
  EXPECT_NE(log[0].find("Unrecognized text alignment in +[CashFlowPlot _labels:andRectsOverlap:withMargin:]"),
            std::string::npos);
}

TEST_F(LabelFitting, ALabelWiderThanItsSlotDoesNotFit) {
  EXPECT_FALSE(overlap(row({"AAAAA"}, 36), 10));
  EXPECT_TRUE(overlap(row({"AAAAA"}, 35.9), 10));
}

TEST_F(LabelFitting, EmptyLabelsTakeNoPart) {
  LabelRow gaps = row({"AAAAA", "", "AAAAA"}, 40);
  gaps.rects[1] = NSZeroRect;
  EXPECT_FALSE(overlap(gaps, 40));
  EXPECT_TRUE(overlap(gaps, 45));
  EXPECT_FALSE(overlap(row({"", ""}, 0), 20));
}

TEST_F(LabelFitting, OnlyNeighboursInOrderAreCompared) {
  LabelRow three = row({"AAAAA", "A", "AAAAA"}, 60);
  three.rects[2] = three.rects[0];
  EXPECT_FALSE(overlap(three, 0));
}

TEST_F(LabelFitting, TheFontChangesBySizeAndKeepsItsFaceWhateverTheWidthEntry) {
  const std::vector<NSAttributedString> changed = adjusted({label("AAAAA"), label("")}, -1, -0.3);
  EXPECT_EQ(changed[0].attributesAtStart().fontOrDefault(), NSFont(FontFaceLucidaGrande(), 11));
  EXPECT_DOUBLE_EQ(changed[0].size().width, 33);
  EXPECT_EQ(changed[0].paragraphStyle().alignment, NSTextAlignment::center);
  EXPECT_TRUE(changed[1].isEmpty());
  EXPECT_DOUBLE_EQ(adjusted({label("AAAAA")}, 0, -0.3)[0].size().width, 36);
}

TEST_F(LabelFitting, NoFontGoesBelowTenPoints) {
  EXPECT_TRUE(canAdjust({label("A"), label("B")}, -2));
  EXPECT_FALSE(canAdjust({label("A"), label("B")}, -2.5));
  EXPECT_FALSE(canAdjust({label("A"), label("B", NSTextAlignment::center, 11)}, -2));
  EXPECT_FALSE(canAdjust({label("A", NSTextAlignment::center, 10)}, -1));
  EXPECT_TRUE(canAdjust({label("")}, -5));
}

TEST_F(LabelFitting, SevenLabelsInThreesRegroupTheTail) {
  const LabelRow merged = concatenated(row({"0", "1", "2", "3", "4", "5", "6"}, 10), 3);
  EXPECT_EQ(texts(merged), (std::vector<std::string>{"", "1", "", "", "", "5", ""}));
  EXPECT_EQ(merged.rects[1], CGRectMake(0, 34, 30, 15));
  EXPECT_EQ(merged.rects[5], CGRectMake(40, 34, 30, 15));
  for (const size_t i : {0, 2, 3, 4, 6}) EXPECT_EQ(merged.rects[i], NSZeroRect) << i;
}

TEST_F(LabelFitting, FourLabelsInThreesKeepTheSecondOverTheFirstThree) {
  const LabelRow merged = concatenated(row({"0", "1", "2", "3"}, 10), 3);
  EXPECT_EQ(texts(merged), (std::vector<std::string>{"", "1", "", ""}));
  EXPECT_EQ(merged.rects[1], CGRectMake(0, 34, 30, 15));
  EXPECT_EQ(merged.rects[3], NSZeroRect);
}

TEST_F(LabelFitting, SixLabelsInThreesHaveNoTail) {
  const LabelRow merged = concatenated(row({"0", "1", "2", "3", "4", "5"}, 10), 3);
  EXPECT_EQ(texts(merged), (std::vector<std::string>{"", "1", "", "", "4", ""}));
  EXPECT_EQ(merged.rects[4], CGRectMake(30, 34, 30, 15));
}

TEST_F(LabelFitting, TwelveLabelsInFivesGiveTheLastGroupToTheEndOfTheRow) {
  const LabelRow merged = concatenated(row(kMonths, 10), 5);
  EXPECT_EQ(texts(merged), (std::vector<std::string>{"", "", "Mar", "", "", "", "", "", "", "Oct", "", ""}));
  EXPECT_EQ(merged.rects[2], CGRectMake(0, 34, 50, 15));
  EXPECT_EQ(merged.rects[9], CGRectMake(70, 34, 50, 15));
}

// One full group and a tail: the middle of all is kept, over five slots that begin two before it.
TEST_F(LabelFitting, SevenLabelsInFivesKeepTheMiddleOverTheFiveAroundIt) {
  const LabelRow merged = concatenated(row({"0", "1", "2", "3", "4", "5", "6"}, 10), 5);
  EXPECT_EQ(texts(merged), (std::vector<std::string>{"", "", "", "3", "", "", ""}));
  EXPECT_EQ(merged.rects[3], CGRectMake(10, 34, 50, 15));
  EXPECT_EQ(merged.rects[2], NSZeroRect);
}

TEST_F(LabelFitting, SixLabelsInFivesKeepTheThirdAndNineTheFifth) {
  const LabelRow six = concatenated(row({"0", "1", "2", "3", "4", "5"}, 10), 5);
  EXPECT_EQ(texts(six), (std::vector<std::string>{"", "", "2", "", "", ""}));
  EXPECT_EQ(six.rects[2], CGRectMake(0, 34, 50, 15));
  const LabelRow nine = concatenated(row({"0", "1", "2", "3", "4", "5", "6", "7", "8"}, 10), 5);
  EXPECT_EQ(texts(nine), (std::vector<std::string>{"", "", "", "", "4", "", "", "", ""}));
  EXPECT_EQ(nine.rects[4], CGRectMake(20, 34, 50, 15));
}

TEST_F(LabelFitting, OneGroupOfAllKeepsTheMiddleOverTheWholeRow) {
  for (size_t count = 1; count < 9; ++count) {
    const LabelRow merged = concatenated(row(std::vector<std::string>(count, "A"), 10), count);
    for (size_t i = 0; i < count; ++i) EXPECT_EQ(merged.labels[i].isEmpty(), i != (count - 1) / 2);
    EXPECT_EQ(merged.rects[(count - 1) / 2], CGRectMake(0, 34, 10.0 * static_cast<double>(count), 15));
  }
}

TEST_F(LabelFitting, NoLabelsMergeToNone) { EXPECT_TRUE(concatenated({}, 3).labels.empty()); }

TEST_F(LabelFitting, FiveLabelsInThreesKeepTheMiddleOverTheThreeAroundIt) {
  const LabelRow merged = concatenated(row({"0", "1", "2", "3", "4"}, 10), 3);
  EXPECT_EQ(texts(merged), (std::vector<std::string>{"", "", "2", "", ""}));
  EXPECT_EQ(merged.rects[2], CGRectMake(10, 34, 30, 15));
  EXPECT_EQ(merged.rects[1], NSZeroRect);
}

// What the merge fails with; nothing when it does not.
std::optional<std::string> failureOfMerging(const LabelRow& labels, size_t groupSize) {
  std::optional<std::string> operation;
  const auto earlier = NSAssertionHandler::setHandler([&](const AssertionFailure& failure) {
    EXPECT_EQ(failure.text, "Invalid parameter not satisfying: HUGE != startX && -HUGE != endX");
    EXPECT_EQ(failure.file, "Classes/Plotting/CashFlowPlot");
    operation = failure.operation;
  });
  try {
    concatenated(labels, groupSize);
  } catch (const NSException& exception) {
    EXPECT_EQ(exception.name(), NSInternalInconsistencyException);
  }
  NSAssertionHandler::setHandler(earlier);
  return operation;
}

TEST_F(LabelFitting, AGroupWithAStartAndNoEndFailsItsAssertion) {
  LabelRow three = row({"0", "1", "2"}, 10);
  for (CGRect& rect : three.rects) rect.size.width = std::numeric_limits<double>::quiet_NaN();
  EXPECT_EQ(failureOfMerging(three, 3), "+[CashFlowPlot _concatenateLabels:rects:intoGroupsOf:]");
}

TEST_F(LabelFitting, ATailWithoutASpanFailsTheSameAssertionAndAFullGroupDoesNot) {
  LabelRow far = row({"0", "1", "2", "3", "4", "5"}, 10);
  for (CGRect& rect : far.rects) rect.origin.x = 1e39;  // beyond any start
  EXPECT_EQ(failureOfMerging(far, 3), std::nullopt);
  far.labels.push_back(label("6"));
  far.rects.push_back(far.rects[0]);
  EXPECT_EQ(failureOfMerging(far, 3), "+[CashFlowPlot _concatenateLabels:rects:intoGroupsOf:]");
}

TEST_F(LabelFitting, AnExceptionLeavesTheCallersRowAsItWas) {
  LabelRow far = row(std::vector<std::string>(7, "AAAAA"), 10);
  for (CGRect& rect : far.rects) rect.origin.x = 1e39;
  const LabelRow before = far;
  NSSetLogSink([](std::string_view) {});
  EXPECT_THROW(fit(far, 20), NSException);
  EXPECT_EQ(far.labels, before.labels);
  EXPECT_EQ(far.rects, before.rects);
}

TEST_F(LabelFitting, ARowThatFitsIsHandedBackUntouched) {
  const LabelRow before = row(kMonths, 60);
  LabelRow after = before;
  fit(after, 20);
  EXPECT_EQ(after.labels, before.labels);
  EXPECT_EQ(after.rects, before.rects);
  fitMonths(after, 20, {});
  EXPECT_EQ(after.labels, before.labels);
  EXPECT_EQ(after.rects, before.rects);
}

TEST_F(LabelFitting, TheFontShrinksPointByPointUntilTheRowFits) {
  const std::vector<std::string> twelve(12, "AAAAA");
  LabelRow fitted = row(twelve, 50);
  fit(fitted, 16);  // gaps: 14 at 12 points, 17 at 11
  EXPECT_EQ(sizeOfFirst(fitted), 11);
  EXPECT_EQ(texts(fitted), twelve);
  fitted = row(twelve, 50);
  fit(fitted, 19);  // 20 at 10
  EXPECT_EQ(sizeOfFirst(fitted), 10);
  EXPECT_EQ(fitted.rects, row(twelve, 50).rects);
}

TEST_F(LabelFitting, GroupsOfThreeStartAgainFromTheFullFont) {
  LabelRow fitted = row(std::vector<std::string>(12, "AAAAA"), 50);
  fit(fitted, 25);
  EXPECT_EQ(texts(fitted),
            (std::vector<std::string>{"", "AAAAA", "", "", "AAAAA", "", "", "AAAAA", "", "", "AAAAA", ""}));
  EXPECT_EQ(sizeOfFirst(fitted), 12);
  EXPECT_EQ(fitted.rects[1], CGRectMake(0, 34, 150, 15));
  EXPECT_EQ(fitted.rects[10], CGRectMake(450, 34, 150, 15));
}

TEST_F(LabelFitting, GroupsMayStillNeedASmallerFont) {
  // In threes the slots are 60 wide: gaps of 24 at 12 points, 27 at 11.
  LabelRow fitted = row(std::vector<std::string>(12, "AAAAA"), 20);
  fit(fitted, 26);
  EXPECT_EQ(sizeOfFirst(fitted), 11);
  EXPECT_EQ(fitted.labels[1].string(), "AAAAA");
  EXPECT_EQ(fitted.labels[4].string(), "AAAAA");
}

TEST_F(LabelFitting, WhatFitsNowhereIsMergedToOneLabel) {
  LabelRow fitted = row(std::vector<std::string>(7, "AAAAAAAAAA"), 1);
  fit(fitted, 20);
  EXPECT_EQ(texts(fitted), (std::vector<std::string>{"", "", "", "AAAAAAAAAA", "", "", ""}));
  EXPECT_EQ(fitted.rects[3], CGRectMake(0, 34, 7, 15));
  EXPECT_EQ(sizeOfFirst(fitted), 12);
}

// The span of all three has room for the middle one at 11 points; it is not asked for.
TEST_F(LabelFitting, OneGroupOfAllIsHandedBackWithoutATest) {
  LabelRow fitted = row(std::vector<std::string>(3, "AAAAAAAAAA"), 22);
  fit(fitted, 20);
  EXPECT_EQ(texts(fitted), (std::vector<std::string>{"", "AAAAAAAAAA", ""}));
  EXPECT_EQ(sizeOfFirst(fitted), 12);
  EXPECT_EQ(fitted.rects[1], CGRectMake(0, 34, 66, 15));
}

// A pair that never fits: one test on entry, three widths at 12 points, four each at 11 and at 10.
TEST_F(LabelFitting, EveryWidthIsTriedAtEverySize) {
  LabelRow pair = row({"A", "B"}, 60, NSTextAlignment::natural);
  fit(pair, 1);
  EXPECT_EQ(labelsLookedAt(), 2u * (1 + 3 + 4 + 4));
  EXPECT_EQ(texts(pair), (std::vector<std::string>{"A", ""}));
}

TEST_F(LabelFitting, TenPointLabelsGoFromThreeWidthsStraightToGroupsOfThree) {
  LabelRow seven = row(std::vector<std::string>(7, "A"), 60, NSTextAlignment::natural, 10);
  fit(seven, 1);
  // On entry and at three widths the second label ends the test; then two labels are left, at four widths; in fives
  // there is one, which fits at once.
  EXPECT_EQ(labelsLookedAt(), 2u * (1 + 3) + 2u * 4 + 1u);
  EXPECT_EQ(texts(seven), (std::vector<std::string>{"", "", "", "A", "", "", ""}));
}

TEST_F(LabelFitting, MonthsThinToQuarterStartsFirst) {
  LabelRow fitted = row(kMonths, 10);
  fitMonths(fitted, 10, {});
  EXPECT_EQ(texts(fitted), (std::vector<std::string>{"Jan", "", "", "Apr", "", "", "Jul", "", "", "Oct", "", ""}));
  EXPECT_EQ(sizeOfFirst(fitted), 11);
  EXPECT_EQ(fitted.rects[3].origin, CGPointMake(30, 34));
  EXPECT_DOUBLE_EQ(fitted.rects[3].size.width, 21.6);  // the label's own size, before the font shrank
  EXPECT_EQ(fitted.rects[3].size.height, 15);
  EXPECT_EQ(fitted.rects[1], NSZeroRect);
}

TEST_F(LabelFitting, MonthsThinToJanuaryAndJulyNext) {
  LabelRow fitted = row(kMonths, 5);
  fitMonths(fitted, 10, {});
  EXPECT_EQ(texts(fitted), (std::vector<std::string>{"Jan", "", "", "", "", "", "Jul", "", "", "", "", ""}));
  EXPECT_EQ(sizeOfFirst(fitted), 11);
  EXPECT_EQ(fitted.rects[6].origin, CGPointMake(30, 34));
}

TEST_F(LabelFitting, MonthsThatNeverFitPairTheHalfYearLabelsWithTheJanuaryRects) {
  LabelRow fitted = row(kMonths, 1);
  fitMonths(fitted, 10, {});
  EXPECT_EQ(texts(fitted), (std::vector<std::string>{"Jan", "", "", "", "", "", "Jul", "", "", "", "", ""}));
  EXPECT_EQ(sizeOfFirst(fitted), 12);
  EXPECT_EQ(fitted.rects[0].origin, CGPointMake(0, 34));
  EXPECT_DOUBLE_EQ(fitted.rects[0].size.width, 21.6);
  for (size_t i = 1; i < 12; ++i) EXPECT_EQ(fitted.rects[i], NSZeroRect) << i;
}

TEST_F(LabelFitting, EveryWidthIsTriedAtEverySizeOfEveryLevelOfMonths) {
  LabelRow fitted = row(kMonths, 60, NSTextAlignment::natural);
  fitMonths(fitted, 1, {});
  // On entry and at three widths of 12 points, four of 11 and of 10, the second label ends the test. The labels of
  // before are tested against the rectangles of quarters, and those of quarters against the half years': their second
  // has no room. Quarters and half years begin again with no width taken off.
  const size_t months = 2 * (1 + 3 + 4 + 4), level = 1 + 2 * (4 + 4 + 4);
  EXPECT_EQ(labelsLookedAt(), months + level + level);
  EXPECT_EQ(texts(fitted), (std::vector<std::string>{"Jan", "", "", "", "", "", "Jul", "", "", "", "", ""}));
}

TEST_F(LabelFitting, TheAttemptsLabelsAreHandedBackWhenTheyFitTheThinnedRects) {
  LabelRow fitted = row({"Jan", "Jul"}, 10);
  fitted.rects[1].origin.x = 100;
  fitMonths(fitted, 10, {});
  EXPECT_EQ(texts(fitted), (std::vector<std::string>{"Jan", "Jul"}));
  EXPECT_EQ(sizeOfFirst(fitted), 12);
  EXPECT_DOUBLE_EQ(fitted.rects[1].size.width, 21.6);
}

TEST_F(LabelFitting, TextsThatAreNoMonthsAreLeftOut) {
  LabelRow fitted = row({"Foo", "Apr", "Dec"}, 15);
  fitted.rects[1].origin.x = 5;
  fitMonths(fitted, 10, {});
  EXPECT_EQ(texts(fitted), (std::vector<std::string>{"", "Apr", ""}));
}

struct HebrewYear : LocaleServices {
  std::string formatNumber(double, const std::optional<std::string>&, int) const override { return "0"; }
  std::optional<int> monthNamed(std::string_view text) const override { return text[0] - 'a' + 1; }
  int monthsPerYear() const override { return 13; }
};

TEST_F(LabelFitting, ACalendarOfThirteenMonthsHasQuartersOfThreeAndHalvesOfSix) {
  const auto earlier = LocaleServices::install(std::make_shared<HebrewYear>());
  const std::vector<std::string> thirteen{"aaa", "bbb", "ccc", "ddd", "eee", "fff", "ggg",
                                          "hhh", "iii", "jjj", "kkk", "lll", "mmm"};
  LabelRow quarters = row(thirteen, 10), halves = row(thirteen, 5);
  fitMonths(quarters, 10, {});
  fitMonths(halves, 10, {});
  LocaleServices::install(earlier);
  EXPECT_EQ(texts(quarters),
            (std::vector<std::string>{"aaa", "", "", "ddd", "", "", "ggg", "", "", "jjj", "", "", "mmm"}));
  EXPECT_EQ(texts(halves), (std::vector<std::string>{"aaa", "", "", "", "", "", "ggg", "", "", "", "", "", "mmm"}));
}

}  // namespace
}  // namespace zelkon
