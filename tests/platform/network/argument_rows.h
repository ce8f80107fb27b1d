// Rows of the argument checks: one boundary function, called rightly and with a null beside its handle.
#pragma once

#include <cstdlib>
#include <functional>

// Frees what a call gave, so that a row is one line.
struct Text {
    char* text = nullptr;
    ~Text() { std::free(text); }
    operator char**() { return &text; }
};

template <typename Kind>
struct ArgumentRow {
    const char* name;
    Kind kind;
    std::function<int(void*)> call;          // with all other arguments right
    std::function<int(void*)> nullArgument;  // with a null in them, or empty when there is no other pointer
};

// Getters: into a number or a handle, or into a text that is freed again; of any family or of IPv6.
template <typename Out, typename Kind, typename Call>
ArgumentRow<Kind> getter(const char* name, Kind kind, Call call) {
    return {name, kind,
            [call](void* handle) {
                Out out{};
                return call(handle, &out);
            },
            [call](void* handle) { return call(handle, nullptr); }};
}
template <typename Kind, typename Call>
ArgumentRow<Kind> textGetter(const char* name, Kind kind, Call call) {
    return {name, kind, [call](void* handle) { return call(handle, Text()); },
            [call](void* handle) { return call(handle, nullptr); }};
}
template <typename Kind, typename Callback, typename Call>
ArgumentRow<Kind> registration(const char* name, Kind kind, Callback callback, Call call) {
    return {name, kind, [=](void* handle) { return call(handle, callback, nullptr); },
            [=](void* handle) { return call(handle, nullptr, nullptr); }};
}
