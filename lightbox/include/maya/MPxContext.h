#pragma once

#include <maya/MCursor.h>
#include <maya/MEvent.h>
#include <maya/MString.h>

#include <memory>

/// Base class of plug-in tools: handles the pointer in viewports while the tool is current. Viewport 2.0
/// calls the forms with a draw manager, the legacy viewport the others. Items drawn with the manager stay
/// over the view until the tool's next event.
class MPxContext {
public:
    enum ImageIndex { kImage1 = 0, kImage2 = 1, kImage3 = 2 };

    MPxContext();
    virtual ~MPxContext();
    MPxContext(const MPxContext&) = delete;
    MPxContext& operator=(const MPxContext&) = delete;

    virtual MStatus doPress(MEvent& event);
    virtual MStatus doRelease(MEvent& event);
    virtual MStatus doDrag(MEvent& event);
    virtual MStatus doHold(MEvent& event);
    virtual MStatus doPtrMoved(MEvent& event);
    /// Called when the pointer enters a view.
    virtual MStatus doEnterRegion(MEvent& event);

    // The forms for Viewport 2.0. By default they call the form without a draw manager.
    virtual MStatus doPress(MEvent& event, MHWRender::MUIDrawManager& drawMgr,
                            const MHWRender::MFrameContext& context);
    virtual MStatus doRelease(MEvent& event, MHWRender::MUIDrawManager& drawMgr,
                              const MHWRender::MFrameContext& context);
    virtual MStatus doDrag(MEvent& event, MHWRender::MUIDrawManager& drawMgr,
                           const MHWRender::MFrameContext& context);
    virtual MStatus doHold(MEvent& event, MHWRender::MUIDrawManager& drawMgr,
                           const MHWRender::MFrameContext& context);
    virtual MStatus doPtrMoved(MEvent& event, MHWRender::MUIDrawManager& drawMgr,
                               const MHWRender::MFrameContext& context);
    /// Called on every drawing of a view, not only on events.
    virtual MStatus drawFeedback(MHWRender::MUIDrawManager& drawMgr, const MHWRender::MFrameContext& context);

    virtual void toolOnSetup(MEvent& event);
    virtual void toolOffCleanup();
    virtual MStatus helpStateHasChanged(MEvent& event);
    /// Delete or Backspace.
    virtual void deleteAction();
    /// Enter or Return.
    virtual void completeAction();
    /// Escape.
    virtual void abortAction();

    virtual void getClassName(MString& name) const;
    virtual MString stringClassName() const;

    MStatus setImage(const MString& image, ImageIndex index);
    MString image(ImageIndex index, MStatus* ReturnStatus = nullptr) const;
    MStatus setCursor(const MCursor& newCursor);

protected:
    MStatus setTitleString(const MString& str);
    /// Sets the text shown in the help line while the tool is current.
    MStatus setHelpString(const MString& str);

private:
    friend class lightbox::ApiBridge;
    struct State;
    std::unique_ptr<State> state_;
};
