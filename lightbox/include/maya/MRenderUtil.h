#pragma once

#include <maya/MApiNamespace.h>

class MCommonRenderSettingsData;

/// Queries for rendering.
class MRenderUtil {
public:
    static void getCommonRenderSettings(MCommonRenderSettingsData& data);
};
