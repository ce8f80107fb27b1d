// The information panel of the status screen and its advice lines.
#pragma once

struct sNetworkStatus;

// Non-zero fills the five rows from the shared record, zero blanks them, labels and colons included.
void _ShowIPInfoText(int flag);
// Clears the four advice lines.
void reset_text(sNetworkStatus* status);
