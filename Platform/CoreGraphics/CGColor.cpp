#include "CoreGraphics/CGColor.h"

#include <utility>

#include "Foundation/NSException.h"

namespace zelkon {

namespace {

CGColorSpaceRef makeSpace(CGColorSpace::Model model, const char* name) {
  return std::make_shared<const CGColorSpace>(CGColorSpace{model, name});
}

CGColorRef makeGray(double gray, double alpha) {
  return std::make_shared<const CGColor>(CGColorSpaceGenericGray(), std::vector<double>{gray, alpha});
}

}  // namespace

CGColorSpaceRef CGColorSpaceGenericGray() {
  static const CGColorSpaceRef space = makeSpace(CGColorSpace::Model::gray, "GenericGray");
  return space;
}

CGColorSpaceRef CGColorSpaceCalibratedWhite() {
  static const CGColorSpaceRef space = makeSpace(CGColorSpace::Model::gray, "CalibratedWhite");
  return space;
}

CGColorSpaceRef CGColorSpaceDeviceGray() {
  static const CGColorSpaceRef space = makeSpace(CGColorSpace::Model::gray, "DeviceGray");
  return space;
}

CGColorSpaceRef CGColorSpaceGenericRGB() {
  static const CGColorSpaceRef space = makeSpace(CGColorSpace::Model::rgb, "GenericRGB");
  return space;
}

CGColorSpaceRef CGColorSpaceCalibratedRGB() {
  static const CGColorSpaceRef space = makeSpace(CGColorSpace::Model::rgb, "CalibratedRGB");
  return space;
}

CGColorSpaceRef CGColorSpaceDeviceRGB() {
  static const CGColorSpaceRef space = makeSpace(CGColorSpace::Model::rgb, "DeviceRGB");
  return space;
}

CGColor::CGColor(CGColorSpaceRef space, std::vector<double> components)
    : space_(std::move(space)), components_(std::move(components)) {
  if (!space_ || numberOfComponents() != space_->numberOfComponents() + 1)
    NSRaise(NSInvalidArgumentException, "The number of components does not fit the colour space");
}

RGBA CGColor::rgba() const {
  if (space_->model == CGColorSpace::Model::gray)
    return {components_[0], components_[0], components_[0], components_[1]};
  return {components_[0], components_[1], components_[2], components_[3]};
}

bool operator==(const CGColor& a, const CGColor& b) {
  return a.space_->name == b.space_->name && a.components_ == b.components_;
}

CGColorRef CGColorCreateGenericGray(double gray, double alpha) { return makeGray(gray, alpha); }

CGColorRef CGColorCreateGenericRGB(double red, double green, double blue, double alpha) {
  return std::make_shared<const CGColor>(CGColorSpaceGenericRGB(), std::vector<double>{red, green, blue, alpha});
}

CGColorRef CGColorCreateDeviceRGB(double red, double green, double blue, double alpha) {
  return std::make_shared<const CGColor>(CGColorSpaceDeviceRGB(), std::vector<double>{red, green, blue, alpha});
}

CGColorRef kCGColorBlack() {
  static const CGColorRef color = makeGray(0, 1);
  return color;
}

CGColorRef kCGColorWhite() {
  static const CGColorRef color = makeGray(1, 1);
  return color;
}

CGColorRef kCGColorClear() {
  static const CGColorRef color = makeGray(0, 0);
  return color;
}

}  // namespace zelkon
