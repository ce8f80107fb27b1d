// Every boundary function of both managers against null, foreign, stale and wrong-kind handles, null outs, impossible
// values and failures that a scenario wants.
#include <dlfcn.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <array>
#include <cstdlib>
#include <functional>
#include <tuple>

#include "connection_manager.h"
#include "main_loop.h"
#include "temporary_scenario.h"
#include "wifi_manager.h"

namespace {

// Both managers have the same numbers for these.
constexpr int kInvalidParameter = CONNECTION_ERROR_INVALID_PARAMETER;
constexpr int kInvalidOperation = CONNECTION_ERROR_INVALID_OPERATION;
constexpr int kNotSupported = CONNECTION_ERROR_ADDRESS_FAMILY_NOT_SUPPORTED;
constexpr int kInProgress = CONNECTION_ERROR_NOW_IN_PROGRESS;
constexpr int kStatic = 1;   // of both kinds of configuration
constexpr int kFamily = -2;  // stands for the address family among a call's numbers

enum Kind { kClient, kIterator, kProfile, kClone, kAp, kNoHandle, kKinds };
enum class Flaw { None, Null, Ipv4, UnknownFamily, Impossible };

struct Row {
    const char* name;
    Kind kind;
    bool hasPointer, hasFamily, hasValue;
    std::function<int(void* handle, Flaw)> call;
};

template <typename Function>
struct Ignoring;
template <typename Result, typename... Arguments>
struct Ignoring<Result (*)(Arguments...)> {
    static Result call(Arguments...) { return Result(); }
};

int numberFor(int number, Flaw flaw) {
    if (number != kFamily) return flaw == Flaw::Impossible ? -1 : number;
    if (flaw == Flaw::UnknownFamily) return 2;
    return flaw == Flaw::Ipv4 ? CONNECTION_ADDRESS_FAMILY_IPV4 : CONNECTION_ADDRESS_FAMILY_IPV6;
}

// One argument of a call that is right but for the flaw.
template <typename Argument>
Argument argument(void* handle, const int*& number, Flaw flaw) {
    if constexpr (std::is_same_v<Argument, void*>) {
        return handle;  // or the user data
    } else if constexpr (std::is_integral_v<Argument>) {
        return static_cast<Argument>(numberFor(*number++, flaw));
    } else if constexpr (std::is_same_v<Argument, const char*>) {
        return flaw == Flaw::Null ? nullptr : flaw == Flaw::Impossible ? "ff02::1" : "2001:db8::7";
    } else if constexpr (std::is_function_v<std::remove_pointer_t<Argument>>) {
        return flaw == Flaw::Null ? nullptr : Ignoring<Argument>::call;
    } else {
        static std::remove_pointer_t<Argument> out{};
        if constexpr (std::is_same_v<Argument, char**>) std::free(std::exchange(out, nullptr));
        return flaw == Flaw::Null ? nullptr : &out;
    }
}

// A function, and the numbers that it takes by value.
template <typename... Arguments>
Row rowOf(Kind kind, const std::vector<int>& numbers, int (*function)(Arguments...)) {
    Dl_info symbol{};
    dladdr(reinterpret_cast<void*>(function), &symbol);
    const bool hasPointer = ((std::is_pointer_v<Arguments> && !std::is_same_v<Arguments, void*>) || ...);
    const bool hasText = (std::is_same_v<Arguments, const char*> || ...);
    const auto families = static_cast<std::size_t>(std::count(numbers.begin(), numbers.end(), kFamily));
    const bool hasValue = numbers.size() > families || (hasText && families > 0);
    const auto call = [=]([[maybe_unused]] void* handle, [[maybe_unused]] Flaw flaw) {
        [[maybe_unused]] const int* number = numbers.data();
        return std::apply(function, std::tuple<Arguments...>{argument<Arguments>(handle, number, flaw)...});
    };
    return {symbol.dli_sname, kind, hasPointer, families > 0, hasValue, call};
}

template <typename... Functions>
std::vector<Row> rows(Kind kind, const std::vector<int>& numbers, Functions... functions) {
    return {rowOf(kind, numbers, functions)...};
}

const std::vector<Row> kRows[] = {
    rows(kClient, {}, connection_set_type_changed_cb, connection_set_ip_address_changed_cb,
         connection_unset_type_changed_cb, connection_unset_ip_address_changed_cb, connection_get_is_online_ipv6_async,
         connection_unset_async_cb, connection_get_ethernet_state, connection_destroy),
    rows(kClient, {CONNECTION_TYPE_ETHERNET}, connection_get_mac_address),
    rows(kClient, {CONNECTION_ITERATOR_CONNECTED}, connection_get_profile_iterator),
    rows(kIterator, {}, connection_profile_iterator_next, connection_destroy_profile_iterator),
    rows(kClone, {}, connection_profile_destroy),
    rows(kProfile, {}, connection_profile_clone, connection_profile_get_type, connection_profile_get_state,
         connection_profile_check_gateway6_async, connection_unset_async_cb),
    rows(kProfile, {kFamily}, connection_profile_get_ip_address, connection_profile_get_prefix_length,
         connection_profile_get_gateway_address, connection_profile_get_dns_config_type,
         connection_profile_set_ip_address, connection_profile_set_gateway_address),
    rows(kProfile, {1, kFamily}, connection_profile_get_dns_address, connection_profile_set_dns_address),
    rows(kProfile, {kFamily, kStatic}, connection_profile_set_ip_config_type, connection_profile_set_dns_config_type),
    rows(kProfile, {kFamily, 48}, connection_profile_set_prefix_length),
    rows(kNoHandle, {}, wifi_is_activated, wifi_get_mac_address, wifi_foreach_found_aps, wifi_get_connected_ap,
         wifi_scan, wifi_get_is_online_ipv6_async, wifi_deinitialize),
    rows(kAp, {}, wifi_ap_clone, wifi_ap_get_essid, wifi_ap_get_bssid, wifi_ap_get_rssi, wifi_ap_get_security_type,
         wifi_ap_is_passphrase_required, wifi_ap_get_prefix_length, wifi_ap_set_passphrase,
         wifi_ap_check_gateway6_async, wifi_ap_unset_async_cb, wifi_disconnect, wifi_connect, wifi_ap_destroy),
    rows(kAp, {kFamily}, wifi_ap_get_ip_address, wifi_ap_get_gateway_address, wifi_ap_get_dns_config_type,
         wifi_ap_set_ip_address, wifi_ap_set_gateway_address),
    rows(kAp, {1, kFamily}, wifi_ap_get_dns_address, wifi_ap_set_dns_address),
    rows(kAp, {48}, wifi_ap_set_prefix_length),
    rows(kAp, {kFamily, kStatic}, wifi_ap_set_ip_config_type, wifi_ap_set_dns_config_type),
};

class Arguments : public testing::Test {
  protected:
    // A network with both media, and a live handle of each kind.
    void open() {
        auto network = nlohmann::json::parse(kPromptNetwork);
        network["wifi"] = nlohmann::json::parse(kPromptRadio)["wifi"];
        selectScenario(network.dump());
        EXPECT_EQ(connection_create(&handles[kClient]), 0);
        for (void** iterator : {&handles[kClone], &handles[kIterator]})
            EXPECT_EQ(connection_get_profile_iterator(handles[kClient], CONNECTION_ITERATOR_REGISTERED, iterator), 0);
        EXPECT_EQ(connection_profile_iterator_next(handles[kClone], &handles[kProfile]), 0);
        EXPECT_EQ(connection_profile_clone(&handles[kClone], handles[kProfile]), 0);
        EXPECT_EQ(wifi_initialize(), 0);
        EXPECT_EQ(wifi_get_connected_ap(&handles[kAp]), 0);
    }

    void check(const Row& row) {
        ASSERT_NE(row.name, nullptr);
        SCOPED_TRACE(row.name);
        open();
        const auto result = [&](Flaw flaw) { return row.call(handles[row.kind], flaw); };
        if (row.kind != kNoHandle) {
            int notAHandle = 0;
            void* wrongKind = handles[row.kind == kIterator ? kClient : kIterator];
            EXPECT_EQ(row.call(nullptr, Flaw::None), kInvalidParameter);
            EXPECT_EQ(row.call(&notAHandle, Flaw::None), kInvalidOperation);
            EXPECT_EQ(row.call(wrongKind, Flaw::None), kInvalidOperation);
        }
        const std::tuple<Flaw, bool, int> flaws[] = {{Flaw::Null, row.hasPointer, kInvalidParameter},
                                                     {Flaw::Ipv4, row.hasFamily, kNotSupported},
                                                     {Flaw::UnknownFamily, row.hasFamily, kInvalidParameter},
                                                     {Flaw::Impossible, row.hasValue, kInvalidParameter}};
        for (const auto& [flaw, canHave, wanted] : flaws)
            EXPECT_EQ(canHave ? result(flaw) : wanted, wanted) << static_cast<int>(flaw);
        say({"fault", row.name, "NOW_IN_PROGRESS", "2"});
        for (const int wanted : {kInProgress, kInProgress, 0})
            EXPECT_EQ(result(Flaw::None), wanted);
        connection_destroy(handles[kClient]);
        wifi_deinitialize();
        EXPECT_EQ(result(Flaw::None), kInvalidOperation);
    }

    MainLoop loop;
    std::array<void*, kKinds> handles{};
};

TEST_F(Arguments, AreCheckedByEveryFunction) {
    for (const std::vector<Row>& some : kRows) {
        for (const Row& row : some)
            check(row);
    }
}

TEST_F(Arguments, FailToOpenWhenAScenarioWantsIt) {
    open();
    EXPECT_EQ(connection_create(nullptr), kInvalidParameter);
    say({"fault", "connection_create", "-12"});
    void* client = nullptr;
    EXPECT_EQ(connection_create(&client), CONNECTION_ERROR_OUT_OF_MEMORY);
    EXPECT_EQ(client, nullptr);
    ASSERT_EQ(wifi_deinitialize(), 0);
    say({"fault", "wifi_initialize", "NO_REPLY", "1"});
    EXPECT_EQ(wifi_initialize(), WIFI_ERROR_NO_REPLY);
    EXPECT_EQ(wifi_deinitialize(), kInvalidOperation);
    EXPECT_EQ(wifi_initialize(), 0);
    // The two error tables have numbers of their own for the same names.
    for (const auto& [name, number] : {std::pair{"OPERATION_FAILED", WIFI_ERROR_OPERATION_FAILED},
                                       {"WPS_OVERLAP", WIFI_ERROR_WPS_OVERLAP},
                                       {"TCP_SYN_TIMEOUT", WIFI_ERROR_OPERATION_FAILED},
                                       {"-29687031", WIFI_ERROR_SECURITY_RESTRICTED}}) {
        bool activated = false;
        say({"fault", "wifi_is_activated", name});
        EXPECT_EQ(wifi_is_activated(&activated), number) << name;
        EXPECT_FALSE(activated);
    }
    say({"fault", "connection_profile_iterator_has_next", "OPERATION_FAILED", "always"});
    EXPECT_FALSE(connection_profile_iterator_has_next(handles[kIterator]));
    say({"no-faults"});
    EXPECT_TRUE(connection_profile_iterator_has_next(handles[kIterator]));
    EXPECT_FALSE(connection_profile_iterator_has_next(handles[kClient]));
}

}  // namespace
