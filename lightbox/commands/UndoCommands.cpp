#include "commands/Registration.h"
#include "commands/SceneArguments.h"
#include "mel/SyntaxBuilder.h"
#include "scene/EventBus.h"
#include "scene/Host.h"
#include "scene/UndoQueue.h"

#include <algorithm>

namespace lightbox::mel {
namespace {

Value Undo(CommandCall& call) {
    const std::string name = call.GetHost().undo().UndoName();
    if (!call.GetHost().undo().Undo()) {
        call.Warn("There are no more commands to undo.");
        return "";
    }
    return name;
}

Value Redo(CommandCall& call) {
    const std::string name = call.GetHost().undo().RedoName();
    if (!call.GetHost().undo().Redo()) {
        call.Warn("There are no more commands to redo.");
        return "";
    }
    return name;
}

Value QueryUndoInfo(const CommandCall& call) {
    const UndoQueue& undo = call.GetHost().undo();
    return call.Answer({{"-state", undo.IsEnabled()},
                        {"-stateWithoutFlush", undo.IsEnabled()},
                        {"-infinity", undo.Limit() == 0},
                        {"-length", static_cast<int>(undo.Limit())},
                        {"-undoName", undo.UndoName()},
                        {"-redoName", undo.RedoName()},
                        {"-undoQueueEmpty", !undo.CanUndo()},
                        {"-redoQueueEmpty", !undo.CanRedo()},
                        {"-printQueue", undo.Names()}});
}

Value UndoInfo(CommandCall& call) {
    if (call.IsQuery()) {
        return QueryUndoInfo(call);
    }
    UndoQueue& undo = call.GetHost().undo();
    if (call.Has("-state")) {
        undo.SetEnabled(call.Bool("-state"));
    }
    if (call.Has("-stateWithoutFlush")) {
        undo.SetEnabled(call.Bool("-stateWithoutFlush"), true);
    }
    if (call.Has("-length")) {
        undo.SetLimit(static_cast<std::size_t>(std::max(1, call.Int("-length"))));
    }
    if (call.Has("-infinity")) {
        constexpr std::size_t defaultLimit = 50;
        undo.SetLimit(call.Bool("-infinity") ? 0 : undo.Limit() == 0 ? defaultLimit : undo.Limit());
    }
    if (call.Has("-openChunk")) {
        undo.OpenChunk(call.StringOr("-chunkName", ""));
    }
    if (call.Has("-closeChunk")) {
        undo.CloseChunk();
    }
    return {};
}

Value FlushUndo(CommandCall& call) {
    call.GetHost().undo().Flush();
    call.GetHost().events().Fire("flushUndo");
    return {};
}

} // namespace

void RegisterUndoCommands(CommandRegistry& registry) {
    registry.Register("undo", SyntaxBuilder(), Undo);
    registry.Register("redo", SyntaxBuilder(), Redo);
    registry.Register("flushUndo", SyntaxBuilder(), FlushUndo);
    registry.Register("undoInfo",
                      SyntaxBuilder()
                          .Flag("-st", "-state", MSyntax::kBoolean)
                          .Flag("-swf", "-stateWithoutFlush", MSyntax::kBoolean)
                          .Flag("-in", "-infinity", MSyntax::kBoolean)
                          .Flag("-l", "-length", MSyntax::kUnsigned)
                          .Flag("-ock", "-openChunk")
                          .Flag("-cck", "-closeChunk")
                          .Flag("-cn", "-chunkName", MSyntax::kString)
                          .Flag("-un", "-undoName")
                          .Flag("-rn", "-redoName")
                          .Flag("-uqe", "-undoQueueEmpty")
                          .Flag("-rqe", "-redoQueueEmpty")
                          .Flag("-pq", "-printQueue")
                          .Query(),
                      UndoInfo);
}

} // namespace lightbox::mel
