// Plays a scenario: the opening, a pointer over the pie, a picture of what is shown then.
#include <zelkon/scenario.h>

#include <iostream>

int main() {
  const char* scenario = R"({"plot": "pie", "size": [300, 200], "steps": [
      {"call": "SetPlotData", "arguments": [[{"key": "Rent", "value": 3}, {"key": "Food", "value": 1}]]},
      {"wait": 0.5}, {"mouse": "moved", "at": [150, 60]}, {"wait": 0.3}, {"snapshot": "hover.png"}]})";
  try {
    zelkon::plot::play(scenario, ".", [](const std::string& line) { std::cout << line << '\n'; });
  } catch (const zelkon::plot::Error& error) {
    std::cerr << error.what() << '\n';
    return 1;
  }
}
