#pragma once

#include <maya/MPxContextCommand.h>
#include <maya/MString.h>

namespace vellix {

/// Makes the transform tool.
class TransformContextCommand : public MPxContextCommand {
public:
    static void* Creator();
    static MString GetCommandName();

    MPxContext* makeObj() override;
};

} // namespace vellix
