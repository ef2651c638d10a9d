// The pie's layer tree: containers, slices, labels, gloss and floor shadow.
#include <gtest/gtest.h>

#include <cmath>

#include "Classes/Views/PiePlotView.h"
#include "QuartzCore/CATextLayer.h"
#include "Support/ViewHost.h"

namespace zelkon {
namespace {

constexpr double pi = 3.141592653589793;

PiePlotView& pieOf(ViewHost& host) { return static_cast<PiePlotView&>(*host.view); }

std::vector<std::shared_ptr<PieSliceLayer>> slicesOf(ViewHost& host) {
  std::vector<std::shared_ptr<PieSliceLayer>> slices;
  for (const CALayerRef& layer : pieOf(host).slicesLayer()->sublayers())
    slices.push_back(std::dynamic_pointer_cast<PieSliceLayer>(layer));
  return slices;
}

std::vector<CALayerRef> labelsOf(ViewHost& host) { return pieOf(host).textLabelsLayer()->sublayers(); }

std::shared_ptr<CATextLayer> textOf(const CALayerRef& label) {
  return std::dynamic_pointer_cast<CATextLayer>(label->sublayers().at(0));
}

void expectTransform(const CATransform3D& t, double m11, double m12, double m21, double m22) {
  EXPECT_NEAR(t.m11, m11, 1e-12);
  EXPECT_NEAR(t.m12, m12, 1e-12);
  EXPECT_NEAR(t.m21, m21, 1e-12);
  EXPECT_NEAR(t.m22, m22, 1e-12);
}

void expectTurned(const CALayerRef& layer, double angle) {
  expectTransform(layer->transform(), std::cos(angle), std::sin(angle), -std::sin(angle), std::cos(angle));
}

void expectPoint(CGPoint p, double x, double y, double tolerance = 1e-12) {
  EXPECT_NEAR(p.x, x, tolerance);
  EXPECT_NEAR(p.y, y, tolerance);
}

// One label of the given text at rest.
CALayerRef labelWithText(ViewHost& host, const std::string& text) {
  host.call("SetPlotData", {pageArray({pageEntry(text, 1)})});
  return labelsOf(host).at(0);
}

TEST(PieLayout, TheTreeOfAViewOf300By200) {
  ViewHost host;
  PiePlotView& pie = pieOf(host);
  const CALayerRef root = pie.layer();
  EXPECT_EQ(root->bounds(), CGRectMake(0, 0, 300, 200));
  EXPECT_EQ(root->autoresizingMask(), 18u);
  EXPECT_TRUE(pie.wantsLayer());

  EXPECT_EQ(pie.plotLayer()->frame(), CGRectMake(0, 17, 300, 183));
  EXPECT_EQ(pie.plotLayer()->superlayer(), root);
  EXPECT_EQ(pie.plotLayer()->autoresizingMask(), 18u);
  EXPECT_EQ(pie.plotLayer()->sublayers(),
            (std::vector<CALayerRef>{pie.slicesLayer(), pie.plotHighlightLayer(), pie.textLabelsLayer()}));
  for (const CALayerRef& layer : pie.plotLayer()->sublayers()) {
    EXPECT_EQ(layer->bounds(), CGRectMake(0, 0, 300, 183));
    EXPECT_EQ(layer->position(), CGPointMake(150, 91.5));
    EXPECT_EQ(layer->autoresizingMask(), 18u);
  }
  const CALayerProperties& slices = pie.slicesLayer()->model();
  EXPECT_EQ(slices.edgeAntialiasingMask, 0u);
  EXPECT_EQ(slices.shadowOpacity, 0.2);
  EXPECT_EQ(slices.shadowOffset, CGSizeMake(2, -2));
  EXPECT_EQ(slices.shadowRadius, 2.5);

  const CALayerRef shadow = pie.dropShadowLayer();
  EXPECT_EQ(shadow->superlayer(), root);
  EXPECT_EQ(shadow->anchorPoint(), CGPointMake(0.5, 0));
  EXPECT_EQ(shadow->autoresizingMask(), 10u);
  EXPECT_EQ(shadow->edgeAntialiasingMask(), 0u);
  EXPECT_TRUE(shadow->masksToBounds());
  EXPECT_EQ(shadow->bounds().size, CGSizeMake(200.75, 17));
  EXPECT_EQ(shadow->position(), CGPointMake(49.625 + 200.75 / 2, 0));
}

TEST(PieLayout, ContainersAreStoredOnTheRootUnderTheirNames) {
  ViewHost host;
  PiePlotView& pie = pieOf(host);
  const std::pair<const char*, CALayerRef> containers[] = {
      {"com.zelkon.plotLayer", pie.plotLayer()},
      {"com.zelkon.slicesLayer", pie.slicesLayer()},
      {"com.zelkon.plotHighlightLayer", pie.plotHighlightLayer()},
      {"com.zelkon.textLabelsLayer", pie.textLabelsLayer()},
      {"com.zelkon.dropShadowLayer", pie.dropShadowLayer()},
  };
  host.setFrame(CGRectMake(0, 0, 320, 240));
  for (const auto& [name, layer] : containers) {
    EXPECT_EQ(pie.layer()->valueForKey(name).object<CALayer>(), layer) << name;
    EXPECT_EQ(layer->name(), name);
  }
  EXPECT_EQ(pie.slicesLayer(), containers[1].second) << "found again, not made anew";
}

TEST(PieLayout, AFrameChangeCarriesTheContainersAlongAndRebuildsTheirContents) {
  ViewHost host;
  host.display();
  host.call("SetPlotData", {pageAmounts({1, 3})});
  const std::weak_ptr<PieSliceLayer> before = slicesOf(host)[0];
  host.setFrame(CGRectMake(0, 0, 400, 260));
  PiePlotView& pie = pieOf(host);
  EXPECT_EQ(pie.plotLayer()->frame(), CGRectMake(0, 17, 400, 243));
  EXPECT_EQ(pie.slicesLayer()->bounds(), CGRectMake(0, 0, 400, 243));
  EXPECT_TRUE(before.expired());
  EXPECT_EQ(slicesOf(host)[0]->radius(), 243 * 0.5 - 10);
  EXPECT_EQ(slicesOf(host)[0]->bounds(), CGRectMake(0, 0, 400, 243));
  EXPECT_EQ(slicesOf(host)[0]->position(), CGPointMake(200, 121.5));
  EXPECT_EQ(pie.plotHighlightLayer()->sublayers().size(), 2u);
  EXPECT_EQ(pie.dropShadowLayer()->position().y, 60) << "the margin below the strip is the flexible one";
  EXPECT_EQ(pie.dropShadowLayer()->bounds().size, CGSizeMake(300.75, 17));
  EXPECT_EQ(pie.plotLayer()->sublayers(),
            (std::vector<CALayerRef>{pie.slicesLayer(), pie.plotHighlightLayer(), pie.textLabelsLayer()}));
}

TEST(PieLayout, AnEmptyViewLaysNothingOut) {
  ViewHost host("pie", {0, 0});
  host.setFrame(CGRectMake(0, 0, 0, 200));
  host.call("SetPlotData", {pageAmounts({1, 3})});
  EXPECT_TRUE(slicesOf(host).empty());
  EXPECT_TRUE(pieOf(host).plotHighlightLayer()->sublayers().empty());
  EXPECT_TRUE(pieOf(host).dropShadowLayer()->sublayers().empty());
  host.call("HoverEntryAtIndex", {true, 0});
  host.setFrame(CGRectMake(0, 0, 300, 200));
  EXPECT_EQ(slicesOf(host).size(), 2u);
  EXPECT_TRUE(host.log.empty());
}

TEST(PieLayout, AViewThatGrowsFromNothingHasTheGeometryOfItsNewSize) {
  ViewHost host("pie", {0, 0});
  host.setFrame(CGRectMake(0, 0, 0, 0));
  host.setFrame(CGRectMake(0, 0, 300, 200));
  EXPECT_EQ(pieOf(host).layer()->bounds(), CGRectMake(0, 0, 300, 200));
  EXPECT_EQ(pieOf(host).plotLayer()->frame(), CGRectMake(0, 17, 300, 183));
  EXPECT_EQ(pieOf(host).slicesLayer()->bounds().size, CGSizeMake(300, 183));
}

// Where the slices turn, in the coordinates of hit testing.
CGPoint centreOfSlices(ViewHost& host) {
  const CGRect plot = pieOf(host).plotLayer()->frame(), slices = pieOf(host).slicesLayer()->frame();
  return {plot.origin.x + CGRectGetMidX(slices), plot.origin.y + CGRectGetMidY(slices)};
}

TEST(PieLayout, AViewOnceTooLowForThePlotGetsItsGeometryBack) {
  for (const double low : {16.0, 10.0, 1.0, 0.0}) {
    ViewHost host;
    host.call("SetPlotData", {pageAmounts({1, 3})});
    host.display();
    host.setFrame(CGRectMake(0, 0, 280, low));
    host.setFrame(CGRectMake(0, 0, 290, low / 2));
    host.setFrame(CGRectMake(0, 0, 300, 200));
    EXPECT_EQ(pieOf(host).plotLayer()->frame(), CGRectMake(0, 17, 300, 183)) << low;
    for (const CALayerRef& layer : pieOf(host).plotLayer()->sublayers())
      EXPECT_EQ(layer->frame(), CGRectMake(0, 0, 300, 183)) << low << layer->name();
    EXPECT_EQ(slicesOf(host)[0]->bounds(), CGRectMake(0, 0, 300, 183)) << low;
    EXPECT_EQ(centreOfSlices(host), CGPointMake(150, 108.5)) << low;
    EXPECT_EQ(pieOf(host).dropShadowLayer()->frame(), CGRectMake(49.625, 0, 200.75, 17)) << low;
  }
}

TEST(PieLayout, AViewThatBeginsTooLowForThePlotHasTheGeometryOfItsLaterSize) {
  for (const double low : {16.0, 10.0, 1.0}) {
    ViewHost host("pie", {300, low});
    host.call("SetPlotData", {pageAmounts({1, 3})});
    EXPECT_EQ(pieOf(host).plotLayer()->frame(), CGRectMake(0, 17, 300, 0)) << low;
    host.display();
    host.setFrame(CGRectMake(0, 0, 300, 200));
    EXPECT_EQ(pieOf(host).plotLayer()->frame(), CGRectMake(0, 17, 300, 183)) << low;
    EXPECT_EQ(centreOfSlices(host), CGPointMake(150, 108.5)) << low;
  }
}

TEST(PieLayout, AViewDisplayedWithoutASizeHasTheGeometryOfItsLaterSize) {
  ViewHost host("pie", {0, 0});
  host.setFrame(CGRectMake(10, 10, 0, 0));
  host.display();
  host.setFrame(CGRectMake(0, 0, 300, 200));
  EXPECT_EQ(pieOf(host).plotLayer()->frame(), CGRectMake(0, 17, 300, 183));
  EXPECT_EQ(pieOf(host).slicesLayer()->frame(), CGRectMake(0, 0, 300, 183));
  EXPECT_EQ(pieOf(host).dropShadowLayer()->frame(), CGRectMake(49.625, 0, 200.75, 17));
}

TEST(PieLayout, AFloorShadowOnceWithoutWidthGetsItsMarginsBack) {
  for (const double narrow : {99.0, 60.0, 1.0, 0.0}) {
    ViewHost host;
    host.display();
    host.setFrame(CGRectMake(0, 0, narrow, 200));
    EXPECT_EQ(pieOf(host).dropShadowLayer()->bounds().size, CGSizeMake(0, 17)) << narrow;
    host.setFrame(CGRectMake(0, 0, narrow / 2, 200));
    host.setFrame(CGRectMake(0, 0, 300, 200));
    EXPECT_EQ(pieOf(host).dropShadowLayer()->frame(), CGRectMake(49.625, 0, 200.75, 17)) << narrow;
    EXPECT_EQ(pieOf(host).dropShadowLayer()->sublayers().size(), 3u) << narrow;
  }
}

TEST(PieLayout, AMissingPictureOfTheShadowEndsTheLayoutAndNothingElse) {
  ViewHost host("pie", {0, 0});
  NSBundle::mainBundle().setLoader([](const std::string&) { return std::nullopt; });
  EXPECT_THROW(host.setFrame(CGRectMake(0, 0, 300, 200)), NSException);
  EXPECT_FALSE(CATransaction::disableActions()) << "the transaction was closed";
  NSBundle::mainBundle().setLoader(ViewHost::resource);
  host.setFrame(CGRectMake(0, 0, 300, 200));
  EXPECT_EQ(pieOf(host).dropShadowLayer()->sublayers().size(), 3u);
}

TEST(PieLayout, WithoutDataThereIsNoSlice) {
  ViewHost host;
  EXPECT_TRUE(slicesOf(host).empty());
  EXPECT_EQ(pieOf(host).plotHighlightLayer()->sublayers().size(), 2u);
}

TEST(PieLayout, OneEntryIsOneFullDiscWithItsLabelAtTheCentre) {
  ViewHost host;
  host.call("SetPlotData", {pageArray({pageEntry("Rent", 1200)})});
  ASSERT_EQ(slicesOf(host).size(), 1u);
  const auto slice = slicesOf(host)[0];
  EXPECT_EQ(slice->fraction(), 1.0);
  EXPECT_EQ(slice->radius(), 81.5);
  EXPECT_EQ(slice->position(), CGPointMake(150, 91.5));
  const RGBA color = slice->sliceColor()->rgba();
  EXPECT_NEAR(color.red, 0.205, 1e-6);
  EXPECT_NEAR(color.green, 0.2296, 1e-6);
  EXPECT_NEAR(color.blue, 0.82, 1e-6);
  ASSERT_EQ(labelsOf(host).size(), 1u);
  EXPECT_EQ(labelsOf(host)[0]->position(), CGPointMake(150, 91.5));
}

TEST(PieLayout, NoEntriesAreOneGreyDiscWithoutALabel) {
  ViewHost host;
  host.call("SetPlotData", {pageAmounts({1, 2})});
  host.call("SetPlotData", {pageArray({})});
  ASSERT_EQ(slicesOf(host).size(), 1u);
  const auto slice = slicesOf(host)[0];
  EXPECT_EQ(slice->fraction(), 1.0);
  EXPECT_EQ(slice->radius(), 81.5);
  EXPECT_EQ(slice->bounds(), CGRectMake(0, 0, 300, 183));
  EXPECT_EQ(slice->position(), CGPointMake(150, 91.5));
  EXPECT_EQ(slice->sliceColor()->components(), (std::vector<double>{0.55, 1}));
  EXPECT_TRUE(labelsOf(host).empty());
}

TEST(PieLayout, SlicesTurnByTheSharesBeforeThemAndLabelsLieOnTheBisectors) {
  ViewHost host;
  host.call("SetPlotData", {pageAmounts({1, 1, 2})});
  const auto slices = slicesOf(host);
  const auto labels = labelsOf(host);
  ASSERT_EQ(slices.size(), 3u);
  ASSERT_EQ(labels.size(), 3u);
  const double turns[] = {0, pi / 2, pi}, middles[] = {pi / 4, 3 * pi / 4, 3 * pi / 2}, shares[] = {0.25, 0.25, 0.5};
  for (size_t i = 0; i < 3; ++i) {
    EXPECT_EQ(slices[i]->fraction(), shares[i]);
    expectTurned(slices[i], turns[i]);
    EXPECT_EQ(slices[i]->baseTransform(), slices[i]->transform());
    const double r = 81.5 * 0.66;
    expectPoint(labels[i]->position(), 150 + std::cos(middles[i]) * r, 91.5 + std::sin(middles[i]) * r, 1e-5);
    const PiePlotEntryRef entry = pieOf(host).piePlotData()->entries()[i];
    EXPECT_EQ(entry->layerValue.lock(), slices[i]);
    EXPECT_EQ(entry->textLayerValue.lock(), labels[i]);
  }
}

TEST(PieLayout, LabelsLieAt066OfTheRadius) {
  ViewHost host;
  host.call("SetPlotData", {pageAmounts({1, 2, 1})});
  EXPECT_NEAR(labelsOf(host)[1]->position().x, 150 - 53.79, 1e-12) << "straight to the left";
}

TEST(PieLayout, ANewLayoutThrowsTheOldLayersAway) {
  ViewHost host;
  host.call("SetPlotData", {pageAmounts({1, 1, 2})});
  const std::weak_ptr<CALayer> slice = slicesOf(host)[0], label = labelsOf(host)[0];
  host.call("SetPlotData", {pageAmounts({5})});
  EXPECT_EQ(slicesOf(host).size(), 1u);
  EXPECT_EQ(labelsOf(host).size(), 1u);
  EXPECT_TRUE(slice.expired());
  EXPECT_TRUE(label.expired());
}

TEST(PieLayout, TheGlossIsTwoMaskedDiscsBlendedOver) {
  ViewHost host;
  PiePlotView& pie = pieOf(host);
  const CALayerRef highlight = pie.plotHighlightLayer();
  ASSERT_NE(highlight->compositingFilter(), nullptr);
  EXPECT_STREQ(CIFilterName(*highlight->compositingFilter()), "CIOverlayBlendMode");
  const auto discs = highlight->sublayers();
  ASSERT_EQ(discs.size(), 2u);
  const double opacities[] = {0.5f, 0.7f};
  const CGPoint centers[] = {{212.755, 166.48}, {91.32, 45.86}};
  const RGBA colors[] = {{0, 0, 0, 1}, {1, 1, 1, 1}};
  for (size_t i = 0; i < 2; ++i) {
    const CALayerRef& disc = discs[i];
    EXPECT_EQ(disc->frame(), CGRectMake(0, 0, 300, 183));
    EXPECT_EQ(disc->autoresizingMask(), 18u);
    EXPECT_EQ(disc->opacity(), opacities[i]);
    EXPECT_EQ(disc->contentsGravity(), CAContentsGravity::center);
    ASSERT_NE(disc->contents(), nullptr);
    EXPECT_EQ(disc->contents()->size(), CGSizeMake(163, 163));
    const auto& commands = disc->contents()->recording()->commands();
    ASSERT_EQ(commands.size(), 1u) << "cleared before the second disc";
    const auto& fill = std::get<DisplayList::Fill>(commands[0]);
    EXPECT_EQ(fill.color, colors[i]);
    EXPECT_EQ(fill.path.boundingBox(), CGRectMake(0, 0, 163, 163));
    ASSERT_NE(disc->mask(), nullptr);
    EXPECT_EQ(disc->mask()->frame(), CGRectMake(0, 0, 300, 183));
    EXPECT_EQ(disc->mask()->autoresizingMask(), 18u);
    ASSERT_EQ(disc->mask()->filters().size(), 1u);
    const auto& gradient = std::get<CIGaussianGradient>(*disc->mask()->filters()[0]);
    expectPoint(gradient.inputCenter, centers[i].x, centers[i].y, 1e-4);
    EXPECT_NEAR(gradient.inputRadius, 158.925, 1e-4);
    EXPECT_EQ(gradient.inputColor0, (RGBA{0, 0, 0, 0}));
    EXPECT_EQ(gradient.inputColor1, colors[i]);
  }
  const auto& shade = std::get<CIGaussianGradient>(*discs[0]->mask()->filters()[0]);
  EXPECT_EQ(shade.inputRadius, 81.5 * 1.9500000476837158) << "single-precision constants";
  EXPECT_EQ(shade.inputCenter.x, 150 + 0.7699999809265137 * 81.5);
}

TEST(PieLayout, AViewTooSmallForABitmapStillHasBothDiscsWithoutAPicture) {
  ViewHost host("pie", {15, 30});
  host.call("SetPlotData", {pageAmounts({1, 3})});
  const auto discs = pieOf(host).plotHighlightLayer()->sublayers();
  ASSERT_EQ(discs.size(), 2u);
  for (const CALayerRef& disc : discs) EXPECT_EQ(disc->contents(), nullptr);
  EXPECT_LT(pieOf(host).pieRadius(), 0);
  EXPECT_EQ(slicesOf(host).size(), 2u);
}

TEST(PieLayout, TheFloorShadowIsTwoCapsAndACentre) {
  ViewHost host;
  const auto pieces = pieOf(host).dropShadowLayer()->sublayers();
  ASSERT_EQ(pieces.size(), 3u);
  EXPECT_EQ(pieces[0]->frame(), CGRectMake(0, 0, 98, 17));
  EXPECT_EQ(pieces[0]->anchorPoint(), CGPointMake(0, 0));
  EXPECT_EQ(pieces[0]->position(), CGPointMake(0, 0));
  EXPECT_EQ(pieces[0]->autoresizingMask(), 1u);
  EXPECT_EQ(pieces[1]->frame(), CGRectMake(102.75, 0, 98, 17));
  EXPECT_EQ(pieces[1]->anchorPoint(), CGPointMake(0, 0));
  EXPECT_EQ(pieces[1]->autoresizingMask(), 4u);
  EXPECT_EQ(pieces[2]->frame(), CGRectMake(98, 0, 4.75, 17));
  EXPECT_EQ(pieces[2]->anchorPoint(), CGPointMake(0.5, 0));
  EXPECT_EQ(pieces[2]->autoresizingMask(), 2u);
  for (const CALayerRef& piece : pieces) {
    EXPECT_EQ(piece->edgeAntialiasingMask(), 0u);
    EXPECT_NE(piece->contents(), nullptr);
    EXPECT_EQ(piece->contentsGravity(), CAContentsGravity::resize);
  }
}

TEST(PieLayout, ANarrowFloorShadowHasCapsOfHalfItsWidthAndNoCentre) {
  ViewHost host("pie", {200, 200});
  const CALayerRef shadow = pieOf(host).dropShadowLayer();
  const double width = shadow->bounds().size.width;
  ASSERT_LE(width, 196);
  const auto pieces = shadow->sublayers();
  ASSERT_EQ(pieces.size(), 2u);
  EXPECT_EQ(pieces[0]->frame(), CGRectMake(0, 0, width / 2, 17));
  EXPECT_EQ(pieces[1]->frame(), CGRectMake(width / 2, 0, width / 2, 17));
}

TEST(PieLayout, ALabelIsHiddenUpsideDownTextOnARoundedBackground) {
  ViewHost host;
  // At 12 points every character is 7.2 wide here: 4 are 28.8. The first baseline lies 9.240 below the top.
  const CALayerRef label = labelWithText(host, "Rent");
  EXPECT_TRUE(label->isHidden());
  EXPECT_EQ(label->cornerRadius(), 5);
  EXPECT_EQ(label->backgroundColor()->components(), (std::vector<double>{1, 0.6}));
  EXPECT_EQ(label->bounds(), CGRectMake(-6, -6, 29 + 12, 10 + 12));
  EXPECT_EQ(label->transform(), CATransform3DIdentity);
  const auto text = textOf(label);
  ASSERT_NE(text, nullptr);
  EXPECT_EQ(text->bounds(), CGRectMake(0, 0, 29, 10));
  EXPECT_EQ(text->position(), CGPointMake(14.5, 5));
  expectTransform(text->transform(), -1, 0, 0, -1);
  EXPECT_EQ(text->plainString(), "Rent");
  EXPECT_EQ(text->fontSize(), 12);
  EXPECT_EQ(text->font().pointSize(), 12);
  EXPECT_EQ(text->font().face()->family, "Helvetica");
  EXPECT_EQ(text->foregroundColor()->components(), (std::vector<double>{0.1, 1}));
  EXPECT_TRUE(text->isWrapped());
}

TEST(PieLayout, LabelsShareTheirTwoColours) {
  ViewHost host;
  host.call("SetPlotData", {pageAmounts({1, 1})});
  const auto labels = labelsOf(host);
  EXPECT_EQ(labels[0]->backgroundColor(), labels[1]->backgroundColor());
  EXPECT_EQ(textOf(labels[0])->foregroundColor(), textOf(labels[1])->foregroundColor());
}

TEST(PieLayout, ALabelTooLongIsCutInTheMiddle) {
  ViewHost host;
  const CALayerRef label = labelWithText(host, "Home maintenance, insurance and repairs of the roof");
  const CGSize size = label->bounds().size;
  EXPECT_LE(size.width, 132);
  EXPECT_GT(size.width, 132 - 8);
  EXPECT_EQ(size.height, 10 + 12);
}

// The lines that a label's text layer draws.
std::vector<CGTextRun> runsOf(const CALayerRef& label) {
  RecordingContext context;
  textOf(label)->drawInContext(context);
  std::vector<CGTextRun> runs;
  const auto list = context.snapshot();
  for (const DisplayList::Command& command : list->commands())
    if (const auto* text = std::get_if<DisplayList::Text>(&command)) runs.push_back(text->run);
  return runs;
}

TEST(PieLayout, TheCutShowsAsAnEllipsisBetweenHeadAndTail) {
  ViewHost host;
  std::string shown;
  for (const CGTextRun& run : runsOf(labelWithText(host, "Maintenance-insurance-and-repairs-of-the-roof")))
    shown += run.text;
  EXPECT_EQ(shown.substr(0, 4), "Main") << shown;
  EXPECT_NE(shown.find("\u2026"), std::string::npos) << shown;
  EXPECT_EQ(shown.substr(shown.size() - 4), "roof") << shown;
}

TEST(PieLayout, LinesOfALabelAreCentred) {
  ViewHost host;
  const auto runs = runsOf(labelWithText(host, "a\nheating"));
  ASSERT_EQ(runs.size(), 2u);
  // 7.2 and 50.4 wide, in a box of 51.
  EXPECT_NEAR(runs[0].origin.x, (51 - 7.2) / 2, 1e-9);
  EXPECT_NEAR(runs[1].origin.x, (51 - 50.4) / 2, 1e-9);
}

TEST(PieLayout, LabelsOfSeveralLinesAreAtMost132By42) {
  ViewHost host;
  // The second baseline lies a line of 14 points below the first: 9.240 + 14 = 23.24.
  EXPECT_EQ(labelWithText(host, "Rent\nand heating")->bounds().size.height, 24 + 12);
  const CGSize size = labelWithText(host, "one\ntwo\nthree\nfour\nfive")->bounds().size;
  EXPECT_LE(size.width, 132);
  EXPECT_LE(size.height, 42);
}

TEST(PieLayout, AnEmptyLabelHasNoSize) {
  ViewHost host;
  const CALayerRef label = labelWithText(host, "");
  EXPECT_EQ(textOf(label)->bounds(), CGRectMake(0, 0, 0, 0));
  EXPECT_EQ(label->bounds(), CGRectMake(-6, -6, 12, 12));
}

TEST(PieLayout, BeforeTheFirstDisplayContainersAreInTheirStartStates) {
  ViewHost host;
  PiePlotView& pie = pieOf(host);
  ASSERT_TRUE(pie.initialDisplay());
  host.call("SetPlotData", {pageAmounts({1, 3})});
  EXPECT_EQ(pie.slicesLayer()->opacity(), 0);
  expectTransform(pie.slicesLayer()->transform(), -0.1, 0, 0, -0.1);
  EXPECT_EQ(pie.plotHighlightLayer()->opacity(), 0);
  expectTransform(pie.plotHighlightLayer()->transform(), 0.1, 0, 0, 0.1);
  EXPECT_EQ(pie.dropShadowLayer()->opacity(), 0);
  expectTransform(pie.dropShadowLayer()->transform(), 0.01, 0, 0, 1);
  EXPECT_EQ(pie.textLabelsLayer()->opacity(), 1);
}

TEST(PieLayout, TwoLayoutsBeforeTheFirstDisplayStackTheirStartStates) {
  ViewHost host;
  host.call("SetPlotData", {pageAmounts({1, 3})});
  host.call("SetPlotData", {pageAmounts({1, 3})});
  expectTransform(pieOf(host).slicesLayer()->transform(), 0.01, 0, 0, 0.01);
}

}  // namespace
}  // namespace zelkon
