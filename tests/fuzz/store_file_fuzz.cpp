// The store over any bytes as its file: it opens, its own or a fresh one in its place, and works from then on.
#include <fstream>
#include <memory>

#include "fuzz.h"
#include "log/log.h"
#include "settings_store.h"
#include "store/store.h"

namespace {

using Text = std::unique_ptr<char, decltype(&std::free)>;

Text read(const char* key) {
    return {vconf_get_str(key), &std::free};
}

// A damaged page may be met at any access: at most one answers with an error, by then the file has been set aside.
void useIt() {
    constexpr const char* kKeys[] = {"db/menu/network/network_type", "key", "number"};
    int number = 0;
    for (const char* key : kKeys) {
        read(key);
        vconf_get_int(key, &number);
    }
    for (const char* key : kKeys) {
        fuzz::require(vconf_set_str(key, "stored") == 0, "a value can be stored", key);
        const Text text = read(key);
        fuzz::require(text && std::string_view(text.get()) == "stored", "and read", key);
    }
}

bool quiet() {
    std::string message;
    return logging::setLevel("silent", message);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const bool isQuiet = quiet();
    fuzz::require(isQuiet, "the log is silent");
    const fuzz::Folder folder;
    const std::string file = folder / "settings.db";
    std::ofstream(file, std::ios::binary).write(reinterpret_cast<const char*>(data), static_cast<long>(size));
    std::string message;
    fuzz::require(store::open(file, message), "the store opens", message);
    useIt();
    fuzz::require(store::open(file, message), "the store opens again", message);
    const Text text = read("key");
    fuzz::require(text && std::string_view(text.get()) == "stored", "what was stored is kept", file);
    store::close();
    return 0;
}
