#include "log/line.h"

#include <Eina.h>

#include <cstdio>
#include <cstdlib>
#include <memory>

namespace logging {

namespace {

// How eina_unicode_utf8_next_get() reports a byte that belongs to no UTF-8 sequence.
constexpr bool isStrayByte(Eina_Unicode c) {
    return c >= 0xdc80 && c <= 0xdcff;
}

constexpr bool isControl(Eina_Unicode c) {
    return c < 0x20 || (c >= 0x7f && c <= 0x9f);
}

// Line and paragraph separators, and the marks that turn the reading direction of what follows.
constexpr bool isInvisibleMark(Eina_Unicode c) {
    return (c >= 0x2028 && c <= 0x202e) || (c >= 0x2066 && c <= 0x2069);
}

void appendEscape(Eina_Unicode c, std::string& line) {
    if (c == '\n') {
        line += "\\n";
        return;
    }
    char escape[16];
    const bool wide = c > 0xff && !isStrayByte(c);
    std::snprintf(escape, sizeof escape, wide ? "\\u%04x" : "\\x%02x", wide ? c : c & 0xff);
    line += escape;
}

struct Free {
    void operator()(char* text) const { std::free(text); }
};

std::string_view withoutTrailingBreaks(std::string_view text) {
    const auto last = text.find_last_not_of(" \t\r\n");
    return last == std::string_view::npos ? std::string_view{} : text.substr(0, last + 1);
}

}  // namespace

bool format(const char* format, std::va_list arguments, std::string& text) {
    char* made = nullptr;
    const int length = vasprintf(&made, format, arguments);
    if (length < 0) return false;
    const std::unique_ptr<char, Free> owned(made);
    text.assign(made, static_cast<std::size_t>(length));
    return true;
}

std::string clean(std::string_view text) {
    const std::string source(withoutTrailingBreaks(text));  // the decoder below wants a terminator
    std::string line;
    line.reserve(source.size());
    int next = 0;
    while (static_cast<std::size_t>(next) < source.size()) {
        const int start = next;
        const Eina_Unicode c = eina_unicode_utf8_next_get(source.c_str(), &next);
        if (next <= start) break;
        if (isControl(c) || isStrayByte(c) || isInvisibleMark(c)) {
            appendEscape(c, line);
        } else {
            line.append(source, static_cast<std::size_t>(start), static_cast<std::size_t>(next - start));
        }
    }
    return line;
}

}  // namespace logging
