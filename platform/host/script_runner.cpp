#include "host/script_runner.h"

#include <Elementary.h>
#include <unistd.h>

#include <array>
#include <cstdio>
#include <fstream>
#include <iostream>
#include <utility>

#include "host/exit_codes.h"
#include "host/gadget_runtime.h"
#include "host/screen_dump.h"
#include "host/script_line.h"

namespace {

constexpr double kPollSeconds = 0.05;
// A wait that ends together with a timer of the gadget is served after it.
constexpr double kAfterTimers = 0.001;

std::string stamp(double seconds) {
    std::array<char, 32> text{};
    std::snprintf(text.data(), text.size(), "[%9.3f] ", seconds);
    return text.data();
}

}  // namespace

namespace host {

ScriptRunner::~ScriptRunner() {
    if (timer_ != nullptr) ecore_timer_del(timer_);
    if (input_ != nullptr) ecore_main_fd_handler_del(input_);
}

std::string ScriptRunner::load(const std::string& file) {
    readsInput_ = file == "-" || file == "/dev/stdin";
    name_ = readsInput_ ? "standard input" : file;
    if (readsInput_) return "";
    std::ifstream input(file);
    if (!input) return "the script " + file + " cannot be read";
    return readAll(input);
}

std::string ScriptRunner::readAll(std::istream& input) {
    std::string line;
    while (std::getline(input, line)) {
        if (std::string error = readLine(line); !error.empty()) return error;
    }
    return "";
}

std::string ScriptRunner::readLine(const std::string& line) {
    const std::string place = name_ + ":" + std::to_string(++line_);
    try {
        Command command;
        if (!parseCommand(line, command)) return "";
        command.place = place;
        commands_.push_back(std::move(command));
        return "";
    } catch (const SyntaxError& error) {
        return place + ":" + std::to_string(error.column()) + ": " + error.what();
    }
}

void ScriptRunner::start(Evas_Object* window, std::function<OpenResult()> open) {
    window_ = window;
    open_ = std::move(open);
    started_ = ecore_loop_time_get();
    if (readsInput_) {
        constexpr auto kRead = static_cast<Ecore_Fd_Handler_Flags>(ECORE_FD_READ);
        input_ = ecore_main_fd_handler_file_add(STDIN_FILENO, kRead, onInput, this, nullptr, nullptr);
    }
    schedule(0.0, &ScriptRunner::settle);
}

Eina_Bool ScriptRunner::onInput(void* runner, Ecore_Fd_Handler* /*handler*/) {
    static_cast<ScriptRunner*>(runner)->readInput();
    return ECORE_CALLBACK_RENEW;
}

void ScriptRunner::readInput() {
    std::array<char, 4096> buffer{};
    const ssize_t length = read(STDIN_FILENO, buffer.data(), buffer.size());
    if (length < 0) return;
    pending_.append(buffer.data(), static_cast<std::size_t>(length));
    if (length == 0 && !pending_.empty()) pending_ += '\n';
    for (std::size_t end = pending_.find('\n'); end != std::string::npos; end = pending_.find('\n')) {
        const std::string error = readLine(pending_.substr(0, end));
        pending_.erase(0, end + 1);
        if (error.empty()) continue;
        std::cerr << "gadget-host: " << error << std::endl;
        return stop(kExitScript);
    }
    if (length == 0) endOfInput();
    if (timer_ == nullptr) schedule(0.0, &ScriptRunner::settle);
}

void ScriptRunner::endOfInput() {
    readsInput_ = false;
    ecore_main_fd_handler_del(std::exchange(input_, nullptr));
    Command quit;
    parseCommand("quit", quit);
    quit.place = name_;
    commands_.push_back(std::move(quit));
}

void ScriptRunner::schedule(double seconds, void (ScriptRunner::*step)()) {
    if (stopped_) return;
    step_ = step;
    timer_ = ecore_timer_add(seconds, onTimer, this);
}

Eina_Bool ScriptRunner::onTimer(void* runner) {
    auto* const self = static_cast<ScriptRunner*>(runner);
    self->timer_ = nullptr;
    (self->*self->step_)();
    return ECORE_CALLBACK_CANCEL;
}

// Focus and layout follow a command with the next frame; one loop turn later they can be looked at.
void ScriptRunner::settle() {
    if (commands_.empty()) {
        if (!readsInput_ && !isGadgetOpen()) stop(kExitClosed);
        return;
    }
    draw();
    schedule(0.0, &ScriptRunner::begin);
}

void ScriptRunner::draw() {
    ecore_evas_manual_render(ecore_evas_ecore_evas_get(evas_object_evas_get(window_)));
}

void ScriptRunner::begin() {
    const Command& command = commands_.front();
    deadline_ = ecore_loop_time_get() + command.within;
    if (command.pause <= 0) return attempt();
    schedule(command.pause + kAfterTimers, &ScriptRunner::attempt);
}

void ScriptRunner::attempt() {
    const Command& command = commands_.front();
    if (command.needsGadget && !isGadgetOpen()) return fail("the gadget has closed");
    const Outcome outcome = command.act({window_, time(), open_});
    if (outcome.met) return goOn(outcome.seen);
    if (ecore_loop_time_get() >= deadline_) return fail(outcome.seen);
    schedule(kPollSeconds + kAfterTimers, &ScriptRunner::lookAgain);
}

// What has changed on the screen is seen once it is drawn.
void ScriptRunner::lookAgain() {
    draw();
    schedule(0.0, &ScriptRunner::attempt);
}

void ScriptRunner::goOn(const std::string& seen) {
    const Command command = std::move(commands_.front());
    commands_.pop_front();
    std::cout << stamp(time()) << command.text << (seen.empty() ? "" : "  -> ") << seen << std::endl;
    if (command.quits) return stop(kExitClosed);
    schedule(0.0, &ScriptRunner::settle);
}

void ScriptRunner::fail(const std::string& reason) {
    const Command& command = commands_.front();
    if (command.mayFail) return goOn("not done: " + reason);
    std::cout << stamp(time()) << command.text << "  -> FAILED: " << reason << "\non the screen:\n"
              << screen::summary(window_) << std::flush;
    std::cerr << "gadget-host: " << command.place << ": " << command.text << ": " << reason << std::endl;
    stop(kExitExpectation);
}

void ScriptRunner::stop(int exitCode) {
    stopped_ = true;
    exitCode_ = exitCode;
    if (input_ != nullptr) ecore_main_fd_handler_del(std::exchange(input_, nullptr));
    elm_exit();
}

}  // namespace host
