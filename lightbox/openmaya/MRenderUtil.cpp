#include "scene/Host.h"
#include "scene/Plug.h"
#include "scene/Scene.h"

#include <maya/MCommonRenderSettingsData.h>
#include <maya/MRenderUtil.h>

#include <algorithm>

using lightbox::Plug;

MCommonRenderSettingsData::MCommonRenderSettingsData() = default;
MCommonRenderSettingsData::~MCommonRenderSettingsData() = default;

void MRenderUtil::getCommonRenderSettings(MCommonRenderSettingsData& data) {
    const std::shared_ptr<lightbox::Node> resolution =
        lightbox::Host::Get().scene().Find("defaultResolution");
    if (!resolution) {
        return;
    }
    const auto number = [&](const char* attribute) { return Plug::Of(*resolution, attribute).Number(); };
    data.width = static_cast<unsigned int>(std::max(1.0, number("width")));
    data.height = static_cast<unsigned int>(std::max(1.0, number("height")));
    data.pixelAspectRatio = static_cast<float>(number("pixelAspect"));
    data.deviceAspectRatio = static_cast<float>(number("deviceAspectRatio"));
}
