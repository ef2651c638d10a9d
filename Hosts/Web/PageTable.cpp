#include "Hosts/Web/PageTable.h"

#include <algorithm>
#include <cstring>
#include <string>

#include "Hosts/Web/PageImports.h"
#include "Hosts/Web/ThrownPageValue.h"

namespace zelkon {
namespace {

// One element of the array.
class RowScriptObject : public WebScriptObject {
 public:
  RowScriptObject(std::shared_ptr<const PageTable> table, size_t row) : table_(std::move(table)), row_(row) {}
  Value webScriptValueAtIndex(size_t) override { return Value::undefined(); }
  Value valueForKey(std::string_view key) override {
    const auto& keys = PageTable::keys();
    const auto found = std::find(keys.begin(), keys.end(), key);
    return found == keys.end() ? Value() : table_->value(row_, static_cast<size_t>(found - keys.begin()));
  }
  void setValue(const Value&, std::string_view) override {}
  Value callWebScriptMethod(std::string_view, const ValueArray&) override { return {}; }

 private:
  std::shared_ptr<const PageTable> table_;
  size_t row_;
};

}  // namespace

const std::vector<std::string_view>& PageTable::keys() {
  static const std::vector<std::string_view> keys = {
      "humanX", "mediumHumanX", "shortHumanX", "shortHumanXSubtitle", "humanY", "y"};
  return keys;
}

PageTable::PageTable(int number) : number_(number) { zelkon_page_table_hold(number_); }

PageTable::~PageTable() { zelkon_page_table_release(number_); }

std::shared_ptr<PageTable> PageTable::read(int number, size_t rows, const uint8_t* bytes, size_t size) {
  const size_t rowSize = sizeof(double) + keys().size();
  if (size % rowSize != 0 || size / rowSize != rows) return nullptr;
  const std::shared_ptr<PageTable> table(new PageTable(number));
  if (rows == 0) return table;
  table->amounts_.resize(rows);
  std::memcpy(table->amounts_.data(), bytes, rows * sizeof(double));
  const uint8_t* kinds = bytes + rows * sizeof(double);
  table->kinds_.resize(rows * keys().size());
  std::memcpy(table->kinds_.data(), kinds, table->kinds_.size());
  return table;
}

std::vector<size_t> PageTable::objectCells() const {
  std::vector<size_t> cells;
  const Kind *begin = kinds_.data(), *end = begin + kinds_.size();
  for (const Kind* at = begin; at != end; ++at) {
    at = static_cast<const Kind*>(std::memchr(at, static_cast<int>(Kind::object), static_cast<size_t>(end - at)));
    if (!at) break;
    cells.push_back(static_cast<size_t>(at - begin));
  }
  return cells;
}

Value PageTable::value(size_t row, size_t column) const {
  const size_t cell = row * keys().size() + column;
  switch (kinds_[cell]) {
    case Kind::null:
      return {};
    case Kind::no:
      return Value(false);
    case Kind::yes:
      return Value(true);
    case Kind::number:
      return Value(zelkon_page_table_number(number_, cell));
    case Kind::emptyText:
      return Value(std::string());
    case Kind::text:
      return Value(text(cell));
    case Kind::object:
      return objects_.at(cell);
  }
  return {};
}

std::string PageTable::text(size_t cell) const {
  char few[256];
  const size_t size = zelkon_page_table_text(number_, cell, few, sizeof few);
  if (size <= sizeof few) return {few, size};
  std::string text(size, '\0');
  text.resize(zelkon_page_table_text(number_, cell, text.data(), text.size()));
  return text;
}

Value TableScriptArray::webScriptValueAtIndex(size_t index) {
  const size_t rows = table_->rowCount();
  if (index < rows) return Value(std::make_shared<RowScriptObject>(table_, index));
  return index == rows ? CheckedPageValue(last_) : Value::undefined();
}

Value TableScriptArray::valueForKey(std::string_view key) {
  if (key != "length") return {};
  return Value(static_cast<double>(table_->rowCount() + (last_.isUndefined() ? 0 : 1)));
}

std::shared_ptr<const WebScriptTable> TableScriptArray::webScriptTable(const std::vector<std::string_view>& keys) {
  return keys == PageTable::keys() ? table_ : nullptr;
}

}  // namespace zelkon
