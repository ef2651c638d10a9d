// Loaded before a program's libraries: only the first so many threads can be started, as the variable THREADS says.
#include <dlfcn.h>
#include <pthread.h>

#include <atomic>
#include <cerrno>
#include <cstdlib>

extern "C" int pthread_create(pthread_t* thread, const pthread_attr_t* attributes, void* (*start)(void*),
                              void* argument) {
  static std::atomic<int> left = std::getenv("THREADS") ? std::atoi(std::getenv("THREADS")) : 0;
  if (left-- <= 0) return EAGAIN;
  const auto next = reinterpret_cast<decltype(&pthread_create)>(dlsym(RTLD_NEXT, "pthread_create"));
  return next(thread, attributes, start, argument);
}
