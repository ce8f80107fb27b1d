#include "result_names.h"

#include <array>
#include <charconv>
#include <utility>

#include "connection_manager.h"
#include "wifi_manager.h"

namespace network::simulated {
namespace {

constexpr auto kNames = std::to_array<std::pair<std::string_view, int>>({
    {"NONE", CONNECTION_ERROR_NONE},
    {"OUT_OF_MEMORY", CONNECTION_ERROR_OUT_OF_MEMORY},
    {"INVALID_PARAMETER", CONNECTION_ERROR_INVALID_PARAMETER},
    {"INVALID_OPERATION", CONNECTION_ERROR_INVALID_OPERATION},
    {"ADDRESS_FAMILY_NOT_SUPPORTED", CONNECTION_ERROR_ADDRESS_FAMILY_NOT_SUPPORTED},
    {"NOW_IN_PROGRESS", CONNECTION_ERROR_NOW_IN_PROGRESS},
    {"INVALID_GATEWAY", CONNECTION_ERROR_INVALID_GATEWAY},
    {"OFFLINE", CONNECTION_ERROR_OFFLINE},
    {"TCP_SYN_TIMEOUT", CONNECTION_ERROR_TCP_SYN_TIMEOUT},
    {"RST_IN_TCP_RESPONSE", CONNECTION_ERROR_RST_IN_TCP_RESPONSE},
    {"NO_KEYWORD", CONNECTION_ERROR_NO_KEYWORD},
    {"OPERATION_FAILED", CONNECTION_ERROR_OPERATION_FAILED},
    {"ITERATOR_END", CONNECTION_ERROR_ITERATOR_END},
    {"NO_CONNECTION", CONNECTION_ERROR_NO_CONNECTION},
    {"ALREADY_EXISTS", CONNECTION_ERROR_ALREADY_EXISTS},
    {"OPERATION_ABORTED", CONNECTION_ERROR_OPERATION_ABORTED},
    {"DHCP_FAILED", CONNECTION_ERROR_DHCP_FAILED},
    {"INVALID_KEY", CONNECTION_ERROR_INVALID_KEY},
    {"NO_REPLY", CONNECTION_ERROR_NO_REPLY},
    {"WPS_WEP_PROHIBITED", WIFI_ERROR_WPS_WEP_PROHIBITED},
    {"WPS_TIMEOUT", WIFI_ERROR_WPS_TIMEOUT},
    {"WPS_OVERLAP", WIFI_ERROR_WPS_OVERLAP},
    {"SECURITY_RESTRICTED", WIFI_ERROR_SECURITY_RESTRICTED},
});

}  // namespace

std::optional<int> resultOf(std::string_view text) {
    for (const auto& [name, code] : kNames) {
        if (name == text) return code;
    }
    int code = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), code);
    if (error != std::errc{} || end != text.data() + text.size()) return std::nullopt;
    return code;
}

std::string notAResult(const std::string& text) {
    return "\"" + text + "\" is not a result of the connection or Wi-Fi manager";
}

}  // namespace network::simulated
