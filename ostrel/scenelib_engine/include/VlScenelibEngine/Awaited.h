#pragma once

#include <cstddef>
#include <functional>
#include <memory>
#include <mutex>
#include <vector>

namespace VlScenelibEngine {

/// Something that cooks need and that takes long to make on another thread, such as the content of
/// a file. An op type derives its own kind, which holds what was made, and has its cooks wait by
/// `CookContext::await`.
///
/// The engine holds it as long as a location that somebody wants waits for it, and until that has
/// been cooked then. When the last reference goes, nobody wants what is being made any more.
class Awaited {
public:
    Awaited() = default;
    virtual ~Awaited() = default;
    Awaited(const Awaited&) = delete;
    Awaited& operator=(const Awaited&) = delete;

    using Notice = std::function<void()>;

    [[nodiscard]] bool isThere() const;
    /// Has `notice` called, on whatever thread, when it is there: once, also when the same object
    /// was given before, as by a cook that tries again. When it is already, returns false and calls
    /// nothing. [any-thread]
    [[nodiscard]] bool notifyWhenThere(const std::shared_ptr<const Notice>& notice);

protected:
    /// For the one who makes it, once, after all that it holds is in place. [any-thread]
    void setThere();
    /// Notices that have not been called yet: what tests count.
    [[nodiscard]] std::size_t getNumberOfNotices() const;

private:
    mutable std::mutex mutex;
    bool isMade = false;
    std::vector<std::shared_ptr<const Notice>> waiting;
};

} // namespace VlScenelibEngine
