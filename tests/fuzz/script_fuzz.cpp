// The script reader: each line is a command, nothing, or refused with a column within the line.
#include <iomanip>
#include <sstream>

#include "fuzz.h"
#include "host/script_commands.h"
#include "host/script_line.h"

namespace {

void requireColumn(std::size_t column, const std::string& line) {
    fuzz::require(column >= 1 && column <= line.size() + 1, "the column lies in the line", line);
}

// The words once more, each in quotes.
std::string quoted(const std::vector<host::Word>& words) {
    std::ostringstream line;
    for (const host::Word& word : words)
        line << std::quoted(word.text) << ' ';
    return line.str();
}

void split(const std::string& line) {
    const std::vector<host::Word> words = host::splitLine(line);
    std::size_t last = 0;
    for (const host::Word& word : words) {
        requireColumn(word.column, line);
        fuzz::require(word.column > last, "the columns rise", line);
        last = word.column;
        const std::string_view written = std::string_view(line).substr(word.column - 1);
        fuzz::require(word.quoted ? written.front() == '"' : written.starts_with(word.text), "a word stands there",
                      line);
    }
    const std::vector<host::Word> again = host::splitLine(quoted(words));
    fuzz::require(again.size() == words.size(), "as many words in quotes", line);
    for (std::size_t i = 0; i < words.size(); ++i)
        fuzz::require(again[i].quoted && again[i].text == words[i].text, "the same words in quotes", line);
}

void parse(const std::string& line) {
    host::Command command;
    if (!host::parseCommand(line, command)) return;
    fuzz::require(command.act != nullptr, "a command does something", line);
    fuzz::require(command.pause >= 0 && command.pause <= 86400, "a pause of at most a day", line);
    fuzz::require(command.within >= 0 && command.within <= 86400, "a time limit of at most a day", line);
    fuzz::require(!command.text.empty() && line.ends_with(command.text), "it keeps what was written", line);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    std::istringstream script(std::string(reinterpret_cast<const char*>(data), size));
    for (std::string line; std::getline(script, line);) {
        for (const auto read : {split, parse}) {
            try {
                read(line);
            } catch (const host::SyntaxError& error) {
                requireColumn(error.column(), line);
                fuzz::require(*error.what() != '\0', "the refusal says why", line);
            }
        }
    }
    return 0;
}
