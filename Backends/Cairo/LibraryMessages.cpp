#include "Backends/Cairo/LibraryMessages.h"

#include <glib.h>

#include <string>

namespace zelkon {
namespace {

std::string_view fieldNamed(std::string_view name, const GLogField* fields, gsize count) {
  for (gsize i = 0; i < count; ++i) {
    if (fields[i].key != name) continue;
    const auto* value = static_cast<const char*>(fields[i].value);
    return fields[i].length < 0 ? std::string_view(value)
                                : std::string_view(value, static_cast<size_t>(fields[i].length));
  }
  return {};
}

GLogWriterOutput write(GLogLevelFlags level, const GLogField* fields, gsize count, gpointer sink) {
  // What is only for those who look for errors in the libraries.
  if ((level & (G_LOG_LEVEL_ERROR | G_LOG_LEVEL_CRITICAL | G_LOG_LEVEL_WARNING)) == 0) return G_LOG_WRITER_HANDLED;
  std::string text(fieldNamed("GLIB_DOMAIN", fields, count));
  if (!text.empty()) text += ": ";
  text += fieldNamed("MESSAGE", fields, count);
  reinterpret_cast<LibraryMessageSink>(sink)(text, (level & (G_LOG_FLAG_FATAL | G_LOG_LEVEL_ERROR)) != 0);
  return G_LOG_WRITER_HANDLED;
}

}  // namespace

void setLibraryMessageSink(LibraryMessageSink sink) {
  g_log_set_writer_func(write, reinterpret_cast<gpointer>(sink), nullptr);
}

}  // namespace zelkon
