#pragma once

namespace Bundled {

/// Raises a flag for as long as it lives.
class RaisedFlag {
public:
    explicit RaisedFlag(bool& raised) : flag(raised) { flag = true; }
    RaisedFlag(const RaisedFlag&) = delete;
    RaisedFlag& operator=(const RaisedFlag&) = delete;
    ~RaisedFlag() { flag = false; }

private:
    bool& flag;
};

} // namespace Bundled
