// The address check against the address grammar of RFC 4291, 2.2, written out once more, and RFC 5952's short form.
#include <algorithm>
#include <array>
#include <optional>
#include <vector>

#include "Common/IPv6_Address.h"
#include "fuzz.h"

namespace {

using Groups = std::array<unsigned, 8>;

// h16: one to four hexadecimal digits.
std::optional<unsigned> groupOf(std::string_view digits) {
    if (digits.empty() || digits.size() > 4) return std::nullopt;
    unsigned value = 0;
    for (const char digit : digits) {
        const std::size_t known = std::string_view("0123456789abcdefABCDEF").find(digit);
        if (known == std::string_view::npos) return std::nullopt;
        value = value * 16 + static_cast<unsigned>(known < 16 ? known : known - 6);
    }
    return value;
}

// Groups with a colon between each two; an empty text has none.
std::optional<std::vector<unsigned>> groupsOf(std::string_view text) {
    std::vector<unsigned> groups;
    while (!text.empty()) {
        const std::size_t colon = std::min(text.find(':'), text.size());
        const auto group = groupOf(text.substr(0, colon));
        if (!group || colon + 1 == text.size()) return std::nullopt;
        groups.push_back(*group);
        text.remove_prefix(std::min(colon + 1, text.size()));
    }
    return groups;
}

// Both sides of "::" must have a group, the outermost groups must not be zero, and at most seven colons may be
// written: with eight of them "::" would stand for no group.
std::optional<Groups> acceptedGroups(std::string_view text) {
    const std::size_t gap = text.find("::");
    const bool hasGap = gap != std::string_view::npos;
    const auto left = groupsOf(text.substr(0, gap));
    const auto right = groupsOf(hasGap ? text.substr(gap + 2) : std::string_view{});
    if (!left || !right || left->empty() || (hasGap && right->empty())) return std::nullopt;
    const std::size_t written = left->size() + right->size();
    if (hasGap ? written > 7 : written != 8) return std::nullopt;
    Groups groups{};
    std::ranges::copy(*left, groups.begin());
    std::ranges::copy(*right, groups.end() - static_cast<std::ptrdiff_t>(right->size()));
    if (groups.front() == 0 || groups.back() == 0) return std::nullopt;
    return groups;
}

// RFC 5952, 4: lower case, no leading zeros, "::" for the longest run of two and more zero groups, the first of
// equals.
std::string shortForm(const Groups& groups) {
    std::size_t begin = 0, length = 1;
    for (std::size_t from = 0; from < groups.size(); ++from) {
        std::size_t to = from;
        while (to < groups.size() && groups[to] == 0)
            ++to;
        if (to - from > length) begin = from, length = to - from;
    }
    std::string text;
    for (std::size_t i = 0; i < groups.size(); ++i) {
        if (length > 1 && i == begin) text += "::";
        if (length > 1 && i >= begin && i < begin + length) continue;
        if (!text.empty() && text.back() != ':') text += ':';
        std::array<char, 8> group{};
        std::snprintf(group.data(), group.size(), "%x", groups[i]);
        text += group.data();
    }
    return text;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string whole(reinterpret_cast<const char*>(data), size);
    const std::string text = whole.substr(0, whole.find('\0'));
    // No byte more than the check may use, so that the sanitizer sees a write beyond.
    std::vector<char> buffer(std::max<std::size_t>(text.size() + 1, 40));
    std::ranges::copy(text, buffer.begin());
    const bool accepted = ipv6Address_validation(buffer.data());
    const auto groups = acceptedGroups(text);
    fuzz::require(accepted == groups.has_value(), "the check and the grammar agree", text);
    fuzz::require(buffer.data() == (groups ? shortForm(*groups) : text), "short form, or left unchanged",
                  buffer.data());
    fuzz::require(!accepted || ipv6Address_validation(buffer.data()), "the short form is accepted too", buffer.data());
    return 0;
}
