#include "connection_contract.h"
#include "temporary_scenario.h"

namespace {

void say(const std::vector<std::string>& words) {
    EXPECT_EQ(network::command(words), "");
}

NetworkUnderTest simulated() {
    return {"simulated",
            [] {
                const TemporaryScenario scenario(kPromptNetwork);
                const auto selection = network::select(scenario.choice(), {});
                EXPECT_TRUE(selection.selected) << selection.text;
                return std::string();
            },
            [] { say({"unplug"}); }, [] { say({"plug"}); }};
}

struct Heard {
    connection_handle client, other;
    int calls = 0;
};

// Destroys both clients: the second one must not be called any more.
void destroyBoth(int /*type*/, void* data) {
    auto* heard = static_cast<Heard*>(data);
    ++heard->calls;
    EXPECT_EQ(connection_destroy(heard->client), 0);
    EXPECT_EQ(connection_destroy(heard->other), 0);
}

}  // namespace

INSTANTIATE_TEST_SUITE_P(Simulated, ConnectionContract, testing::Values(simulated()),
                         [](const auto& network) { return network.param.name; });

TEST(ConnectionNotification, ReachesNoClientThatAnotherOnesCallbackDestroyed) {
    MainLoop loop;
    ASSERT_EQ(simulated().open(), "");
    Heard heard{};
    ASSERT_EQ(connection_create(&heard.client), 0);
    ASSERT_EQ(connection_create(&heard.other), 0);
    for (connection_handle each : {heard.client, heard.other}) {
        ASSERT_EQ(connection_set_type_changed_cb(each, destroyBoth, &heard), 0);
    }
    say({"unplug"});
    EXPECT_EQ(heard.calls, 0) << "from inside the command";
    MainLoop::settle();
    EXPECT_EQ(heard.calls, 1);
}

TEST(ConnectionNotification, EndsWithTheNetwork) {
    MainLoop loop;
    ASSERT_EQ(simulated().open(), "");
    connection_handle client = nullptr;
    int calls = 0;
    ASSERT_EQ(connection_create(&client), 0);
    const auto count = [](int, void* data) { ++*static_cast<int*>(data); };
    ASSERT_EQ(connection_set_type_changed_cb(client, count, &calls), 0);
    ASSERT_EQ(connection_get_is_online_ipv6_async(client, count, &calls), 0);
    say({"unplug"});
    network::release();
    MainLoop::settle();
    EXPECT_EQ(calls, 0);
}
