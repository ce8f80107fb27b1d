// Work in a process of its own, for tests that kill it or change its mounts.
#pragma once

#include <sys/mount.h>
#include <sys/wait.h>
#include <unistd.h>

#include <fstream>
#include <string>

namespace child {

inline constexpr int kSkip = 77;

template <class Work>
pid_t start(Work work) {
    const pid_t process = fork();
    if (process == 0) _exit(work());
    return process;
}

// The exit status, or minus the signal that ended it.
inline int finish(pid_t process) {
    int status = 0;
    waitpid(process, &status, 0);
    return WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status);
}

// For the child only: mounts that nobody else sees. False where the machine does not allow that.
inline bool makeMountsPrivate() {
    if (unshare(CLONE_NEWNS) != 0 && unshare(CLONE_NEWUSER | CLONE_NEWNS) != 0) return false;
    // Refused in a change-root, whose mounts may do as well.
    mount(nullptr, "/", nullptr, MS_REC | MS_PRIVATE, nullptr);
    std::ifstream mounts("/proc/self/mountinfo");
    for (std::string line; std::getline(mounts, line);) {
        if (line.find(" shared:") != std::string::npos) return false;
    }
    return true;
}

}  // namespace child
