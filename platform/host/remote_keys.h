// The remote control's keys on a PC keyboard. The gadget looks at key names only, so names are what is mapped.
#pragma once

#include <Ecore.h>
#include <Evas.h>

#include <string>

namespace host {

// One key as the toolkit takes it in. `text` is what it types, or null.
struct Key {
    const char* keyname;
    const char* key;
    const char* text;
};

/**
 * What the gadget is to see of a key.
 * @param keyname the key's own name, as the display names it ("semicolon")
 * @param key     the name of what it stands for with the modifiers that are held ("colon")
 */
Key mapKey(const char* keyname, const char* key, const char* text);

// Renames the keyboard's events before the toolkit sees them, for as long as it lives.
class KeyboardMapping {
  public:
    KeyboardMapping();
    ~KeyboardMapping();
    KeyboardMapping(const KeyboardMapping&) = delete;
    KeyboardMapping& operator=(const KeyboardMapping&) = delete;

  private:
    Ecore_Event_Filter* filter_;
};

// Presses and releases a key on the canvas, as the keyboard would. `name` is a key name such as "Return" or "colon".
void pressKey(Evas* canvas, const std::string& name);

}  // namespace host
