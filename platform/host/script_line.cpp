#include "host/script_line.h"

#include <iomanip>
#include <regex>
#include <sstream>

namespace {

std::string unquote(const std::string& quoted) {
    std::istringstream input(quoted);
    std::string text;
    input >> std::quoted(text);
    return text;
}

}  // namespace

namespace host {

std::vector<Word> splitLine(const std::string& line) {
    // Blanks, then a comment, a quoted word or a plain one; each up to the next blank.
    static const std::regex kWord(
        R"re([ \t\r]*(?:(#.*)|("(?:[^"\\]|\\.)*")(?=[ \t\r]|$)|([^ \t\r"#][^ \t\r"]*)(?=[ \t\r]|$)|$))re");
    std::vector<Word> words;
    auto position = line.cbegin();
    std::smatch found;
    while (position != line.cend()) {
        if (!std::regex_search(position, line.cend(), found, kWord, std::regex_constants::match_continuous)) {
            const std::size_t blank =
                line.find_first_not_of(" \t\r", static_cast<std::size_t>(position - line.cbegin()));
            throw SyntaxError(blank + 1, "a quote is not closed, or stands inside a word");
        }
        const bool quoted = found[2].matched;
        const std::ssub_match& word = quoted ? found[2] : found[3];
        if (!word.matched) break;
        const auto column = static_cast<std::size_t>(word.first - line.cbegin()) + 1;
        words.push_back({quoted ? unquote(word.str()) : word.str(), column, quoted});
        position = found[0].second;
    }
    return words;
}

}  // namespace host
