// What the page provides; implemented in canvas.library.js, which hands every call to Module.canvas (canvas.ts) or
// Module.locale (locale.ts). No function lets a JavaScript exception through: a failure is an answer of 0.
// Pointers are read during the call only; text is UTF-8.
#pragma once

#include <cstddef>
#include <cstdint>

extern "C" {

// Replays a buffer of commands; see CanvasCommands.h.
void zkCanvasReplay(const double* commands, size_t count, const char* strings, size_t stringBytes);
// The id of a new transparent surface, 0 when it cannot be had.
int zkCanvasMake(int pixelWidth, int pixelHeight);
// The id of a surface with the picture, 0 when the page has not prepared these bytes. Writes width and height.
int zkCanvasDecode(const uint8_t* bytes, size_t count, int* size);
// Premultiplied R,G,B,A, first row at the top; 1 when `pixels` was filled.
int zkCanvasRead(int surface, uint8_t* pixels, size_t count);
// Advance at 1 point per em. Faces: bit 0 bold, bit 1 Helvetica instead of Lucida Grande.
double zkCanvasMeasure(int face, const char* text, size_t bytes);

// Writes the number's text to `out` and answers its whole length in bytes, which may exceed `capacity`: nothing is
// written then. A null code means decimal style.
size_t zkLocaleFormatNumber(double value, const char* code, size_t codeBytes, int maximumFractionDigits, char* out,
                            size_t capacity);
// The month (1...) named so, 0 for none.
int zkLocaleMonthNamed(const char* text, size_t bytes);
int zkLocaleMonthsPerYear();

}  // extern "C"
