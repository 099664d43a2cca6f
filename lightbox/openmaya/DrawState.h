#pragma once

#include "openmaya/DrawList.h"

#include <maya/MDagPath.h>
#include <maya/MFrameContext.h>
#include <maya/MTextureManager.h>
#include <maya/MUIDrawManager.h>

#include <memory>

namespace lightbox {
class CameraView;
class View;
} // namespace lightbox

/// The state of a frame context: the view to draw. Valid during the drawing.
struct MHWRender::MFrameContext::State {
    const lightbox::View& view;
    const lightbox::CameraView& camera;
    MDagPath cameraPath;
};

/// The state of a draw manager: the list that receives its items, and the settings of the next one.
struct MHWRender::MUIDrawManager::State {
    lightbox::DrawList& list;
    lightbox::DrawItem next;
    bool isOpen = false;
};

/// The state of a texture: its pixels, which draw items share.
struct MHWRender::MTexture::State {
    std::shared_ptr<lightbox::Texture> texture;
    MString name;
    MTextureDescription description;
    int users = 1;
};
