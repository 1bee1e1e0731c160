#pragma once

namespace ViewerAPI {

/// Holds a flag up for as long as it lives.
class RaisedFlag {
public:
    explicit RaisedFlag(bool& flag) noexcept : flag_(flag) { flag_ = true; }
    ~RaisedFlag() { flag_ = false; }
    RaisedFlag(const RaisedFlag&) = delete;
    RaisedFlag& operator=(const RaisedFlag&) = delete;

private:
    bool& flag_;
};

} // namespace ViewerAPI
