// Renders a pie with the installed library and looks at the picture's size.
#include <exception>
#include <iostream>
#include <string>

#include "Hosts/Headless/OutputFile.h"
#include "Hosts/Headless/Scenario.h"
#include "Hosts/Headless/ScenarioPlayer.h"

namespace {

const char kChart[] = R"({"plot": "pie", "size": [300, 200], "scale": 2,
  "data": [{"key": "Rent", "value": 1200}, {"key": "Groceries", "value": 412.5}]})";

// A big-endian number of a PNG's header.
unsigned numberAt(const std::string& bytes, size_t offset) {
  unsigned number = 0;
  for (size_t i = 0; i < 4; ++i) number = number << 8 | static_cast<unsigned char>(bytes.at(offset + i));
  return number;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 2) return 2;
  try {
    zelkon::HeadlessServices services;
    const zelkon::Scenario scenario = zelkon::Scenario::parse(kChart, "consumer");
    const std::string png = zelkon::renderScenario(scenario, "consumer", {}, "png", services,
                                                   [](const std::string& line) { std::cerr << line << '\n'; });
    zelkon::writeWholeFile(argv[1], png);
    const std::string written = zelkon::readWholeFile(argv[1]);
    if (written != png || written.substr(1, 3) != "PNG") return 1;
    return numberAt(written, 16) == 600 && numberAt(written, 20) == 400 ? 0 : 1;
  } catch (const std::exception& error) {
    std::cerr << error.what() << '\n';
    return 1;
  }
}
