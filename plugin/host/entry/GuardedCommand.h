#pragma once

#include "host/Guarded.h"
#include "node/CameraRenames.h"

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
        return Run([&] { return Command::doIt(args); });
    }
    MStatus redoIt() override {
        return Run([&] { return Command::redoIt(); });
    }
    MStatus undoIt() override {
        return Run([&] { return Command::undoIt(); });
    }

private:
    template <typename Step>
    static MStatus Run(Step step) noexcept {
        return CameraRenames::FollowLate() ? Guarded(Name(), step) : MStatus(MS::kFailure);
    }
    static const char* Name() {
        static const MString name = Command::GetCommandName();
        return name.asChar();
    }
};

} // namespace vellix
