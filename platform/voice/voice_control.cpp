// Voice control: remembers that it was initialised and how, and checks the order of calls. No speech is recognised.
#include "voice_control.h"

namespace {

constexpr int kNone = 0;
constexpr int kInvalidParameter = -22;
constexpr int kInvalidOperation = -38;

constinit int users = 0;
constinit int autoRegisterMode = 0;
constinit int autoRegisterClick = 0;

constexpr bool isSwitch(int value) {
    return value == 0 || value == 1;
}

}  // namespace

int vc_elm_initialize(void) {
    ++users;
    return kNone;
}

int vc_elm_set_auto_register_mode(int mode, int click) {
    if (users == 0) return kInvalidOperation;
    if (!isSwitch(mode) || !isSwitch(click)) return kInvalidParameter;
    autoRegisterMode = mode;
    autoRegisterClick = click;
    return kNone;
}

int vc_elm_deinitialize(void) {
    if (users == 0) return kInvalidOperation;
    if (--users == 0) autoRegisterMode = autoRegisterClick = 0;
    return kNone;
}
