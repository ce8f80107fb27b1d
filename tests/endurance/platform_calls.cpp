// Stands before every platform function that the gadget calls: counts the call, lets it fail, keeps its answer back.
#include <Ecore.h>
#include <dlfcn.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <string_view>
#include <vector>

#include "connection_manager.h"
#include "gadget_host.h"
#include "injection.h"
#include "settings_store.h"
#include "voice_control.h"
#include "wifi_manager.h"

#define GATE inline __attribute__((always_inline))  // so that the return address is that of the wrapper's caller

namespace {

template <typename Result, typename... Arguments>
Result callNext(const char* name, Arguments... arguments) {
    return reinterpret_cast<Result (*)(Arguments...)>(dlsym(RTLD_NEXT, name))(arguments...);
}

// Puts the ordered text in the place of one that the platform hands out.
void replaceText(char** text) {
    const char* const wanted = injection::platformText();
    if (text == nullptr || wanted == nullptr) return;
    std::free(*text);
    *text = strdup(wanted);
}
// Takes what all other calls have for their arguments.
void replaceText(...) {}  // NOLINT(cert-dcl50-cpp): reads none of them

// Of the stored values only those that are shown as they are; modes and the like stay.
bool isShownValue(std::string_view key) {
    constexpr std::string_view kEnds[] = {"_ip_V6", "_gateway_V6", "_dns_V6", "/ap_name"};
    return std::ranges::any_of(kEnds, [key](std::string_view end) { return key.ends_with(end); });
}

template <typename... Arguments>
GATE int gate(const char* name, Arguments... arguments) {
    const int fault = injection::platformFault(name, __builtin_return_address(0));
    if (fault != 0) return fault;
    const int result = callNext<int>(name, arguments...);
    if (result == 0) (replaceText(arguments), ...);
    return result;
}

// A result that the gadget waits for. It outlives its withdrawal, to hear what must not come any more.
struct Answer {
    const char* function;
    const void* askedOn;
    connection_result_cb callback;
    void* data;
    double held;
    int result = 0;
    bool withdrawn = false;
    bool delivered = false;
    bool abandoned = false;
};

constinit bool gadgetLives = false;

std::vector<std::unique_ptr<Answer>>& answers() {
    static std::vector<std::unique_ptr<Answer>> all;
    return all;
}

template <typename Matches>
void withdraw(Matches matches) {
    for (const auto& answer : answers())
        answer->withdrawn = answer->withdrawn || matches(*answer);
}

void withdrawAskedOn(const void* handle) {
    withdraw([handle](const Answer& answer) { return answer.askedOn == handle; });
}

void withdrawAll(std::string_view prefix) {
    withdraw([prefix](const Answer& answer) { return std::string_view(answer.function).starts_with(prefix); });
}

void abandonAll(std::string_view prefix) {
    for (const auto& answer : answers())
        answer->abandoned = answer->abandoned || std::string_view(answer->function).starts_with(prefix);
}

Eina_Bool deliver(void* data) {
    auto* const answer = static_cast<Answer*>(data);
    answer->delivered = true;
    if (answer->withdrawn) return ECORE_CALLBACK_CANCEL;
    if (!gadgetLives && !answer->abandoned)
        injection::complain("an answer that nobody withdrew comes to a closed gadget", answer->function);
    answer->callback(answer->result, answer->data);
    return ECORE_CALLBACK_CANCEL;
}

// What the platform calls in place of the gadget's callback.
void receive(int result, void* data) {
    auto* const answer = static_cast<Answer*>(data);
    answer->result = result;
    if (answer->withdrawn) injection::complain("the platform answers after the release", answer->function);
    if (answer->held > 0) ecore_timer_add(answer->held, deliver, answer);
    if (answer->held == 0) deliver(answer);  // after that it may be gone
}

Answer* newAnswer(const char* function, const void* askedOn, connection_result_cb callback, void* data, double held) {
    std::erase_if(answers(), [](const auto& answer) { return answer->delivered; });
    answers().push_back(std::make_unique<Answer>(Answer{function, askedOn, callback, data, held}));
    return answers().back().get();
}

template <typename... Owner>
GATE int gateQuestion(const char* name, connection_result_cb callback, void* data, Owner... owner) {
    if (const int fault = injection::platformFault(name, __builtin_return_address(0)); fault != 0) return fault;
    if (callback == nullptr) return callNext<int>(name, owner..., callback, data);
    const void* const askedOn[] = {nullptr, owner...};  // the last one; of the manager itself when there is no other
    Answer* const answer = newAnswer(name, askedOn[sizeof...(owner)], callback, data, injection::secondsToHold());
    const int result = callNext<int>(name, owner..., &receive, static_cast<void*>(answer));
    if (result != CONNECTION_ERROR_NONE) answer->withdrawn = true;
    return result;
}

// A call that ends answers when it succeeds.
template <typename End, typename... Arguments>
GATE int gateRelease(const char* name, End end, Arguments... arguments) {
    if (const int fault = injection::platformFault(name, __builtin_return_address(0)); fault != 0) return fault;
    const int result = callNext<int>(name, arguments...);
    if (result == CONNECTION_ERROR_NONE) end();
    return result;
}

}  // namespace

// One function, one line.
// clang-format off
using Connection = connection_handle;
using Profile = connection_profile_handle;
using Iterator = connection_profile_iterator;
using Ap = wifi_ap_handle;

INTERPOSED int connection_create(Connection* c) { return gate(__func__, c); }
INTERPOSED int connection_get_ethernet_state(Connection c, int* state) { return gate(__func__, c, state); }
INTERPOSED int connection_get_mac_address(Connection c, int type, char** mac) { return gate(__func__, c, type, mac); }
INTERPOSED int connection_update_profile(Connection c, Profile p) { return gate(__func__, c, p); }
INTERPOSED int connection_set_ip_address_changed_cb(Connection c, connection_address_changed_cb cb, void* data) { return gate(__func__, c, cb, data); }
INTERPOSED int connection_unset_ip_address_changed_cb(Connection c) { return gate(__func__, c); }
INTERPOSED int connection_set_type_changed_cb(Connection c, connection_type_changed_cb cb, void* data) { return gate(__func__, c, cb, data); }
INTERPOSED int connection_unset_type_changed_cb(Connection c) { return gate(__func__, c); }
INTERPOSED int connection_get_is_online_ipv6_async(Connection c, connection_result_cb cb, void* data) { return gateQuestion(__func__, cb, data, c); }
INTERPOSED int connection_profile_check_gateway6_async(Profile p, connection_result_cb cb, void* data) { return gateQuestion(__func__, cb, data, p); }
INTERPOSED int connection_unset_async_cb(void* handle) { return gateRelease( __func__, [=] { withdrawAskedOn(handle); }, handle); }
INTERPOSED int connection_destroy(Connection c) { return gateRelease( __func__, [] { withdrawAll("connection_"); }, c); }
INTERPOSED int connection_profile_destroy(Profile p) { return gateRelease( __func__, [=] { withdrawAskedOn(p); }, p); }

INTERPOSED int connection_get_profile_iterator(Connection c, int which, Iterator* it) { return gate(__func__, c, which, it); }
INTERPOSED bool connection_profile_iterator_has_next(Iterator it) {
    if (injection::platformFault(__func__, __builtin_return_address(0)) != 0) return false;
    return callNext<bool>(__func__, it);
}
INTERPOSED int connection_profile_iterator_next(Iterator it, Profile* p) { return gate(__func__, it, p); }
INTERPOSED int connection_destroy_profile_iterator(Iterator it) { return gate(__func__, it); }

INTERPOSED int connection_profile_clone(Profile* copy, Profile p) { return gate(__func__, copy, p); }
INTERPOSED int connection_profile_get_type(Profile p, int* type) { return gate(__func__, p, type); }
INTERPOSED int connection_profile_get_state(Profile p, int* state) { return gate(__func__, p, state); }
INTERPOSED int connection_profile_get_ip_address(Profile p, int family, char** address) { return gate(__func__, p, family, address); }
INTERPOSED int connection_profile_get_prefix_length(Profile p, int family, uint8_t* length) { return gate(__func__, p, family, length); }
INTERPOSED int connection_profile_get_gateway_address(Profile p, int family, char** address) { return gate(__func__, p, family, address); }
INTERPOSED int connection_profile_get_dns_address(Profile p, int order, int family, char** address) { return gate(__func__, p, order, family, address); }
INTERPOSED int connection_profile_get_dns_config_type(Profile p, int family, int* type) { return gate(__func__, p, family, type); }
INTERPOSED int connection_profile_set_ip_config_type(Profile p, int family, int type) { return gate(__func__, p, family, type); }
INTERPOSED int connection_profile_set_dns_config_type(Profile p, int family, int type) { return gate(__func__, p, family, type); }
INTERPOSED int connection_profile_set_ip_address(Profile p, int family, const char* address) { return gate(__func__, p, family, address); }
INTERPOSED int connection_profile_set_prefix_length(Profile p, int family, uint8_t length) { return gate(__func__, p, family, length); }
INTERPOSED int connection_profile_set_gateway_address(Profile p, int family, const char* address) { return gate(__func__, p, family, address); }
INTERPOSED int connection_profile_set_dns_address(Profile p, int order, int family, const char* address) { return gate(__func__, p, order, family, address); }

INTERPOSED int wifi_initialize(void) { return gate(__func__); }
// There is no other way to withdraw the manager's own questions: when it refuses, nobody can be blamed.
INTERPOSED int wifi_deinitialize(void) {
    const int result = gateRelease(__func__, [] { withdrawAll("wifi_"); });
    if (result != WIFI_ERROR_NONE) abandonAll("wifi_");
    return result;
}
INTERPOSED int wifi_is_activated(bool* activated) { return gate(__func__, activated); }
INTERPOSED int wifi_get_mac_address(char** mac) { return gate(__func__, mac); }
INTERPOSED int wifi_foreach_found_aps(wifi_found_ap_cb cb, void* data) { return gate(__func__, cb, data); }
INTERPOSED int wifi_get_connected_ap(Ap* ap) { return gate(__func__, ap); }
INTERPOSED int wifi_connect(Ap ap, wifi_result_cb cb, void* data) { return gateQuestion(__func__, cb, data, ap); }
INTERPOSED int wifi_disconnect(Ap ap, wifi_result_cb cb, void* data) { return gateQuestion(__func__, cb, data, ap); }
INTERPOSED int wifi_scan(wifi_result_cb cb, void* data) { return gateQuestion(__func__, cb, data); }
INTERPOSED int wifi_get_is_online_ipv6_async(wifi_result_cb cb, void* data) { return gateQuestion(__func__, cb, data); }
INTERPOSED int wifi_ap_check_gateway6_async(Ap ap, wifi_result_cb cb, void* data) { return gateQuestion(__func__, cb, data, ap); }
INTERPOSED int wifi_ap_unset_async_cb(Ap ap) { return gateRelease( __func__, [=] { withdrawAskedOn(ap); }, ap); }
INTERPOSED int wifi_ap_destroy(Ap ap) { return gateRelease( __func__, [=] { withdrawAskedOn(ap); }, ap); }

INTERPOSED int wifi_ap_clone(Ap* copy, Ap ap) { return gate(__func__, copy, ap); }
INTERPOSED int wifi_ap_get_essid(Ap ap, char** essid) { return gate(__func__, ap, essid); }
INTERPOSED int wifi_ap_get_bssid(Ap ap, char** bssid) { return gate(__func__, ap, bssid); }
INTERPOSED int wifi_ap_get_rssi(Ap ap, int* rssi) { return gate(__func__, ap, rssi); }
INTERPOSED int wifi_ap_get_security_type(Ap ap, int* type) { return gate(__func__, ap, type); }
INTERPOSED int wifi_ap_is_passphrase_required(Ap ap, bool* required) { return gate(__func__, ap, required); }
INTERPOSED int wifi_ap_set_passphrase(Ap ap, const char* passphrase) { return gate(__func__, ap, passphrase); }
INTERPOSED int wifi_ap_get_ip_address(Ap ap, int family, char** address) { return gate(__func__, ap, family, address); }
INTERPOSED int wifi_ap_get_prefix_length(Ap ap, uint8_t* length) { return gate(__func__, ap, length); }
INTERPOSED int wifi_ap_get_gateway_address(Ap ap, int family, char** address) { return gate(__func__, ap, family, address); }
INTERPOSED int wifi_ap_get_dns_address(Ap ap, int order, int family, char** address) { return gate(__func__, ap, order, family, address); }
INTERPOSED int wifi_ap_get_dns_config_type(Ap ap, int family, int* type) { return gate(__func__, ap, family, type); }
INTERPOSED int wifi_ap_set_ip_config_type(Ap ap, int family, int type) { return gate(__func__, ap, family, type); }
INTERPOSED int wifi_ap_set_dns_config_type(Ap ap, int family, int type) { return gate(__func__, ap, family, type); }
INTERPOSED int wifi_ap_set_ip_address(Ap ap, int family, const char* address) { return gate(__func__, ap, family, address); }
INTERPOSED int wifi_ap_set_prefix_length(Ap ap, uint8_t length) { return gate(__func__, ap, length); }
INTERPOSED int wifi_ap_set_gateway_address(Ap ap, int family, const char* address) { return gate(__func__, ap, family, address); }
INTERPOSED int wifi_ap_set_dns_address(Ap ap, int order, int family, const char* address) { return gate(__func__, ap, order, family, address); }

INTERPOSED int vc_elm_initialize(void) { gadgetLives = true; return gate(__func__); }
INTERPOSED int vc_elm_set_auto_register_mode(int mode, int click) { return gate(__func__, mode, click); }
INTERPOSED int vc_elm_deinitialize(void) { gadgetLives = false; return gate(__func__); }

INTERPOSED char* vconf_get_str(const char* key) {
    if (injection::platformFault(__func__, __builtin_return_address(0)) != 0) return nullptr;
    char* text = callNext<char*>(__func__, key);
    if (text != nullptr && isShownValue(key) && injection::isGadgets(__builtin_return_address(0))) replaceText(&text);
    return text;
}
INTERPOSED char* dcgettext(const char* domain, const char* id, int category) noexcept {
    const char* const wanted = injection::catalogueText();
    if (wanted == nullptr || !injection::isGadgets(__builtin_return_address(0))) return callNext<char*>(__func__, domain, id, category);
    return const_cast<char*>(wanted);
}
INTERPOSED int vconf_get_int(const char* key, int* value) { return gate(__func__, key, value); }
INTERPOSED int vconf_set_str(const char* key, const char* value) {
    if (injection::takeCommand(key, value)) return 0;
    return gate(__func__, key, value);
}

INTERPOSED void* ug_get_window(void) {
    if (injection::platformFault(__func__, __builtin_return_address(0)) != 0) return nullptr;
    return callNext<void*>(__func__);
}
INTERPOSED int ug_destroy_me(ug_handle ug) { return gate(__func__, ug); }
