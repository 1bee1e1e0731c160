#pragma once

#include <functional>
#include <map>
#include <mutex>
#include <string>
#include <vector>

namespace VlScenelibEngine {

class CookNode;
class GraphOp;

/// Who reads which locations of one op from another place than the same path, alone or with all
/// that is below: those reads leave no trace in the reader's position, so they are recorded.
class ReadRegistry {
public:
    /// [any-thread]
    void add(std::string path, CookNode& reader, bool withAllBelow);
    /// Removes what the reader has on these paths. [any-thread]
    void remove(const std::vector<std::string>& paths, const CookNode& reader);

    /// Calls `visit` for the readers of the path and, with `below`, of everything below it;
    /// perhaps several times for one of them.
    void forEach(const std::string& path, bool below,
                 const std::function<void(CookNode&)>& visit) const;
    /// Whether forEach() with all that is below would find anyone.
    [[nodiscard]] bool isRead(const std::string& path) const;
    [[nodiscard]] bool isEmpty() const;

private:
    struct Read {
        CookNode* reader = nullptr;
        bool withAllBelow = false;
    };

    template <typename Visit>
    void visitReads(const std::string& path, bool below, Visit&& visit) const;

    mutable std::mutex mutex;
    std::multimap<std::string, Read, std::less<>> reads;
};

} // namespace VlScenelibEngine
