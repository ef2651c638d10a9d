// Blocks of page values. The page's side of the border is played by the bytes too.
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

#include "Foundation/NSException.h"
#include "Fuzz/FuzzServices.h"
#include "Fuzz/FuzzTargets.h"
#include "Hosts/Headless/PlugInHost.h"
#include "Hosts/Web/PageImports.h"
#include "Hosts/Web/PageScript.h"

namespace zelkon {
namespace {

// What the page's table answers: parts of the input itself.
std::string pageText;
int heldTables = 0;

void handOver(PlugInHost& host, const std::string& name, const uint8_t* bytes, size_t size) {
  // The module is given a block at an address that suits every number in it.
  std::vector<double> block(size / sizeof(double) + 1);
  if (size > 0) std::memcpy(block.data(), bytes, size);
  try {
    host.call(name, ReadScriptArguments(reinterpret_cast<const uint8_t*>(block.data()), size));
  } catch (const NSException&) {
    // Of a block that is not well formed, and of an operation that nothing guards.
  }
}

}  // namespace

void fuzzPageArray(const uint8_t* bytes, size_t size) {
  if (size < 2) return;
  fuzzServices();
  const bool isPie = bytes[0] % 2 == 1;
  constexpr const char* names[] = {"SetPlotData", "SetPlotOptions", "HoverEntryAtIndex", "SliceColorAtIndex"};
  const char* name = names[bytes[1] % 4];
  pageText.assign(bytes, bytes + size);
  Transcript transcript([](const std::string&) {});
  {
    PlugInHost host(isPie ? "pie" : "spendingOverTimeBarOrLine", {200, 150}, false, transcript);
    handOver(host, name, bytes + 2, size - 2);
    host.settle();
    host.mouseMoved({100, 75});
    host.waitForAnimations(2);
    handOver(host, name, bytes + 2, size - 2);
    host.resize({300, 100});
    host.mouseMoved({150, 50});
    host.settle();
  }
  if (heldTables != 0) std::abort();
}

}  // namespace zelkon

extern "C" {

void zelkon_page_call(int, const char*, size_t, const char*, size_t) {}
void zelkon_page_set(int, const char*, size_t, const char*, size_t) {}
void zelkon_page_table_hold(int) { ++zelkon::heldTables; }
void zelkon_page_table_release(int) { --zelkon::heldTables; }

size_t zelkon_page_table_text(int, size_t cell, char* bytes, size_t capacity) {
  const std::string text = zelkon::pageText.substr(cell % zelkon::pageText.size(), 1 + cell % 300);
  if (text.size() <= capacity) text.copy(bytes, text.size());
  return text.size();
}

double zelkon_page_table_number(int, size_t cell) {
  double number = 0;
  if (zelkon::pageText.size() >= sizeof number)
    std::memcpy(&number, zelkon::pageText.data() + cell % (zelkon::pageText.size() - sizeof number + 1), sizeof number);
  return number;
}
}
