#pragma once

#include <memory>

namespace ViewerAPI {

/// Lets those who hold a host object by a plain pointer learn that it has gone.
///
/// A host object has one as its member `life`. Its address says nothing here, so a new object in
/// the memory of a dead one is not taken for it. [ui-thread]
class LifeToken {
public:
    using Watch = std::weak_ptr<const void>;

    LifeToken() : token(std::make_shared<char>()) {}
    LifeToken(const LifeToken&) = delete;
    LifeToken& operator=(const LifeToken&) = delete;

    /// A watch that expires with this token, or at end().
    [[nodiscard]] Watch watch() const noexcept { return token; }

    /// Makes the object count as gone from now on. For the first line of its destructor: what the
    /// destructor calls must not reach back into it.
    void end() noexcept { token.reset(); }

private:
    std::shared_ptr<const void> token;
};

} // namespace ViewerAPI
