#include "voice_control.h"

#include <gtest/gtest.h>

namespace {

constexpr int kInvalidParameter = -22;
constexpr int kInvalidOperation = -38;

TEST(VoiceControl, WorksBetweenTheFirstUsersStartAndTheLastOnesEnd) {
    EXPECT_EQ(vc_elm_set_auto_register_mode(1, 0), kInvalidOperation);
    EXPECT_EQ(vc_elm_deinitialize(), kInvalidOperation);
    EXPECT_EQ(vc_elm_initialize(), 0);
    EXPECT_EQ(vc_elm_initialize(), 0);
    EXPECT_EQ(vc_elm_deinitialize(), 0);
    for (const auto& [mode, click] : {std::pair{-1, 0}, {2, 0}, {0, -1}, {1, 2}})
        EXPECT_EQ(vc_elm_set_auto_register_mode(mode, click), kInvalidParameter) << mode << ", " << click;
    EXPECT_EQ(vc_elm_set_auto_register_mode(1, 0), 0);
    EXPECT_EQ(vc_elm_set_auto_register_mode(0, 1), 0);
    EXPECT_EQ(vc_elm_deinitialize(), 0);
    EXPECT_EQ(vc_elm_set_auto_register_mode(1, 0), kInvalidOperation);
}

}  // namespace
