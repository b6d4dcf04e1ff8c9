#pragma once
#include "core/RenderWindow.h"

#include <vlGraphics/PresentSurface.h>
#include <vlImages/Image.h>
#include <vlWinUi/SurfaceHandle.h>

#include <atomic>
#include <memory>
#include <string>

namespace vlEditor {

/** The surface of a viewport, as both threads see it: the only editor object that they share. The
 *  UI thread writes what its widget tells it, the graphics thread reads that and sets what it has
 *  done; everything is atomic. Kept by the EngineSurfaceTable, and by whoever draws into it. */
class EngineSurfaceState final : public vlGraphics::PresentSurface, public RenderWindow {
public:
    explicit EngineSurfaceState(std::string name) : name_(std::move(name)) {}
    ~EngineSurfaceState() override;

    const std::string& getName() const { return name_; }

    // UI thread.
    void setNativeHandle(const vlWinUi::SurfaceHandle& handle);
    void setSize(std::uint32_t width, std::uint32_t height); ///< pixels
    void setExposed(bool exposed);
    /// It has the input focus now, later than any other.
    void setFocused();
    /// A mouse button is held in it.
    void setMouseCaptured(bool captured) { mouseCaptured_ = captured; }
    /// The newest picture that was presented and not taken yet; null when there is none.
    std::unique_ptr<vlImages::Image> takePicture();

    // Graphics thread.
    /// Its engine side exists.
    void setFinalized() { finalized_ = true; }
    /// Nothing is presented to it any more, for good.
    void setDetached() { detached_ = true; }

    /// Greater than that of every one that had the input focus before; 0: it never had.
    std::uint64_t getFocusOrder() const { return focusOrder_; }
    bool isMouseCaptured() const { return mouseCaptured_; }
    bool isFinalized() const { return finalized_; }
    bool isDetached() const { return detached_; }

    Kind getKind() const override { return kind_; }
    std::uint32_t getWindow() const override { return window_; }
    Size getSize() const override;
    bool isExposed() const override { return exposed_ && !detached_; }
    /// Tells the UI, once for all pictures that come before it looks.
    void present(vlImages::Image picture) override;

    bool isDrawable() const override;
    std::uint64_t getRevision() const override { return revision_; }

private:
    const std::string name_;
    std::atomic<Kind> kind_ = Kind::none;
    std::atomic<std::uint32_t> window_ = 0;
    std::atomic<std::uint64_t> size_ = 0; ///< width in the upper half
    std::atomic<std::uint64_t> revision_ = 1;
    std::atomic<std::uint64_t> focusOrder_ = 0;
    std::atomic<bool> exposed_ = false;
    std::atomic<bool> mouseCaptured_ = false;
    std::atomic<bool> finalized_ = false;
    std::atomic<bool> detached_ = false;
    std::atomic<vlImages::Image*> picture_ = nullptr; ///< owned
};

} // namespace vlEditor
