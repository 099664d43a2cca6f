#pragma once

namespace MHWRender {

/// How colours are blended with the existing pixels.
class MBlendState {
public:
    enum ChannelMask {
        kNoChannels = 0,
        kRedChannel = 0x00000001,
        kGreenChannel = 0x00000002,
        kBlueChannel = 0x00000004,
        kAlphaChannel = 0x00000008,
        kRGBAChannels = (kRedChannel | kGreenChannel | kBlueChannel | kAlphaChannel)
    };
};

/// How textures are sampled.
class MSamplerState {
public:
    enum TextureFilter {
        kMinMagMipPoint = 0,
        kMinMagPoint_MipLinear = 0x1,
        kMinPoint_MagLinear_MipPoint = 0x4,
        kMinPoint_MagMipLinear = 0x5,
        kMinLinear_MagMipPoint = 0x10,
        kMinLinear_MagPoint_MipLinear = 0x11,
        kMinMagLinear_MipPoint = 0x14,
        kMinMagMipLinear = 0x15,
        kAnisotropic = 0x55
    };
    enum TextureAddress { kTexWrap = 1, kTexMirror = 2, kTexClamp = 3, kTexBorder = 4 };
};

} // namespace MHWRender
