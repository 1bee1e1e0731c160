#pragma once

/// Puts a function of the test's in the place of one of GL's while it lives. `Entry` is the type of
/// GLEW's variable.
template <typename Entry>
class ReplacedEntry {
public:
    ReplacedEntry(Entry& variable, Entry replacement) : place(variable), original(variable) {
        place = replacement;
    }
    ReplacedEntry(const ReplacedEntry&) = delete;
    ReplacedEntry& operator=(const ReplacedEntry&) = delete;
    ~ReplacedEntry() { place = original; }

private:
    Entry& place;
    const Entry original;
};
