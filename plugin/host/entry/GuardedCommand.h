#pragma once

#include "host/Guarded.h"

#include <maya/MPxCommand.h>
#include <maya/MSyntax.h>

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

    /// Without flags when memory is short.
    static MSyntax CommandSyntax() {
        MSyntax syntax;
        RunGuarded("Describing the command", [&syntax] { syntax = Command::CommandSyntax(); });
        return syntax;
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
