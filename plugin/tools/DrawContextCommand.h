#pragma once

#include <maya/MPxContextCommand.h>
#include <maya/MString.h>

namespace vellix {

/// Makes draw tools: "qmVxDrawCtx".
class DrawContextCommand : public MPxContextCommand {
public:
    static void* Creator();
    static MString GetCommandName();

    /// A new DrawContext, which the host owns.
    MPxContext* makeObj() override;
};

} // namespace vellix
