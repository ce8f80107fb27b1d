// Passphrases in NetworkManager's profiles. They are read only to put them back, and go nowhere else.
#pragma once

#include <NetworkManager.h>

#include <functional>
#include <string>

#include "handles.h"
#include "weak_self.h"

namespace network {

// Whether networks of this WIFI_SECURITY_* are joined with a passphrase alone.
bool takesPassphrase(int security);

// Whether the text can be one: WEP key, or WPA passphrase of 8 to 63 characters or key of 64 hexadecimal digits
// (IEEE 802.11, annex J.4); SAE takes any.
bool canBePassphrase(int security, const std::string& passphrase);

// Puts it in. A profile without security settings gets those of the given WIFI_SECURITY_*, others keep theirs.
void setPassphrase(NMConnection* profile, int security, const std::string& passphrase);

// A passphrase on trial in a stored profile: NetworkManager holds it in memory, and the old one on its disk, until it
// is kept or undone. Later failures are logged.
class PassphraseTrial {
  public:
    // Gets the failure, which it frees, or null. Called from GLib's dispatching, and not after the trial's end.
    using Done = std::function<void(GError* failure)>;

    explicit PassphraseTrial(NMRemoteConnection* profile);
    ~PassphraseTrial() { g_cancellable_cancel(cancellable_.get()); }
    PassphraseTrial(const PassphraseTrial&) = delete;
    PassphraseTrial& operator=(const PassphraseTrial&) = delete;

    void start(int security, const std::string& passphrase, Done done);
    void keep();
    void undo();

  private:
    static void onOldKnown(GObject* profile, GAsyncResult* result, gpointer data);
    static void onPutIn(GObject* profile, GAsyncResult* result, gpointer data);
    void putIn();

    Object<NMRemoteConnection> profile_;
    Object<NMConnection> old_, changed_;
    Done done_;
    bool isPutIn_ = false;
    Object<GCancellable> cancellable_{g_cancellable_new()};
    WeakSelf<PassphraseTrial> self_{this};
};

}  // namespace network
