#pragma once

#include <boost/unordered_set.hpp>

#include <cstddef>
#include <functional>
#include <string>
#include <string_view>

namespace ViewerAPI {

/// A set of paths that is asked without making a string of the question.
class PathSet {
public:
    [[nodiscard]] bool contains(std::string_view path) const { return find(path) != paths_.end(); }
    void insert(std::string_view path) { paths_.emplace(path); }
    /// Answers whether the path was there.
    bool erase(std::string_view path) {
        const auto found = find(path);
        if (found == paths_.end()) {
            return false;
        }
        paths_.erase(found);
        return true;
    }
    void clear() { paths_.clear(); }
    [[nodiscard]] std::size_t size() const { return paths_.size(); }

    /// In no particular order.
    [[nodiscard]] auto begin() const { return paths_.begin(); }
    [[nodiscard]] auto end() const { return paths_.end(); }

private:
    using Hash = std::hash<std::string_view>;
    using Paths = boost::unordered_set<std::string, Hash, std::equal_to<>>;

    [[nodiscard]] Paths::const_iterator find(std::string_view path) const {
        return paths_.empty() ? paths_.end() : paths_.find(path, Hash(), std::equal_to<>());
    }

    Paths paths_;
};

} // namespace ViewerAPI
