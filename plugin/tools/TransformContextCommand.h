#pragma once

#include <maya/MPxContextCommand.h>
#include <maya/MString.h>

namespace vellix {

/// Makes transform tools. The host owns them.
class TransformContextCommand : public MPxContextCommand {
public:
    static void* Creator();
    static MString GetCommandName();

    MPxContext* makeObj() override;
};

} // namespace vellix
