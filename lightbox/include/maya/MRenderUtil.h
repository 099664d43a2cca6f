#pragma once

#include <maya/MApiNamespace.h>

class MCommonRenderSettingsData;

/// What rendering asks of the scene.
class MRenderUtil {
public:
    static void getCommonRenderSettings(MCommonRenderSettingsData& data);
};
