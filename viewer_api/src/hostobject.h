#pragma once

#include <cstdint>
#include <memory>

namespace ViewerAPI {

/// What every host object of a plug-in instance has in common: a lifetime that others can watch,
/// and an end that waits while one of the object's own calls is still on the stack.
///
/// Plug-ins and Python may remove any object at any time, the one that is being called included.
/// An object is therefore never deleted by the list that drops it but handed to `retire`.
/// Everything here belongs to the one thread of the user interface. [ui-thread]
class HostObject {
public:
    /// `holder` is the object that this one lives in and reaches back into: a layer's viewport, a
    /// viewport's delegate. A call of this object counts as a call of its holder too, so that the
    /// holder outlives it. Null for an object that stands alone.
    explicit HostObject(HostObject* holder = nullptr);
    virtual ~HostObject();

    HostObject(const HostObject&) = delete;
    HostObject& operator=(const HostObject&) = delete;

    /// Deletes `object`: at once, or, while a call of the object (or of something held by it) is
    /// on the stack, when the outermost host call returns. Objects that wait are deleted in the
    /// order in which they were retired, but a holder after what it holds. Null is ignored, and so
    /// is an object that is retired already.
    static void retire(HostObject* object);

    /// Expires when the object's destructor begins, never before: a removed object that waits for
    /// its end is still there.
    [[nodiscard]] std::weak_ptr<const void> watch() const { return lifeToken_; }

    /// Differs for any two host objects of the process, also when one takes the address of one
    /// that is gone.
    [[nodiscard]] uint64_t serial() const { return serial_; }

    /// True while a call of the object, or of something held by it, is on the stack.
    [[nodiscard]] bool isInCall() const;

    [[nodiscard]] HostObject* holder() const { return holder_; }

    /// True from `retire` on, which is to say: while an object that was removed in its own call
    /// waits for its end.
    [[nodiscard]] bool isRetired() const { return isRetired_; }

protected:
    /// For an object that outlives its holder.
    void setHolder(HostObject* holder) { holder_ = holder; }

    /// For the first line of a derived class's destructor: what the destructor calls must not
    /// reach back into the object.
    void endLife() { lifeToken_.reset(); }

    /// For a constructor that fails: deletes what the object holds that waits for its end. The
    /// exception has left all calls of it.
    void endHeld() { deleteRetired(this); }

private:
    friend class HostCall;
    static HostObject* takeRetired(const HostObject* holder);
    /// What `holder` holds; all when it is null.
    static void deleteRetired(const HostObject* holder);
    static void deleteAllRetired();
    [[nodiscard]] bool isHeldBy(const HostObject& holder) const;

    HostObject* holder_;
    const uint64_t serial_;
    bool isRetired_ = false;
    std::shared_ptr<const void> lifeToken_;
};

/// Marks a call of a host object as being on the stack, for as long as the mark lives.
///
/// Whatever calls a plug-in's entry or a Python callback on behalf of a host object places one
/// first, as a local variable:
///
///     HostCall call(*layer);
///     layer->pluginSuite->setOption(layer->pluginHandle, id, handle);
///
/// Marks nest strictly. When the last one goes, the objects retired meanwhile are deleted.
class HostCall {
public:
    explicit HostCall(const HostObject& object);
    ~HostCall();

    HostCall(const HostCall&) = delete;
    HostCall& operator=(const HostCall&) = delete;

private:
    friend class HostObject;

    const HostObject* object_;
    const HostCall* previous_;
    static const HostCall* current_;
};

/// Ends a host object through `HostObject::retire`; for `std::unique_ptr`.
struct RetireHostObject {
    void operator()(HostObject* object) const { HostObject::retire(object); }
};

} // namespace ViewerAPI
