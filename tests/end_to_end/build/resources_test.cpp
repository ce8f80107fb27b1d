// Every text and picture that the code names is there.
#include <gadget_paths.h>
#include <gtest/gtest.h>
#include <libintl.h>

#include <algorithm>
#include <clocale>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <regex>
#include <set>
#include <string>

#include "tool_output.h"

namespace {

namespace fs = std::filesystem;

constexpr const char* kDomain = "ug-Ostrelle-efl";
constexpr std::size_t kModeTextWidth = 39;  // bytes that the settings screen keeps of a mode's text

// The first group of each match in the gadget's sources.
std::set<std::string> namedInSources(const std::regex& pattern) {
    std::set<std::string> found;
    for (const auto& entry : fs::recursive_directory_iterator(SOURCE_FOLDER "/src")) {
        const std::string extension = entry.path().extension();
        if (extension != ".cpp" && extension != ".h") continue;
        std::ifstream stream(entry.path());
        const std::string text{std::istreambuf_iterator<char>(stream), {}};
        for (std::sregex_iterator match(text.begin(), text.end(), pattern), end; match != end; ++match) {
            found.insert((*match)[1]);
        }
    }
    return found;
}

std::set<std::string> languages() {
    std::set<std::string> found;
    for (const auto& entry : fs::directory_iterator(GADGET_LOCALE_FOLDER))
        found.insert(entry.path().filename());
    return found;
}

std::string translated(const std::string& language, const std::string& id) {
    setenv("LANGUAGE", language.c_str(), 1);
    bindtextdomain(kDomain, GADGET_LOCALE_FOLDER);  // also makes the C library look at LANGUAGE again
    bind_textdomain_codeset(kDomain, "UTF-8");
    return dgettext(kDomain, id.c_str());
}

TEST(Resources, EveryTextIsInEveryCatalogue) {
    ASSERT_NE(std::setlocale(LC_ALL, "C.UTF-8"), nullptr);
    const auto ids = namedInSources(std::regex(R"x("((?:TV_SID|SID|COM)_[A-Z0-9_]+)")x"));
    const auto known = languages();
    EXPECT_GT(ids.size(), 20U) << "the pattern finds too little";
    EXPECT_TRUE(known.contains("en"));
    for (const std::string& language : known) {
        for (const std::string& id : ids)
            EXPECT_NE(translated(language, id), id) << language;
    }
}

TEST(Resources, NoCatalogueHasATextTwice) {
    int catalogues = 0;
    for (const auto& entry : fs::directory_iterator(SOURCE_FOLDER "/res/po")) {
        if (entry.path().extension() != ".po") continue;
        ++catalogues;
        EXPECT_EQ(runTool(MSGFMT " --check --output-file=/dev/null '" + entry.path().string() + "'").status, 0)
            << entry.path();
    }
    EXPECT_GT(catalogues, 0);
}

// A longer one would be cut, and then not be recognised when the user confirms.
TEST(Resources, TheModesTextsFitTheirField) {
    ASSERT_NE(std::setlocale(LC_ALL, "C.UTF-8"), nullptr);
    for (const std::string& language : languages()) {
        for (const char* id : {"COM_OBTAIN_AUTOMATICALLY", "COM_ENTER_MANUALLY"}) {
            EXPECT_LE(translated(language, id).size(), kModeTextWidth) << language << ' ' << id;
        }
    }
}

TEST(Resources, EveryPictureIsThere) {
    std::set<std::string> files;
    for (const auto& entry : fs::directory_iterator(GADGET_IMAGE_FOLDER))
        files.insert(entry.path().filename());
    const auto names = namedInSources(std::regex(R"x("([A-Za-z0-9_%]+\.(?:png|jpg|gif|svg))")x"));
    EXPECT_GT(names.size(), 5U) << "the pattern finds too little";
    for (const std::string& name : names) {
        const std::regex file(
            std::regex_replace(std::regex_replace(name, std::regex("%d"), "[0-9]+"), std::regex("%s"), ".+"));
        const bool there = std::ranges::any_of(files, [&](const auto& one) { return std::regex_match(one, file); });
        EXPECT_TRUE(there) << name << " in " << GADGET_IMAGE_FOLDER;
    }
}

}  // namespace
