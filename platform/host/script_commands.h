// The commands of a script: what each line means and does.
#pragma once

#include <Evas.h>

#include <functional>
#include <string>

#include "host/gadget_runtime.h"

namespace host {

// What a command works on.
struct Stage {
    Evas_Object* window;
    double time;                              // seconds since the script's start
    const std::function<OpenResult()>& open;  // opens the gadget when there is none
};

struct Outcome {
    bool met = true;
    std::string seen;  // for the transcript: what was found, or what stands in the way
};

struct Command {
    std::string text;          // as it was written
    std::string place;         // "file:line"
    double pause = 0;          // seconds before it acts
    double within = 0;         // seconds that it may take until it is met
    bool needsGadget = false;  // senseless once the gadget has closed
    bool quits = false;
    bool mayFail = false;  // the script goes on then
    std::function<Outcome(const Stage&)> act;
};

/**
 * Reads one line.
 * @return false for a blank line or a comment; `command` is then untouched
 * @throws SyntaxError with the column of the word that is wrong
 */
bool parseCommand(const std::string& line, Command& command);

}  // namespace host
