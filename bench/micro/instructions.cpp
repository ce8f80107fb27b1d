// Runs one piece twice, the second time with callgrind's counter on: valgrind --tool=callgrind --collect-atstart=no.
#include <valgrind/callgrind.h>

#include <algorithm>
#include <cstdio>
#include <exception>
#include <string_view>

#include "subjects.h"

int main(int count, char** arguments) try {
    const auto& all = micro::subjects();
    const std::string_view name = count == 2 ? arguments[1] : "";
    const auto subject = std::ranges::find(all, name, &micro::Subject::name);
    if (subject == all.end()) {
        std::fprintf(stderr, "usage: micro-instructions PIECE; pieces:\n");
        for (const micro::Subject& known : all)
            std::fprintf(stderr, "  %s\n", known.name.c_str());
        return 2;
    }
    subject->run();
    CALLGRIND_TOGGLE_COLLECT;
    subject->run();
    CALLGRIND_TOGGLE_COLLECT;
    return 0;
} catch (const std::exception& failure) {
    std::fprintf(stderr, "micro-instructions: %s\n", failure.what());
    return 1;
}
