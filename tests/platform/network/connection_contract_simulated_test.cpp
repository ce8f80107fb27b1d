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

}  // namespace

INSTANTIATE_TEST_SUITE_P(Simulated, ConnectionContract, testing::Values(simulated()),
                         [](const auto& network) { return network.param.name; });

TEST(ConnectionNotification, ReachesNoClientThatAnotherOnesCallbackDestroyedNorAnyAfterTheNetwork) {
    const auto destroyBoth = [](int, void* data) {
        auto* clients = static_cast<std::vector<connection_handle>*>(data);
        EXPECT_EQ(clients->size(), 2U) << "not called before";
        for (connection_handle client : *clients)
            EXPECT_EQ(connection_destroy(client), 0);
        clients->clear();
    };
    for (const bool released : {false, true}) {
        MainLoop loop;
        selectScenario(kPromptNetwork);
        std::vector<connection_handle> clients(2);
        for (connection_handle& each : clients) {
            ASSERT_EQ(connection_create(&each), 0);
            ASSERT_EQ(connection_set_type_changed_cb(each, destroyBoth, &clients), 0);
        }
        say({"unplug"});
        EXPECT_FALSE(clients.empty()) << "from inside the command";
        if (released) network::release();
        MainLoop::settle();
        EXPECT_EQ(clients.empty(), !released);
    }
}
