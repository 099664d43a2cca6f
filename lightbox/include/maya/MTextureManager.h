#pragma once

#include <maya/MApiNamespace.h>
#include <maya/MString.h>
#include <maya/MViewport2Renderer.h>

#include <memory>

namespace MHWRender {

enum MTextureType {
    kImage1D = 0,
    kImage2D,
    kVolumeTexture,
    kCubeMap,
    kImage1DArray,
    kImage2DArray,
    kDepthTexture,
    kNumberOfTextureTypes
};

enum MEnvironmentMapType {
    kEnvNone = 0,
    kEnvSphere,
    kEnvHemiSphere,
    kEnvLatLong,
    kEnvCrossVert,
    kEnvCrossHoriz,
    kEnvCubemap,
    kNumberOfEnvMapTypes
};

/// The size and format of a texture.
class MTextureDescription {
public:
    MTextureDescription();
    ~MTextureDescription() = default;

    void setToDefault2DTexture();

    unsigned int fWidth;
    unsigned int fHeight;
    unsigned int fDepth;
    /// 0: rows without a gap.
    unsigned int fBytesPerRow;
    unsigned int fBytesPerSlice;
    /// Number of levels; 0: as many as the size allows.
    unsigned int fMipmaps;
    unsigned int fArraySlices;
    MRasterFormat fFormat;
    MTextureType fTextureType;
    MEnvironmentMapType fEnvMapType;
};

/// A picture for drawing. The texture manager makes and owns it.
class MTexture {
public:
    MTexture(const MTexture&) = delete;
    MTexture& operator=(const MTexture&) = delete;

    const MString& name() const;
    void textureDescription(MTextureDescription& desc) const;
    bool hasAlpha() const;
    /// Sets all pixels, top row first. `rowPitch` is in bytes, 0 for rows without a gap. Only pixels that
    /// differ are uploaded again.
    MStatus update(const void* pixelData, bool generateMipMaps, unsigned int rowPitch = 0);

private:
    friend class lightbox::ApiBridge;
    friend class MTextureManager;
    struct State;
    explicit MTexture(std::unique_ptr<State> state);
    ~MTexture();

    std::unique_ptr<State> state_;
};

/// Makes textures and keeps them by name. Each acquisition needs one release.
class MTextureManager {
public:
    MTextureManager(const MTextureManager&) = delete;
    MTextureManager& operator=(const MTextureManager&) = delete;

    /// The existing texture of that name, unchanged, or else a new one with the given pixels. An empty name
    /// always makes a new one. Supports 2D textures of four 8-bit channels; returns null for any other kind,
    /// for a size of 0 or above 16384, and without pixels.
    MTexture* acquireTexture(const MString& textureName, const MTextureDescription& textureDesc,
                             const void* pixelData, bool generateMipMaps = true) const;
    /// The texture of that name, acquired once more; null when there is none.
    MTexture* findTexture(const MString& textureName) const;
    void releaseTexture(MTexture* texture) const;

private:
    friend class MRenderer;
    MTextureManager();
    ~MTextureManager();

    struct State;
    std::unique_ptr<State> state_;
};

} // namespace MHWRender
