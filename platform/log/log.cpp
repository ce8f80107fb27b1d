// Log: __dlog_print over Eina_Log, each tag a domain of its own. Lines hold what callers pass: they pass no secrets.
#include "log/log.h"

#include <Eina.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <cerrno>
#include <climits>
#include <cstdarg>
#include <cstdlib>
#include <map>
#include <mutex>

#include "log/line.h"
#include "log/sink.h"
#include "platform_log.h"

namespace logging {

namespace {

struct Level {
    std::string_view name;
    int priority;  // DLOG_ number
    int eina;      // a domain at this level lets pass what is at or below it
};

constexpr std::array kLevels{
    Level{"verbose", DLOG_VERBOSE, EINA_LOG_LEVEL_DBG + 1},
    Level{"debug", DLOG_DEBUG, EINA_LOG_LEVEL_DBG},
    Level{"info", DLOG_INFO, EINA_LOG_LEVEL_INFO},
    Level{"warning", DLOG_WARN, EINA_LOG_LEVEL_WARN},
    Level{"error", DLOG_ERROR, EINA_LOG_LEVEL_ERR},
    Level{"fatal", DLOG_FATAL, EINA_LOG_LEVEL_CRITICAL},
    Level{"silent", DLOG_SILENT, EINA_LOG_LEVEL_CRITICAL - 1},
};

constexpr bool isPriority(int priority) {
    return priority >= DLOG_VERBOSE && priority <= DLOG_SILENT;
}

constexpr const Level& levelOf(int priority) {
    return kLevels[static_cast<std::size_t>(priority - DLOG_VERBOSE)];
}

static_assert(std::ranges::all_of(kLevels, [](const Level& level) { return &levelOf(level.priority) == &level; }));

// The lowest priority that any tag lets pass: a line below it returns before anything else is looked at.
std::atomic<int> lowestHeard{DLOG_WARN};

class Domains {
  public:
    Domains() {
        eina_init();
        // Under a service manager that call has put a print function of Eina's own in the place of the one set at load.
        if (std::getenv("NOTIFY_SOCKET")) installSink();
    }

    int of(const char* tag) {
        const std::lock_guard guard(mutex_);
        const auto found = domains_.find(std::string_view(tag));
        return found != domains_.end() ? found->second : add(tag);
    }

    void setLevel(int level) {
        const std::lock_guard guard(mutex_);
        level_ = level;
        environmentCounts_ = false;
        for (const auto& [tag, domain] : domains_)
            eina_log_domain_registered_level_set(domain, level);
    }

  private:
    int add(const char* tag) {
        const int domain = eina_log_domain_register(tag, nullptr);
        if (domain < 0) return domain;
        const bool named = eina_log_domain_registered_level_get(domain) != eina_log_level_get();
        if (!named || !environmentCounts_) eina_log_domain_registered_level_set(domain, level_);
        domains_.emplace(tag, domain);
        return domain;
    }

    std::mutex mutex_;
    std::map<std::string, int, std::less<>> domains_;
    int level_ = EINA_LOG_LEVEL_WARN;
    bool environmentCounts_ = true;
};

// Never destroyed: lines may still come while the process ends.
Domains& domains() {
    static auto& instance = *new Domains;
    return instance;
}

// At load, so that a print function that the program itself sets later is the one that counts.
[[gnu::constructor]] void start() {
    if (std::getenv("EINA_LOG_LEVELS")) lowestHeard = INT_MIN;
    installSink();
}

// Apart from the entry, so that a line that nobody hears pays for none of this.
[[gnu::noinline]] int write(const Level& level, const char* tag, const char* format, std::va_list arguments) {
    const int domain = domains().of(tag ? tag : "");
    if (domain < 0) return -ENOMEM;
    if (level.eina > eina_log_domain_registered_level_get(domain)) return 0;
    std::string text;
    if (!logging::format(format, arguments, text)) return -EILSEQ;
    eina_log_print(domain, static_cast<Eina_Log_Level>(level.eina), "", "", 0, "%s", text.c_str());
    return static_cast<int>(text.size());
}

}  // namespace

bool setLevel(std::string_view name, std::string& message) {
    const auto level = std::ranges::find(kLevels, name, &Level::name);
    if (level == kLevels.end()) {
        message =
            "unknown log level \"" + clean(name) + "\": use silent, fatal, error, warning, info, debug or verbose";
        return false;
    }
    domains().setLevel(std::max<int>(level->eina, EINA_LOG_LEVEL_ERR));  // Eina drops everything at CRITICAL
    lowestHeard = level->priority;
    return true;
}

}  // namespace logging

int __dlog_print(int log_id, int priority, const char* tag, const char* format, ...) {
    if (log_id != DLOG_ID_MAIN || !logging::isPriority(priority) || !format) return -EINVAL;
    if (priority < logging::lowestHeard.load(std::memory_order_relaxed) || priority == DLOG_SILENT) return 0;
    std::va_list arguments;
    va_start(arguments, format);
    const int result = logging::write(logging::levelOf(priority), tag, format, arguments);
    va_end(arguments);
    return result;
}
