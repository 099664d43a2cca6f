#pragma once

/// The part of the scene's common render settings that says how large a picture is rendered.
class MCommonRenderSettingsData {
public:
    MCommonRenderSettingsData();
    virtual ~MCommonRenderSettingsData();

    /// In pixels.
    unsigned int width = 0;
    unsigned int height = 0;
    /// Width of a pixel by its height, and of the whole picture as it is shown.
    float pixelAspectRatio = 1.0f;
    float deviceAspectRatio = 1.0f;
};
