#include "Classes/Views/ScriptEntries.h"

#include <cmath>

#include "Classes/Views/ScriptElement.h"
#include "Foundation/NSScanner.h"
#include "WebKit/WebScriptObject.h"

namespace zelkon {
namespace {

// In the order of reading.
enum Column : size_t { humanX, mediumHumanX, shortHumanX, shortHumanXSubtitle, humanY, y, columnCount };
const std::vector<std::string_view> kKeys = {"humanX", "mediumHumanX", "shortHumanX", "shortHumanXSubtitle", "humanY",
                                             "y"};

PlotEntry::Text textOrNothing(const Value& value) {
  const bool isEmpty = value.isString() ? value.string().empty() : value.length() == 0;
  return isEmpty ? nullptr : value.sharedString();
}

// An entry of which everything but its amount is known.
std::shared_ptr<PlotEntry> namedEntry(const Value cells[]) {
  auto entry = std::make_shared<PlotEntry>();
  entry->humanX = cells[humanX].sharedString();
  entry->humanY = cells[humanY].sharedString();
  entry->mediumHumanX = textOrNothing(cells[mediumHumanX]);
  entry->shortHumanX = textOrNothing(cells[shortHumanX]);
  entry->shortHumanXSubtitle = cells[shortHumanXSubtitle];
  return entry;
}

// Rows of a table, and after them entries that exist one by one.
class TableEntries final : public PlotEntryList {
 public:
  explicit TableEntries(std::shared_ptr<const WebScriptTable> table) : table_(std::move(table)) {}
  void add(size_t row, double amount) {
    // As long as no row is left out, its number is its place.
    if (!isSparse_ && row != amounts_.size()) {
      for (size_t i = 0; i < amounts_.size(); ++i) rows_.push_back(static_cast<uint32_t>(i));
      isSparse_ = true;
    }
    if (isSparse_) rows_.push_back(static_cast<uint32_t>(row));
    amounts_.push_back(amount);
  }
  void add(PlotEntryRef entry) { others_.push_back(std::move(entry)); }
  void reserve(size_t count) { amounts_.reserve(count); }

  size_t count() const override { return amounts_.size() + others_.size(); }
  double y(size_t index) const override {
    return index < amounts_.size() ? amounts_[index] : others_[index - amounts_.size()]->y;
  }
  PlotEntryRef entry(size_t index) const override {
    if (index >= amounts_.size()) return others_[index - amounts_.size()];
    const size_t row = isSparse_ ? rows_[index] : index;
    Value cells[columnCount];
    for (size_t column = 0; column < Column::y; ++column) cells[column] = table_->value(row, column);
    const auto entry = namedEntry(cells);
    entry->y = amounts_[index];
    return entry;
  }

 private:
  std::shared_ptr<const WebScriptTable> table_;
  std::vector<double> amounts_;
  std::vector<uint32_t> rows_;  // of the amounts, when they are not simply the first ones
  bool isSparse_ = false;
  std::vector<PlotEntryRef> others_;
};

// The cells in which a chart's data usually come: a text or nothing, and texts where an entry needs them.
bool isPlainRow(const WebScriptTable::Kind* kinds) {
  using Kind = WebScriptTable::Kind;
  const auto isTextOrNothing = [](Kind kind) {
    return kind == Kind::text || kind == Kind::null || kind == Kind::emptyText;
  };
  return kinds[humanX] == Kind::text && kinds[humanY] == Kind::text && kinds[Column::y] == Kind::text &&
         isTextOrNothing(kinds[mediumHumanX]) && isTextOrNothing(kinds[shortHumanX]);
}

}  // namespace

PlotEntryListRef ScriptEntries(const Value& array, const std::function<void(bool)>& checkAmount) {
  const WebScriptObjectRef object = WebScriptObjectOf(array);
  const std::shared_ptr<const WebScriptTable> table = object ? object->webScriptTable(kKeys) : nullptr;
  const auto list = std::make_shared<TableEntries>(table);
  const size_t rows = table ? table->rowCount() : 0;
  list->reserve(rows);
  const auto* kinds = rows ? table->kinds() : nullptr;
  const double* amounts = rows ? table->amounts() : nullptr;
  for (size_t i = 0;; ++i) {
    if (i < rows && std::isfinite(amounts[i]) && isPlainRow(kinds + i * columnCount)) {
      list->add(i, amounts[i]);
      continue;
    }
    // What the array and each element are is asked once, not for each property.
    const Value element = object ? object->webScriptValueAtIndex(i) : ScriptElementAtIndex(array, i);
    if (element.isUndefined() || element.isNull()) break;
    const WebScriptObjectRef record = WebScriptObjectOf(element);
    Value cells[columnCount];
    for (size_t column = 0; column < columnCount; ++column)
      cells[column] = record ? record->valueForKey(kKeys[column]) : ScriptElementValueForKey(element, kKeys[column]);
    if (cells[humanX].length() == 0 || cells[humanY].length() == 0 || cells[Column::y].length() == 0) continue;
    // An amount without end has no place on an axis.
    const double amount = NSScanDouble(cells[Column::y].string()).value_or(NAN);
    checkAmount(std::isfinite(amount));
    const auto entry = namedEntry(cells);
    entry->y = amount;
    if (i < rows)
      list->add(i, amount);
    else
      list->add(entry);
  }
  return list;
}

}  // namespace zelkon
