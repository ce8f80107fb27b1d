// Owned and bounded texts.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <span>
#include <string_view>

// A text that a platform call handed out; it was made with malloc and goes with its owner.
struct FreeText {
    void operator()(char* text) const { std::free(text); }
};
using PlatformText = std::unique_ptr<char, FreeText>;

// Calls a platform getter that hands out a text through its last argument: fetchText(text, getter, handle, family).
// Returns the getter's result.
template <typename Getter, typename... Arguments>
int fetchText(PlatformText& text, Getter getter, Arguments... arguments) {
    char* raw = nullptr;
    const int result = getter(arguments..., &raw);
    text.reset(raw);
    return result;
}

// Copies what fits, fills the rest of the field with zeros, and always terminates.
inline void copyText(std::span<char> field, std::string_view text) {
    if (field.empty()) return;
    const std::size_t length = std::min(text.size(), field.size() - 1);
    std::memcpy(field.data(), text.data(), length);
    std::fill(field.begin() + static_cast<std::ptrdiff_t>(length), field.end(), '\0');
}

// As copyText; a null text empties the field.
inline void copyTextOrEmpty(std::span<char> field, const char* text) {
    copyText(field, text ? text : "");
}
