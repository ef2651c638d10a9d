// What the module asks of the page: functions of instance.ts. None of them lets a JavaScript exception through. Texts
// are UTF-8 and need not end with a zero.
#pragma once

#include <cstddef>

#include "Backends/Canvas/PageImport.h"

extern "C" {
// Makes the memory larger by so many pages of 64 kB; false when they cannot be had.
ZELKON_PAGE_IMPORT(zelkon_page_grow_memory)
bool zelkon_page_grow_memory(size_t pages) noexcept;
// Calls a function of the window that holds the plot. `arguments` is a JSON array.
ZELKON_PAGE_IMPORT(zelkon_page_call)
void zelkon_page_call(int plot, const char* name, size_t nameLength, const char* arguments,
                      size_t argumentsLength) noexcept;
// Sets a property of an object that the page handed to the call that is running, once that call has returned. `object`
// counts the objects of the call's arguments from 0; `value` is JSON.
ZELKON_PAGE_IMPORT(zelkon_page_set)
void zelkon_page_set(int object, const char* key, size_t keyLength, const char* value, size_t valueLength) noexcept;
// What a screen reader shall say of the entry that the keyboard has come to: JSON of its label, amount and share.
ZELKON_PAGE_IMPORT(zelkon_page_announce)
void zelkon_page_announce(int plot, const char* entry, size_t length) noexcept;
// One of the periods that were asked for: its name and its amount.
ZELKON_PAGE_IMPORT(zelkon_page_period)
void zelkon_page_period(const char* name, size_t nameLength, const char* amount, size_t amountLength) noexcept;
// A line of the system log.
ZELKON_PAGE_IMPORT(zelkon_page_log)
void zelkon_page_log(const char* line, size_t length) noexcept;
// Copies the named resource to `bytes` and answers its whole size, which may exceed `capacity`: nothing is copied then.
// 0 when there is none.
ZELKON_PAGE_IMPORT(zelkon_page_resource)
size_t zelkon_page_resource(const char* name, size_t nameLength, unsigned char* bytes, size_t capacity) noexcept;
// A table of the page stays readable as long as it is held. Its cells are counted row after row.
ZELKON_PAGE_IMPORT(zelkon_page_table_hold)
void zelkon_page_table_hold(int table) noexcept;
ZELKON_PAGE_IMPORT(zelkon_page_table_release)
void zelkon_page_table_release(int table) noexcept;
// Copies the text of a cell to `bytes` and answers its size. An answer above `capacity` is a capacity that suffices:
// the text may have been copied in part then.
ZELKON_PAGE_IMPORT(zelkon_page_table_text)
size_t zelkon_page_table_text(int table, size_t cell, char* bytes, size_t capacity) noexcept;
ZELKON_PAGE_IMPORT(zelkon_page_table_number)
double zelkon_page_table_number(int table, size_t cell) noexcept;
// A failure that the page's author should see.
ZELKON_PAGE_IMPORT(zelkon_page_error)
void zelkon_page_error(const char* text, size_t length) noexcept;
}
