#include "json_reader.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <limits>

namespace network::simulated {

using nlohmann::json;

namespace {

// The library's message without its own counting of the place.
std::string reasonOf(const json::exception& error) {
    const std::string whole = error.what();
    const auto colon = whole.find(": ");
    return colon == std::string::npos ? whole : whole.substr(colon + 2);
}

ReadError syntaxError(const std::string& text, const json::parse_error& error) {
    const auto offset = std::min(error.byte == 0 ? 0 : error.byte - 1, text.size());
    const auto end = text.begin() + static_cast<std::ptrdiff_t>(offset);
    const auto lines = std::count(text.begin(), end, '\n');
    const auto lineStart = text.rfind('\n', offset == 0 ? 0 : offset - 1);
    const auto column = lines == 0 ? offset + 1 : offset - lineStart;
    return ReadError("line " + std::to_string(lines + 1) + ", column " + std::to_string(column) + ": " +
                     reasonOf(error));
}

}  // namespace

void Node::fail(const std::string& reason) const {
    const std::string place = place_.to_string();
    throw ReadError((place.empty() ? "whole file" : place) + ": " + reason);
}

void Node::require(const std::string& reason) const {
    if (!reason.empty()) fail(reason);
}

void Node::expect(bool isRight, const char* wanted) const {
    if (!isRight) fail("must be " + std::string(wanted) + ", not " + value_->type_name());
}

std::string Node::text() const {
    expect(value_->is_string(), "a text");
    return value_->get<std::string>();
}

bool Node::flag() const {
    expect(value_->is_boolean(), "true or false");
    return value_->get<bool>();
}

double Node::number() const {
    expect(value_->is_number(), "a number");
    return value_->get<double>();
}

long long Node::whole() const {
    expect(value_->is_number_integer(), "a whole number");
    const bool fits = !value_->is_number_unsigned() ||
                      value_->get<std::uint64_t>() <= std::uint64_t{std::numeric_limits<std::int64_t>::max()};
    expect(fits, "a whole number of at most 63 bits");
    return value_->get<std::int64_t>();
}

std::vector<Node> Node::items() const {
    expect(value_->is_array(), "a list");
    std::vector<Node> all;
    for (std::size_t index = 0; index < value_->size(); ++index)
        all.emplace_back((*value_)[index], place_ / index);
    return all;
}

void Node::allow(std::initializer_list<std::string_view> keys) const {
    expect(value_->is_object(), "an object");
    for (const auto& [key, value] : value_->items()) {
        if (std::find(keys.begin(), keys.end(), key) == keys.end()) Node(value, place_ / key).fail("unknown key");
    }
}

Node Node::at(const char* key) const {
    const auto found = find(key);
    if (!found) fail("needs the key \"" + std::string(key) + "\"");
    return *found;
}

std::optional<Node> Node::find(const char* key) const {
    const auto found = value_->find(key);
    if (found == value_->end()) return std::nullopt;
    return Node(*found, place_ / key);
}

json parseFile(const std::string& file) {
    std::ifstream stream(file, std::ios::binary);
    if (!stream) throw ReadError("cannot be read: " + std::string(std::strerror(errno)));
    if (std::filesystem::is_directory(file)) throw ReadError("is a folder");
    const std::string text{std::istreambuf_iterator<char>(stream), {}};
    if (stream.bad()) throw ReadError("cannot be read");
    try {
        return json::parse(text);
    } catch (const json::parse_error& error) {
        throw syntaxError(text, error);
    } catch (const json::out_of_range& error) {
        throw ReadError(reasonOf(error));  // a number beyond a double; the reason quotes it
    }
}

}  // namespace network::simulated
