#include "host/script_commands.h"

#include <Elementary.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <cstdlib>
#include <fstream>
#include <memory>
#include <span>
#include <string_view>
#include <vector>

#include "host/gadget_runtime.h"
#include "host/options.h"
#include "host/remote_keys.h"
#include "host/screen.h"
#include "host/screen_dump.h"
#include "host/screen_parts.h"
#include "host/screen_picture.h"
#include "host/script_line.h"
#include "network/network.h"
#include "platform_log.h"
#include "settings_store.h"

namespace {

using host::Command;
using host::Outcome;
using host::Size;
using host::Stage;
using host::SyntaxError;
using host::Word;

constexpr double kWindowSeconds = 3;  // what a display may take until it shows the window

constexpr std::array<std::string_view, 3> kTextIdStarts{"COM_", "SID_", "TV_SID_"};

// The words after a command's name, taken one by one.
class Arguments {
  public:
    Arguments(std::span<const Word> words, std::size_t endColumn) : words_(words), endColumn_(endColumn) {}

    bool takeKeyword(std::string_view keyword) {
        if (words_.empty() || words_.front().quoted || words_.front().text != keyword) return false;
        words_ = words_.subspan(1);
        return true;
    }

    const Word& takeWord(const char* what) {
        if (words_.empty()) throw SyntaxError(endColumn_, std::string(what) + " is missing");
        const Word& word = words_.front();
        words_ = words_.subspan(1);
        return word;
    }

    std::string take(const char* what) { return takeWord(what).text; }

    double takeSeconds() {
        const Word& word = takeWord("a number of seconds");
        double seconds = 0;
        const auto [end, error] = std::from_chars(word.text.data(), word.text.data() + word.text.size(), seconds);
        const bool whole = error == std::errc{} && end == word.text.data() + word.text.size();
        if (!whole || !(seconds >= 0 && seconds <= kLongestWait)) {
            throw SyntaxError(word.column, "'" + word.text + "' is not a number of seconds from 0 to 86400");
        }
        return seconds;
    }

    void takeWithin(Command& command) {
        if (takeKeyword("within")) command.within = takeSeconds();
    }

    int takePixels(const char* what) {
        const Word& word = takeWord(what);
        int pixels = 0;
        const auto [end, error] = std::from_chars(word.text.data(), word.text.data() + word.text.size(), pixels);
        const bool whole = error == std::errc{} && end == word.text.data() + word.text.size();
        if (!whole || pixels < 0 || pixels > kLargestPlace) {
            throw SyntaxError(word.column, "'" + word.text + "' is not a number of pixels from 0 to 7680");
        }
        return pixels;
    }

    std::vector<std::string> takeAll(const char* what) {
        std::vector<std::string> all{take(what)};
        while (!words_.empty())
            all.push_back(take(what));
        return all;
    }

    void end() const {
        if (!words_.empty()) throw SyntaxError(words_.front().column, "'" + words_.front().text + "' is too much");
    }

  private:
    static constexpr double kLongestWait = 86400;
    static constexpr int kLargestPlace = 7680;
    std::span<const Word> words_;
    std::size_t endColumn_;
};

struct Wanted {
    std::string text;
    bool exactly = false;

    bool matches(std::string_view seen) const {
        return exactly ? seen == text : seen.find(text) != std::string_view::npos;
    }
};

Wanted takeWanted(Arguments& arguments) {
    const bool exactly = arguments.takeKeyword("exactly");
    const Word& word = arguments.takeWord("the text");
    if (word.text.empty()) throw SyntaxError(word.column, "the text is empty");
    return {word.text, exactly};
}

// The uppermost match; a whole text goes before a part of one.
const host::screen::Text* find(const std::vector<host::screen::Text>& texts, const Wanted& wanted) {
    const host::screen::Text* found = nullptr;
    for (const host::screen::Text& text : texts) {
        const bool keepsWhole = found != nullptr && found->text == wanted.text && text.text != wanted.text;
        if (wanted.matches(text.text) && !keepsWhole) found = &text;
    }
    return found;
}

Outcome seesText(const Stage& stage, const Wanted& wanted) {
    const std::vector<host::screen::Text> texts = host::screen::texts(stage.window);
    const host::screen::Text* const found = find(texts, wanted);
    if (found == nullptr) return {false, "not on the screen"};
    return {true, "\"" + found->text + "\""};
}

Outcome seesPicture(const Stage& stage, const std::string& picture, const std::string& part) {
    std::vector<std::string> seen;
    if (part.empty()) {
        seen = host::screen::pictures(stage.window);
    } else {
        for (const host::screen::Part& row : host::screen::parts(stage.window)) {
            if (row.name == part) seen = host::screen::pictures(row.object);
        }
    }
    if (std::ranges::find(seen, picture) != seen.end()) return {true, picture};
    return {false, seen.empty() ? "no picture there" : "there is " + seen.back()};
}

// `expect` and `expect-gone` of a text or a picture: what is looked for is the same.
std::function<Outcome(const Stage&)> takeSight(Arguments& arguments) {
    if (!arguments.takeKeyword("picture")) {
        return [wanted = takeWanted(arguments)](const Stage& stage) { return seesText(stage, wanted); };
    }
    const std::string picture = arguments.take("the picture's file name");
    const std::string part = arguments.takeKeyword("in") ? arguments.take("the part's name") : "";
    return [picture, part](const Stage& stage) { return seesPicture(stage, picture, part); };
}

Outcome hasFocus(const Stage& stage, const Wanted& wanted) {
    const nlohmann::json focus = host::screen::focus(stage.window);
    if (focus.is_null()) return {false, "nothing has the focus"};
    const auto label = focus.at("label").get<std::string>();
    return {wanted.matches(label), "the focus is on \"" + label + "\""};
}

// What no screen of a gadget may ever show, nor do.
Outcome isSane(const Stage& stage) {
    if (!host::isGadgetOpen()) return {true, "the gadget has closed"};
    Evas_Object* const focused = host::screen::focused(stage.window);
    if (focused == nullptr) return {false, "nothing has the focus"};
    if (!host::screen::isUppermost(focused, stage.window)) return {false, "the focus is behind the uppermost popup"};
    for (const host::screen::Text& seen : host::screen::texts(stage.window)) {
        const auto begins = [&seen](std::string_view start) { return seen.text.starts_with(start); };
        if (std::ranges::any_of(kTextIdStarts, begins)) return {false, "an untranslated text: " + seen.text};
    }
    return {};
}

Outcome gadgetIs(bool open) {
    return {host::isGadgetOpen() == open, host::isGadgetOpen() ? "the gadget is open" : "the gadget has closed"};
}

void parseExpect(Arguments& arguments, Command& command) {
    if (arguments.takeKeyword("closed")) {
        command.act = [](const Stage&) { return gadgetIs(false); };
    } else if (arguments.takeKeyword("open")) {
        command.act = [](const Stage&) { return gadgetIs(true); };
    } else if (arguments.takeKeyword("sane")) {
        command.act = isSane;
    } else if (arguments.takeKeyword("focus")) {
        command.needsGadget = true;
        command.act = [wanted = takeWanted(arguments)](const Stage& stage) { return hasFocus(stage, wanted); };
    } else {
        command.needsGadget = true;
        command.act = takeSight(arguments);
    }
    arguments.takeWithin(command);
}

void parseExpectGone(Arguments& arguments, Command& command) {
    command.act = [sight = takeSight(arguments)](const Stage& stage) {
        const Outcome outcome = sight(stage);
        return outcome.met ? Outcome{false, "still there: " + outcome.seen} : Outcome{true, "gone"};
    };
    arguments.takeWithin(command);
}

void parseKey(Arguments& arguments, Command& command) {
    command.needsGadget = true;
    command.act = [name = arguments.take("the key's name")](const Stage& stage) {
        host::pressKey(evas_object_evas_get(stage.window), name);
        return Outcome{};
    };
}

Outcome pointAt(const Stage& stage, int x, int y) {
    Evas* const canvas = evas_object_evas_get(stage.window);
    const auto now = static_cast<unsigned int>(ecore_loop_time_get() * 1000.0);
    evas_event_feed_mouse_in(canvas, now, nullptr);
    evas_event_feed_mouse_move(canvas, x, y, now, nullptr);
    return {true, "at " + std::to_string(x) + "," + std::to_string(y)};
}

Outcome clickAt(const Stage& stage, int x, int y) {
    Outcome outcome = pointAt(stage, x, y);
    Evas* const canvas = evas_object_evas_get(stage.window);
    const auto now = static_cast<unsigned int>(ecore_loop_time_get() * 1000.0);
    evas_event_feed_mouse_down(canvas, 1, EVAS_BUTTON_NONE, now, nullptr);
    evas_event_feed_mouse_up(canvas, 1, EVAS_BUTTON_NONE, now, nullptr);
    return outcome;
}

// What the pointer does at a place of the window, in pixels.
using PointerAct = Outcome (*)(const Stage& stage, int x, int y);

Outcome onObject(const Stage& stage, Evas_Object* object, PointerAct act) {
    const Eina_Rectangle area = host::screen::seenArea(object);
    return act(stage, area.x + area.w / 2, area.y + area.h / 2);
}

Outcome onText(const Stage& stage, const Wanted& wanted, PointerAct act) {
    const std::vector<host::screen::Text> texts = host::screen::texts(stage.window);
    const host::screen::Text* const found = find(texts, wanted);
    return found == nullptr ? Outcome{false, "not on the screen"} : onObject(stage, found->object, act);
}

Outcome onPart(const Stage& stage, const std::string& name, PointerAct act) {
    for (const host::screen::Part& part : host::screen::parts(stage.window)) {
        if (part.name == name) return onObject(stage, part.object, act);
    }
    return {false, "not on the screen"};
}

template <PointerAct kAct>
void parsePointer(Arguments& arguments, Command& command) {
    command.needsGadget = true;
    if (arguments.takeKeyword("part")) {
        command.act = [name = arguments.take("the part's name")](const Stage& s) { return onPart(s, name, kAct); };
    } else if (arguments.takeKeyword("at")) {
        const int x = arguments.takePixels("how far right");
        const int y = arguments.takePixels("how far down");
        command.act = [x, y](const Stage& s) { return kAct(s, x, y); };
    } else {
        command.act = [wanted = takeWanted(arguments)](const Stage& s) { return onText(s, wanted, kAct); };
    }
    arguments.takeWithin(command);
}

void parseWait(Arguments& arguments, Command& command) {
    command.pause = arguments.takeSeconds();
    command.act = [](const Stage&) { return Outcome{}; };
}

Outcome takePicture(const Stage& stage, const std::string& file) {
    if (elm_win_norender_get(stage.window) > 0) return {false, "the display does not show the window"};
    const bool saved = host::screen::savePicture(stage.window, file);
    return {saved, (saved ? "" : "cannot write ") + file};
}

void parseShot(Arguments& arguments, Command& command) {
    command.within = kWindowSeconds;
    command.act = [file = arguments.take("the file's name")](const Stage& stage) { return takePicture(stage, file); };
}

void parseDump(Arguments& arguments, Command& command) {
    command.act = [file = arguments.take("the file's name")](const Stage& stage) {
        std::string text;
        try {
            text = host::screen::dump(stage.window, stage.time).dump(2);
        } catch (const nlohmann::json::type_error&) {
            return Outcome{false, "a text on the screen is not valid UTF-8"};
        }
        std::ofstream output(file);
        output << text << '\n';
        return Outcome{output.good(), output.good() ? file : "cannot write " + file};
    };
}

void parseNetwork(Arguments& arguments, Command& command) {
    command.act = [words = arguments.takeAll("what happens to the network")](const Stage&) {
        const std::string error = network::command(words);
        return Outcome{error.empty(), error};
    };
}

// A value in the store: quoted it is a text, a bare number is an integer.
struct Value {
    std::string text;
    int number = 0;
    bool isNumber = false;
};

Value takeValue(Arguments& arguments) {
    const Word& word = arguments.takeWord("the value");
    Value value{word.text};
    const auto [end, error] = std::from_chars(word.text.data(), word.text.data() + word.text.size(), value.number);
    value.isNumber = !word.quoted && error == std::errc{} && end == word.text.data() + word.text.size();
    return value;
}

struct Free {
    void operator()(char* text) const { std::free(text); }
};

Outcome storeHolds(const std::string& key, const Value& wanted) {
    if (wanted.isNumber) {
        int number = 0;
        if (vconf_get_int(key.c_str(), &number) != 0) return {false, "no number there"};
        return {number == wanted.number, std::to_string(number)};
    }
    const std::unique_ptr<char, Free> text(vconf_get_str(key.c_str()));
    if (!text) return {false, "no text there"};
    return {wanted.text == text.get(), "\"" + std::string(text.get()) + "\""};
}

void parseExpectStore(Arguments& arguments, Command& command) {
    const std::string key = arguments.take("the key");
    command.act = [key, value = takeValue(arguments)](const Stage&) { return storeHolds(key, value); };
    arguments.takeWithin(command);
}

void parseSetStore(Arguments& arguments, Command& command) {
    const std::string key = arguments.take("the key");
    command.act = [key, value = takeValue(arguments)](const Stage&) {
        const int result =
            value.isNumber ? vconf_set_int(key.c_str(), value.number) : vconf_set_str(key.c_str(), value.text.c_str());
        return Outcome{result == 0, result == 0 ? "" : "the store refused it"};
    };
}

void parseOpen(Arguments& /*arguments*/, Command& command) {
    command.act = [](const Stage& stage) {
        if (host::isGadgetOpen()) return Outcome{true, "it is open"};
        const host::OpenResult result = stage.open();
        return Outcome{result.failure == host::OpenFailure::kNone, result.message};
    };
}

void parsePause(Arguments& /*arguments*/, Command& command) {
    command.needsGadget = true;
    command.act = [](const Stage&) {
        host::pauseGadget();
        return Outcome{};
    };
}

void parseResume(Arguments& /*arguments*/, Command& command) {
    command.needsGadget = true;
    command.act = [](const Stage&) {
        host::resumeGadget();
        return Outcome{};
    };
}

void parseResize(Arguments& arguments, Command& command) {
    const Word& word = arguments.takeWord("the size");
    Size size;
    if (!host::parseSize(word.text, size)) {
        throw SyntaxError(word.column, "'" + word.text + "' is not a size such as 1280x720 (each side 320 to 7680)");
    }
    command.act = [size](const Stage& stage) {
        evas_object_resize(stage.window, size.width, size.height);
        return Outcome{};
    };
}

void parseLog(Arguments& arguments, Command& command) {
    command.act = [text = arguments.take("the text")](const Stage&) {
        __dlog_print(DLOG_ID_MAIN, DLOG_INFO, "SCRIPT", "%s", text.c_str());
        return Outcome{};
    };
}

void parseQuit(Arguments& /*arguments*/, Command& command) {
    command.quits = true;
    command.act = [](const Stage&) { return Outcome{}; };
}

struct Row {
    std::string_view name;
    void (*parse)(Arguments& arguments, Command& command);
};

const Row& findRow(const Word& name);

void parseTry(Arguments& arguments, Command& command) {
    findRow(arguments.takeWord("the command")).parse(arguments, command);
    command.mayFail = true;
}

constexpr std::array kCommands{
    Row{"key", parseKey},
    Row{"point", parsePointer<pointAt>},
    Row{"click", parsePointer<clickAt>},
    Row{"expect", parseExpect},
    Row{"expect-gone", parseExpectGone},
    Row{"expect-store", parseExpectStore},
    Row{"set-store", parseSetStore},
    Row{"wait", parseWait},
    Row{"shot", parseShot},
    Row{"dump", parseDump},
    Row{"network", parseNetwork},
    Row{"open", parseOpen},
    Row{"pause", parsePause},
    Row{"resume", parseResume},
    Row{"resize", parseResize},
    Row{"log", parseLog},
    Row{"quit", parseQuit},
    Row{"try", parseTry},
};

const Row& findRow(const Word& name) {
    const auto* const row = std::ranges::find(kCommands, name.text, &Row::name);
    if (row == kCommands.end() || name.quoted) throw SyntaxError(name.column, "unknown command '" + name.text + "'");
    return *row;
}

}  // namespace

namespace host {

bool parseCommand(const std::string& line, Command& command) {
    const std::vector<Word> words = splitLine(line);
    if (words.empty()) return false;
    Command read;
    read.text = line.substr(words.front().column - 1);
    Arguments arguments(std::span<const Word>(words).subspan(1), line.size() + 1);
    findRow(words.front()).parse(arguments, read);
    arguments.end();
    command = std::move(read);
    return true;
}

}  // namespace host
