#pragma once

#include <maya/MPxDrawOverride.h>
#include <maya/MString.h>

namespace vellix {

class BaseNode;
class BaseNodeUserData;

/// Draws a drawing node in Viewport 2.0: its composed image as a textured square over the camera's gate, and
/// the transform outline. Each instance owns one texture, created at its first draw and updated in place
/// afterwards.
class BaseNodeDrawOverride : public MHWRender::MPxDrawOverride {
public:
    static MHWRender::MPxDrawOverride* Creator(const MObject& object);

    explicit BaseNodeDrawOverride(const MObject& object);
    ~BaseNodeDrawOverride() override;

    MHWRender::DrawAPI supportedDrawAPIs() const override;
    bool isBounded(const MDagPath& objPath, const MDagPath& cameraPath) const override;
    MBoundingBox boundingBox(const MDagPath& objPath, const MDagPath& cameraPath) const override;
    MUserData* prepareForDraw(const MDagPath& objPath, const MDagPath& cameraPath,
                              const MHWRender::MFrameContext& frameContext, MUserData* oldData) override;
    bool hasUIDrawables() const override;
    void addUIDrawables(const MDagPath& objPath, MHWRender::MUIDrawManager& drawManager,
                        const MHWRender::MFrameContext& frameContext, const MUserData* data) override;

private:
    static void Fill(BaseNodeUserData& data, BaseNode& node, const MDagPath& cameraPath,
                     const MHWRender::MFrameContext& frameContext);
    void Draw(const BaseNodeUserData& data, MHWRender::MUIDrawManager& drawManager) const;
    bool UploadImage(const BaseNodeUserData& data);

    static int textureCount_;

    MString textureName_;
    MHWRender::MTexture* texture_ = nullptr;
};

} // namespace vellix
