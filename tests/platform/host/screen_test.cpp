// What dumps and pictures say of a screen that is known.
#include <Ecore.h>
#include <Ecore_Evas.h>
#include <gtest/gtest.h>
#include <png.h>

#include <optional>
#include <string>
#include <vector>

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

// The colour of one pixel of a PNG file, 0xRRGGBB; nothing when the file is not of that size.
std::optional<unsigned int> pixel(const std::string& file, unsigned int width, unsigned int height, unsigned int x,
                                  unsigned int y) {
    png_image image{};
    image.version = PNG_IMAGE_VERSION;
    if (png_image_begin_read_from_file(&image, file.c_str()) == 0) return std::nullopt;
    image.format = PNG_FORMAT_RGB;
    std::vector<unsigned char> data(PNG_IMAGE_SIZE(image));
    png_image_finish_read(&image, nullptr, data.data(), 0, nullptr);
    if (image.width != width || image.height != height) return std::nullopt;
    const unsigned char* const place = &data[(std::size_t{y} * width + x) * 3];
    return place[0] << 16U | place[1] << 8U | place[2];
}

TEST(Picture, ShowsTheWholeWindow) {
    const HostRun run(withScreen("resize 960x540\nwait 2\ndump screen.json\nshot screen.png\nquit"));
    ASSERT_TRUE(run.succeeded()) << run;
    const std::string file = run.file("screen.png");
    EXPECT_EQ(pixel(file, 960, 540, 380, 260), 0xff0000U);
    EXPECT_NE(pixel(file, 960, 540, 5, 5), 0xff0000U);
}

}  // namespace
