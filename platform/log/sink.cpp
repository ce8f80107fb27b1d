#include "log/sink.h"

#include <Eina.h>
#include <sys/stat.h>
#include <sys/uio.h>
#include <syslog.h>
#include <systemd/sd-journal.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <string>
#include <string_view>

#include "log/line.h"

namespace logging {

namespace {

struct Rank {
    char letter;
    int syslogPriority;  // RFC 5424, table 2
};

// By Eina level; what is louder than its DBG is "verbose".
constexpr std::array kRanks{
    Rank{'F', LOG_CRIT}, Rank{'E', LOG_ERR},   Rank{'W', LOG_WARNING},
    Rank{'I', LOG_INFO}, Rank{'D', LOG_DEBUG}, Rank{'V', LOG_DEBUG},
};

const Rank& rankOf(int level) {
    return kRanks[static_cast<std::size_t>(std::clamp(level, 0, 5))];
}

// The service manager names the journal's socket by device and inode (systemd.exec(5), JOURNAL_STREAM).
bool errorsGoToJournal() {
    const char* stream = std::getenv("JOURNAL_STREAM");
    struct stat about {};
    if (!stream || fstat(STDERR_FILENO, &about) != 0) return false;
    return stream == std::to_string(about.st_dev) + ':' + std::to_string(about.st_ino);
}

std::string timeOfDay() {
    timespec now{};
    clock_gettime(CLOCK_REALTIME, &now);
    tm local{};
    localtime_r(&now.tv_sec, &local);
    char text[32];
    std::snprintf(text, sizeof text, "%02d:%02d:%02d.%03ld", local.tm_hour, local.tm_min, local.tm_sec,
                  now.tv_nsec / 1'000'000);
    return text;
}

// One write for the whole line, so that lines of several threads or processes do not mix.
void writeToTerminal(std::string_view line) {
    while (!line.empty()) {
        const ssize_t written = write(STDERR_FILENO, line.data(), line.size());
        if (written < 0 && errno == EINTR) continue;
        if (written <= 0) return;
        line.remove_prefix(static_cast<std::size_t>(written));
    }
}

bool sendToJournal(const Rank& rank, const std::string& tag, const std::string& text) {
    std::array fields{
        "MESSAGE=" + text,
        "PRIORITY=" + std::to_string(rank.syslogPriority),
        "SYSLOG_IDENTIFIER=" + tag,
    };
    std::array<iovec, fields.size()> vectors{};
    std::transform(fields.begin(), fields.end(), vectors.begin(), [](std::string& field) {
        return iovec{field.data(), field.size()};
    });
    return sd_journal_sendv(vectors.data(), static_cast<int>(vectors.size())) == 0;
}

// Lines of the toolkit say where they come from; lines of __dlog_print carry that in their text and pass no file.
std::string origin(const char* file, const char* function, int line) {
    if (!file || !*file) return {};
    return std::string(file) + ':' + std::to_string(line) + ' ' + (function ? function : "") + "() ";
}

void print(const Eina_Log_Domain* domain, Eina_Log_Level level, const char* file, const char* function, int line,
           const char* format, void* /*data*/, va_list arguments) {
    std::string text;
    if (!logging::format(format, arguments, text)) return;
    const Rank& rank = rankOf(level);
    const std::string tag = clean(domain->name ? domain->name : "");
    const std::string message = origin(file, function, line) + clean(text);
    if (errorsGoToJournal() && sendToJournal(rank, tag, message)) return;
    writeToTerminal(timeOfDay() + ' ' + rank.letter + ' ' + tag + (tag.empty() ? "" : " ") + message + '\n');
}

}  // namespace

void installSink() {
    eina_log_print_cb_set(print, nullptr);
}

}  // namespace logging
