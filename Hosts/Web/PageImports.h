// What the module asks of the page. Each is a function of host.library.js that hands over to the host object of the
// instance; none of them lets a JavaScript exception through. Texts are UTF-8 and need not end with a zero.
#pragma once

#include <cstddef>

extern "C" {
// Calls a function of the window that holds the plot. `arguments` is a JSON array.
void zelkon_page_call(int plot, const char* name, size_t nameLength, const char* arguments, size_t argumentsLength);
// Sets a property of an object that the page handed to the call that is running, once that call has returned. `object`
// counts the objects of the call's arguments from 0; `value` is JSON.
void zelkon_page_set(int object, const char* key, size_t keyLength, const char* value, size_t valueLength);
// What a screen reader shall say of the entry that the keyboard has come to: JSON of its label, amount and share.
void zelkon_page_announce(int plot, const char* entry, size_t length);
// One of the periods that were asked for: its name and its amount.
void zelkon_page_period(const char* name, size_t nameLength, const char* amount, size_t amountLength);
// A line of the system log.
void zelkon_page_log(const char* line, size_t length);
// Copies the named resource to `bytes` and answers its whole size, which may exceed `capacity`: nothing is copied then.
// 0 when there is none.
size_t zelkon_page_resource(const char* name, size_t nameLength, unsigned char* bytes, size_t capacity);
// A table of the page stays readable as long as it is held. Its cells are counted row after row.
void zelkon_page_table_hold(int table);
void zelkon_page_table_release(int table);
// Copies the text of a cell to `bytes` and answers its size. An answer above `capacity` is a capacity that suffices:
// the text may have been copied in part then.
size_t zelkon_page_table_text(int table, size_t cell, char* bytes, size_t capacity);
double zelkon_page_table_number(int table, size_t cell);
// A failure that the page's author should see.
void zelkon_page_error(const char* text, size_t length);
}
