#pragma once

#include "host/Guarded.h"

#include <maya/MPxContext.h>

namespace vellix {

/// A tool as the host gets it: its exceptions become errors, and the stroke that failed is dropped, so that
/// nothing half done is left. `Context` has DropUnfinished() for that.
template <typename Context>
class GuardedContext : public Context {
public:
    void toolOnSetup(MEvent& event) override {
        Try("Starting the tool", [&] { Context::toolOnSetup(event); });
    }
    void toolOffCleanup() override {
        // The second time there is no stroke left that could fail.
        if (!Try(STROKE, [&] { Context::toolOffCleanup(); })) {
            Try("Ending the tool", [&] { Context::toolOffCleanup(); });
        }
    }
    MStatus doPress(MEvent& event) override {
        return TryFor(STROKE, [&] { return Context::doPress(event); });
    }
    MStatus doDrag(MEvent& event) override {
        return TryFor(STROKE, [&] { return Context::doDrag(event); });
    }
    MStatus doRelease(MEvent& event) override {
        return TryFor(STROKE, [&] { return Context::doRelease(event); });
    }
    MStatus doPress(MEvent& event, MHWRender::MUIDrawManager& drawManager,
                    const MHWRender::MFrameContext& context) override {
        return TryFor(STROKE, [&] { return Context::doPress(event, drawManager, context); });
    }
    MStatus doDrag(MEvent& event, MHWRender::MUIDrawManager& drawManager,
                   const MHWRender::MFrameContext& context) override {
        return TryFor(STROKE, [&] { return Context::doDrag(event, drawManager, context); });
    }
    MStatus doRelease(MEvent& event, MHWRender::MUIDrawManager& drawManager,
                      const MHWRender::MFrameContext& context) override {
        return TryFor(STROKE, [&] { return Context::doRelease(event, drawManager, context); });
    }
    MStatus doEnterRegion(MEvent& event) override {
        return TryFor("The help line", [&] { return Context::doEnterRegion(event); });
    }
    MStatus helpStateHasChanged(MEvent& event) override {
        return TryFor("The help line", [&] { return Context::helpStateHasChanged(event); });
    }
    void completeAction() override {
        Try(STROKE, [&] { Context::completeAction(); });
    }
    void deleteAction() override {
        Try(STROKE, [&] { Context::deleteAction(); });
    }
    void abortAction() override {
        Try(STROKE, [&] { Context::abortAction(); });
    }

private:
    static constexpr const char* STROKE = "The stroke";

    template <typename Function>
    MStatus TryFor(const char* what, Function function) noexcept {
        bool hasEnded = false;
        const MStatus status = Guarded(what, [&] {
            const MStatus result = function();
            hasEnded = true;
            return result;
        });
        if (!hasEnded) {
            RunGuarded("Dropping the stroke", [this] { this->DropUnfinished(); });
        }
        return status;
    }
    template <typename Function>
    bool Try(const char* what, Function function) noexcept {
        return bool(TryFor(what, [&] {
            function();
            return MS::kSuccess;
        }));
    }
};

} // namespace vellix
