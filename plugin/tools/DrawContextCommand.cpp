#include "tools/DrawContextCommand.h"

#include "host/MayaUtil.h"
#include "host/Settings.h"
#include "tools/DrawContext.h"
#include "tools/GuardedContext.h"

namespace vellix {

void* DrawContextCommand::Creator() {
    return new DrawContextCommand;
}

MString DrawContextCommand::GetCommandName() {
    return MayaUtil::ToMString(Settings::DRAW_CONTEXT_COMMAND_NAME);
}

MPxContext* DrawContextCommand::makeObj() {
    MPxContext* context = nullptr;
    RunGuarded("Making the draw tool", [&context] { context = new GuardedContext<DrawContext>; });
    return context;
}

} // namespace vellix
