// Where the arrow keys go on the keyboard: every key, in all four directions.
#include <gtest/gtest.h>

#include <array>
#include <deque>
#include <map>
#include <set>
#include <string>
#include <vector>

#include "keyboard_screen.h"

namespace {

const std::vector<std::vector<std::string>> kGrid{
    {"1", "2", "3", "4", "5", "6", "7", "8", "9", "0", "Delete"},
    {"A", "B", "C", "D", "E", "F", "colon", "leftarrow", "rightarrow", "DeleteAll"},
    {"OK", "Cancel"},
};
constexpr std::array kArrows{"Left", "Right", "Up", "Down"};

using Cell = std::pair<std::size_t, std::size_t>;  // row, column

Cell sideways(Cell from, std::size_t steps) {
    return {from.first, (from.second + steps) % kGrid[from.first].size()};
}

Cell above(Cell from) {
    if (from.first == 0) return from;
    if (from.first == 2) return {1, from.second == 0 ? 3 : 8};  // "D", ">"
    return {0, from.second == 9 ? 10 : from.second};
}

Cell below(Cell from) {
    if (from.first == 0) return {1, std::min<std::size_t>(from.second, 9)};
    return from.first == 1 ? Cell{2, 0} : from;
}

Cell expected(Cell from, const std::string& arrow) {
    if (arrow == "Left") return sideways(from, kGrid[from.first].size() - 1);
    if (arrow == "Right") return sideways(from, 1);
    return arrow == "Up" ? above(from) : below(from);
}

std::string partOf(Cell cell) {
    return "elm.button." + kGrid[cell.first][cell.second] + "_IPV6";
}

struct Move {
    Cell from;
    std::string arrow;

    // NOLINTNEXTLINE(modernize-use-nullptr): it reads the defaulted comparison as one with 0
    auto operator<=>(const Move&) const = default;
};

// The shortest way to a move that has not been made yet; its last step is that move. Empty when all have been.
std::vector<Move> wayToNew(Cell start, const std::set<Move>& made) {
    std::map<Cell, std::vector<Move>> ways{{start, {}}};
    std::deque<Cell> queue{start};
    while (!queue.empty()) {
        const Cell cell = queue.front();
        queue.pop_front();
        for (const char* arrow : kArrows) {
            std::vector<Move> way = ways[cell];
            way.push_back({cell, arrow});
            if (!made.contains(way.back())) return way;
            const Cell next = expected(cell, arrow);
            if (ways.emplace(next, way).second) queue.push_back(next);
        }
    }
    return {};
}

// One walk that makes every move at least once.
std::vector<Move> wholeWalk(Cell start) {
    std::vector<Move> walk;
    std::set<Move> made;
    for (std::vector<Move> way = wayToNew(start, made); !way.empty(); way = wayToNew(start, made)) {
        made.insert(way.begin(), way.end());
        walk.insert(walk.end(), way.begin(), way.end());
        start = expected(way.back().from, way.back().arrow);
    }
    return walk;
}

void expectWalk(const std::vector<Move>& walk, const HostRun& run) {
    for (std::size_t i = 0; i < walk.size(); ++i) {
        const nlohmann::json dump = run.dump("move" + std::to_string(i) + ".json");
        ASSERT_EQ(focusedKeyIn(dump), partOf(expected(walk[i].from, walk[i].arrow)))
            << walk[i].arrow << " from " << partOf(walk[i].from);
    }
}

TEST(KeyboardFocus, EveryArrowOnEveryKey) {
    const std::vector<Move> walk = wholeWalk({2, 0});
    ASSERT_GE(walk.size(), 92U) << "23 keys in four directions";
    std::string script;
    for (std::size_t i = 0; i < walk.size(); ++i) {
        script += "key " + walk[i].arrow + "\nwait 0.02\ndump move" + std::to_string(i) + ".json\n";
    }
    HostSetup setup = onKeyboard("Gateway", "fe80::1", script + "quit\n");
    setup.timeout = 240;  // a hundred dumps take their time with sanitizers on a busy machine
    const HostRun run(setup);
    ASSERT_TRUE(run.succeeded()) << run;
    expectWalk(walk, run);
}

}  // namespace
