// Says of a function's declaration that the page provides it under the name.
#pragma once

#ifdef __wasm__
#define ZELKON_PAGE_IMPORT(name) __attribute__((import_module("env"), import_name(#name)))
#else
#define ZELKON_PAGE_IMPORT(name)
#endif
