// A module without UG_MODULE_EXIT.
#include "gadget_host.h"

PLATFORM_API int UG_MODULE_INIT(ug_operations* /*operations*/) {
    return 0;
}
