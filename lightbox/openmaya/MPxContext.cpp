#include "openmaya/ApiBridge.h"
#include "openmaya/ContextState.h"
#include "openmaya/PluginContext.h"
#include "scene/Host.h"
#include "scene/ToolContexts.h"

#include <maya/MPxContext.h>

using lightbox::ApiBridge;

namespace {

/// Updates the window after a change of the context's title, help, images or cursor.
void ShowChange(const MPxContext& context) {
    const lightbox::PluginContext* current = lightbox::PluginContext::Current();
    if (current && &current->Context() == &context) {
        lightbox::Host::Get().tools().ShowCurrent();
    }
}

bool IsImage(int index) {
    return index >= MPxContext::kImage1 && index <= MPxContext::kImage3;
}

} // namespace

MPxContext::MPxContext()
    : state_(std::make_unique<State>()) {}
MPxContext::~MPxContext() = default;

MStatus MPxContext::doPress(MEvent&) {
    return MS::kSuccess;
}
MStatus MPxContext::doRelease(MEvent&) {
    return MS::kSuccess;
}
MStatus MPxContext::doDrag(MEvent&) {
    return MS::kSuccess;
}
MStatus MPxContext::doHold(MEvent&) {
    return MS::kSuccess;
}
MStatus MPxContext::doPtrMoved(MEvent&) {
    return MS::kSuccess;
}
MStatus MPxContext::doEnterRegion(MEvent&) {
    return MS::kSuccess;
}

MStatus MPxContext::doPress(MEvent& event, MHWRender::MUIDrawManager&, const MHWRender::MFrameContext&) {
    return doPress(event);
}
MStatus MPxContext::doRelease(MEvent& event, MHWRender::MUIDrawManager&, const MHWRender::MFrameContext&) {
    return doRelease(event);
}
MStatus MPxContext::doDrag(MEvent& event, MHWRender::MUIDrawManager&, const MHWRender::MFrameContext&) {
    return doDrag(event);
}
MStatus MPxContext::doHold(MEvent& event, MHWRender::MUIDrawManager&, const MHWRender::MFrameContext&) {
    return doHold(event);
}
MStatus MPxContext::doPtrMoved(MEvent& event, MHWRender::MUIDrawManager&, const MHWRender::MFrameContext&) {
    return doPtrMoved(event);
}
MStatus MPxContext::drawFeedback(MHWRender::MUIDrawManager&, const MHWRender::MFrameContext&) {
    return MS::kSuccess;
}

void MPxContext::toolOnSetup(MEvent&) {}
void MPxContext::toolOffCleanup() {}
MStatus MPxContext::helpStateHasChanged(MEvent&) {
    return MS::kSuccess;
}
void MPxContext::deleteAction() {}
void MPxContext::completeAction() {}
void MPxContext::abortAction() {}

void MPxContext::getClassName(MString& name) const {
    name = stringClassName();
}
MString MPxContext::stringClassName() const {
    return MString();
}

MStatus MPxContext::setImage(const MString& image, ImageIndex index) {
    if (!IsImage(index)) {
        return MS::kInvalidParameter;
    }
    state_->images[index] = ApiBridge::Text(image);
    return MS::kSuccess;
}

MString MPxContext::image(ImageIndex index, MStatus* ReturnStatus) const {
    ApiBridge::Report(ReturnStatus, IsImage(index) ? MS::kSuccess : MS::kInvalidParameter);
    return IsImage(index) ? ApiBridge::Wrap(state_->images[index]) : MString();
}

MStatus MPxContext::setCursor(const MCursor& newCursor) {
    state_->cursor = newCursor;
    ShowChange(*this);
    return MS::kSuccess;
}

MStatus MPxContext::setTitleString(const MString& str) {
    state_->title = ApiBridge::Text(str);
    return MS::kSuccess;
}

MStatus MPxContext::setHelpString(const MString& str) {
    state_->help = ApiBridge::Text(str);
    ShowChange(*this);
    return MS::kSuccess;
}
