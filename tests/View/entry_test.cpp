// The module's entry points and callbacks with arguments that a host should not give.
#include <gtest/gtest.h>

#include "Common/Common_Function.h"
#include "gadget_host.h"

namespace {

int mark;
const auto kHandle = reinterpret_cast<ug_handle>(&mark);

TEST(Entry, FillsTheSevenCallbacksAndNothingElse) {
    EXPECT_EQ(UG_MODULE_INIT(nullptr), -1);
    ug_operations operations{};
    operations.option = 7;
    operations.reserved[0] = &mark;
    ASSERT_EQ(UG_MODULE_INIT(&operations), 0);
    EXPECT_TRUE(operations.create && operations.start && operations.pause && operations.resume && operations.destroy &&
                operations.message && operations.event);
    EXPECT_EQ(operations.key_event, nullptr);
    EXPECT_EQ(operations.reserved[0], &mark);
    EXPECT_EQ(operations.priv, createNetworkStatus());
    EXPECT_EQ(operations.option, 0);
    UG_MODULE_EXIT(nullptr);
    EXPECT_EQ(createNetworkStatus(), operations.priv) << "an exit without a table releases nothing";
    UG_MODULE_EXIT(&operations);
    UG_MODULE_EXIT(&operations);
}

TEST(Entry, CallbacksTolerateMissingArguments) {
    ug_operations operations{};
    ASSERT_EQ(UG_MODULE_INIT(&operations), 0);
    EXPECT_EQ(operations.create(nullptr, 0, nullptr, operations.priv), nullptr);
    EXPECT_EQ(operations.create(kHandle, 0, nullptr, nullptr), nullptr);
    EXPECT_EQ(operations.create(kHandle, 0, nullptr, operations.priv), nullptr) << "there is no window";
    EXPECT_EQ(createNetworkStatus()->popup, nullptr);
    for (void* priv : {operations.priv, static_cast<void*>(nullptr)}) {
        operations.start(nullptr, nullptr, priv);
        operations.pause(nullptr, nullptr, priv);
        operations.resume(nullptr, nullptr, priv);
        operations.message(nullptr, nullptr, nullptr, priv);
        operations.event(nullptr, 0, nullptr, priv);
    }
    operations.event(kHandle, -1, nullptr, operations.priv);
    operations.destroy(nullptr, nullptr, operations.priv);
    operations.destroy(kHandle, nullptr, nullptr);
    operations.destroy(kHandle, nullptr, operations.priv);
    EXPECT_EQ(createNetworkStatus(), operations.priv) << "without a layout there is nothing to release";
    UG_MODULE_EXIT(&operations);
}

}  // namespace
