// The language of the texts.
#pragma once

namespace host {

// Sets the locale from the environment, so that catalogues are found without an installed locale, and keeps English as
// the last resort: the text IDs themselves are never shown. Call before the toolkit starts.
void chooseLanguage();

}  // namespace host
