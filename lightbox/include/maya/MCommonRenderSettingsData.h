#pragma once

/// The size of the rendered picture, from the scene's common render settings.
class MCommonRenderSettingsData {
public:
    MCommonRenderSettingsData();
    virtual ~MCommonRenderSettingsData();

    /// In pixels.
    unsigned int width = 0;
    unsigned int height = 0;
    /// Width divided by height, of a pixel and of the whole picture as displayed.
    float pixelAspectRatio = 1.0f;
    float deviceAspectRatio = 1.0f;
};
