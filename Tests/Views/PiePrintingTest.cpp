// What a printed pie has: slices, the labels that show and the floor shadow, never the gloss.
#include <gtest/gtest.h>

#include "Classes/Views/PiePlotView.h"
#include "Support/ViewHost.h"

namespace zelkon {
namespace {

PiePlotView& pieOf(ViewHost& host) { return static_cast<PiePlotView&>(*host.view); }

// Something on the gloss that a print has unless the gloss is hidden: its discs and whatever lies under its filter are
// left out of prints by the layers themselves.
struct Gloss {
  CALayerRef mark = CALayer::layer();
  explicit Gloss(PiePlotView& pie) : pie_(pie) {
    pie.plotHighlightLayer()->setCompositingFilter(nullptr);
    mark->setBounds(CGRectMake(0, 0, 20, 10));
    mark->setBackgroundColor(CGColorCreateGenericGray(0.123, 1));
    pie.plotHighlightLayer()->addSublayer(mark);
    CATransaction::flush();
  }
  bool showsIn(const RecordingContext& paper) const {
    const auto list = paper.snapshot();
    for (const DisplayList::Command& command : list->commands()) {
      const auto* fill = std::get_if<DisplayList::Fill>(&command);
      if (fill != nullptr && fill->color == mark->backgroundColor()->rgba()) return true;
    }
    return false;
  }
  bool isPrinted() const {
    RecordingContext paper;
    pie_.renderForPrintingInContext(paper);
    EXPECT_FALSE(paper.snapshot()->isEmpty());
    return showsIn(paper);
  }

 private:
  PiePlotView& pie_;
};

TEST(PiePrinting, PrintsNeverCarryTheGlossAndShowItAgainAfterwards) {
  ViewHost host;
  host.call("SetPlotData", {pageAmounts({1, 3})});
  host.display();
  PiePlotView& pie = pieOf(host);
  const Gloss gloss(pie);
  RecordingContext tree;
  pie.layer()->renderInContext(tree);
  ASSERT_TRUE(gloss.showsIn(tree)) << "the tree itself has it";
  EXPECT_FALSE(gloss.isPrinted());
  EXPECT_FALSE(pie.plotHighlightLayer()->isHidden());
  EXPECT_EQ(pie.plotHighlightLayer()->animationForKey("hidden"), nullptr) << "the screen is untouched";
}

TEST(PiePrinting, AGlossThatWasHiddenStaysHiddenAfterPrinting) {
  ViewHost host;
  host.display();
  PiePlotView& pie = pieOf(host);
  const Gloss gloss(pie);
  pie.plotHighlightLayer()->setHidden(true);
  EXPECT_FALSE(gloss.isPrinted());
  EXPECT_TRUE(pie.plotHighlightLayer()->isHidden());
}

TEST(PiePrinting, PrintingHasTheSlicesTheShadowAndTheLabelsThatShow) {
  ViewHost host;
  host.call("SetPlotData", {pageAmounts({1, 3})});
  host.display();
  PiePlotView& pie = pieOf(host);
  const auto count = [&] {
    RecordingContext paper;
    pie.renderForPrintingInContext(paper);
    size_t texts = 0, images = 0, fills = 0;
    const auto list = paper.snapshot();
    for (const DisplayList::Command& command : list->commands()) {
      texts += std::holds_alternative<DisplayList::Text>(command);
      images += std::holds_alternative<DisplayList::Image>(command);
      fills += std::holds_alternative<DisplayList::Fill>(command);
    }
    return std::vector<size_t>{texts, images, fills};
  };
  EXPECT_EQ(count(), (std::vector<size_t>{0, 3, 2}));
  host.call("HoverEntryAtIndex", {true, 0});
  EXPECT_EQ(count(), (std::vector<size_t>{1, 3, 3})) << "a label's text and its background";
}

TEST(PiePrinting, ThePrintedShadowsPicturesMeetOnWholePoints) {
  // The strip runs from 49.625 to 250.375; the centre lies between 147.625 and 152.375.
  ViewHost host;
  host.display();
  RecordingContext paper;
  host.view->renderForPrintingInContext(paper);
  std::vector<CGRect> pictures;
  std::vector<CGAffineTransform> saved;
  CGAffineTransform toPage;
  const auto list = paper.snapshot();
  for (const DisplayList::Command& command : list->commands()) {
    if (std::holds_alternative<DisplayList::Save>(command)) saved.push_back(toPage);
    if (const auto* concat = std::get_if<DisplayList::Concat>(&command))
      toPage = CGAffineTransformConcat(concat->transform, toPage);
    if (std::holds_alternative<DisplayList::Restore>(command)) {
      toPage = saved.back();
      saved.pop_back();
    }
    if (const auto* image = std::get_if<DisplayList::Image>(&command))
      pictures.push_back(CGRectApplyAffineTransform(image->rect, toPage));
  }
  EXPECT_EQ(pictures,
            (std::vector<CGRect>{CGRectMake(50, 0, 98, 17), CGRectMake(152, 0, 98, 17), CGRectMake(148, 0, 4, 17)}));
}

TEST(PiePrinting, PrintingWithoutALayerDrawsNothing) {
  ViewHost host("pie", {0, 0});
  RecordingContext paper;
  host.view->renderForPrintingInContext(paper);
  EXPECT_TRUE(paper.snapshot()->isEmpty());
}

}  // namespace
}  // namespace zelkon
