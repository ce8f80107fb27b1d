// Where the gadget's resources lie, and its texts in the user's language.
#pragma once

#include <libintl.h>

#include <array>
#include <clocale>
#include <cstddef>
#include <string_view>

#include "Common/Text.h"
#include "gadget_paths.h"

inline constexpr const char* kTextDomain = "ug-Ostrelle-efl";
inline constexpr const char* kLocaleFolder = GADGET_LOCALE_FOLDER;
inline constexpr const char* kLayoutFile = GADGET_LAYOUT_FILE;
inline constexpr const char* kStatusGroup = "ipv6popup";
inline constexpr std::string_view kImageFolder = GADGET_IMAGE_FOLDER;

inline constexpr std::size_t kImagePathWidth = 255;
inline constexpr std::size_t kLongestImageName = 40;
static_assert(kImageFolder.size() + kLongestImageName < kImagePathWidth, "the image folder's path is too long");

// The text of an ID in the user's language; the ID itself when no catalogue has it. Never freed.
inline const char* localised(const char* textId) {
    return dcgettext(kTextDomain, textId, LC_MESSAGES);
}

// Writes the full path of an image file.
inline void imagePath(std::span<char> path, std::string_view fileName) {
    copyText(path, kImageFolder);
    if (path.size() > kImageFolder.size()) copyText(path.subspan(kImageFolder.size()), fileName);
}
