// Twelve months as a page of a report, amounts in euros as Germans write them.
#include <zelkon/charts.h>

#include <iostream>
#include <vector>

int main() {
  using namespace zelkon::plot;
  const std::vector<Period> months{
      {"Januar", 1250.5, "1.250,50 €", "", "Jan", "2026"}, {"Februar", 980, "980,00 €", "", "Feb", "2026"},
      {"März", 1430, "1.430,00 €", "", "Mrz", "2026"},     {"April", -320, "-320,00 €", "", "Apr", "2026"},
      {"Mai", 1105.25, "1.105,25 €", "", "Mai", "2026"},   {"Juni", 890, "890,00 €", "", "Jun", "2026"}};
  Picture page{.format = Format::pdf, .width = 500, .height = 300, .locale = "de_DE"};
  try {
    save("bars.pdf", overTime(months, {.currency = "EUR"}, page));
    page.format = Format::svg;
    page.background = Color{1, 1, 1};
    save("bars.svg", overTime(months, {.currency = "EUR"}, page));
  } catch (const Error& error) {
    std::cerr << error.what() << '\n';
    return 1;
  }
}
