// The trigonometry of the C library, which the page has already.
#include <cmath>

#define ZELKON_MATH_IMPORT(name) __attribute__((import_module("Math"), import_name(#name)))

extern "C" {

ZELKON_MATH_IMPORT(sin)
double zelkon_math_sin(double radians) noexcept;
ZELKON_MATH_IMPORT(cos)
double zelkon_math_cos(double radians) noexcept;
ZELKON_MATH_IMPORT(tan)
double zelkon_math_tan(double radians) noexcept;
ZELKON_MATH_IMPORT(acos)
double zelkon_math_acos(double cosine) noexcept;
ZELKON_MATH_IMPORT(atan2)
double zelkon_math_atan2(double y, double x) noexcept;

double sin(double radians) { return zelkon_math_sin(radians); }
double cos(double radians) { return zelkon_math_cos(radians); }
double tan(double radians) { return zelkon_math_tan(radians); }
double acos(double cosine) { return zelkon_math_acos(cosine); }
double atan2(double y, double x) { return zelkon_math_atan2(y, x); }
float sinf(float radians) { return static_cast<float>(zelkon_math_sin(radians)); }
float cosf(float radians) { return static_cast<float>(zelkon_math_cos(radians)); }
float atan2f(float y, float x) { return static_cast<float>(zelkon_math_atan2(y, x)); }

}  // extern "C"
