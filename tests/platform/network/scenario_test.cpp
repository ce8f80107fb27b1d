// Scenarios at work: the shipped ones, and timed events.
#include <gtest/gtest.h>

#include <filesystem>

#include "connection_manager.h"
#include "gadget_paths.h"
#include "main_loop.h"
#include "temporary_scenario.h"

namespace {

constexpr const char* kShipped = GADGET_HOST_FOLDER "/networks";

TEST(Scenario, EveryShippedOneLoadsAndDescribesItself) {
    const MainLoop loop;
    for (const auto& entry : std::filesystem::directory_iterator(kShipped)) {
        const auto selection = network::select("simulated=" + entry.path().string(), {});
        EXPECT_TRUE(selection.selected) << selection.text;
        EXPECT_TRUE(selection.text.ends_with(")")) << selection.text;
    }
}

TEST(Scenario, PlaysItsEventsInOrderAndStopsWhenReleased) {
    const MainLoop loop;
    const std::string start(kPromptNetwork.substr(0, kPromptNetwork.rfind('}')));
    const TemporaryScenario scenario(start + R"(, "events": [{"at": 0, "do": "unplug"}, {"at": 0.001, "do": "plug"},
        {"at": 0.002, "do": "profile disconnect wired"}, {"at": 86400, "do": "unplug"}]})");
    ASSERT_TRUE(network::select(scenario.choice(), {}).selected);
    connection_handle client = nullptr;
    ASSERT_EQ(connection_create(&client), 0);
    std::vector<int> types;
    const auto onType = [](int type, void* data) { static_cast<std::vector<int>*>(data)->push_back(type); };
    ASSERT_EQ(connection_set_type_changed_cb(client, onType, &types), 0);
    const auto connected = [&] {
        void* iterator = nullptr;
        EXPECT_EQ(connection_get_profile_iterator(client, CONNECTION_ITERATOR_CONNECTED, &iterator), 0);
        return connection_profile_iterator_has_next(iterator);
    };
    EXPECT_TRUE(connected());
    ASSERT_TRUE(MainLoop::runUntil([&] { return types.size() == 2 && !connected(); }));
    EXPECT_EQ(types, (std::vector<int>{CONNECTION_TYPE_DISCONNECTED, CONNECTION_TYPE_ETHERNET}));
    network::release();
    MainLoop::settle();
    EXPECT_EQ(types.size(), 2U);
}

}  // namespace
