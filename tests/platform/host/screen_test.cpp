// What dumps and pictures say of a screen that is known.
#include <Ecore.h>
#include <Ecore_Evas.h>
#include <gtest/gtest.h>

#include <string>

#include "host_run.h"

namespace {

using nlohmann::json;

HostSetup withScreen(const std::string& script) {
    return {.script = script, .module = HOST_TEST_MODULES "screen.so"};
}

TEST(Dump, ShowsWhatIsSeenAndNothingElse) {
    const HostRun run(withScreen("wait 2\nkey colon\ndump screen.json\nquit"));
    ASSERT_TRUE(run.succeeded()) << run;
    const json screen = run.dump("screen.json");
    EXPECT_EQ(screen["gadget"], "open");
    EXPECT_EQ(screen["focus"]["label"], "Leave");
    EXPECT_EQ(screen["focus"]["part"], "button1");
    const json& parts = screen["parts"];
    EXPECT_EQ(parts["PartMain:title"]["text"], "Fish & chips <b>");
    EXPECT_EQ(parts["PartMain:status"]["picture"], "red.png");
    EXPECT_EQ(parts["PartMain:list"]["widget"], "elm_genlist");
    EXPECT_EQ(parts["hint"]["text"], "key colon");
    EXPECT_FALSE(parts.contains("PartMain:unset"));
    EXPECT_FALSE(parts.contains("PartMain:concealed"));
    ASSERT_EQ(screen["buttons"].size(), 2U);
    EXPECT_EQ(screen["buttons"][0]["part"], "elm.button.disabled");
    EXPECT_EQ(screen["buttons"][0]["label"], "Disabled");
    EXPECT_EQ(screen["buttons"][0]["disabled"], true);
    EXPECT_EQ(screen["buttons"][1]["part"], "button1");
    EXPECT_EQ(screen["buttons"][1]["focused"], true);
    ASSERT_EQ(screen["rows"].size(), 2U);
    EXPECT_EQ(screen["rows"][0]["text"]["elm.text"], "First row");
    EXPECT_EQ(screen["rows"][1]["disabled"], true);
    ASSERT_EQ(screen["popups"].size(), 1U);
    EXPECT_EQ(screen["popups"][0]["style"], "hosttest");
    EXPECT_EQ(screen["popups"][0]["texts"][0], "Title & more");
}

TEST(Dump, IsEmptyOnceTheGadgetHasClosed) {
    const HostRun run(withScreen("click \"Leave\" within 1\nexpect closed within 1\ndump screen.json"));
    ASSERT_TRUE(run.succeeded()) << run;
    const json screen = run.dump("screen.json");
    EXPECT_EQ(screen["gadget"], "closed");
    EXPECT_TRUE(screen["focus"].is_null());
    EXPECT_TRUE(screen["parts"].empty());
    EXPECT_TRUE(screen["popups"].empty());
}

TEST(Window, ScalesTheToolkitWithItsHeight) {
    const HostRun run(withScreen("wait 2\ndump large.json\nresize 1280x720\nwait 1\ndump small.json\nquit"));
    ASSERT_TRUE(run.succeeded()) << run;
    const auto height = [&run](const char* name) { return run.dump(name)["buttons"][1]["geometry"][3].get<double>(); };
    EXPECT_NEAR(height("small.json") / height("large.json"), 720.0 / 1080.0, 0.05);
}

// The colour of one pixel of a PNG file, 0xAARRGGBB; 0 when the file is not of that size.
unsigned int pixel(const std::string& file, int width, int height, int x, int y) {
    ecore_app_no_system_modules();
    ecore_evas_init();
    Ecore_Evas* const screen = ecore_evas_buffer_new(1, 1);
    Evas_Object* const image = evas_object_image_add(ecore_evas_get(screen));
    evas_object_image_file_set(image, file.c_str(), nullptr);
    int foundWidth = 0;
    int foundHeight = 0;
    evas_object_image_size_get(image, &foundWidth, &foundHeight);
    unsigned int colour = 0;
    if (foundWidth == width && foundHeight == height) {
        colour = static_cast<unsigned int*>(evas_object_image_data_get(image, EINA_FALSE))[y * width + x];
    }
    ecore_evas_free(screen);
    ecore_evas_shutdown();
    return colour;
}

TEST(Picture, ShowsTheWholeWindow) {
    const HostRun run(withScreen("resize 960x540\nwait 2\ndump screen.json\nshot screen.png\nquit"));
    ASSERT_TRUE(run.succeeded()) << run;
    const std::string file = run.file("screen.png");
    EXPECT_EQ(pixel(file, 960, 540, 380, 260), 0xffff0000U);
    EXPECT_NE(pixel(file, 960, 540, 5, 5), 0xffff0000U);
    EXPECT_NE(pixel(file, 960, 540, 5, 5), 0U);
}

}  // namespace
