#pragma once

#include <maya/MArgParser.h>
#include <maya/MPxContext.h>
#include <maya/MPxContextCommand.h>
#include <maya/MSyntax.h>

#include <array>
#include <optional>
#include <string>

/// The state of a plug-in's context.
struct MPxContext::State {
    std::string title;
    std::string help;
    std::array<std::string, 3> images;
    MCursor cursor;
};

/// The state of a plug-in's context command.
struct MPxContextCommand::ContextState {
    /// Complete after appendSyntax().
    MSyntax syntax;
    /// The arguments of the current call; empty between calls.
    std::optional<MArgParser> parser;
};
