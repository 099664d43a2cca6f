#include "tools/TransformContextCommand.h"

#include "host/MayaUtil.h"
#include "host/Settings.h"
#include "tools/TransformContext.h"

namespace vellix {

void* TransformContextCommand::Creator() {
    return new TransformContextCommand;
}

MString TransformContextCommand::GetCommandName() {
    return MayaUtil::ToMString(Settings::TRANSFORM_CONTEXT_COMMAND_NAME);
}

MPxContext* TransformContextCommand::makeObj() {
    return new TransformContext;
}

} // namespace vellix
