// Colours: components in a colour space, alpha last. All spaces are treated as one and the same for drawing; the space
// is kept so that a colour reports what it was made in.
#pragma once

#include <array>
#include <memory>
#include <string>
#include <vector>

namespace zelkon {

struct CGColorSpace {
  enum class Model { gray, rgb };
  Model model;
  std::string
      name;  // "GenericGray", "CalibratedWhite", "DeviceGray", "GenericRGB", "CalibratedRGB", "DeviceRGB", "Screen"
  int numberOfComponents() const { return model == Model::gray ? 1 : 3; }  // without alpha
};
using CGColorSpaceRef = std::shared_ptr<const CGColorSpace>;

CGColorSpaceRef CGColorSpaceGenericGray();
CGColorSpaceRef CGColorSpaceCalibratedWhite();
CGColorSpaceRef CGColorSpaceDeviceGray();
CGColorSpaceRef CGColorSpaceGenericRGB();
CGColorSpaceRef CGColorSpaceCalibratedRGB();
CGColorSpaceRef CGColorSpaceDeviceRGB();

// Plain (not premultiplied) components 0...1, for painting.
struct RGBA {
  double red = 0, green = 0, blue = 0, alpha = 1;
  friend bool operator==(const RGBA&, const RGBA&) = default;
};

class CGColor {
 public:
  // `components` holds the space's components and alpha; a wrong count raises NSInvalidArgumentException.
  CGColor(CGColorSpaceRef space, std::vector<double> components);
  const CGColorSpaceRef& colorSpace() const { return space_; }
  int numberOfComponents() const { return static_cast<int>(components_.size()); }  // alpha counted
  const std::vector<double>& components() const { return components_; }
  double alpha() const { return components_.back(); }
  RGBA rgba() const;
  friend bool operator==(const CGColor& a, const CGColor& b);

 private:
  CGColorSpaceRef space_;
  std::vector<double> components_;
};
using CGColorRef = std::shared_ptr<const CGColor>;  // null = no colour

CGColorRef CGColorCreateGenericGray(double gray, double alpha);
CGColorRef CGColorCreateGenericRGB(double red, double green, double blue, double alpha);
CGColorRef CGColorCreateDeviceRGB(double red, double green, double blue, double alpha);
CGColorRef kCGColorBlack();  // generic grey (0, 1)
CGColorRef kCGColorWhite();  // generic grey (1, 1)
CGColorRef kCGColorClear();  // generic grey (0, 0)

}  // namespace zelkon
