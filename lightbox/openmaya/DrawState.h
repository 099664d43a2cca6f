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

/// What stands behind a view that is drawn. It lives as long as the drawing.
struct MHWRender::MFrameContext::State {
    const lightbox::View& view;
    const lightbox::CameraView& camera;
    MDagPath cameraPath;
};

/// What stands behind a draw manager: where its items go, and what the next one looks like.
struct MHWRender::MUIDrawManager::State {
    lightbox::DrawList& list;
    lightbox::DrawItem next;
    bool isOpen = false;
};

/// What stands behind a texture: its pixels, which draw items share.
struct MHWRender::MTexture::State {
    std::shared_ptr<lightbox::Texture> texture;
    MString name;
    MTextureDescription description;
    int users = 1;
};
