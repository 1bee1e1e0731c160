#pragma once

#include <string>
#include <utility>
#include <vector>

namespace ViewerAPI::test {

/// The calls that doubles got, in order, a line each: "getDC 7", "layer1.draw". Doubles that share
/// a journal show the order of calls between them.
class CallJournal {
public:
    void add(std::string line) { lines.push_back(std::move(line)); }

    /// Writes its arguments with a space between them.
    template <class First, class... Rest>
    void addCall(const First& first, const Rest&... rest) {
        std::string line = textOf(first);
        ((line += ' ', line += textOf(rest)), ...);
        add(std::move(line));
    }

    /// What was written since the last `take`.
    std::vector<std::string> take() { return std::exchange(lines, {}); }

    std::vector<std::string> lines;

private:
    static std::string textOf(const std::string& text) { return text; }
    static std::string textOf(const char* text) { return text; }
    template <class Number>
    static std::string textOf(Number number) {
        return std::to_string(number);
    }
};

} // namespace ViewerAPI::test
