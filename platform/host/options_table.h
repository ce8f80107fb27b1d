/* The options of gadget-host, in the order in which options.cpp hands over their targets. */
#pragma once

#include <Ecore.h>
#include <Ecore_Getopt.h>

#ifdef __cplusplus
extern "C" {
#endif

extern const Ecore_Getopt hostOptions;

#ifdef __cplusplus
}
#endif
