#include "Fuzz/ByteChooser.h"

#include <limits>

namespace zelkon {

double ByteChooser::number() {
  using Limits = std::numeric_limits<double>;
  switch (below(8)) {
    case 0:
    case 1:
      return byte();
    case 2:
      return -1.0 * byte();
    case 3:
      return byte() * 256 + byte() + byte() / 256.0;
    case 4:
      return oneOf({0.0, -0.0, 0.1, 1e-300, 1e15, -1e15, 1e300, -1e300});
    case 5:
      return oneOf({Limits::quiet_NaN(), Limits::infinity(), -Limits::infinity(), Limits::max(), Limits::denorm_min(),
                    9.3e18, -9.3e18, 4294967296.0});
    default: {
      double any = 0;
      uint8_t bytes[sizeof any];
      for (uint8_t& each : bytes) each = byte();
      std::memcpy(&any, bytes, sizeof any);
      return any;
    }
  }
}

std::string ByteChooser::text() {
  switch (below(6)) {
    case 0:
      return oneOf({"Jan", "December", "2009", "Q1", "Rent", "", "a", "Groceries & Household"});
    case 1:
      return std::to_string(byte() * 256 + byte());
    case 2:
      return oneOf({"-4.5e1 kr", "1e308", "-1e308", ".5", "5.", "1e999", "0x10", "-0", "1e-320", "nan", " 7", "12,5"});
    case 3:
      return oneOf({"\n", "a\nb", "\r\n\r\n", "\xE2\x80\xA9", "\xD7\xA9\xD7\x9C\xD7\x95\xD7\x9D", "e\xCC\x81\xCC\x81",
                    "\xE6\x97\xA5\xE6\x9C\xAC", "\xF0\x9F\x91\xA9\xE2\x80\x8D\xF0\x9F\x91\xA7", "\xFF\xFE",
                    "\xED\xA0\x80", "\xC3", "]]>&lt;"});
    case 4: {
      std::string repeated;
      const std::string part = oneOf({"W", "word ", "\xC3\xA9", "\t"});
      for (size_t i = below(200); i > 0; --i) repeated += part;
      return repeated;
    }
    default: {
      std::string any;
      for (size_t i = below(24); i > 0; --i) any += static_cast<char>(byte());
      return any;
    }
  }
}

Value ByteChooser::value(int depth) {
  switch (below(depth > 0 ? 8 : 6)) {
    case 0:
      return number();
    case 1:
    case 2:
      return text();
    case 3:
      return {};
    case 4:
      return yes();
    case 5:
      return Value::undefined();
    case 6: {
      ValueArray array;
      for (size_t i = below(6); i > 0; --i) array.push_back(value(depth - 1));
      return array;
    }
    default: {
      ValueDictionary dictionary;
      for (size_t i = below(6); i > 0; --i)
        dictionary[oneOf({"key", "value", "humanX", "humanY", "y", "mediumHumanX", "shortHumanX", "shortHumanXSubtitle",
                          "length", ""})] = value(depth - 1);
      return dictionary;
    }
  }
}

}  // namespace zelkon
