// The text of a log line.
#pragma once

#include <cstdarg>
#include <string>
#include <string_view>

namespace logging {

// As vprintf would print it, at any length. False when the C library refuses the format.
[[gnu::format(printf, 1, 0)]] bool format(const char* format, std::va_list arguments, std::string& text);

// One line that no value can break up or restyle: line breaks at the end go, and every control character, byte that is
// no UTF-8, and invisible line or direction mark becomes an escape (\n, \x1b, \u202e).
std::string clean(std::string_view text);

}  // namespace logging
