#include "host/options.h"

#include <Ecore.h>
#include <Ecore_Getopt.h>
#include <gadget_paths.h>

#include <charconv>
#include <iostream>
#include <string_view>

#include "host/exit_codes.h"
#include "host/options_table.h"

namespace {

constexpr int kSmallestSide = 320;
constexpr int kLargestSide = 7680;

// Ecore_Getopt fills these; a text that was not given stays null.
struct Given {
    char* module = nullptr;
    char* network = nullptr;
    char* store = nullptr;
    char* onlineUrl = nullptr;
    char* size = nullptr;
    char* script = nullptr;
    char* logLevel = nullptr;
    Eina_Bool wired = EINA_FALSE;
    Eina_Bool wireless = EINA_FALSE;
    Eina_Bool fullscreen = EINA_FALSE;
    Eina_Bool version = EINA_FALSE;
    Eina_Bool help = EINA_FALSE;
};

void take(std::string& target, const char* text) {
    if (text != nullptr) target = text;
}

// Ecore_Getopt takes a lone "-" for an option; the name of its file is the same to everybody.
void nameInput(int argc, char** argv) {
    static char input[] = "/dev/stdin";
    for (int i = 2; i < argc; ++i) {
        if (std::string_view(argv[i - 1]) == "--script" && std::string_view(argv[i]) == "-") argv[i] = input;
    }
}

void printExitCodes() {
    std::cout << "\nExit codes:\n";
    for (const host::ExitText& row : host::kExitTexts) {
        std::cout << (row.code < 10 ? "   " : "  ") << int{row.code} << "  " << row.text << '\n';
    }
}

host::ParsedOptions usageError(const std::string& message) {
    std::cerr << "gadget-host: " << message << '\n';
    return {{}, true, host::kExitUsage};
}

host::HostOptions optionsOf(const Given& given) {
    host::HostOptions options;
    options.module = GADGET_MODULE_FILE;
    options.logLevel = "error";
    take(options.module, given.module);
    take(options.network, given.network);
    take(options.store, given.store);
    take(options.onlineUrl, given.onlineUrl);
    take(options.script, given.script);
    take(options.logLevel, given.logLevel);
    options.fullscreen = given.fullscreen != EINA_FALSE;
    if (given.wired) options.networkType = "Wired";
    if (given.wireless) options.networkType = "Wireless";
    return options;
}

bool parseSide(std::string_view text, int& side) {
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), side);
    return error == std::errc{} && end == text.data() + text.size() && side >= kSmallestSide && side <= kLargestSide;
}

}  // namespace

namespace host {

bool parseSize(const std::string& text, Size& size) {
    const std::size_t cross = text.find('x');
    if (cross == std::string::npos) return false;
    const std::string_view view = text;
    Size read;
    if (!parseSide(view.substr(0, cross), read.width) || !parseSide(view.substr(cross + 1), read.height)) return false;
    size = read;
    return true;
}

ParsedOptions parseOptions(int argc, char** argv) {
    nameInput(argc, argv);
    Given given;
    Ecore_Getopt_Value values[] = {
        ECORE_GETOPT_VALUE_STR(given.module),
        ECORE_GETOPT_VALUE_STR(given.network),
        ECORE_GETOPT_VALUE_BOOL(given.wired),
        ECORE_GETOPT_VALUE_BOOL(given.wireless),
        ECORE_GETOPT_VALUE_STR(given.store),
        ECORE_GETOPT_VALUE_STR(given.onlineUrl),
        ECORE_GETOPT_VALUE_STR(given.size),
        ECORE_GETOPT_VALUE_BOOL(given.fullscreen),
        ECORE_GETOPT_VALUE_STR(given.script),
        ECORE_GETOPT_VALUE_STR(given.logLevel),
        ECORE_GETOPT_VALUE_BOOL(given.version),
        ECORE_GETOPT_VALUE_BOOL(given.help),
        ECORE_GETOPT_VALUE_NONE,
    };
    const int read = ecore_getopt_parse(&hostOptions, values, argc, argv);
    if (read < 0) return {{}, true, kExitUsage};
    if (given.help) printExitCodes();
    if (given.help || given.version) return {{}, true, kExitClosed};
    if (read < argc) return usageError(std::string("unexpected argument ") + argv[read]);

    if (given.wired && given.wireless) return usageError("--wired and --wireless exclude each other");
    ParsedOptions parsed{optionsOf(given)};
    if (given.size != nullptr && !parseSize(given.size, parsed.options.size)) {
        return usageError(std::string("--size ") + given.size + ": write it as 1920x1080, each side from 320 to 7680");
    }
    return parsed;
}

}  // namespace host
