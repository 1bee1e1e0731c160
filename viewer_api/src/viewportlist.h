#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <vector>

namespace ViewerAPI {

struct VlViewerDelegateHostStruct;
struct VlViewportHostStruct;

/// A delegate's viewports in order, and their names. [ui-thread]
class ViewportList {
public:
    explicit ViewportList(VlViewerDelegateHostStruct& delegate) noexcept : delegate_(delegate) {}
    /// Ends the viewports that are left, as clear() does.
    ~ViewportList();
    ViewportList(const ViewportList&) = delete;
    ViewportList& operator=(const ViewportList&) = delete;

    /// Appends a viewport, which the list owns from now on. A name that is in use stands for the
    /// new one; the former bearer stays, without a name. A viewport that is in the list already
    /// only gets the name; null is ignored.
    void addViewport(VlViewportHostStruct* viewport, const std::string& name);

    [[nodiscard]] VlViewportHostStruct* getViewport(const std::string& name) const;
    [[nodiscard]] VlViewportHostStruct* getViewportByIndex(std::uint32_t index) const;
    /// "" when out of range or nameless; valid until the viewport goes.
    [[nodiscard]] const char* getViewportName(std::uint32_t index) const;
    [[nodiscard]] std::uint32_t getNumberOfViewports() const;
    [[nodiscard]] bool contains(const VlViewportHostStruct* viewport) const;

    /// Takes the viewport and its names out, drops what it looks through, calls its cleanup and
    /// ends it, when the outermost call returns if it is being called.
    void removeViewport(const std::string& name);
    void removeViewportByIndex(std::uint32_t index);

    /// Ends all viewports, first to last, without their cleanup. The list is empty before the first
    /// of them ends.
    void clear();

    std::map<std::string, std::uint32_t> viewportIndices;
    std::vector<VlViewportHostStruct*> viewports; ///< owned

private:
    VlViewerDelegateHostStruct& delegate_;
};

} // namespace ViewerAPI
