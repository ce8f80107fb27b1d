#include "host_run.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <map>
#include <memory>
#include <ostream>
#include <regex>
#include <sstream>

#include "child_process.h"
#include "settings_store.h"
#include "store/store.h"

namespace {

constexpr const char* kStoreFile = "settings.db";
constexpr const char* kScriptFile = "script.tour";

constexpr const char* kEverythingAnswers = R"({
  "description": "everything answers",
  "interfaces": [{"kind": "ethernet", "mac": "02:00:5E:10:00:01", "link": "up"}],
  "profiles": [{"id": "wired", "type": "ethernet", "state": "connected", "live": {
    "address": "2001:db8:1::10", "prefixLength": 64, "gateway": "fe80::1", "dns": ["2001:db8:1::53"],
    "dnsMode": "dynamic"}}],
  "gateway": {"delay": 0.3, "result": "NONE"},
  "internet": {"delay": 0.4, "result": "NONE"}
})";

// The toolkit says this once for each popup inside a popup, and goes on.
constexpr std::string_view kHarmless = "Could not fetch a node located at";

// Errors and worse from the toolkit's own files, in its own form and in that of our log.
const std::regex& toolkitComplaint() {
    static const std::regex pattern(R"(^((ERR|CRI)<\d+>:|[\d:.]+ [EFC] \S+ (\.\./)?src/))");
    return pattern;
}

const std::regex& sanitizerReport() {
    static const std::regex pattern("(Address|Leak|UndefinedBehavior|Thread)Sanitizer|runtime error: ");
    return pattern;
}

std::filesystem::path makeFolder() {
    std::string path = (std::filesystem::temp_directory_path() / "gadget-run-XXXXXX").string();
    if (mkdtemp(path.data()) == nullptr) throw std::runtime_error("no temporary folder");
    return path;
}

void write(const std::filesystem::path& file, const std::string& text) {
    std::ofstream(file) << text;
}

// The store is open in this process only while this lives.
class OpenStore {
  public:
    explicit OpenStore(const std::filesystem::path& file) {
        std::string message;
        if (!store::open(file.string(), message)) ADD_FAILURE() << message;
    }
    ~OpenStore() { store::close(); }
    OpenStore(const OpenStore&) = delete;
    OpenStore& operator=(const OpenStore&) = delete;
};

struct Free {
    void operator()(char* text) const { std::free(text); }
};

}  // namespace

HostRun::HostRun(const HostSetup& setup) : folder_(makeFolder()) {
    const std::string scenario = setup.network.empty() ? kEverythingAnswers : setup.network;
    if (scenario.starts_with('{')) write(file("network.json"), scenario);
    if (!setup.script.empty()) write(file(kScriptFile), setup.script);
    write(file("in"), setup.input);
    if (!setup.store.empty()) fillStore(setup);
    execute(setup);
    judge(setup.allowed);
}

HostRun::~HostRun() {
    std::error_code ignored;
    std::filesystem::remove_all(folder_, ignored);
}

void HostRun::fillStore(const HostSetup& setup) const {
    const OpenStore open(file(kStoreFile));
    for (const auto& [key, value] : setup.store) {
        const int* const number = std::get_if<int>(&value);
        const int result = number != nullptr ? vconf_set_int(key.c_str(), *number)
                                             : vconf_set_str(key.c_str(), std::get<std::string>(value).c_str());
        EXPECT_EQ(result, 0) << key;
    }
}

std::vector<std::string> HostRun::commandLine(const HostSetup& setup) const {
    const bool isFile = !setup.network.empty() && !setup.network.starts_with('{');
    const std::string network = isFile ? setup.network : file("network.json").string();
    std::vector<std::string> command{HOST_RUN_PROGRAM, "--store", file(kStoreFile), "--network",
                                     "simulated=" + network};
    if (!setup.size.empty()) command.insert(command.end(), {"--size", setup.size});
    if (!setup.module.empty()) command.insert(command.end(), {"--module", setup.module});
    if (!setup.script.empty()) command.insert(command.end(), {"--script", kScriptFile});
    command.insert(command.end(), setup.arguments.begin(), setup.arguments.end());
    return command;
}

std::vector<std::string> HostRun::environment(const HostSetup& setup) const {
    std::map<std::string, std::string> variables{
        {"PATH", "/usr/bin:/bin"},
        {"HOME", folder_},
        {"XDG_RUNTIME_DIR", folder_},
        {"LC_ALL", "C.UTF-8"},
        {"LANGUAGE", "en"},
        {"ELM_DISPLAY", "buffer"},
        {"ELM_ENGINE", "buffer"},
        {"EINA_LOG_BACKTRACE", "-1"},
        {"UBSAN_OPTIONS", "print_stacktrace=1"},
    };
    for (const char* const options : {"ASAN_OPTIONS", "LSAN_OPTIONS"}) {
        if (const char* const wanted = std::getenv(options)) variables[options] = wanted;
    }
    if (!setup.realClock) variables["LD_PRELOAD"] = HOST_RUN_CLOCK;
    for (const auto& [name, value] : setup.environment)
        variables[name] = value;
    std::vector<std::string> list;
    for (const auto& [name, value] : variables) {
        if (!value.empty()) list.push_back(name + "=" + value);
    }
    return list;
}

void HostRun::execute(const HostSetup& setup) {
    const ChildEnd end = runChild({commandLine(setup), environment(setup), folder_, setup.timeout});
    exitCode_ = end.exitCode;
    transcript_ = readFile(file("out"));
    errors_ = readFile(file("err"));
    if (end.timedOut) ADD_FAILURE() << "the run was killed after " << setup.timeout << " seconds\n" << *this;
}

void HostRun::judge(const std::vector<std::string>& allowed) const {
    std::istringstream lines(errors_);
    for (std::string line; std::getline(lines, line);) {
        const auto has = [&line](std::string_view part) { return line.find(part) != std::string::npos; };
        const bool complains = std::regex_search(line, toolkitComplaint());
        if (complains && !has(kHarmless) && std::ranges::none_of(allowed, has)) {
            ADD_FAILURE() << "the toolkit complained: " << line;
        }
    }
    if (std::regex_search(errors_, sanitizerReport())) ADD_FAILURE() << errors_;
}

nlohmann::json HostRun::dump(const std::string& name) const {
    nlohmann::json parsed = nlohmann::json::parse(readFile(file(name)), nullptr, false);
    if (!parsed.is_discarded()) return parsed;
    ADD_FAILURE() << "there is no dump " << name << '\n' << *this;
    return nullptr;
}

std::optional<std::string> HostRun::storedText(const std::string& key) const {
    const OpenStore open(file(kStoreFile));
    const std::unique_ptr<char, Free> text(vconf_get_str(key.c_str()));
    return text ? std::optional<std::string>(text.get()) : std::nullopt;
}

std::optional<int> HostRun::storedNumber(const std::string& key) const {
    const OpenStore open(file(kStoreFile));
    int number = 0;
    return vconf_get_int(key.c_str(), &number) == 0 ? std::optional(number) : std::nullopt;
}

std::ostream& operator<<(std::ostream& output, const HostRun& run) {
    return output << "exit code " << run.exitCode() << "\n--- transcript\n"
                  << run.transcript() << "--- errors\n"
                  << run.errors();
}
