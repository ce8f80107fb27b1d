/* The options as Ecore_Getopt wants them. C, because its macros are. */
#include "host/options_table.h"

#include <gadget_paths.h>
#include <stddef.h>

/* The list of options is a flexible array member, which only GNU C lets one initialise. */
#pragma GCC diagnostic ignored "-Wpedantic"

const Ecore_Getopt hostOptions = {
    "gadget-host",
    "%prog [options]",
    GADGET_VERSION,
    "",
    "",
    "Opens a window and runs the network gadget in it. Escape is the remote's Back, F10 its Menu, F4 its Close.",
    EINA_TRUE,
    {
        ECORE_GETOPT_STORE_METAVAR_STR('m', "module", "The gadget's module (" GADGET_MODULE_FILE ").", "FILE"),
        ECORE_GETOPT_STORE_METAVAR_STR('n', "network", "auto, networkmanager or simulated=FILE (auto).", "NETWORK"),
        ECORE_GETOPT_STORE_TRUE('\0', "wired", "Store that the TV uses its wired network."),
        ECORE_GETOPT_STORE_TRUE('\0', "wireless", "Store that the TV uses its wireless network."),
        ECORE_GETOPT_STORE_METAVAR_STR('\0', "store", "The settings store (the user's own).", "FILE"),
        ECORE_GETOPT_STORE_METAVAR_STR('\0', "online-url", "Asked over IPv6 where NetworkManager does not check.",
                                       "URL"),
        ECORE_GETOPT_STORE_METAVAR_STR('s', "size", "Size of the window (1920x1080).", "WxH"),
        ECORE_GETOPT_STORE_TRUE('f', "fullscreen", "Cover the whole screen."),
        ECORE_GETOPT_STORE_METAVAR_STR('\0', "script", "Carry out a script; - reads standard input.", "FILE"),
        ECORE_GETOPT_STORE_METAVAR_STR('l', "log", "silent, fatal, error, warning, info, debug or verbose (error).",
                                       "LEVEL"),
        ECORE_GETOPT_VERSION('V', "version"),
        ECORE_GETOPT_HELP('h', "help"),
        ECORE_GETOPT_SENTINEL,
    },
};
