// Strict reading of a JSON document: each value knows its place, and what does not fit is refused with it.
#pragma once

#include <nlohmann/json.hpp>

#include <initializer_list>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace network::simulated {

// What is wrong and where, on one line.
class ReadError : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};

class Node {
  public:
    explicit Node(const nlohmann::json& value, nlohmann::json::json_pointer place = nlohmann::json::json_pointer())
        : value_(&value), place_(std::move(place)) {}

    [[noreturn]] void fail(const std::string& reason) const;
    // Refuses the value when `reason` is not empty.
    void require(const std::string& reason) const;

    std::string text() const;
    bool flag() const;
    double number() const;
    long long whole() const;
    bool isText() const { return value_->is_string(); }
    bool isNull() const { return value_->is_null(); }
    std::vector<Node> items() const;

    // Refuses a value that is no object, and any key that is not named here.
    void allow(std::initializer_list<std::string_view> keys) const;
    Node at(const char* key) const;
    std::optional<Node> find(const char* key) const;

    // The value that belongs to the text, which must be one of the table's names.
    template <typename Value>
    Value choice(std::initializer_list<std::pair<std::string_view, Value>> table) const {
        const std::string name = text();
        std::string names;
        for (const auto& [known, value] : table) {
            if (known == name) return value;
            names += (names.empty() ? "" : ", ") + std::string(known);
        }
        fail("\"" + name + "\" is none of " + names);
    }

  private:
    void expect(bool isRight, const char* wanted) const;

    const nlohmann::json* value_;
    nlohmann::json::json_pointer place_;
};

// Reads a file. Throws ReadError with line and column when it is no JSON.
nlohmann::json parseFile(const std::string& file);

}  // namespace network::simulated
