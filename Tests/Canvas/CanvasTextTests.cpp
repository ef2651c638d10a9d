#include "Backends/Canvas/IntlLocaleServices.h"
#include "Canvas/CanvasTests.h"

namespace zelkon {

namespace {

void widths(CanvasTest& t) {
  auto advance = [&](const FontFaceRef& face, const char* text) { return t.device.advanceOfText(*face, text); };
  // Lucida Grande: 0.633 for a digit, half of that for a space (its stand-in: 0.636 * 0.971); the bold one 0.696 *
  // 0.915.
  t.expectNear(advance(FontFaceLucidaGrande(), "0"), 0.625, 0.012, "digit");
  t.expectNear(advance(FontFaceLucidaGrande(), " "), 0.3125, 0.006, "space");
  t.expectNear(advance(FontFaceLucidaGrandeBold(), "0"), 0.6366, 0.012, "bold digit");
  t.expectNear(advance(FontFaceHelvetica(), "0"), 0.556, 0.001, "Helvetica's digit");
  t.expectNear(advance(FontFaceHelvetica(), " "), 0.278, 0.001, "Helvetica's space");
  t.expectNear(advance(FontFaceHelvetica(), ""), 0, 0, "nothing");
  const double one = advance(FontFaceHelvetica(), "0");
  t.expectNear(advance(FontFaceHelvetica(), "0000000000"), 10 * one, 1e-4, "ten digits");
}

// The first and the last column with ink.
std::pair<int, int> inkColumns(CanvasTest& t) {
  const std::vector<uint8_t> bytes = t.device.readPixels(*t.surface);
  const int width = t.surface->pixelWidth();
  int first = -1, last = -1;
  for (int x = 0; x < width; ++x)
    for (int y = 0; y < t.surface->pixelHeight(); ++y)
      if (bytes[static_cast<size_t>(y * width + x) * 4 + 3] > 0) {
        if (first < 0) first = x;
        last = x;
      }
  return {first, last};
}

void ink(CanvasTest& t) {
  for (const double size : {9.0, 12.0, 20.0}) {
    t.start(200, 40);
    t.context->showTextRun({FontFaceLucidaGrande(), size, "HHHHHHHH", {30, 10}});
    const double end = 30 + size * t.device.advanceOfText(*FontFaceLucidaGrande(), "HHHHHHHH");
    const auto [first, last] = inkColumns(t);
    t.expect(first >= 30 && first <= 33, "starts at " + std::to_string(first));
    t.expect(last <= end && last >= end - 4, "ends at " + std::to_string(last) + " of " + std::to_string(end));
  }
}

// A page may have new texts for ever: 3 MB of them, each drawn twice in a row. canvas.test.mjs looks at what is kept.
void longTexts(CanvasTest& t) {
  t.start(8, 8);
  for (int i = 0; i < 300; ++i) {
    const std::string text = std::to_string(i) + std::string(10000, ' ') + "H";
    for (int twice = 0; twice < 2; ++twice) t.context->showTextRun({FontFaceHelvetica(), 8, text, {0, 0}});
  }
  t.context->showTextRun({FontFaceHelvetica(), 8, "HH", {0, 0}});
  t.expect(inkColumns(t).first >= 0, "the last text is drawn");
}

void baseline(CanvasTest& t) {
  t.start(40, 40);
  t.context->setFillColor({1, 0, 0, 1});
  t.context->showTextRun({FontFaceHelvetica(), 20, "H", {5, 10}});
  int above = 0, below = 0, top = 0;
  for (int x = 0; x < 40; ++x) {
    above += t.pixel(x, 29).red;
    below += t.pixel(x, 30).red;
    top += t.pixel(x, 40 - 10 - 17).red;
  }
  t.expect(above > 255, "ink above the baseline");
  t.expect(below == 0, "none below it");
  t.expect(top == 0, "none above the capitals");
}

void fromTheRight(CanvasTest& t) {
  // Hebrew with a full stop, which stands to the left of it: the run still starts at its origin.
  const char* text = "\u05d0\u05d0\u05d0.";
  t.start(100, 30);
  t.context->showTextRun({FontFaceLucidaGrande(), 20, text, {20, 8}});
  const auto [first, last] = inkColumns(t);
  const double end = 20 + 20 * t.device.advanceOfText(*FontFaceLucidaGrande(), text);
  t.expect(first >= 20 && first <= 24, "starts at " + std::to_string(first));
  t.expect(last <= end && last > end - 4, "ends at " + std::to_string(last) + " of " + std::to_string(end));
  int dot = 0;
  for (int row = 0; row < 15; ++row) dot += t.pixel(first + 1, row).alpha;
  t.expect(dot == 0, "a low dot comes first");
}

void oddSizes(CanvasTest& t) {
  t.start(40, 40);
  t.context->showTextRun({FontFaceHelvetica(), 20, "H", {5, 10}});
  const auto columns = inkColumns(t);
  t.start(40, 40);
  t.context->saveGState();
  t.context->scaleCTM(100, 100);
  t.context->showTextRun({FontFaceHelvetica(), 0.2, "H", {0.05, 0.1}});
  t.context->restoreGState();
  t.expect(inkColumns(t) == columns, "small text magnified is as large as text");
  t.start(40, 40);
  for (const double size : {1e-7, 1e7, 1e300}) t.context->showTextRun({FontFaceHelvetica(), size, "l", {5, 10}});
  t.fill({1, 0, 0, 1}, CGRectMake(0, 0, 40, 40));
  t.expectPixel(1, 1, {255, 0, 0, 255});
}

void manyTexts(CanvasTest& t) {
  t.start(40, 20);
  // More different texts than are remembered, the first one again at the end.
  for (int i = 0; i < 5000; ++i) t.context->showTextRun({FontFaceHelvetica(), 1, std::to_string(i), {-50, 0}});
  t.context->showTextRun({FontFaceHelvetica(), 12, "0", {2, 2}});
  const auto [first, last] = inkColumns(t);
  t.expect(first >= 2 && last < 2 + 7, "one digit only");
}

void locale(CanvasTest& t) {
  const IntlLocaleServices services;
  t.expect(services.formatNumber(1234567, std::nullopt, 0) == "1,234,567", "grouping");
  t.expect(services.formatNumber(-60, "USD", 0) == "-$60", "negative amount");
  t.expect(services.formatNumber(1234, "CHF", 0) == "CHF\u00a01,234", "a currency without a sign");
  t.expect(services.formatNumber(1e200, std::nullopt, 0).size() == 267, "a text longer than the first guess");
  t.expect(services.monthNamed("January") == 1, "January");
  t.expect(services.monthNamed("SEP") == 9, "SEP");
  t.expect(!services.monthNamed("Sept"), "Sept");
  t.expect(services.monthsPerYear() == 12, "months");
}

}  // namespace

std::vector<NamedCanvasTest> canvasTextTests() {
  return {{"widths are those of the named faces and add up", widths},
          {"ink starts at the origin and ends with the advance", ink},
          {"letters stand upright on the baseline", baseline},
          {"text that reads from the right keeps its place", fromTheRight},
          {"sizes beyond reason do no harm", oddSizes},
          {"texts beyond the remembered ones are still the right ones", manyTexts},
          {"the locale's texts reach the module", locale},
          {"texts are new for ever", longTexts}};
}

}  // namespace zelkon
