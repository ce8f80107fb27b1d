// How gadget-host ends. The texts are shown by --help.
#pragma once

#include <array>
#include <string_view>

namespace host {

enum ExitCode : int {
    kExitClosed = 0,
    kExitInternal = 1,
    kExitUsage = 2,
    kExitModuleMissing = 3,
    kExitModuleNotLoadable = 4,
    kExitEntryMissing = 5,
    kExitInitRefused = 6,
    kExitNoView = 7,
    kExitNoDisplay = 8,
    kExitNetwork = 9,
    kExitStore = 10,
    kExitScript = 11,
    kExitExpectation = 12,
};

struct ExitText {
    ExitCode code;
    std::string_view text;
};

inline constexpr std::array kExitTexts{
    ExitText{kExitClosed, "the gadget was closed, or the script ran to its end"},
    ExitText{kExitInternal, "the toolkit did not start"},
    ExitText{kExitUsage, "unknown option or wrong value"},
    ExitText{kExitModuleMissing, "module file missing or not readable"},
    ExitText{kExitModuleNotLoadable, "module file is not a library, or needs something that is missing"},
    ExitText{kExitEntryMissing, "module does not export UG_MODULE_INIT and UG_MODULE_EXIT"},
    ExitText{kExitInitRefused, "UG_MODULE_INIT refused"},
    ExitText{kExitNoView, "the gadget created no view"},
    ExitText{kExitNoDisplay, "no display to open the window on"},
    ExitText{kExitNetwork, "the chosen network cannot be used"},
    ExitText{kExitStore, "the settings store cannot be opened"},
    ExitText{kExitScript, "script missing, or a line of it is wrong"},
    ExitText{kExitExpectation, "a script's command or expectation failed"},
};

}  // namespace host
