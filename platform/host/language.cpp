#include "host/language.h"

#include <clocale>
#include <cstdlib>
#include <string>

namespace {

std::string environment(const char* name) {
    const char* const value = std::getenv(name);
    return value == nullptr ? "" : value;
}

// "de_AT.UTF-8@euro" to "de_AT"; the locales that name no language give an empty text.
std::string languageOf(const std::string& locale) {
    const std::string language = locale.substr(0, locale.find_first_of(".@"));
    return language == "C" || language == "POSIX" ? "" : language;
}

// The variables in the order in which the C library obeys them.
std::string wishedLanguages() {
    if (std::string wished = environment("LANGUAGE"); !wished.empty()) return wished;
    for (const char* name : {"LC_ALL", "LC_MESSAGES", "LANG"}) {
        if (const std::string locale = environment(name); !locale.empty()) return languageOf(locale);
    }
    return "";
}

std::string withEnglishLast(const std::string& languages) {
    const std::string padded = ":" + languages + ":";
    if (padded.find(":en:") != std::string::npos) return languages;
    return languages.empty() ? "en" : languages + ":en";
}

}  // namespace

namespace host {

void chooseLanguage() {
    const std::string languages = withEnglishLast(wishedLanguages());
    const bool known = std::setlocale(LC_ALL, "") != nullptr;
    // The C library looks for no catalogue in a locale called C or POSIX, or in one that is not installed.
    if (!known || languageOf(std::setlocale(LC_MESSAGES, nullptr)).empty()) {
        setenv("LC_ALL", "C.UTF-8", 1);
        std::setlocale(LC_ALL, "");
    }
    setenv("LANGUAGE", languages.c_str(), 1);
}

}  // namespace host
