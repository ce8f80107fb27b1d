// Where log lines go: the terminal, or the journal when the service manager runs the process.
#pragma once

namespace logging {

// Makes this the print function of Eina_Log, so that the toolkit's own lines come out in the same form and place.
void installSink();

}  // namespace logging
