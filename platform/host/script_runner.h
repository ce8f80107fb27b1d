// Carries out a script beside the gadget, on the main loop, and writes the transcript on standard output.
#pragma once

#include <Ecore.h>
#include <Evas.h>

#include <deque>
#include <functional>
#include <istream>
#include <string>

#include "host/script_commands.h"

namespace host {

class ScriptRunner {
  public:
    ScriptRunner() = default;
    ~ScriptRunner();
    ScriptRunner(const ScriptRunner&) = delete;
    ScriptRunner& operator=(const ScriptRunner&) = delete;

    // Reads a whole script; "-" defers reading to the run, line by line from standard input.
    // Empty, or "file:line:column: reason" of the first wrong line.
    std::string load(const std::string& file);

    // Begins; ends the main loop itself when the script quits, fails, or is done and the gadget gone. `open` opens the
    // gadget again.
    void start(Evas_Object* window, std::function<OpenResult()> open);

    // No command is left and none will come.
    bool isDone() const { return commands_.empty() && !readsInput_; }

    // 0, or why the script ended the program.
    int exitCode() const { return exitCode_; }

  private:
    std::string readAll(std::istream& input);
    std::string readLine(const std::string& line);
    void readInput();
    void endOfInput();

    void schedule(double seconds, void (ScriptRunner::*step)());
    void settle();
    void begin();
    void attempt();
    void lookAgain();
    void draw();
    void fail(const std::string& reason);
    void goOn(const std::string& seen);
    void stop(int exitCode);
    double time() const { return ecore_loop_time_get() - started_; }

    static Eina_Bool onTimer(void* runner);
    static Eina_Bool onInput(void* runner, Ecore_Fd_Handler* handler);

    std::deque<Command> commands_;
    std::string name_;
    std::string pending_;  // input that has no line end yet
    int line_ = 0;
    bool readsInput_ = false;
    bool stopped_ = false;
    int exitCode_ = 0;

    Evas_Object* window_ = nullptr;
    std::function<OpenResult()> open_;
    double started_ = 0;
    double deadline_ = 0;
    Ecore_Timer* timer_ = nullptr;
    Ecore_Fd_Handler* input_ = nullptr;
    void (ScriptRunner::*step_)() = nullptr;
};

}  // namespace host
