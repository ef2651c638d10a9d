// What the module imports from its host; each function hands over to the object that runtime.ts puts on the module.
mergeInto(LibraryManager.library, {
  zelkon_page_call: function (plot, name, nameLength, args, argsLength) {
    Module['host'].call(plot, name, nameLength, args, argsLength);
  },
  zelkon_page_set: function (object, key, keyLength, value, valueLength) {
    Module['host'].set(object, key, keyLength, value, valueLength);
  },
  zelkon_page_announce: function (plot, entry, length) {
    Module['host'].announce(plot, entry, length);
  },
  zelkon_page_period: function (name, nameLength, amount, amountLength) {
    Module['host'].period(name, nameLength, amount, amountLength);
  },
  zelkon_page_table_hold: function (table) {
    Module['host'].tableHold(table);
  },
  zelkon_page_table_release: function (table) {
    Module['host'].tableRelease(table);
  },
  zelkon_page_table_text: function (table, cell, bytes, capacity) {
    return Module['host'].tableText(table, cell, bytes, capacity);
  },
  zelkon_page_table_number: function (table, cell) {
    return Module['host'].tableNumber(table, cell);
  },
  zelkon_page_log: function (line, length) {
    Module['host'].log(line, length);
  },
  zelkon_page_error: function (text, length) {
    Module['host'].error(text, length);
  },
  zelkon_page_resource: function (name, nameLength, bytes, capacity) {
    return Module['host'].resource(name, nameLength, bytes, capacity);
  },
});
