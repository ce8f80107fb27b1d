// Log lines of the gadget, all under one tag and with the place they come from.
#pragma once

#include <string_view>

#include "platform_log.h"

inline constexpr const char* kLogTag = "NET_IPV6_APP";

consteval const char* sourceFileName(const char* path) {
    const std::string_view whole(path);
    const auto slash = whole.rfind('/');
    return slash == std::string_view::npos ? path : path + slash + 1;
}

// The prefix is "file: function(line) > [path : function : line] "; the message follows in the same format.
#define NET_LOG(priority, format, ...)                                                                             \
    __dlog_print(DLOG_ID_MAIN, priority, kLogTag, "%s: %s(%d) > [%s : %s : %d] " format, sourceFileName(__FILE__), \
                 __func__, __LINE__, __FILE__, __func__, __LINE__ __VA_OPT__(, ) __VA_ARGS__)

#define LOG_DEBUG(...) NET_LOG(DLOG_DEBUG, __VA_ARGS__)
#define LOG_INFO(...) NET_LOG(DLOG_INFO, __VA_ARGS__)
#define LOG_WARN(...) NET_LOG(DLOG_WARN, __VA_ARGS__)
#define LOG_ERROR(...) NET_LOG(DLOG_ERROR, __VA_ARGS__)
#define LOG_FATAL(...) NET_LOG(DLOG_FATAL, __VA_ARGS__)

// Says START where it stands and END when its function is left, on whichever way.
class LogScope {
  public:
    LogScope(const char* path, const char* name, const char* function, int line)
        : path_(path), name_(name), function_(function), line_(line) {
        say("START");
    }
    ~LogScope() { say("END"); }
    LogScope(const LogScope&) = delete;
    LogScope& operator=(const LogScope&) = delete;

  private:
    void say(const char* what) const {
        __dlog_print(DLOG_ID_MAIN, DLOG_DEBUG, kLogTag, "%s: %s(%d) > [%s : %s : %d] %s\n", name_, function_, line_,
                     path_, function_, line_, what);
    }

    const char* path_;
    const char* name_;
    const char* function_;
    int line_;
};

#define LOG_SCOPE() const LogScope logScope(__FILE__, sourceFileName(__FILE__), __func__, __LINE__)
