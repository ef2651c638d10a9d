#include <cstdio>
#include <filesystem>
#include <fstream>
#include <functional>
#include <limits>

#include "Backends/Cairo/VectorDocument.h"
#include "Cairo/CairoFixture.h"

namespace zelkon {
namespace {

class VectorDocuments : public CairoFixture {
 protected:
  using Drawing = std::function<void(CGContext&)>;
  std::string pdf(const Drawing& draw, CGSize size = CGSizeMake(200, 100)) {
    auto document = makePDFDocument(device, size);
    draw(document->context());
    return document->finish();
  }
  std::string svg(const Drawing& draw, CGSize size = CGSizeMake(200, 100)) {
    auto document = makeSVGDocument(device, size);
    draw(document->context());
    return document->finish();
  }
  static bool has(const std::string& text, const std::string& part) { return text.find(part) != std::string::npos; }
  static size_t count(const std::string& text, const std::string& part) {
    size_t found = 0;
    for (size_t at = text.find(part); at != std::string::npos; at = text.find(part, at + part.size())) ++found;
    return found;
  }
  // What a reader of the PDF can select. Nothing when the tool for it is not installed.
  static std::optional<std::string> textOfPDF(const std::string& bytes) {
    if (std::system("command -v pdftotext > /dev/null 2>&1") != 0) return std::nullopt;
    const auto file =
        std::filesystem::temp_directory_path() /
        (std::string("zelkon-") + ::testing::UnitTest::GetInstance()->current_test_info()->name() + ".pdf");
    std::ofstream(file, std::ios::binary) << bytes;
    std::string text;
    if (FILE* pipe = popen(("pdftotext -layout '" + file.string() + "' -").c_str(), "r")) {
      char buffer[4096];
      while (const size_t n = fread(buffer, 1, sizeof buffer, pipe)) text.append(buffer, n);
      pclose(pipe);
    }
    std::filesystem::remove(file);
    return text;
  }

  static CGImageRef labelImage() {
    auto bitmap =
        CGBitmapContext::create(nullptr, 100, 20, 0, CGColorSpaceGenericRGB(), CGImageAlphaInfo::premultipliedLast);
    bitmap->showTextRun({FontFaceLucidaGrande(), 12, "Groceries", CGPointMake(0, 4)});
    return bitmap->createImage();
  }
  static void drawEverything(CGContext& context) {
    context.setFillColor({0.9, 0.2, 0.1, 1});
    context.setShadow(CGSizeMake(3, -3), 2);
    context.beginTransparencyLayer();
    context.clipToRect(CGRectMake(20, 20, 60, 40));
    const auto gradient = std::make_shared<const CGGradient>(std::vector<RGBA>{{1, 1, 1, 0}, {0.66, 0.79, 0.16, 1}});
    context.fillRect(CGRectMake(0, 0, 50, 50));
    context.drawLinearGradient(gradient, CGPointMake(0, 20), CGPointMake(0, 60), 0);
    context.endTransparencyLayer();
    context.setShadowWithColor(CGSizeMake(0, 0), 0, nullptr);
    context.drawImage(CGRectMake(100, 40, 100, 20), labelImage());
    CGGroupEffects effects;
    effects.blend = CGBlendMode::overlay;
    context.beginGroup(effects, CGRectMake(0, 0, 200, 100));
    context.setFillColor({0, 0, 0, 0.3});
    context.fillEllipseInRect(CGRectMake(30, 30, 60, 40));
    context.endGroup();
    context.moveToPoint(0, 10);
    context.addLineToPoint(200, 10);
    context.strokePath();
  }
};

TEST_F(VectorDocuments, PagesOfNoSizeAreRefused) {
  const double inf = std::numeric_limits<double>::infinity();
  for (const CGSize size : {CGSizeMake(0, 10), CGSizeMake(10, -1), CGSizeMake(inf, 10), CGSizeMake(10, std::nan(""))}) {
    EXPECT_FALSE(makePDFDocument(device, size));
    EXPECT_FALSE(makeSVGDocument(device, size));
  }
}

TEST_F(VectorDocuments, PDFTextCanBeSelected) {
  const std::string bytes = pdf([](CGContext& page) {
    page.showTextRun({FontFaceLucidaGrandeBold(), 12, "Spending $1,234", CGPointMake(10, 60)});
    page.drawImage(CGRectMake(10, 20, 100, 20), labelImage());
    CGGroupEffects effects;
    effects.alpha = 0.5;
    effects.shadow = CGShadow{CGSizeMake(0, -1), 1, {0, 0, 0, 1}};
    page.beginGroup(effects, CGRectMake(0, 0, 200, 100));
    page.showTextRun({FontFaceHelvetica(), 12, "faded", CGPointMake(120, 20)});
    page.endGroup();
  });
  ASSERT_EQ(bytes.substr(0, 5), "%PDF-");
  const auto text = textOfPDF(bytes);
  if (!text) GTEST_SKIP() << "pdftotext is not installed";
  EXPECT_TRUE(has(*text, "Spending $1,234")) << *text;
  EXPECT_TRUE(has(*text, "Groceries")) << *text;
  EXPECT_TRUE(has(*text, "faded")) << *text;
}

TEST_F(VectorDocuments, AShadowedDrawingInAPDFStaysText) {
  const std::string bytes = pdf([](CGContext& page) {
    page.setShadow(CGSizeMake(1, -1), 2);
    page.showTextRun({FontFaceLucidaGrande(), 12, "bubble", CGPointMake(10, 60)});
  });
  const auto text = textOfPDF(bytes);
  if (!text) GTEST_SKIP() << "pdftotext is not installed";
  EXPECT_TRUE(has(*text, "bubble")) << *text;
}

TEST_F(VectorDocuments, EffectsThatNoPageKnowsStillGiveAPage) {
  for (const CGBlendMode blend : {CGBlendMode::destinationIn, CGBlendMode::plusLighter, CGBlendMode::copy}) {
    const auto draw = [blend](CGContext& page) {
      page.fillRect(CGRectMake(0, 0, 100, 100));
      CGGroupEffects effects;
      effects.blend = blend;
      page.beginGroup(effects, CGRectMake(0, 0, 50, 50));
      page.fillRect(CGRectMake(0, 0, 50, 50));
      page.endGroup();
      page.clearRect(CGRectMake(10, 10, 10, 10));
    };
    EXPECT_EQ(pdf(draw).substr(0, 5), "%PDF-");
    EXPECT_TRUE(has(svg(draw), "</svg>"));
  }
}

TEST_F(VectorDocuments, TheSameDrawingGivesTheSameBytes) {
  EXPECT_EQ(pdf(drawEverything), pdf(drawEverything));
  EXPECT_EQ(svg(drawEverything), svg(drawEverything));
}

TEST_F(VectorDocuments, SVGTextIsText) {
  const std::string text = svg([](CGContext& page) {
    page.setFillColor({1, 0, 0, 0.5});
    page.showTextRun({FontFaceLucidaGrandeBold(), 12, "Rent & <Food>", CGPointMake(10, 60)});
  });
  EXPECT_TRUE(has(text, ">Rent &amp; &lt;Food&gt;</text>")) << text;
  EXPECT_TRUE(has(text, "x=\"10\" y=\"40\"")) << text;
  EXPECT_TRUE(has(text, "font-size=\"12\" font-weight=\"bold\"")) << text;
  EXPECT_TRUE(has(text, "fill=\"#ff0000\" fill-opacity=\"0.5\"")) << text;
}

TEST_F(VectorDocuments, SVGTextFromTheRightKeepsItsPlace) {
  const std::string text = svg([](CGContext& page) {
    page.showTextRun({FontFaceLucidaGrande(), 12, "\xd7\xa9\xd7\x9c\xd7\x95\xd7\x9d", CGPointMake(10, 60)});
  });
  EXPECT_TRUE(has(text, "direction=\"rtl\" text-anchor=\"end\"")) << text;
}

TEST_F(VectorDocuments, SVGReplaysRecordings) {
  const std::string text = svg([](CGContext& page) { page.drawImage(CGRectMake(10, 20, 100, 20), labelImage()); });
  EXPECT_TRUE(has(text, ">Groceries</text>")) << text;
  EXPECT_FALSE(has(text, "<image")) << text;
}

TEST_F(VectorDocuments, SVGEmbedsADecodedPictureOnce) {
  start(2, 2);
  fillWhite(2, 2);
  context->flush();
  const auto image = std::make_shared<const CGImage>(surface);
  const std::string text = svg([&](CGContext& page) {
    page.drawImage(CGRectMake(10, 20, 4, 4), image);
    page.drawImage(CGRectMake(50, 20, 4, 4), image);
  });
  EXPECT_EQ(count(text, "data:image/png;base64,"), 1u) << text;
  EXPECT_EQ(count(text, "<use "), 2u) << text;
}

TEST_F(VectorDocuments, SVGCoordinatesRunDownThePage) {
  const std::string text = svg([](CGContext& page) {
    page.translateCTM(5, 0);
    page.fillRect(CGRectMake(0, 0, 10, 20));
  });
  EXPECT_TRUE(has(text, "d=\"M5 100L15 100L15 80L5 80Z\"")) << text;
}

TEST_F(VectorDocuments, SVGGradientsNeedNoMoreThanTheirStops) {
  const std::string text = svg([](CGContext& page) {
    const auto gradient = std::make_shared<const CGGradient>(std::vector<RGBA>{{1, 1, 1, 0}, {0.66, 0.79, 0.16, 1}});
    page.drawLinearGradient(gradient, CGPointMake(0, 20), CGPointMake(0, 60), 0);
  });
  EXPECT_EQ(count(text, "<stop"), 2u) << text;
  EXPECT_TRUE(has(text, "<stop offset=\"0\" stop-color=\"#ffffff\" stop-opacity=\"0\"/>")) << text;
  EXPECT_TRUE(has(text, "<stop offset=\"1\" stop-color=\"#a8c929\"/>")) << text;
}

TEST_F(VectorDocuments, SVGElementsAreBalancedWhateverIsDrawn) {
  const std::string text = svg([](CGContext& page) {
    drawEverything(page);
    page.saveGState();
    page.clipToRect(CGRectMake(0, 0, 50, 50));
    page.clearRect(CGRectMake(10, 10, 10, 10));
    CGGroupEffects mask;
    mask.blend = CGBlendMode::destinationIn;
    page.beginGroup(mask, CGRectMake(0, 0, 50, 50));
    page.fillRect(CGRectMake(0, 0, 25, 50));
    page.endGroup();
    page.restoreGState();
    page.restoreGState();
    page.beginTransparencyLayer();
    page.fillRect(CGRectMake(0, 0, 25, 50));
  });
  EXPECT_EQ(count(text, "<g"), count(text, "</g>"));
  EXPECT_EQ(count(text, "<mask"), count(text, "</mask>"));
  EXPECT_TRUE(has(text, "mix-blend-mode:overlay"));
  EXPECT_TRUE(has(text, "feGaussianBlur stdDeviation=\"1\""));
  EXPECT_TRUE(has(text, "dx=\"3\" dy=\"3\""));
}

TEST_F(VectorDocuments, SVGDrawingAfterAClipIsUndoneStandsOutsideIt) {
  const std::string page = svg([](CGContext& target) {
    target.saveGState();
    target.clipToRect({{0, 0}, {10, 10}});
    target.fillRect({{0, 0}, {20, 20}});
    target.restoreGState();
    target.fillRect({{30, 30}, {5, 5}});
  });
  EXPECT_FALSE(has(page, "url(#)")) << page;
  EXPECT_EQ(count(page, "<g"), count(page, "</g>")) << page;
}

TEST_F(VectorDocuments, SVGLeavesOutCharactersThatXMLCannotHold) {
  const std::string text = svg([](CGContext& page) {
    page.showTextRun({FontFaceHelvetica(), 12,
                      "a\x01"
                      "b\xef\xbf\xbe"
                      "c\xff",
                      CGPointMake(0, 0)});
  });
  EXPECT_TRUE(has(text, ">abc\xef\xbf\xbd</text>")) << text;
}

}  // namespace
}  // namespace zelkon
