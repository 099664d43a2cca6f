#pragma once

#include <maya/MPxContextCommand.h>
#include <maya/MString.h>

namespace vellix {

/// Makes draw tools: "qmVxDrawCtx".
class DrawContextCommand : public MPxContextCommand {
public:
    static void* Creator();
    static MString GetCommandName();

    /// Returns a new DrawContext. The host owns it.
    MPxContext* makeObj() override;
};

} // namespace vellix
