#pragma once

#include <maya/MColor.h>
#include <maya/MPoint.h>
#include <maya/MStateManager.h>
#include <maya/MString.h>
#include <maya/MVector.h>

#include <memory>

namespace MHWRender {

class MTexture;

/// Collects items to draw over a view in Viewport 2.0. All calls are between beginDrawable() and
/// endDrawable(). beginDrawable() resets the state: opaque black, line width 1, no texture. Positions and
/// lengths of the 2D operations are view pixels from the bottom left, y upward.
class MUIDrawManager {
public:
    enum TextAlignment { kLeft = 0, kCenter, kRight };
    enum { kSmallFontSize = 9, kDefaultFontSize = 12 };
    enum Selectability { kNonSelectable = 0, kSelectable, kAutomatic };

    ~MUIDrawManager();
    MUIDrawManager(const MUIDrawManager&) = delete;
    MUIDrawManager& operator=(const MUIDrawManager&) = delete;

    void beginDrawable(Selectability selectability = kAutomatic, unsigned int selectionName = 0);
    void endDrawable();

    void setColor(const MColor& color);
    void setLineWidth(float value);
    /// Items of a higher priority cover those of a lower one; the default is 0.
    void setDepthPriority(unsigned int priority);
    /// Text height in view pixels.
    void setFontSize(unsigned int fontSize);
    /// For filled shapes; null for none. Items share the texture and show its pixels at the time of drawing.
    void setTexture(MTexture* texture);
    void setTextureSampler(MSamplerState::TextureFilter filter, MSamplerState::TextureAddress address);
    void setTextureMask(MBlendState::ChannelMask mask);

    void line2d(const MPoint& startPoint, const MPoint& endPoint);
    /// A rectangle, by its centre and half its width and height.
    void rect2d(const MPoint& center, const MVector& up, double scaleX, double scaleY, bool filled = false);
    void circle2d(const MPoint& center, double radius, bool filled = false);
    /// The text starts at the position, is centred on it or ends there.
    void text2d(const MPoint& position, const MString& text, TextAlignment alignment = kLeft,
                const int* backgroundSize = nullptr, const MColor* backgroundColor = nullptr,
                bool dynamic = false);

private:
    friend class lightbox::ApiBridge;
    struct State;
    explicit MUIDrawManager(std::unique_ptr<State> state);

    std::unique_ptr<State> state_;
};

} // namespace MHWRender
