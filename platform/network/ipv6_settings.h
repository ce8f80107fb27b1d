// Relations between IPv6 settings and values.
#pragma once

#include "backend.h"

namespace network {

// Puts what the settings name over the values.
void overlay(const Ipv6Settings& settings, Ipv6Values& values);

// Puts what the changes name over the settings.
void merge(const Ipv6Settings& changes, Ipv6Settings& settings);

}  // namespace network
