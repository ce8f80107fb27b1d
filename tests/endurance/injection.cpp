// What fails next, and what has been counted. A script steers it by writing keys that no store ever sees:
//   endurance/journey         begins anew: nothing fails, all counts are 0
//   endurance/fail-call       "N CODE": the N-th platform call fails with that number
//   endurance/fail-allocation "N [always]": the N-th allocation fails, or each from the N-th on
//   endurance/hold            "N SECONDS": the N-th answer comes so much later; a negative number: never
//   endurance/text            hexadecimal digits: the bytes of every text that the platform hands out
//   endurance/catalogue       the same for the texts of the catalogues
//   endurance/report          prints the counts on standard error, in one line of JSON; the value is its name
#include "injection.h"

#include <Elementary.h>
#include <dlfcn.h>
#include <link.h>
#include <malloc.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <optional>
#include <string>

namespace {

constexpr std::string_view kModule = "libug-Ostrelle-efl.so";
constexpr std::string_view kKeys = "endurance/";

struct Journey {
    long calls = 0;
    long failingCall = 0;
    int code = 0;
    long allocations = 0;
    long failingAllocation = 0;
    bool failsOn = false;
    long answers = 0;
    long heldAnswer = 0;
    double heldSeconds = 0;
    long failures = 0;
    std::string trace;  // the functions called so far
    std::optional<std::string> platformText;
    std::optional<std::string> catalogueText;
};

Journey& journey() {
    static Journey running;
    return running;
}

constinit bool wroteTrace = false;  // the command line's own text is no allocation of the gadget

long entriesOf(const char* folder) {
    long count = 0;
    for ([[maybe_unused]] const auto& entry : std::filesystem::directory_iterator(folder))
        ++count;
    return count;
}

void report(const char* name) {
    const Journey& now = journey();
    const struct mallinfo2 heap = mallinfo2();
    std::fprintf(stderr,
                 "endurance {\"name\": \"%s\", \"calls\": %ld, \"allocations\": %ld, \"answers\": %ld, "
                 "\"failures\": %ld, \"heap\": %zu, \"timers\": %d, \"threads\": %ld, \"descriptors\": %ld, "
                 "\"extensions\": %u, \"trace\": \"%s\"}\n",
                 name, now.calls, now.allocations, now.answers, now.failures, heap.uordblks + heap.hblkhd,
                 injection::liveTimers(), entriesOf("/proc/self/task"), entriesOf("/proc/self/fd") - 1,
                 eina_list_count(elm_theme_extension_list_get(nullptr)), wroteTrace ? now.trace.c_str() : "");
}

void setFailingCall(const char* value) {
    char* rest = nullptr;
    journey().failingCall = std::strtol(value, &rest, 10);
    journey().code = static_cast<int>(std::strtol(rest, nullptr, 10));
}

void setFailingAllocation(const char* value) {
    char* rest = nullptr;
    journey().failingAllocation = std::strtol(value, &rest, 10);
    journey().failsOn = std::string_view(rest) == " always";
}

void setHold(const char* value) {
    char* rest = nullptr;
    journey().heldAnswer = std::strtol(value, &rest, 10);
    journey().heldSeconds = std::strtod(rest, nullptr);
}

std::string bytesOf(std::string_view digits) {
    std::string bytes;
    for (std::size_t i = 0; i + 1 < digits.size(); i += 2)
        bytes += static_cast<char>(std::stoi(std::string(digits.substr(i, 2)), nullptr, 16));
    return bytes;
}

struct Command {
    std::string_view name;
    void (*take)(const char* value);
};
constexpr Command kCommands[] = {
    {"journey",
     [](const char* value) {
         journey() = {};
         wroteTrace = std::string_view(value) == "traced";
     }},
    {"fail-call", setFailingCall},
    {"fail-allocation", setFailingAllocation},
    {"hold", setHold},
    {"text", [](const char* value) { journey().platformText = bytesOf(value); }},
    {"catalogue", [](const char* value) { journey().catalogueText = bytesOf(value); }},
    {"report", report},
};

}  // namespace

namespace injection {

bool isGadgets(const void* address) {
    dl_find_object found{};
    if (_dl_find_object(const_cast<void*>(address), &found) != 0) return false;
    return std::string_view(found.dlfo_link_map->l_name).ends_with(kModule);
}

int platformFault(const char* function, const void* caller) {
    if (!isGadgets(caller)) return 0;
    Journey& now = journey();
    ++now.calls;
    if (wroteTrace) now.trace.append(now.trace.empty() ? "" : " ").append(function);
    if (now.calls != now.failingCall) return 0;
    ++now.failures;
    return now.code;
}

bool allocationFault(const void* caller) {
    if (!isGadgets(caller)) return false;
    Journey& now = journey();
    ++now.allocations;
    const bool fails = now.failsOn ? now.failingAllocation > 0 && now.allocations >= now.failingAllocation
                                   : now.allocations == now.failingAllocation;
    if (fails) ++now.failures;
    return fails;
}

double secondsToHold() {
    Journey& now = journey();
    if (++now.answers != now.heldAnswer) return 0;
    ++now.failures;
    return now.heldSeconds;
}

const char* platformText() {
    return journey().platformText ? journey().platformText->c_str() : nullptr;
}

const char* catalogueText() {
    return journey().catalogueText ? journey().catalogueText->c_str() : nullptr;
}

void complain(std::string_view what, const char* function) {
    std::fprintf(stderr, "endurance complaint: %.*s: %s\n", static_cast<int>(what.size()), what.data(), function);
}

bool takeCommand(std::string_view key, const char* value) {
    if (!key.starts_with(kKeys)) return false;
    for (const Command& command : kCommands) {
        if (command.name == key.substr(kKeys.size())) command.take(value);
    }
    return true;
}

}  // namespace injection
