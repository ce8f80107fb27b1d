// The store against a map in memory, over any order of writes, reads and reopenings.
#include <map>
#include <memory>
#include <variant>

#include "fuzz.h"
#include "settings_store.h"
#include "store/store.h"

namespace {

using Model = std::map<std::string, std::variant<std::string, int>>;

void compare(const Model& model, const std::string& key) {
    const auto known = model.find(key);
    const bool none = key.empty() || known == model.end();
    const std::unique_ptr<char, decltype(&std::free)> text(vconf_get_str(key.c_str()), &std::free);
    const std::string* expected = none ? nullptr : std::get_if<std::string>(&known->second);
    fuzz::require((text != nullptr) == (expected != nullptr), "a text is read where one was stored", key);
    fuzz::require(!expected || *expected == text.get(), "the text that was stored", key);
    int number = 0;
    const int* stored = none ? nullptr : std::get_if<int>(&known->second);
    fuzz::require((vconf_get_int(key.c_str(), &number) == 0) == (stored != nullptr), "a number where one was stored",
                  key);
    fuzz::require(!stored || *stored == number, "the number that was stored", key);
}

void reopen(const std::string& file) {
    std::string message;
    fuzz::require(store::open(file, message), "the store opens", message);
}

// A short key out of few, so that many are written twice, or any text.
std::string keyOf(fuzz::Input& input) {
    const std::uint8_t choice = input.byte();
    return choice < 0xf0 ? std::string(choice % 8, static_cast<char>('a' + choice % 5)) : input.cText(input.byte());
}

void step(fuzz::Input& input, Model& model, const std::string& file) {
    const std::uint8_t action = input.byte();
    const std::string key = keyOf(input);
    if (action % 8 == 0) return reopen(file);
    if (action % 8 < 4) {
        std::string text = input.cText(input.byte());
        if (action >= 0x80) text.append(std::size_t{action} * 40, 'x');  // beyond a page of the file
        fuzz::require((vconf_set_str(key.c_str(), text.c_str()) == 0) == !key.empty(), "a text is stored", key);
        if (!key.empty()) model[key] = text;
    } else if (action % 8 < 6) {
        const int number = static_cast<int>(static_cast<unsigned>(input.byte()) << (input.byte() % 32U));
        fuzz::require((vconf_set_int(key.c_str(), number) == 0) == !key.empty(), "a number is stored", key);
        if (!key.empty()) model[key] = number;
    }
    compare(model, key);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const fuzz::Folder folder;
    const std::string file = folder / "settings.db";
    fuzz::Input input(data, size);
    Model model;
    reopen(file);
    for (int steps = 0; steps < 100 && !input.empty(); ++steps)
        step(input, model, file);
    reopen(file);
    for (const auto& entry : model)
        compare(model, entry.first);
    store::close();
    return 0;
}
