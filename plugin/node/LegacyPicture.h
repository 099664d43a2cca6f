#pragma once

#include <maya/MApiNamespace.h>

#include <QtGlobal>

class QImage;
class QLineF;

namespace vellix {

class LegacyOutline;
class ViewPlacement;

/// Draws a composed image in the legacy viewport, with OpenGL, through a texture that it keeps.
class LegacyPicture {
public:
    LegacyPicture() = default;
    LegacyPicture(const LegacyPicture&) = delete;
    LegacyPicture& operator=(const LegacyPicture&) = delete;
    ~LegacyPicture();

    /// Draws the image at its placement in the view, then the string between brush and pen (view pixels) and
    /// the tool's outline over it; each may be null. `opacity` is 0 to 1.
    void Draw(M3dView& view, const QImage* image, const ViewPlacement& placement, float opacity,
              const QLineF& penString, LegacyOutline* outline);

private:
    void DrawImage(const QImage& image, const ViewPlacement& placement, float opacity);
    static void DrawLine(const QLineF& line);
    static void BeginInverting();
    void InitializeLegacyViewport();
    static void LegacyOpenGlBegin(M3dView& view);
    static void DrawQuad(const ViewPlacement& placement);
    static void LegacyOpenGlEnd(M3dView& view);

    unsigned int texture_ = 0; ///< OpenGL texture name; 0 for none
    qint64 imageKey_ = 0;      ///< QImage::cacheKey of the image in the texture
};

} // namespace vellix
