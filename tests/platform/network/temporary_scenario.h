// A scenario file of one test.
#pragma once

#include <gtest/gtest.h>
#include <unistd.h>

#include <array>
#include <filesystem>
#include <fstream>
#include <string>
#include <string_view>
#include <vector>

#include "network/network.h"

class TemporaryScenario {
  public:
    explicit TemporaryScenario(std::string_view text) {
        std::string pattern = (std::filesystem::temp_directory_path() / "scenario-XXXXXX").string();
        folder_ = mkdtemp(pattern.data());
        std::ofstream(file()) << text;
    }
    ~TemporaryScenario() { std::filesystem::remove_all(folder_); }
    TemporaryScenario(const TemporaryScenario&) = delete;
    TemporaryScenario& operator=(const TemporaryScenario&) = delete;

    std::string file() const { return folder_ / "network.json"; }
    std::string choice() const { return "simulated=" + file(); }

  private:
    std::filesystem::path folder_;
};

inline void selectScenario(std::string_view text) {
    const auto selection = network::select(TemporaryScenario(text).choice(), {});
    ASSERT_TRUE(selection.selected) << selection.text;
}

// A "network …" command that is understood.
inline void say(const std::vector<std::string>& words) {
    EXPECT_EQ(network::command(words), "");
}

// A connected wired network that answers every question in the next iterations.
constexpr std::string_view kPromptNetwork = R"({
  "interfaces": [{"kind": "ethernet", "mac": "02:00:5E:10:00:01"}],
  "profiles": [{"id": "wired", "type": "ethernet", "state": "connected", "ipv4Address": "192.0.2.10",
    "live": {"address": "2001:db8:1::10", "prefixLength": 64, "gateway": "fe80::1",
             "dns": ["2001:db8:1::53", "2001:db8:1::54"], "dnsMode": "dynamic"}}],
  "gateway": {"result": "NONE"},
  "internet": {"result": "NONE"},
  "renewal": 0
})";

// A radio that is associated with a secured network, and finds an open one too; everything answers at once.
constexpr std::string_view kPromptRadio = R"({
  "interfaces": [], "profiles": [],
  "wifi": {"mac": "02:00:5E:20:00:AA", "scan": {"result": "NONE"}, "accessPoints": [
    {"essid": "Maple Street", "bssid": "02:00:5E:20:00:01", "rssi": -61, "security": "wpa2-psk",
     "passphrase": "73019462", "connected": true,
     "live": {"address": "2001:db8:2::20", "prefixLength": 64, "gateway": "fe80::1", "dns": ["2001:db8:2::53"]}},
    {"essid": "Cafe", "bssid": "02:00:5E:20:00:02", "rssi": -80, "security": "none",
     "live": {"address": "2001:db8:3::30", "prefixLength": 64, "gateway": "fe80::3"}}]},
  "gateway": {"result": "NONE"},
  "internet": {"result": "NONE"}
})";
