#include "tools/DrawContextCommand.h"

#include "host/MayaUtil.h"
#include "host/Settings.h"
#include "tools/DrawContext.h"

namespace vellix {

void* DrawContextCommand::Creator() {
    return new DrawContextCommand;
}

MString DrawContextCommand::GetCommandName() {
    return MayaUtil::ToMString(Settings::DRAW_CONTEXT_COMMAND_NAME);
}

MPxContext* DrawContextCommand::makeObj() {
    return new DrawContext;
}

} // namespace vellix
