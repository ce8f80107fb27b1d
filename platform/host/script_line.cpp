#include "host/script_line.h"

#include <algorithm>
#include <iomanip>
#include <sstream>

namespace {

constexpr const char* kBlanks = " \t\r";
constexpr const char* kBlanksAndQuote = " \t\r\"";
constexpr const char* kQuoteAndEscape = "\"\\";

std::string unquote(const std::string& quoted) {
    std::istringstream input(quoted);
    std::string text;
    input >> std::quoted(text);
    return text;
}

std::size_t skipBlanks(const std::string& line, std::size_t from) {
    return std::min(line.find_first_not_of(kBlanks, from), line.size());
}

std::size_t endOfPlain(const std::string& line, std::size_t begin) {
    return std::min(line.find_first_of(kBlanksAndQuote, begin), line.size());
}

// Behind the closing quote; npos without one.
std::size_t endOfQuoted(const std::string& line, std::size_t begin) {
    std::size_t at = line.find_first_of(kQuoteAndEscape, begin + 1);
    while (at != std::string::npos && line[at] != '"')
        at = line.find_first_of(kQuoteAndEscape, at + 2);
    return at == std::string::npos ? at : at + 1;
}

}  // namespace

namespace host {

// By hand and not by std::regex, which takes a stack frame for each character of a word.
std::vector<Word> splitLine(const std::string& line) {
    std::vector<Word> words;
    for (std::size_t begin = skipBlanks(line, 0); begin < line.size() && line[begin] != '#';) {
        const bool quoted = line[begin] == '"';
        const std::size_t end = quoted ? endOfQuoted(line, begin) : endOfPlain(line, begin);
        const bool isWhole = end == line.size() || (end < line.size() && skipBlanks(line, end) > end);
        if (!isWhole) throw SyntaxError(begin + 1, "a quote is not closed, or stands inside a word");
        const std::string word = line.substr(begin, end - begin);
        words.push_back({quoted ? unquote(word) : word, begin + 1, quoted});
        begin = skipBlanks(line, end);
    }
    return words;
}

}  // namespace host
