// The check of a wired connection: link and address, gateway, internet, verdict.
#pragma once

#include <span>

#include "View/NS_Cable.h"

struct sNetworkStatus;

// Starts a run; its first frame is Net_Set_Conn_Tv_Image_No, which the caller leaves at 1. Always 0.
int wired_animation(sNetworkStatus* status);

// Writes the path of a failure verdict's picture. Nothing for a null status.
void Set_Connection_Image(const sNetworkStatus* status, std::span<char> path);
