// Log lines of the gadget, all under one tag and with the place they come from.
#pragma once

#include "platform_log.h"

inline constexpr const char* kLogTag = "NET_IPV6_APP";

#define LOG_TEXT_OF(number) #number
#define LOG_TEXT(number) LOG_TEXT_OF(number)

// The prefix is "file: function(line) > [path : function : line] "; the message follows in the same format. What the
// compiler knows of the place is in the format itself: a line that nobody hears costs what its arguments cost.
#define NET_LOG(function, priority, format, ...)                                                                      \
    __dlog_print(DLOG_ID_MAIN, priority, kLogTag,                                                                     \
                 __FILE_NAME__ ": %s(" LOG_TEXT(__LINE__) ") > [" __FILE__ " : %s : " LOG_TEXT(__LINE__) "] " format, \
                 function, function __VA_OPT__(, ) __VA_ARGS__)

#define LOG_DEBUG(...) NET_LOG(__func__, DLOG_DEBUG, __VA_ARGS__)
#define LOG_INFO(...) NET_LOG(__func__, DLOG_INFO, __VA_ARGS__)
#define LOG_WARN(...) NET_LOG(__func__, DLOG_WARN, __VA_ARGS__)
#define LOG_ERROR(...) NET_LOG(__func__, DLOG_ERROR, __VA_ARGS__)
#define LOG_FATAL(...) NET_LOG(__func__, DLOG_FATAL, __VA_ARGS__)

// Says what it was given to say when its function is left, on whichever way.
template <typename Say>
class AtScopeEnd {
  public:
    AtScopeEnd(const char* function, Say say) : function_(function), say_(say) {}
    ~AtScopeEnd() { say_(function_); }
    AtScopeEnd(const AtScopeEnd&) = delete;
    AtScopeEnd& operator=(const AtScopeEnd&) = delete;

  private:
    const char* function_;
    [[no_unique_address]] Say say_;
};

// For code that says much and runs often: the result of its first line tells whether anyone hears it, and when nobody
// does, its other lines are not even called.
#define LOG_DEBUG_IF(heard, ...) ((heard) ? static_cast<void>(LOG_DEBUG(__VA_ARGS__)) : static_cast<void>(0))

// Says START where it stands and END when its function is left.
#define LOG_SCOPE_IF(heard)                                                             \
    LOG_DEBUG_IF(heard, "START\n");                                                     \
    const AtScopeEnd logScope(__func__, [isHeard = bool{heard}](const char* function) { \
        if (isHeard) NET_LOG(function, DLOG_DEBUG, "END\n");                            \
    })
#define LOG_SCOPE() LOG_SCOPE_IF(true)
