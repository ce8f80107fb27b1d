// One line of a script, split into words.
#pragma once

#include <stdexcept>
#include <string>
#include <vector>

namespace host {

struct Word {
    std::string text;
    std::size_t column = 1;  // counted from 1, in bytes
    bool quoted = false;     // a quoted word is a text, never a keyword
};

// What is wrong with a line, and where.
class SyntaxError : public std::runtime_error {
  public:
    SyntaxError(std::size_t column, const std::string& reason) : std::runtime_error(reason), column_(column) {}
    std::size_t column() const { return column_; }

  private:
    std::size_t column_;
};

/**
 * Splits at blanks. "Quoted words" keep their blanks, with \" and \\ for those two characters; # at the start of a word
 * begins a comment.
 * @throws SyntaxError for a quote that is not closed, or one inside a word
 */
std::vector<Word> splitLine(const std::string& line);

}  // namespace host
