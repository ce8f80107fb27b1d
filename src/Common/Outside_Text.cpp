#include "Common/Outside_Text.h"

#include <Elementary.h>

#include "Common/Text.h"

namespace {

constexpr std::string_view kReplacement = "\xEF\xBF\xBD";

// The toolkit's decoder hands invalid bytes out as lone surrogates, and sequences beyond Unicode's end as numbers.
constexpr bool isInvalid(Eina_Unicode character) {
    return (character >= 0xD800 && character <= 0xDFFF) || character > 0x10FFFF;
}
constexpr bool isControl(Eina_Unicode character) {
    return character < 0x20 || (character >= 0x7F && character < 0xA0);
}

}  // namespace

std::string showableText(std::string_view text) {
    const std::string source(text);
    std::string shown;
    int position = 0;
    while (position < static_cast<int>(source.size())) {
        const int start = position;
        const Eina_Unicode character = eina_unicode_utf8_next_get(source.c_str(), &position);
        if (position <= start) break;
        if (isInvalid(character) || isControl(character)) {
            shown += kReplacement;
        } else {
            shown.append(source, static_cast<std::size_t>(start), static_cast<std::size_t>(position - start));
        }
    }
    return shown;
}

void setOutsideText(Evas_Object* layout, const char* part, const char* text) {
    const PlatformText markup(elm_entry_utf8_to_markup(showableText(text ? text : "").c_str()));
    elm_object_part_text_set(layout, part, markup ? markup.get() : "");
}
