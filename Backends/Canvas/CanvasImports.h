// What the page provides; implemented in imports.ts, which hands every call to canvas.ts or locale.ts. No function lets
// a JavaScript exception through: a failure is an answer of 0. Pointers are read during the call only; text is UTF-8.
#pragma once

#include <cstddef>
#include <cstdint>

#include "Backends/Canvas/PageImport.h"

extern "C" {

// Replays a buffer of commands; see CanvasCommands.h.
ZELKON_PAGE_IMPORT(zkCanvasReplay)
void zkCanvasReplay(const double* commands, size_t count, const char* strings, size_t stringBytes) noexcept;
// The id of a new transparent surface, 0 when it cannot be had.
ZELKON_PAGE_IMPORT(zkCanvasMake)
int zkCanvasMake(int pixelWidth, int pixelHeight) noexcept;
// The id of a surface with the picture, 0 when the page has not prepared these bytes. Writes width and height.
ZELKON_PAGE_IMPORT(zkCanvasDecode)
int zkCanvasDecode(const uint8_t* bytes, size_t count, int* size) noexcept;
// Premultiplied R,G,B,A, first row at the top; 1 when `pixels` was filled.
ZELKON_PAGE_IMPORT(zkCanvasRead)
int zkCanvasRead(int surface, uint8_t* pixels, size_t count) noexcept;
// Advance at 1 point per em. Faces: bit 0 bold, bit 1 Helvetica instead of Lucida Grande.
ZELKON_PAGE_IMPORT(zkCanvasMeasure)
double zkCanvasMeasure(int face, const char* text, size_t bytes) noexcept;

// Writes the number's text to `out` and answers its whole length in bytes, which may exceed `capacity`: nothing is
// written then. A null code means decimal style.
ZELKON_PAGE_IMPORT(zkLocaleFormatNumber)
size_t zkLocaleFormatNumber(double value, const char* code, size_t codeBytes, int maximumFractionDigits, char* out,
                            size_t capacity) noexcept;
// The month (1...) named so, 0 for none.
ZELKON_PAGE_IMPORT(zkLocaleMonthNamed)
int zkLocaleMonthNamed(const char* text, size_t bytes) noexcept;
ZELKON_PAGE_IMPORT(zkLocaleMonthsPerYear)
int zkLocaleMonthsPerYear() noexcept;

}  // extern "C"
