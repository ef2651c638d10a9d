// Blocks of page values. The page's side of the border is played by the bytes too.
#include <cstdlib>
#include <cstring>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "Foundation/NSException.h"
#include "Foundation/NSLog.h"
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

// A page with one view. What it does when the view calls it is said by a byte: nothing, or any of what a page can.
class FuzzedPage {
 public:
  FuzzedPage(const char* plot, uint8_t reaction)
      : transcript_([this](const std::string&) { react(); }),
        reaction_(reaction),
        host_(std::in_place, plot, CGSize{200, 150}, ChartLayout::literal, transcript_) {}
  ~FuzzedPage() { reaction_ = 0; }
  FuzzedPage(const FuzzedPage&) = delete;
  FuzzedPage& operator=(const FuzzedPage&) = delete;
  PlugInHost& host() { return *host_; }

  // The page hands this over, now and whenever it calls again.
  void handOver(const char* name, const uint8_t* bytes, size_t size) {
    name_ = name;
    // The module is given a block at an address that suits every number in it.
    block_.assign(size / sizeof(double) + 1, 0);
    if (size > 0) std::memcpy(block_.data(), bytes, size);
    size_ = size;
    callAgain();
  }

 private:
  void callAgain() {
    try {
      host().call(name_, ReadScriptArguments(reinterpret_cast<const uint8_t*>(block_.data()), size_));
    } catch (const NSException&) {
      // Of a block that is not well formed, and of an operation that nothing guards.
    }
  }
  void react() {
    if (++calls_ > 20) return;
    switch (reaction_ % 8) {
      case 1:
        return callAgain();
      case 2:
        return host().mouseMoved({40, 60});
      case 3:
        return host().mouseExited();
      case 4:
        return host().setFrame({90, 220});
      case 5:
        return host().stop();
      case 6:
        return host().destroy();
      case 7:
        host().call("HoverEntryAtIndex", {Value(true), Value(1.0)});
        return host().mouseDown({150, 75});
      default:
        return;
    }
  }

  Transcript transcript_;
  uint8_t reaction_;
  int calls_ = 0;
  const char* name_ = "";
  std::vector<double> block_;
  size_t size_ = 0;
  std::optional<PlugInHost> host_;
};

}  // namespace

void fuzzPageArray(const uint8_t* bytes, size_t size) {
  constexpr size_t headerSize = 3;
  if (size < headerSize) return;
  constexpr const char* names[] = {"SetPlotData", "SetPlotOptions", "HoverEntryAtIndex", "SliceColorAtIndex"};
  const char* name = names[bytes[1] % 4];
  pageText.assign(bytes, bytes + size);
  {
    const HeadlessSession session(fuzzServices(), "en_US", 1);
    NSSetLogSink([](std::string_view) {});
    FuzzedPage page(bytes[0] % 2 == 1 ? "pie" : "spendingOverTimeBarOrLine", bytes[2]);
    PlugInHost& host = page.host();
    page.handOver(name, bytes + headerSize, size - headerSize);
    host.settle();
    host.mouseMoved({100, 75});
    host.mouseDown({100, 75});
    host.waitForAnimations(2);
    host.mouseMoved({60, 60});
    page.handOver(name, bytes + headerSize, size - headerSize);
    host.resize({300, 100});
    host.mouseMoved({150, 50});
    host.settle();
  }
  if (heldTables != 0) std::abort();
}

}  // namespace zelkon

extern "C" {

void zelkon_page_call(int, const char*, size_t, const char*, size_t) noexcept {}
void zelkon_page_set(int, const char*, size_t, const char*, size_t) noexcept {}
void zelkon_page_table_hold(int) noexcept { ++zelkon::heldTables; }
void zelkon_page_table_release(int) noexcept { --zelkon::heldTables; }

size_t zelkon_page_table_text(int, size_t cell, char* bytes, size_t capacity) noexcept {
  const std::string text = zelkon::pageText.substr(cell % zelkon::pageText.size(), 1 + cell % 300);
  if (text.size() <= capacity) text.copy(bytes, text.size());
  return text.size();
}

double zelkon_page_table_number(int, size_t cell) noexcept {
  double number = 0;
  if (zelkon::pageText.size() >= sizeof number)
    std::memcpy(&number, zelkon::pageText.data() + cell % (zelkon::pageText.size() - sizeof number + 1), sizeof number);
  return number;
}
}
