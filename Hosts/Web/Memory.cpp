// The page's memory. It is either had or the module ends: no caller sees a failure, and allocating never throws, which
// spares every function that allocates the code to unwind from it.
#include <algorithm>
#include <cstdlib>
#include <new>

#include "Hosts/Web/PageImports.h"

extern "C" {

// Ends the instance; its host hears of it as an error of the call that is running.
_Noreturn void abort() { __builtin_trap(); }

// The C library asks for memory up to the size. A fifth more is taken where it can be had, so that many small requests
// do not each move the page's views of the memory.
int emscripten_resize_heap(size_t size) {
  constexpr size_t pageSize = 65536;
  const size_t present = __builtin_wasm_memory_size(0);
  const size_t needed = (size + pageSize - 1) / pageSize - present;
  if (zelkon_page_grow_memory(std::max(needed, present / 5)) || zelkon_page_grow_memory(needed)) return 1;
  abort();
}

}  // extern "C"

void* operator new(std::size_t size) { return std::malloc(size); }
void* operator new[](std::size_t size) { return std::malloc(size); }
void operator delete(void* memory) noexcept { std::free(memory); }
void operator delete[](void* memory) noexcept { std::free(memory); }
void operator delete(void* memory, std::size_t) noexcept { std::free(memory); }
void operator delete[](void* memory, std::size_t) noexcept { std::free(memory); }
