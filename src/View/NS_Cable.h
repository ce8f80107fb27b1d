// The cable's state, which the wired adapter reports to the running check: its one call up into the screens.
#pragma once

// Records the link state for the next tick: 3 is up, anything else down. Returns whether it is up.
bool check_wired(int linkState);
