#include "log/line.h"

#include <Eina.h>

#include <cstdio>

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

std::string_view withoutTrailingBreaks(std::string_view text) {
    const auto last = text.find_last_not_of(" \t\r\n");
    return last == std::string_view::npos ? std::string_view{} : text.substr(0, last + 1);
}

}  // namespace

bool format(const char* format, std::va_list arguments, std::string& text) {
    std::va_list again;
    va_copy(again, arguments);
    char shortText[512];
    const int length = std::vsnprintf(shortText, sizeof shortText, format, arguments);
    if (length >= 0) {
        const auto size = static_cast<std::size_t>(length);
        if (size < sizeof shortText) {
            text.assign(shortText, size);
        } else {
            text.resize(size);
            std::vsnprintf(text.data(), size + 1, format, again);
        }
    }
    va_end(again);
    return length >= 0;
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
