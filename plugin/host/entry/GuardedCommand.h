#pragma once

#include "host/Guarded.h"

#include <maya/MPxCommand.h>

namespace vellix {

/// A command as the host gets it: its exceptions become errors and failures.
template <typename Command>
class GuardedCommand : public Command {
public:
    /// Null when memory is short.
    static void* Creator() {
        GuardedCommand* command = nullptr;
        RunGuarded("Making the command", [&command] { command = new GuardedCommand; });
        return command;
    }

    MStatus doIt(const MArgList& args) override {
        return Guarded(Name(), [&] { return Command::doIt(args); });
    }
    MStatus redoIt() override {
        return Guarded(Name(), [&] { return Command::redoIt(); });
    }
    MStatus undoIt() override {
        return Guarded(Name(), [&] { return Command::undoIt(); });
    }

private:
    static const char* Name() {
        static const MString name = Command::GetCommandName();
        return name.asChar();
    }
};

} // namespace vellix
