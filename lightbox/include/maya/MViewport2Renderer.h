#pragma once

#include <maya/MApiNamespace.h>

namespace MHWRender {

class MTextureManager;

/// The graphics library that draws.
enum DrawAPI {
    kNone = 0,
    kOpenGL = (1 << 0),
    kDirectX11 = (1 << 1),
    kOpenGLCoreProfile = (1 << 2),
    kAllDevices = (kOpenGL | kDirectX11 | kOpenGLCoreProfile)
};
/// Several libraries, as MPxDrawOverride::supportedDrawAPIs() answers them.
constexpr DrawAPI operator|(DrawAPI left, DrawAPI right) {
    return static_cast<DrawAPI>(static_cast<int>(left) | static_cast<int>(right));
}

/// The pixel formats of textures and targets.
enum MRasterFormat {
    kD24S8 = 0,
    kD24X8,
    kD32_FLOAT,
    kR24G8,
    kR24X8,
    kDXT1_UNORM,
    kDXT1_UNORM_SRGB,
    kDXT2_UNORM,
    kDXT2_UNORM_SRGB,
    kDXT2_UNORM_PREALPHA,
    kDXT3_UNORM,
    kDXT3_UNORM_SRGB,
    kDXT3_UNORM_PREALPHA,
    kDXT4_UNORM,
    kDXT4_SNORM,
    kDXT5_UNORM,
    kDXT5_SNORM,
    kBC6H_UF16,
    kBC6H_SF16,
    kBC7_UNORM,
    kBC7_UNORM_SRGB,
    kR9G9B9E5_FLOAT,
    kR1_UNORM,
    kA8,
    kR8_UNORM,
    kR8_SNORM,
    kR8_UINT,
    kR8_SINT,
    kL8,
    kR16_FLOAT,
    kR16_UNORM,
    kR16_SNORM,
    kR16_UINT,
    kR16_SINT,
    kL16,
    kR8G8_UNORM,
    kR8G8_SNORM,
    kR8G8_UINT,
    kR8G8_SINT,
    kB5G5R5A1,
    kB5G6R5,
    kR32_FLOAT,
    kR32_UINT,
    kR32_SINT,
    kR16G16_FLOAT,
    kR16G16_UNORM,
    kR16G16_SNORM,
    kR16G16_UINT,
    kR16G16_SINT,
    kR8G8B8A8_UNORM,
    kR8G8B8A8_SNORM,
    kR8G8B8A8_UINT,
    kR8G8B8A8_SINT
};

/// The renderer of Viewport 2.0.
class MRenderer {
public:
    /// The renderer; null in batch.
    static MRenderer* theRenderer(bool initializeRenderer = true);

    DrawAPI drawAPI() const;
    MTextureManager* getTextureManager() const;

    MRenderer(const MRenderer&) = delete;
    MRenderer& operator=(const MRenderer&) = delete;

private:
    MRenderer() = default;
    ~MRenderer() = default;
};

} // namespace MHWRender
