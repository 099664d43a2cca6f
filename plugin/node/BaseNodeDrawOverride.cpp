#include "node/BaseNodeDrawOverride.h"

#include "host/Guarded.h"
#include "host/MayaUtil.h"
#include "host/Settings.h"
#include "node/BaseNode.h"
#include "node/BaseNodeUserData.h"

#include <maya/MColor.h>
#include <maya/MDagPath.h>
#include <maya/MFrameContext.h>
#include <maya/MStateManager.h>
#include <maya/MTextureManager.h>
#include <maya/MUIDrawManager.h>
#include <maya/MVector.h>
#include <maya/MViewport2Renderer.h>

#include <QImage>

#include <cstddef>
#include <new>

namespace vellix {

int BaseNodeDrawOverride::textureCount_ = 0;

namespace {

MHWRender::MTextureManager* FindTextureManager() {
    MHWRender::MRenderer* renderer = MHWRender::MRenderer::theRenderer();
    return renderer ? renderer->getTextureManager() : nullptr;
}

MHWRender::MTextureDescription DescribeTexture() {
    MHWRender::MTextureDescription description;
    description.setToDefault2DTexture();
    description.fWidth = Settings::FINAL_IMAGE_WIDTH;
    description.fHeight = Settings::FINAL_IMAGE_WIDTH;
    description.fDepth = 1;
    description.fArraySlices = 1;
    description.fFormat = MHWRender::kR8G8B8A8_UNORM;
    return description;
}

} // namespace

MHWRender::MPxDrawOverride* BaseNodeDrawOverride::Creator(const MObject& object) {
    BaseNodeDrawOverride* drawOverride = nullptr;
    RunGuarded("Drawing in the view", [&] { drawOverride = new BaseNodeDrawOverride(object); });
    return drawOverride;
}

BaseNodeDrawOverride::BaseNodeDrawOverride(const MObject& object)
    : MPxDrawOverride(object, nullptr, true)
    , textureName_("vxpVP2Texture") {
    textureName_ += textureCount_;
    ++textureCount_;
}

BaseNodeDrawOverride::~BaseNodeDrawOverride() {
    MHWRender::MTextureManager* textures = texture_ ? FindTextureManager() : nullptr;
    if (textures) {
        textures->releaseTexture(texture_);
    }
}

MHWRender::DrawAPI BaseNodeDrawOverride::supportedDrawAPIs() const {
    return MHWRender::kAllDevices;
}

bool BaseNodeDrawOverride::isBounded(const MDagPath&, const MDagPath&) const {
    return false;
}

MBoundingBox BaseNodeDrawOverride::boundingBox(const MDagPath&, const MDagPath&) const {
    return MBoundingBox(MPoint(), MPoint());
}

bool BaseNodeDrawOverride::hasUIDrawables() const {
    return true;
}

MUserData* BaseNodeDrawOverride::prepareForDraw(const MDagPath& objPath, const MDagPath& cameraPath,
                                                const MHWRender::MFrameContext& frameContext,
                                                MUserData* oldData) {
    auto* data = dynamic_cast<BaseNodeUserData*>(oldData);
    try {
        if (!data) {
            data = new BaseNodeUserData;
        }
        if (BaseNode* node = BaseNode::FromObject(objPath.node())) {
            Fill(*data, *node, cameraPath, frameContext);
        }
    } catch (const std::bad_alloc&) {
        // Shows what it showed before. The next refresh tries again.
    }
    return data;
}

void BaseNodeDrawOverride::Fill(BaseNodeUserData& data, BaseNode& node, const MDagPath& cameraPath,
                                const MHWRender::MFrameContext& frameContext) {
    const ViewPlacement placement = ViewPlacement::For(frameContext, cameraPath);
    node.NotePlacement(placement);
    data.center = placement.Center();
    data.halfSize = placement.HalfSize();

    const QString camera = MayaUtil::GetCameraName(cameraPath);
    data.imageChanged = node.ImageUpdateRequired(camera);
    data.image = node.GetFinalImage(camera);
    data.opacity = node.GetOpacity();
    data.penString = node.GetPenString(camera, placement);
    data.drawTransformOutline = node.DrawTransformOutline(camera);
    if (data.drawTransformOutline) {
        for (std::size_t corner = 0; corner < node.GetTransformOutline().size(); ++corner) {
            data.outline[corner] = placement.ToView(node.GetTransformOutline()[corner]);
        }
    }
}

bool BaseNodeDrawOverride::UploadImage(const BaseNodeUserData& data) {
    MHWRender::MTextureManager* textures = FindTextureManager();
    if (!textures) {
        return false;
    }
    if (!texture_) {
        texture_ = textures->acquireTexture(textureName_, DescribeTexture(), data.image->constBits(), true);
    }
    // Updates the texture even if the image did not change for this view: another view may have fetched the
    // image, and cleared the flag, in between. The host decides whether to upload.
    return texture_ != nullptr && texture_->update(data.image->constBits(), true, 0);
}

void BaseNodeDrawOverride::addUIDrawables(const MDagPath&, MHWRender::MUIDrawManager& drawManager,
                                          const MHWRender::MFrameContext&, const MUserData* data) {
    const auto* drawn = dynamic_cast<const BaseNodeUserData*>(data);
    try {
        if (drawn && drawn->image && !drawn->image->isNull() && UploadImage(*drawn)) {
            Draw(*drawn, drawManager);
        }
    } catch (const std::bad_alloc&) {
        // The next refresh tries again.
    }
}

void BaseNodeDrawOverride::Draw(const BaseNodeUserData& data, MHWRender::MUIDrawManager& drawManager) const {
    drawManager.beginDrawable();
    drawManager.setTexture(texture_);
    drawManager.setTextureSampler(MHWRender::MSamplerState::kMinMagMipLinear,
                                  MHWRender::MSamplerState::kTexClamp);
    drawManager.setTextureMask(MHWRender::MBlendState::kRGBAChannels);
    drawManager.setColor(MColor(1.0f, 1.0f, 1.0f, data.opacity));
    drawManager.rect2d(data.center, MVector(0.0, 1.0, 0.0), data.halfSize, data.halfSize, true);
    if (data.drawTransformOutline) {
        drawManager.setLineWidth(1.0f);
        drawManager.setColor(MColor(1.0f, 0.0f, 0.0f, 1.0f));
        for (int corner = 0; corner < 4; ++corner) {
            drawManager.line2d(data.outline[corner], data.outline[(corner + 1) % 4]);
        }
    }
    if (!data.penString.isNull()) {
        drawManager.setLineWidth(1.0f);
        drawManager.setColor(MColor(1.0f, 0.0f, 0.0f, 1.0f));
        drawManager.line2d(MPoint(data.penString.x1(), data.penString.y1()),
                           MPoint(data.penString.x2(), data.penString.y2()));
    }
    drawManager.endDrawable();
}

} // namespace vellix
