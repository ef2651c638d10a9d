// The plug-in's resources. The host says where they are.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace zelkon {

class NSBundle {
 public:
  // Bytes of the named resource, or nothing when there is none.
  using Loader = std::function<std::optional<std::vector<uint8_t>>(const std::string& name)>;
  // The session's.
  static NSBundle& mainBundle();
  void setLoader(Loader loader) { loader_ = std::move(loader); }
  std::optional<std::vector<uint8_t>> dataForImageResource(const std::string& name) const;

 private:
  Loader loader_;
};

}  // namespace zelkon
