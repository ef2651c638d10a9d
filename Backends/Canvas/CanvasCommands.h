// The drawing commands on their way to the page: one growing buffer for all contexts of a device, replayed in order by
// canvas.ts in one call. The order alone keeps pictures right: what draws a surface stands before what shows it.
//
// A command is its number, the count of its arguments, and the arguments, all as doubles. Text crosses once: a `string`
// command gives a number to the next bytes of the string block, later commands use the number. The number 0 makes the
// page forget all texts before it.
#pragma once

#include <cstddef>
#include <initializer_list>
#include <map>
#include <span>
#include <string>
#include <vector>

#include "CoreGraphics/CGContext.h"

namespace zelkon {

// The numbers are canvas.ts's too. An rgba is four plain components; blend is the number of the CGBlendMode; a path is
// elements to the end: 0 x y move, 1 x y line, 2 and three points curve, 3 close.
enum class CanvasOp {
  open = 1,    // context, surface, scale
  close,       // context
  select,      // context: what follows is drawn by it
  save,        //
  restore,     //
  concat,      // a b c d tx ty
  clip,        // even-odd, path
  fill,        // even-odd, rgba, blend, path
  stroke,      // width, rgba, blend, path
  gradient,    // start, end, radius, options, alpha, blend, then location and rgba of each stop
  image,       // surface, x y w h, pixels w h from the bottom left, alpha, blend
  text,        // face, size, x y, string, rgba, blend
  clear,       // x y w h
  beginGroup,  // device pixels x y w h, alpha, blend, brightness, has shadow, dx dy sigma in device pixels y down, rgba
  endGroup,    //
  string,      // number, bytes of the block
  release,     // surface
  resize,      // surface, w h
  shadowFill,  // shadow as in beginGroup, even-odd, start and end of the gradient, count of stops and these, path
};

class CanvasCommands {
 public:
  // Appends a command for the context (0: for none in particular).
  void add(int context, CanvasOp op, std::initializer_list<double> arguments = {});
  // Appends further arguments to the last command.
  void more(std::initializer_list<double> arguments);
  void more(std::span<const double> arguments);
  void path(const CGPath& path);
  void color(const RGBA& color);
  // Marks the group that the last command has begun.
  void groupBegun() { groupAt_ = countAt_ - 1; }
  // For the end of the context's group. When the last group that was begun is the context's and holds nothing but a
  // gradient that fills its clip with opaque colours, puts a single command in its place: engines blur the shadow of a
  // shape with far less work than that of a picture. False when the group has to be ended. The bounds of the group must
  // not cut its contents.
  bool foldGroup(int context);
  // The number of the text, sent ahead when it is new.
  int string(const std::string& text);
  int newContext() { return ++lastContext_; }
  // Replays everything so far in the page.
  void flush();

 private:
  static constexpr size_t noGroup = static_cast<size_t>(-1);

  std::vector<double> commands_;
  std::string strings_;
  std::map<std::string, int> numbers_;
  size_t knownBytes_ = 0;     // of the texts that have numbers
  size_t countAt_ = 0;        // where the last command's argument count stands
  size_t groupAt_ = noGroup;  // where the last group's command stands
  int selected_ = 0, lastContext_ = 0;
};

}  // namespace zelkon
