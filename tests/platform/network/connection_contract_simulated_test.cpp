#include "connection_contract.h"
#include "temporary_scenario.h"

namespace {

NetworkUnderTest simulated() {
    return {"simulated",
            [] {
                selectScenario(kPromptNetwork);
                return std::string();
            },
            [] { say({"unplug"}); }, [] { say({"plug"}); }};
}

struct Heard {
    connection_handle client, other;
    int calls = 0;
};

}  // namespace

INSTANTIATE_TEST_SUITE_P(Simulated, ConnectionContract, testing::Values(simulated()),
                         [](const auto& network) { return network.param.name; });

TEST(ConnectionNotification, ReachesNoClientThatAnotherOnesCallbackDestroyedNorAnyAfterTheNetwork) {
    const auto destroyBoth = [](int, void* data) {
        auto* heard = static_cast<Heard*>(data);
        ++heard->calls;
        EXPECT_EQ(connection_destroy(heard->client), 0);
        EXPECT_EQ(connection_destroy(heard->other), 0);
    };
    for (const bool released : {false, true}) {
        MainLoop loop;
        selectScenario(kPromptNetwork);
        Heard heard{};
        for (connection_handle* each : {&heard.client, &heard.other}) {
            ASSERT_EQ(connection_create(each), 0);
            ASSERT_EQ(connection_set_type_changed_cb(*each, destroyBoth, &heard), 0);
        }
        say({"unplug"});
        EXPECT_EQ(heard.calls, 0) << "from inside the command";
        if (released) {
            EXPECT_EQ(connection_get_is_online_ipv6_async(heard.client, destroyBoth, &heard), 0);
            network::release();
        }
        MainLoop::settle();
        EXPECT_EQ(heard.calls, released ? 0 : 1);
    }
}
