#include "Hosts/Web/PageScript.h"

#include <array>
#include <cstring>
#include <map>
#include <string>

#include "Foundation/NSException.h"
#include "Hosts/Web/PageImports.h"
#include "Hosts/Web/PageJSON.h"
#include "Hosts/Web/PageTable.h"
#include "Hosts/Web/ThrownPageValue.h"

namespace zelkon {
namespace {

enum Tag : uint8_t { undefined, null, no, yes, number, string, array, record, opaque, thrown, table };

// The properties that a record was read for, in the order of reading, as flatten.ts has them.
constexpr std::array<std::string_view, 2> keys = {"key", "value"};

// An object of the page of which only what is set on it matters.
class OpaqueScriptObject : public WebScriptObject {
 public:
  explicit OpaqueScriptObject(int index) : index_(index) {}
  Value webScriptValueAtIndex(size_t) override { return Value::undefined(); }
  Value valueForKey(std::string_view) override { return {}; }
  void setValue(const Value& value, std::string_view key) override {
    std::string text = PageJSON(value);
    zelkon_page_set(index_, key.data(), key.size(), text.data(), text.size());
  }
  Value callWebScriptMethod(std::string_view, const ValueArray&) override { return {}; }

 private:
  int index_;
};

// One element of an array, holding a value for each key.
class RecordScriptObject : public WebScriptObject {
 public:
  explicit RecordScriptObject(std::array<Value, keys.size()> cells) : cells_(std::move(cells)) {}
  Value webScriptValueAtIndex(size_t) override { return Value::undefined(); }
  Value valueForKey(std::string_view key) override {
    for (size_t i = 0; i < cells_.size(); ++i) {
      if (keys[i] == key) return CheckedPageValue(cells_[i]).isUndefined() ? Value() : cells_[i];
    }
    return {};
  }
  void setValue(const Value&, std::string_view) override {}
  Value callWebScriptMethod(std::string_view, const ValueArray&) override { return {}; }

 private:
  std::array<Value, keys.size()> cells_;
};

class ColumnScriptArray : public WebScriptObject {
 public:
  explicit ColumnScriptArray(std::vector<Value> elements) : elements_(std::move(elements)) {}
  Value webScriptValueAtIndex(size_t index) override {
    return index < elements_.size() ? CheckedPageValue(elements_[index]) : Value::undefined();
  }
  Value valueForKey(std::string_view key) override {
    return key == "length" ? Value(static_cast<double>(elements_.size())) : Value();
  }
  void setValue(const Value&, std::string_view) override {}
  Value callWebScriptMethod(std::string_view, const ValueArray&) override { return {}; }

 private:
  std::vector<Value> elements_;
};

class BlockReader {
 public:
  BlockReader(const uint8_t* block, size_t size) {
    uint32_t counts[4];
    if (size < sizeof counts) malformed();
    std::memcpy(counts, block, sizeof counts);
    end_ = block + size;
    const uint64_t texts = sizeof counts + 8ull * counts[1] + 4ull * counts[2] + 4ull * counts[3] + counts[0];
    if (texts > size) malformed();
    numbers_ = block + sizeof counts;
    references_ = numbers_ + 8ull * counts[1];
    const uint8_t* ends = references_ + 4ull * counts[2];
    tags_ = ends + 4ull * counts[3];
    const auto* text = reinterpret_cast<const char*>(tags_ + counts[0]);
    tagsLeft_ = counts[0];
    numbersLeft_ = counts[1];
    referencesLeft_ = counts[2];
    uint32_t begin = 0;
    strings_.reserve(counts[3]);
    for (uint32_t i = 0; i < counts[3]; ++i) {
      uint32_t end = 0;
      std::memcpy(&end, ends + 4ull * i, sizeof end);
      if (end < begin || texts + end > size) malformed();
      strings_.emplace_back(std::string_view(text + begin, end - begin));
      begin = end;
    }
    table_ = reinterpret_cast<const uint8_t*>(text) + begin;
  }

  bool atEnd() const { return tagsLeft_ == 0; }

  Value read() {
    if (tagsLeft_ == 0) malformed();
    --tagsLeft_;
    switch (static_cast<Tag>(*tags_++)) {
      case undefined:
        return Value::undefined();
      case null:
        return {};
      case no:
        return Value(false);
      case yes:
        return Value(true);
      case number:
        return Value(nextNumber());
      case string:
        return nextString();
      case array:
        return readArray();
      case record:
        return readRecord();
      case opaque:
        return Value(std::make_shared<OpaqueScriptObject>(objects_++));
      case thrown:
        return Value(std::make_shared<ThrownPageValue>(nextString().string()));
      case table:
        return readTable();
    }
    malformed();
  }

 private:
  [[noreturn]] static void malformed() { NSRaise(NSInvalidArgumentException, "Malformed script arguments"); }

  uint32_t nextReference() {
    if (referencesLeft_ == 0) malformed();
    --referencesLeft_;
    uint32_t result = 0;
    std::memcpy(&result, references_, sizeof result);
    references_ += sizeof result;
    return result;
  }
  double nextNumber() {
    if (numbersLeft_ == 0) malformed();
    --numbersLeft_;
    double result = 0;
    std::memcpy(&result, numbers_, sizeof result);
    numbers_ += sizeof result;
    return result;
  }
  const Value& nextString() {
    uint32_t which = nextReference();
    if (which >= strings_.size()) malformed();
    return strings_[which];
  }
  Value readArray() {
    const uint32_t count = nextReference();
    if (count > tagsLeft_) malformed();
    std::vector<Value> elements;
    elements.reserve(count);
    for (uint32_t i = 0; i < count; ++i) elements.push_back(read());
    return Value(std::make_shared<ColumnScriptArray>(std::move(elements)));
  }
  Value readRecord() {
    std::array<Value, keys.size()> cells;
    for (Value& cell : cells) cell = read();
    return Value(std::make_shared<RecordScriptObject>(std::move(cells)));
  }

  Value readTable() {
    const uint32_t rows = nextReference(), number = nextReference(), others = nextReference();
    const auto result = PageTable::read(static_cast<int>(number), rows, table_, static_cast<size_t>(end_ - table_));
    if (!result) malformed();
    for (const size_t cell : result->objectCells()) result->setObject(cell, read());
    Value last = others ? read() : Value::undefined();
    return Value(std::make_shared<TableScriptArray>(result, std::move(last)));
  }

  const uint8_t *numbers_, *references_, *tags_, *table_, *end_;
  size_t tagsLeft_, numbersLeft_, referencesLeft_;
  std::vector<Value> strings_;
  int objects_ = 0;
};

}  // namespace

ValueArray ReadScriptArguments(const uint8_t* block, size_t size) {
  BlockReader reader(block, size);
  ValueArray arguments;
  while (!reader.atEnd()) arguments.push_back(reader.read());
  return arguments;
}

}  // namespace zelkon
