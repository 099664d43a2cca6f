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

/// Draws a DrawList over the contents of the framebuffer. Each view has its own renderer, which holds
/// textures of the view's OpenGL context. The context has to be current in every call, also in the
/// destructor.
///
/// A texture that is shown upright at its own size is aligned with the screen's pixels and copied pixel by
/// pixel. At any other size it is filtered with premultiplied alpha.
class DrawListRenderer : private QOpenGLFunctions, private NonCopyable {
public:
    DrawListRenderer();
    ~DrawListRenderer();

    /// `size` is the view's size in view pixels; `pixelRatio` is the number of screen pixels per view pixel.
    void Draw(const DrawList& list, const QSize& size, double pixelRatio);
    /// The number of texture uploads so far.
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
    /// Draws a line between two points in screen pixels.
    void Stroke(const QPointF& from, const QPointF& to, const DrawItem& item);
    /// Draws the bound texture upright, one texel per screen pixel.
    static void DrawQuad(const QPointF& topLeft, const QSize& size);
    static void SetColor(const QColor& color);
    Held& Upload(const std::shared_ptr<Texture>& texture);
    Held& UploadText(const DrawItem& item);
    void Store(Held& held, const QImage& image);
    /// Replaces a part of a stored texture.
    void Update(Held& held, const QImage& part, const QPoint& at);
    /// Binds the texture and sets its filters, to copy it pixel by pixel or to draw it at a scale.
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
