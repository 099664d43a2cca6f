#pragma once

#include "commands/FlagTable.h"
#include "commands/StrokeCommit.h"

#include <maya/MApiNamespace.h>
#include <maya/MPxCommand.h>
#include <maya/MString.h>
#include <maya/MSyntax.h>

#include <memory>

namespace vellix {

/// qmVellixStroke: commits the stroke in progress, issued by the draw tool when a stroke ends.
class StrokeCommand : public MPxCommand {
public:
    static void* Creator();
    static MSyntax CommandSyntax();
    static MString GetCommandName();

    MStatus doIt(const MArgList& args) override;
    MStatus redoIt() override;
    MStatus undoIt() override;
    bool isUndoable() const override { return true; }

private:
    static const FlagTable<StrokeCommand>& Flags();
    MStatus ParseArguments(const MArgList& args);
    MStatus Exchange(bool (StrokeCommit::*step)(BaseNode& node));

    int addedLayer_ = -1; ///< negative for none
    bool frameAdded_ = false;
    std::unique_ptr<StrokeCommit> commit_;
};

} // namespace vellix
