// The real network of tests/end_to_end/real_network/tv_network.py, and a client of the connection manager on it.
#pragma once

#include <gtest/gtest.h>

#include <cstdlib>
#include <string>

#include "../main_loop.h"
#include "../results.h"
#include "connection_manager.h"
#include "network/network.h"

namespace real_network {

constexpr int kNoAnswer = 1;

inline void shell(const std::string& command) {
    ASSERT_EQ(std::system(command.c_str()), 0) << command;
}

inline void onRouter(const std::string& command) {
    shell("nsenter -t " + std::string(std::getenv("TV_ROUTER_PID")) + " -n " + command);
}

inline void waitForConnection() {
    shell("nm-online -q -t 30");
}

inline std::string openNetwork(const std::string& onlineUrl = "") {
    if (std::getenv("TV_ROUTER_PID") == nullptr) return "not in the test network";
    waitForConnection();
    const auto selection = network::select("auto", {onlineUrl});
    EXPECT_TRUE(selection.selected);
    EXPECT_EQ(selection.text, "this machine's network through NetworkManager");
    return "";
}

class NetworkManager : public testing::Test {
  protected:
    void SetUp() override {
        if (const std::string obstacle = openNetwork(); !obstacle.empty()) GTEST_SKIP() << obstacle;
        connectClient();
    }
    void TearDown() override { network::release(); }

    void connectClient() {
        ASSERT_EQ(connection_create(&client), 0);
        connection_profile_iterator iterator = nullptr;
        ASSERT_EQ(connection_get_profile_iterator(client, CONNECTION_ITERATOR_CONNECTED, &iterator), 0);
        ASSERT_EQ(connection_profile_iterator_next(iterator, &profile), 0);
    }

    bool hasGateway() const {
        char* address = nullptr;
        connection_profile_get_gateway_address(profile, CONNECTION_ADDRESS_FAMILY_IPV6, &address);
        return !contract::take(address).empty();
    }

    int gateway() {
        contract::Results results;
        if (const int error = connection_profile_check_gateway6_async(profile, contract::record, &results))
            return error;
        return MainLoop::runUntil([&] { return !results.codes.empty(); }) ? results.codes.front() : kNoAnswer;
    }

    int online() {
        contract::Results results;
        if (const int error = connection_get_is_online_ipv6_async(client, contract::record, &results)) return error;
        return MainLoop::runUntil([&] { return !results.codes.empty(); }) ? results.codes.front() : kNoAnswer;
    }

    MainLoop loop;
    connection_handle client = nullptr;
    connection_profile_handle profile = nullptr;
};

}  // namespace real_network
