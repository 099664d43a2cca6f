#include "viewport/DrawListRenderer.h"

#include "openmaya/Texture.h"

#include <QFont>
#include <QFontMetricsF>
#include <QPainter>

#include <algorithm>
#include <cmath>
#include <tuple>

namespace lightbox {

namespace {

/// An unused texture is deleted after this number of frames.
constexpr std::uint64_t MAX_UNUSED_TEXTURE_FRAMES = 240;
/// A texture drawn at a smaller scale than this uses mipmaps.
constexpr double MIPMAP_SCALE = 0.6;
/// The largest difference from its own size, in screen pixels, at which a texture is still copied pixel by
/// pixel.
constexpr double SAME_SIZE = 0.01;
/// Margin around a text, in view pixels, for glyphs that reach beyond the text's box.
constexpr double TEXT_MARGIN = 2.0;
constexpr GLenum CLAMP_TO_EDGE = 0x812F;

bool IsHorizontalOrVertical(const QPointF& from, const QPointF& to) {
    return std::abs(from.x() - to.x()) < 1e-6 || std::abs(from.y() - to.y()) < 1e-6;
}

void TextureCorner(double s, double t, double x, double y) {
    glTexCoord2d(s, t);
    glVertex2d(x, y);
}

} // namespace

struct DrawListRenderer::Held {
    GLuint id = 0;
    QSize size;
    bool hasMipmaps = false;
    std::uint64_t revision = ~std::uint64_t(0);
    std::uint64_t lastFrame = 0;
    /// Keeps the texture alive, so that no other texture can get its address.
    std::shared_ptr<Texture> source;
    /// For a text: its box in view pixels, relative to the start of its base line.
    QRectF box;
};

struct DrawListRenderer::TextKey {
    QString text;
    unsigned size;
    QRgb color;
    double pixelRatio;

    bool operator<(const TextKey& other) const {
        return std::tie(text, size, color, pixelRatio) <
               std::tie(other.text, other.size, other.color, other.pixelRatio);
    }
};

DrawListRenderer::DrawListRenderer() {
    initializeOpenGLFunctions();
}

DrawListRenderer::~DrawListRenderer() {
    for (const auto& entry : textures_) {
        glDeleteTextures(1, &entry.second->id);
    }
    for (const auto& entry : texts_) {
        glDeleteTextures(1, &entry.second->id);
    }
}

void DrawListRenderer::Draw(const DrawList& list, const QSize& size, double pixelRatio) {
    size_ = size;
    pixelRatio_ = pixelRatio;
    ++frame_;
    std::vector<const DrawItem*> ordered;
    ordered.reserve(list.size());
    for (const DrawItem& item : list) {
        ordered.push_back(&item);
    }
    std::stable_sort(ordered.begin(), ordered.end(), [](const DrawItem* left, const DrawItem* right) {
        return left->depthPriority < right->depthPriority;
    });

    Begin();
    for (const DrawItem* const item : ordered) {
        switch (item->kind) {
        case DrawItem::Kind::Rectangle:
            item->texture && item->filled ? DrawTextured(*item) : DrawRectangle(*item);
            break;
        case DrawItem::Kind::Line:
            DrawLine(*item);
            break;
        case DrawItem::Kind::Circle:
            DrawCircle(*item);
            break;
        case DrawItem::Kind::Text:
            DrawText(*item);
            break;
        }
    }
    End();
    ForgetUnused();
}

void DrawListRenderer::Begin() {
    glPushAttrib(GL_ALL_ATTRIB_BITS);
    glMatrixMode(GL_PROJECTION);
    glPushMatrix();
    glLoadIdentity();
    // Use screen pixels as units, so that sharp items can be aligned with them.
    glOrtho(0.0, std::round(size_.width() * pixelRatio_), 0.0, std::round(size_.height() * pixelRatio_), -1.0,
            1.0);
    glMatrixMode(GL_MODELVIEW);
    glPushMatrix();
    glLoadIdentity();
    glUseProgram(0);
    glDisable(GL_DEPTH_TEST);
    glDisable(GL_LIGHTING);
    glDisable(GL_CULL_FACE);
    glDisable(GL_TEXTURE_2D);
    glPolygonMode(GL_FRONT_AND_BACK, GL_FILL);
    glEnable(GL_BLEND);
    // Keep the framebuffer's alpha at 1, or the window would show through.
    glBlendFuncSeparate(GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA, GL_ONE, GL_ONE_MINUS_SRC_ALPHA);
    glTexEnvi(GL_TEXTURE_ENV, GL_TEXTURE_ENV_MODE, GL_MODULATE);
    glActiveTexture(GL_TEXTURE0);
}

void DrawListRenderer::End() {
    glBindTexture(GL_TEXTURE_2D, 0);
    glMatrixMode(GL_PROJECTION);
    glPopMatrix();
    glMatrixMode(GL_MODELVIEW);
    glPopMatrix();
    glPopAttrib();
}

void DrawListRenderer::SetColor(const QColor& color) {
    glColor4d(color.redF(), color.greenF(), color.blueF(), color.alphaF());
}

void DrawListRenderer::DrawRectangle(const DrawItem& item) {
    const QPointF center = item.position * pixelRatio_;
    const QPointF up = item.up * (item.halfHeight * pixelRatio_);
    const QPointF right = QPointF(item.up.y(), -item.up.x()) * (item.halfWidth * pixelRatio_);
    const QPointF corners[] = {center - right - up, center + right - up, center + right + up,
                               center - right + up};
    if (!item.filled) {
        for (int i = 0; i < 4; ++i) {
            Stroke(corners[i], corners[(i + 1) % 4], item);
        }
        return;
    }
    SetColor(item.color);
    glBegin(GL_QUADS);
    for (const QPointF& corner : corners) {
        glVertex2d(corner.x(), corner.y());
    }
    glEnd();
}

void DrawListRenderer::DrawTextured(const DrawItem& item) {
    Held& held = Upload(item.texture);
    if (held.id == 0) {
        return;
    }
    const double width = item.halfWidth * 2.0 * pixelRatio_;
    const double height = item.halfHeight * 2.0 * pixelRatio_;
    const QPointF center = item.position * pixelRatio_;
    const bool isUpright = std::abs(item.up.x()) < 1e-9 && item.up.y() > 0.0;
    const bool isOwnSize = isUpright && std::abs(width - held.size.width()) < SAME_SIZE &&
                           std::abs(height - held.size.height()) < SAME_SIZE;
    const double scale = std::min(width / held.size.width(), height / held.size.height());
    SetFilter(held, isOwnSize || !item.smooth, scale);
    glEnable(GL_TEXTURE_2D);
    // The texture has premultiplied alpha, so premultiply the colour, too.
    const double alpha = item.color.alphaF();
    glColor4d(item.color.redF() * alpha, item.color.greenF() * alpha, item.color.blueF() * alpha, alpha);
    glBlendFunc(GL_ONE, GL_ONE_MINUS_SRC_ALPHA);
    if (isOwnSize) {
        // Round halves to the left and upward, as the tools do.
        const double left = std::ceil(center.x() - width * 0.5 - 0.5);
        const double top = std::floor(center.y() + height * 0.5 + 0.5);
        DrawQuad({left, top}, held.size);
    } else {
        const QPointF up = item.up * (height * 0.5);
        const QPointF right = QPointF(item.up.y(), -item.up.x()) * (width * 0.5);
        const QPointF corners[] = {center - right + up, center + right + up, center + right - up,
                                   center - right - up};
        glBegin(GL_QUADS);
        TextureCorner(0.0, 0.0, corners[0].x(), corners[0].y());
        TextureCorner(1.0, 0.0, corners[1].x(), corners[1].y());
        TextureCorner(1.0, 1.0, corners[2].x(), corners[2].y());
        TextureCorner(0.0, 1.0, corners[3].x(), corners[3].y());
        glEnd();
    }
    glDisable(GL_TEXTURE_2D);
    glBlendFuncSeparate(GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA, GL_ONE, GL_ONE_MINUS_SRC_ALPHA);
}

void DrawListRenderer::DrawQuad(const QPointF& topLeft, const QSize& size) {
    const double right = topLeft.x() + size.width();
    const double bottom = topLeft.y() - size.height();
    glBegin(GL_QUADS);
    TextureCorner(0.0, 0.0, topLeft.x(), topLeft.y());
    TextureCorner(1.0, 0.0, right, topLeft.y());
    TextureCorner(1.0, 1.0, right, bottom);
    TextureCorner(0.0, 1.0, topLeft.x(), bottom);
    glEnd();
}

void DrawListRenderer::DrawLine(const DrawItem& item) {
    Stroke(item.position * pixelRatio_, item.end * pixelRatio_, item);
}

void DrawListRenderer::Stroke(const QPointF& from, const QPointF& to, const DrawItem& item) {
    const double width = std::max(1.0, std::round(item.lineWidth * pixelRatio_));
    SetColor(item.color);
    if (IsHorizontalOrVertical(from, to)) {
        // Draw a box on whole pixels, so that the line has exactly the requested width.
        const auto low = [&](double a, double b) { return std::floor(std::min(a, b) - (width - 1.0) * 0.5); };
        const double left = low(from.x(), to.x());
        const double bottom = low(from.y(), to.y());
        const bool isVertical = std::abs(from.x() - to.x()) < 1e-6;
        const double length =
            std::round(isVertical ? std::abs(to.y() - from.y()) : std::abs(to.x() - from.x()));
        glRectd(left, bottom, left + (isVertical ? width : length + width),
                bottom + (isVertical ? length + width : width));
        return;
    }
    glEnable(GL_LINE_SMOOTH);
    glLineWidth(static_cast<float>(item.lineWidth * pixelRatio_));
    glBegin(GL_LINES);
    glVertex2d(from.x(), from.y());
    glVertex2d(to.x(), to.y());
    glEnd();
    glDisable(GL_LINE_SMOOTH);
}

void DrawListRenderer::DrawCircle(const DrawItem& item) {
    const QPointF center = item.position * pixelRatio_;
    const double radius = item.radius * pixelRatio_;
    // The chords stay within a tenth of a pixel of the circle.
    const int steps =
        std::clamp(static_cast<int>(std::ceil(M_PI / std::acos(1.0 - 0.1 / std::max(radius, 1.0)))), 12, 512);
    SetColor(item.color);
    glEnable(GL_LINE_SMOOTH);
    glLineWidth(item.filled ? 1.0f : static_cast<float>(item.lineWidth * pixelRatio_));
    if (item.filled) {
        glEnable(GL_POLYGON_SMOOTH);
    }
    glBegin(item.filled ? GL_POLYGON : GL_LINE_LOOP);
    for (int i = 0; i < steps; ++i) {
        const double angle = 2.0 * M_PI * i / steps;
        glVertex2d(center.x() + radius * std::cos(angle), center.y() + radius * std::sin(angle));
    }
    glEnd();
    glDisable(GL_LINE_SMOOTH);
    glDisable(GL_POLYGON_SMOOTH);
}

void DrawListRenderer::DrawText(const DrawItem& item) {
    if (item.text.isEmpty()) {
        return;
    }
    Held& held = UploadText(item);
    double x = item.position.x();
    if (item.alignment & Qt::AlignHCenter) {
        x -= (held.box.width() - 2.0 * TEXT_MARGIN) * 0.5;
    } else if (item.alignment & Qt::AlignRight) {
        x -= held.box.width() - 2.0 * TEXT_MARGIN;
    }
    SetFilter(held, true, 1.0);
    glEnable(GL_TEXTURE_2D);
    glColor4d(1.0, 1.0, 1.0, 1.0);
    glBlendFunc(GL_ONE, GL_ONE_MINUS_SRC_ALPHA);
    DrawQuad({std::round((x + held.box.left()) * pixelRatio_),
              std::round((item.position.y() - held.box.top()) * pixelRatio_)},
             held.size);
    glDisable(GL_TEXTURE_2D);
    glBlendFuncSeparate(GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA, GL_ONE, GL_ONE_MINUS_SRC_ALPHA);
}

DrawListRenderer::Held& DrawListRenderer::UploadText(const DrawItem& item) {
    std::unique_ptr<Held>& held = texts_[{item.text, item.fontSize, item.color.rgba(), pixelRatio_}];
    if (!held) {
        held = std::make_unique<Held>();
        QFont font;
        font.setPixelSize(static_cast<int>(std::clamp(item.fontSize, 1u, 512u)));
        const QFontMetricsF metrics(font);
        const QSizeF size(std::ceil(metrics.horizontalAdvance(item.text)), std::ceil(metrics.height()));
        held->box = QRectF(0.0, -std::ceil(metrics.ascent()), size.width(), size.height())
                        .adjusted(-TEXT_MARGIN, -TEXT_MARGIN, TEXT_MARGIN, TEXT_MARGIN);
        QImage image((held->box.size() * pixelRatio_).toSize().boundedTo(QSize(4096, 4096)),
                     QImage::Format_RGBA8888_Premultiplied);
        image.fill(Qt::transparent);
        QPainter painter(&image);
        painter.scale(pixelRatio_, pixelRatio_);
        painter.setFont(font);
        // A soft shadow keeps the text readable on light and dark backgrounds.
        painter.setPen(QColor(0, 0, 0, item.color.alpha() / 2));
        painter.drawText(QPointF(0.0, 1.0) - held->box.topLeft(), item.text);
        painter.setPen(item.color);
        painter.drawText(-held->box.topLeft(), item.text);
        painter.end();
        Store(*held, image);
    }
    held->lastFrame = frame_;
    return *held;
}

DrawListRenderer::Held& DrawListRenderer::Upload(const std::shared_ptr<Texture>& texture) {
    std::unique_ptr<Held>& held = textures_[texture.get()];
    if (!held) {
        held = std::make_unique<Held>();
        held->source = texture;
    }
    held->lastFrame = frame_;
    if (held->revision != texture->revision && !texture->image.isNull()) {
        const QRect changed = held->size == texture->image.size() ? texture->ChangedSince(held->revision)
                                                                  : texture->image.rect();
        held->revision = texture->revision;
        if (!changed.isEmpty()) {
            // Premultiply the alpha, so that filtering does not blend in the colours of transparent pixels.
            const QImage part =
                texture->image.copy(changed).convertToFormat(QImage::Format_RGBA8888_Premultiplied);
            changed == texture->image.rect() ? Store(*held, part) : Update(*held, part, changed.topLeft());
            ++uploadCount_;
        }
    }
    return *held;
}

void DrawListRenderer::Store(Held& held, const QImage& image) {
    if (held.id == 0) {
        glGenTextures(1, &held.id);
        glBindTexture(GL_TEXTURE_2D, held.id);
        glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_S, CLAMP_TO_EDGE);
        glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_T, CLAMP_TO_EDGE);
    }
    glBindTexture(GL_TEXTURE_2D, held.id);
    glPixelStorei(GL_UNPACK_ALIGNMENT, 4);
    glPixelStorei(GL_UNPACK_ROW_LENGTH, image.bytesPerLine() / 4);
    if (held.size == image.size()) {
        glTexSubImage2D(GL_TEXTURE_2D, 0, 0, 0, image.width(), image.height(), GL_RGBA, GL_UNSIGNED_BYTE,
                        image.constBits());
    } else {
        glTexImage2D(GL_TEXTURE_2D, 0, GL_RGBA8, image.width(), image.height(), 0, GL_RGBA, GL_UNSIGNED_BYTE,
                     image.constBits());
        held.size = image.size();
    }
    glPixelStorei(GL_UNPACK_ROW_LENGTH, 0);
    held.hasMipmaps = false;
}

void DrawListRenderer::Update(Held& held, const QImage& part, const QPoint& at) {
    glBindTexture(GL_TEXTURE_2D, held.id);
    glPixelStorei(GL_UNPACK_ALIGNMENT, 4);
    glTexSubImage2D(GL_TEXTURE_2D, 0, at.x(), at.y(), part.width(), part.height(), GL_RGBA, GL_UNSIGNED_BYTE,
                    part.constBits());
    held.hasMipmaps = false;
}

void DrawListRenderer::SetFilter(Held& held, bool copies, double scale) {
    glBindTexture(GL_TEXTURE_2D, held.id);
    const bool usesMipmaps = !copies && scale < MIPMAP_SCALE;
    if (usesMipmaps && !held.hasMipmaps) {
        glGenerateMipmap(GL_TEXTURE_2D);
        held.hasMipmaps = true;
    }
    const GLint plain = copies ? GL_NEAREST : GL_LINEAR;
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MAG_FILTER, plain);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, usesMipmaps ? GL_LINEAR_MIPMAP_LINEAR : plain);
}

void DrawListRenderer::ForgetUnused() {
    const auto forget = [this](auto& map) {
        for (auto entry = map.begin(); entry != map.end();) {
            if (frame_ - entry->second->lastFrame > MAX_UNUSED_TEXTURE_FRAMES) {
                glDeleteTextures(1, &entry->second->id);
                entry = map.erase(entry);
            } else {
                ++entry;
            }
        }
    };
    forget(textures_);
    forget(texts_);
}

} // namespace lightbox
