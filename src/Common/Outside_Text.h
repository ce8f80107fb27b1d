// Texts from outside (network names, addresses) on the screen: shown as they are, never read as markup.
#pragma once

#include <Evas.h>

#include <string>
#include <string_view>

// The text as valid UTF-8 without control characters: what cannot be shown becomes U+FFFD.
std::string showableText(std::string_view text);

// The same as markup for a part that reads it, on the heap (the caller frees it). Null counts as empty; null when
// memory is out.
char* showableMarkup(const char* text);

// Shows a text from outside in a part of a layout. Null counts as empty, and so does a text that
// memory is out for.
void setOutsideText(Evas_Object* layout, const char* part, const char* text);
