#include "Common/Outside_Text.h"

#include <Elementary.h>

#include "Common/Memory_Limit.h"
#include "Common/Text.h"

namespace {

constexpr std::string_view kReplacement = "\xEF\xBF\xBD";

// The toolkit's decoder hands invalid bytes out as lone surrogates, and takes what lies beyond the last character.
constexpr bool isCharacter(Eina_Unicode value) {
    return value < 0xD800 || (value > 0xDFFF && value <= 0x10FFFF);
}
// It also takes longer sequences than a character needs.
constexpr int sequenceLength(Eina_Unicode character) {
    return character < 0x80 ? 1 : character < 0x800 ? 2 : character < 0x10000 ? 3 : 4;
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
        const bool isWellFormed = isCharacter(character) && position - start == sequenceLength(character);
        if (!isWellFormed) position = start + 1;
        if (!isWellFormed || isControl(character)) {
            shown += kReplacement;
        } else {
            shown.append(source, static_cast<std::size_t>(start), static_cast<std::size_t>(position - start));
        }
    }
    return shown;
}

char* showableMarkup(const char* text) {
    char* markup = nullptr;
    unlessOutOfMemory([&] { markup = elm_entry_utf8_to_markup(showableText(text ? text : "").c_str()); });
    return markup;
}

void setOutsideText(Evas_Object* layout, const char* part, const char* text) {
    const PlatformText markup(showableMarkup(text));
    elm_object_part_text_set(layout, part, markup ? markup.get() : "");
}
