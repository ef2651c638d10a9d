#include "Hosts/Headless/JsonReader.h"

#include <nlohmann/json.hpp>
#include <optional>
#include <utility>
#include <vector>

#include "Hosts/Headless/PrintableText.h"

namespace zelkon {
namespace {

using nlohmann::json;

constexpr size_t kLongestPointer = 80;
// What the library numbers its error for a number that no double can hold.
constexpr int kNumberOverflow = 406;

// "line 3, column 14" of the byte with that number, counted from 1.
std::string lineAndColumn(std::string_view text, size_t number) {
  size_t line = 1, column = 1;
  for (size_t i = 0; i + 1 < number && i < text.size(); ++i) {
    column = text[i] == '\n' ? 1 : column + 1;
    line += text[i] == '\n';
  }
  return "line " + std::to_string(line) + ", column " + std::to_string(column);
}

// Takes what the library reads piece by piece; the arrays and objects that are open stand on a stack of its own.
class Builder : public json::json_sax_t {
 public:
  Builder(std::string_view text, const JsonLimits& limits) : text_(text), limits_(limits) {}

  Value take() { return std::move(root_); }

  bool null() override { return add({}); }
  bool boolean(bool value) override { return add(value); }
  bool number_integer(number_integer_t value) override { return add(static_cast<double>(value)); }
  bool number_unsigned(number_unsigned_t value) override { return add(static_cast<double>(value)); }
  bool number_float(number_float_t value, const string_t&) override { return add(value); }
  bool string(string_t& value) override { return add(std::move(value)); }
  bool binary(binary_t&) override { return false; }

  bool start_object(size_t) override { return open(false); }
  bool end_object() override { return close(Value(std::move(open_.back().dictionary))); }
  bool start_array(size_t) override { return open(true); }
  bool end_array() override { return close(Value(std::move(open_.back().array))); }
  bool key(string_t& value) override {
    open_.back().key = std::move(value);
    return true;
  }

  bool parse_error(size_t number, const std::string&, const nlohmann::detail::exception& error) override {
    if (error.id == kNumberOverflow) throw JsonError(pointer(), "the number is beyond all that can be counted with");
    throw JsonError(lineAndColumn(text_, number), "this is not JSON");
  }

 private:
  struct Open {
    bool isArray;
    ValueArray array;
    ValueDictionary dictionary;
    std::string key;
  };

  // Of the value that is being read, or of the innermost one that has a name.
  std::string pointer(bool toNamed = false) const {
    size_t count = open_.size();
    while (toNamed && count > 0 && open_[count - 1].isArray) --count;
    std::string result;
    for (size_t i = 0; i < count; ++i)
      result = jsonPointer(result, open_[i].isArray ? std::to_string(open_[i].array.size()) : open_[i].key);
    return result.empty() ? "/" : printableText(result, kLongestPointer);
  }
  std::string pointerToArray() {
    const Open innermost = std::move(open_.back());
    open_.pop_back();
    return pointer();
  }

  bool add(Value value) {
    if (open_.empty()) {
      root_ = std::move(value);
      return true;
    }
    Open& to = open_.back();
    if (!to.isArray) {
      to.dictionary.insert_or_assign(std::move(to.key), std::move(value));
      return true;
    }
    if (to.array.size() == limits_.elements)
      throw JsonError(pointerToArray(), "more than " + std::to_string(limits_.elements) + " entries");
    to.array.push_back(std::move(value));
    return true;
  }
  bool open(bool isArray) {
    if (open_.size() > limits_.depth)
      throw JsonError(pointer(true), "values nested more than " + std::to_string(limits_.depth) + " deep");
    open_.push_back({isArray, {}, {}, {}});
    return true;
  }
  bool close(Value value) {
    open_.pop_back();
    return add(std::move(value));
  }

  const std::string_view text_;
  const JsonLimits limits_;
  std::vector<Open> open_;
  Value root_;
};

}  // namespace

Value readJson(std::string_view text, const JsonLimits& limits) {
  Builder builder(text, limits);
  json::sax_parse(text.begin(), text.end(), &builder);
  // The library takes a NUL for the end of the text.
  if (const size_t nul = text.find('\0'); nul != std::string_view::npos)
    throw JsonError(lineAndColumn(text, nul + 1), "this is not JSON");
  return builder.take();
}

std::string jsonPointer(const std::string& pointer, std::string_view key) {
  std::string result = pointer + "/";
  for (const char c : printableText(key, kLongestPointer)) {
    if (c == '~')
      result += "~0";
    else if (c == '/')
      result += "~1";
    else
      result += c;
  }
  return result;
}

}  // namespace zelkon
