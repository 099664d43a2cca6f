#pragma once

#include <maya/MCursor.h>
#include <maya/MEvent.h>
#include <maya/MString.h>

#include <memory>

/// Base of the tools that plug-ins define: what happens to the pointer in a viewport while the tool is
/// current. In Viewport 2.0 the forms with a draw manager are called, in the legacy viewport the others; what
/// is drawn with the manager lies over the view until the next event of the tool.
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
    /// The pointer came into a view.
    virtual MStatus doEnterRegion(MEvent& event);

    // Those of Viewport 2.0, where a tool that does not override them gets its event in the form above.
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
    /// Called with every drawing of a view, whatever happened to the pointer.
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
    /// While the tool is current, shown in the help line.
    MStatus setHelpString(const MString& str);

private:
    friend class lightbox::ApiBridge;
    struct State;
    std::unique_ptr<State> state_;
};
