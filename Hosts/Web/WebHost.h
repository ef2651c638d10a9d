// All charts of one instance of the module: they share one session, and so the clock, the run loop, the device and the
// log.
#pragma once

#include <map>
#include <memory>
#include <set>
#include <vector>

#include "Foundation/PlatformSession.h"
#include "Hosts/Common/LoggedExceptions.h"
#include "Hosts/Web/WebPlot.h"

namespace zelkon {

class WebHost {
 public:
  static WebHost& shared();

  // Nothing is made, and the reason goes to the page's console, when the factory raises.
  bool create(int id, std::optional<std::string> plot, int canvas, CGSize size);
  // Waits for the end of whatever of the chart is running now.
  void destroy(int id);
  // Null for a chart that is not, or no longer, there.
  WebPlot* plot(int id);
  void setScreenScale(double scale);
  void setReducesMotion(bool reduces) { reducesMotion_ = reduces; }
  // How charts made from now on are laid out; readable unless set.
  void setLayout(ChartLayout layout) { layout_ = layout; }

  // A turn is begun, every chart composed, and the turn ended. `now`: seconds on the media clock.
  void beginTurn(double now);
  void compose(int id);
  // Whether another turn is due.
  bool endTurn();

  // Runs one entry from the page. No exception leaves it; what is destroyed meanwhile goes when the last entry is over.
  template <typename Body>
  void enter(Body body) {
    ++depth_;
    try {
      logExceptions(body);
    } catch (const std::exception& exception) {
      report(exception);
    }
    if (--depth_ == 0) dropDestroyed();
  }

 private:
  WebHost();
  static void report(const std::exception& exception);
  void dropDestroyed();
  std::vector<HostedChart*> charts() const;

  CanvasDevice device_;
  PlatformSession session_;
  PlatformSession::Scope scope_{session_};  // the module has one thread and needs no other session
  std::map<int, std::unique_ptr<WebPlot>> plots_;
  std::set<int> destroyed_;
  int depth_ = 0;
  bool reducesMotion_ = false;
  ChartLayout layout_ = ChartLayout::readable;
};

}  // namespace zelkon
