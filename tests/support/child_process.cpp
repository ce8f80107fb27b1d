#include "child_process.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/prctl.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <fstream>
#include <sstream>

namespace {

constexpr int kCannotStart = 127;

std::vector<char*> pointers(const std::vector<std::string>& texts) {
    std::vector<char*> list;
    list.reserve(texts.size() + 1);
    for (const std::string& text : texts)
        list.push_back(const_cast<char*>(text.c_str()));
    list.push_back(nullptr);
    return list;
}

void redirect(const char* file, int flags, int descriptor) {
    const int opened = open(file, flags | O_CREAT, 0600);
    if (opened < 0 || dup2(opened, descriptor) < 0) _exit(kCannotStart);
}

[[noreturn]] void become(const Child& child) {
    setpgid(0, 0);
    prctl(PR_SET_PDEATHSIG, SIGKILL);  // also when the test itself is killed
    if (chdir(child.folder.c_str()) != 0) _exit(kCannotStart);
    redirect("in", O_RDONLY, STDIN_FILENO);
    redirect("out", O_WRONLY | O_TRUNC, STDOUT_FILENO);
    redirect("err", O_WRONLY | O_TRUNC, STDERR_FILENO);
    const std::vector<char*> arguments = pointers(child.command);
    const std::vector<char*> environment = pointers(child.environment);
    execve(arguments[0], arguments.data(), environment.data());
    _exit(kCannotStart);
}

// False when the limit passed first.
bool waitForEnd(pid_t process, int seconds) {
    const int descriptor = static_cast<int>(syscall(SYS_pidfd_open, process, 0));
    pollfd watched{descriptor, POLLIN, 0};
    const bool ended = poll(&watched, 1, seconds * 1000) == 1;
    close(descriptor);
    return ended;
}

}  // namespace

ChildEnd runChild(const Child& child) {
    const pid_t process = fork();
    if (process == 0) become(child);
    setpgid(process, process);
    ChildEnd end;
    end.timedOut = !waitForEnd(process, child.timeout);
    kill(-process, SIGKILL);
    int status = 0;
    waitpid(process, &status, 0);
    end.exitCode = WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status);
    return end;
}

std::string readFile(const std::filesystem::path& file) {
    std::ostringstream content;
    content << std::ifstream(file).rdbuf();
    return content.str();
}
