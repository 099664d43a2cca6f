#include "tools/TransformContextCommand.h"

#include "host/MayaUtil.h"
#include "host/Settings.h"
#include "tools/GuardedContext.h"
#include "tools/TransformContext.h"

namespace vellix {

void* TransformContextCommand::Creator() {
    return new TransformContextCommand;
}

MString TransformContextCommand::GetCommandName() {
    return MayaUtil::ToMString(Settings::TRANSFORM_CONTEXT_COMMAND_NAME);
}

MPxContext* TransformContextCommand::makeObj() {
    MPxContext* context = nullptr;
    RunGuarded("Making the transform tool", [&context] { context = new GuardedContext<TransformContext>; });
    return context;
}

} // namespace vellix
