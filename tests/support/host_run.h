// Runs the real gadget-host with a script: in memory, alone in a folder of its own, by the clock that jumps.
#pragma once

#include <nlohmann/json.hpp>

#include <filesystem>
#include <iosfwd>
#include <optional>
#include <string>
#include <utility>
#include <variant>
#include <vector>

struct HostSetup {
    // What the network is like: the path of a scenario, or the scenario itself as JSON. Empty: everything answers.
    std::string network{};
    // What the settings store holds before the start: texts, or integers.
    std::vector<std::pair<std::string, std::variant<std::string, int>>> store{};
    // The script's lines; raw string literals may be indented. Empty: no script.
    std::string script{};
    // Standard input; a script that comes this way needs the arguments {"--script", "-"}.
    std::string input{};
    // More environment; these win over the usual one, and an empty value unsets the variable.
    std::vector<std::pair<std::string, std::string>> environment{};
    std::string size = "640x360";  // of the window; a third of the design needs half the time. Empty: the host's own
    std::string module{};          // empty: the gadget
    std::vector<std::string> arguments{};  // further options
    std::vector<std::string> allowed{};    // parts of the toolkit's complaints that this run may have
    bool realClock = false;
    int timeout = 60;  // seconds of real time; a run that takes longer is killed and fails the test
};

/**
 * One run, over when the constructor returns. The test fails when the run hangs, when the toolkit complained, or when
 * a sanitizer reported.
 */
class HostRun {
  public:
    explicit HostRun(const HostSetup& setup);
    ~HostRun();
    HostRun(const HostRun&) = delete;
    HostRun& operator=(const HostRun&) = delete;

    int exitCode() const { return exitCode_; }  // minus the signal's number when a signal ended it
    bool succeeded() const { return exitCode_ == 0; }
    const std::string& transcript() const { return transcript_; }  // standard output
    const std::string& errors() const { return errors_; }          // standard error, the log included

    // What `dump NAME` wrote. Fails the test, and gives null, when there is no such dump.
    nlohmann::json dump(const std::string& name) const;

    // The store after the run; nothing when there is no value of that type.
    std::optional<std::string> storedText(const std::string& key) const;
    std::optional<int> storedNumber(const std::string& key) const;

    // A file that the run wrote or the test put there.
    std::filesystem::path file(const std::string& name) const { return folder_ / name; }

  private:
    std::vector<std::string> commandLine(const HostSetup& setup) const;
    std::vector<std::string> environment(const HostSetup& setup) const;
    void fillStore(const HostSetup& setup) const;
    void execute(const HostSetup& setup);
    void judge(const std::vector<std::string>& allowed) const;

    std::filesystem::path folder_;
    int exitCode_ = 0;
    std::string transcript_;
    std::string errors_;
};

// Shows transcript and errors, for EXPECT_TRUE(run.succeeded()) << run.
std::ostream& operator<<(std::ostream& output, const HostRun& run);
