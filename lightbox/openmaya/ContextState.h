#pragma once

#include <maya/MArgParser.h>
#include <maya/MPxContext.h>
#include <maya/MPxContextCommand.h>
#include <maya/MSyntax.h>

#include <array>
#include <optional>
#include <string>

/// What stands behind a plug-in's context.
struct MPxContext::State {
    std::string title;
    std::string help;
    std::array<std::string, 3> images;
    MCursor cursor;
};

/// What stands behind a plug-in's context command.
struct MPxContextCommand::ContextState {
    /// Complete once appendSyntax() has run.
    MSyntax syntax;
    /// The arguments that it is called with; nothing between calls.
    std::optional<MArgParser> parser;
};
