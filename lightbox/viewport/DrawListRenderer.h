#pragma once

#include "openmaya/DrawList.h"
#include "scene/NonCopyable.h"

#include <QImage>
#include <QOpenGLFunctions>
#include <QSize>
#include <QString>

#include <cstdint>
#include <map>
#include <memory>

namespace lightbox {

/// Draws a DrawList over what is in the framebuffer. One for each view: it holds textures of the view's
/// OpenGL context, which has to be current in every call, also in the destructor.
///
/// A texture that is shown at its own size is set on whole pixels of the screen and copied pixel by pixel; at
/// any other size it is filtered, its colours weighed by their alpha.
class DrawListRenderer : private QOpenGLFunctions, private NonCopyable {
public:
    DrawListRenderer();
    ~DrawListRenderer();

    /// The view's size in view pixels, and how many pixels of the screen make one of them.
    void Draw(const DrawList& list, const QSize& size, double pixelRatio);
    /// Textures brought to the card so far.
    unsigned UploadCount() const { return uploadCount_; }

private:
    struct Held;
    struct TextKey;

    void Begin();
    void End();
    void DrawRectangle(const DrawItem& item);
    void DrawTextured(const DrawItem& item);
    void DrawLine(const DrawItem& item);
    void DrawCircle(const DrawItem& item);
    void DrawText(const DrawItem& item);
    /// A line between two points in pixels of the screen.
    void Stroke(const QPointF& from, const QPointF& to, const DrawItem& item);
    /// The bound texture, upright and at its own size.
    static void DrawQuad(const QPointF& topLeft, const QSize& size);
    static void SetColor(const QColor& color);
    Held& Upload(const std::shared_ptr<Texture>& texture);
    Held& UploadText(const DrawItem& item);
    void Store(Held& held, const QImage& image);
    /// Replaces a part of a texture that was stored.
    void Update(Held& held, const QImage& part, const QPoint& at);
    /// Binds the texture, to be copied pixel by pixel or shown at a scale.
    void SetFilter(Held& held, bool copies, double scale);
    void ForgetUnused();

    QSize size_;
    double pixelRatio_ = 1.0;
    unsigned uploadCount_ = 0;
    std::uint64_t frame_ = 0;
    std::map<const Texture*, std::unique_ptr<Held>> textures_;
    std::map<TextKey, std::unique_ptr<Held>> texts_;
};

} // namespace lightbox
