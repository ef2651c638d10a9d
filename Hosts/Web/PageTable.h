// A long array of the page whose texts and numbers stay with the page until somebody asks for them. Kinds and amounts
// cross the border, as WebScriptTable describes them: the amounts of all rows, then a byte for each cell.
#pragma once

#include <map>
#include <memory>
#include <string_view>
#include <vector>

#include "WebKit/WebScriptObject.h"

namespace zelkon {

class PageTable : public WebScriptTable {
 public:
  // The properties that the page's elements were read for, in the order of reading.
  static const std::vector<std::string_view>& keys();
  // Copies the bytes. `number` is the page's for the table, which is held as long as this lives. Null when the bytes
  // are not those of so many rows.
  static std::shared_ptr<PageTable> read(int number, size_t rows, const uint8_t* bytes, size_t size);
  ~PageTable() override;
  PageTable(const PageTable&) = delete;
  PageTable& operator=(const PageTable&) = delete;

  // The cells that hold an object, in order, and what they hold.
  std::vector<size_t> objectCells() const;
  void setObject(size_t cell, Value object) { objects_[cell] = std::move(object); }

  size_t rowCount() const override { return amounts_.size(); }
  const Kind* kinds() const override { return kinds_.data(); }
  const double* amounts() const override { return amounts_.data(); }
  Value value(size_t row, size_t column) const override;

 private:
  explicit PageTable(int number);
  std::string text(size_t cell) const;

  int number_;
  std::vector<double> amounts_;
  std::vector<Kind> kinds_;
  std::map<size_t, Value> objects_;
};

// The array: the table's rows and, after them, what ended the reading if that was an element; undefined if not.
class TableScriptArray : public WebScriptObject {
 public:
  TableScriptArray(std::shared_ptr<const PageTable> table, Value last)
      : table_(std::move(table)), last_(std::move(last)) {}
  Value webScriptValueAtIndex(size_t index) override;
  Value valueForKey(std::string_view key) override;
  void setValue(const Value&, std::string_view) override {}
  Value callWebScriptMethod(std::string_view, const ValueArray&) override { return {}; }
  std::shared_ptr<const WebScriptTable> webScriptTable(const std::vector<std::string_view>& keys) override;

 private:
  std::shared_ptr<const PageTable> table_;
  Value last_;
};

}  // namespace zelkon
