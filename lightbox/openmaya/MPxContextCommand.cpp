#include "openmaya/ApiBridge.h"
#include "openmaya/CommandState.h"
#include "openmaya/ContextState.h"
#include "openmaya/PluginContext.h"
#include "scene/Host.h"
#include "scene/ToolContexts.h"

#include <maya/MArgList.h>
#include <maya/MPxContext.h>
#include <maya/MPxContextCommand.h>
#include <maya/MStringArray.h>

using lightbox::ApiBridge;
using lightbox::Host;
using lightbox::PluginContext;
using lightbox::ToolContexts;

namespace {

/// The flags common to all context commands.
MSyntax CommonSyntax() {
    MSyntax syntax;
    syntax.addFlag("-ex", "-exists");
    syntax.addFlag("-n", "-name", MSyntax::kString);
    syntax.addFlag("-i1", "-image1", MSyntax::kString);
    syntax.addFlag("-i2", "-image2", MSyntax::kString);
    syntax.addFlag("-i3", "-image3", MSyntax::kString);
    syntax.setObjectType(MSyntax::kStringObjects, 0, 1);
    syntax.enableQuery();
    syntax.enableEdit();
    return syntax;
}

constexpr const char* IMAGE_FLAGS[] = {"-image1", "-image2", "-image3"};

std::string NameIn(const MArgParser& arguments) {
    MString name;
    if (!arguments.isQuery() && arguments.isFlagSet("-name") && arguments.getFlagArgument("-name", 0, name)) {
        return ApiBridge::Text(name);
    }
    MStringArray objects;
    arguments.getObjects(objects);
    return objects.length() > 0 ? ApiBridge::Text(objects[0]) : std::string();
}

/// Sets the images given by the arguments. Returns how many of the common flags the arguments use.
unsigned SetImages(const MArgParser& arguments, MPxContext& context) {
    unsigned used = arguments.isFlagSet("-name") ? 1 : 0;
    for (int image = 0; image < 3; ++image) {
        MString file;
        if (arguments.isFlagSet(IMAGE_FLAGS[image]) &&
            arguments.getFlagArgument(IMAGE_FLAGS[image], 0, file)) {
            context.setImage(file, static_cast<MPxContext::ImageIndex>(image));
            ++used;
        }
    }
    return used;
}

} // namespace

MPxContextCommand::MPxContextCommand()
    : contextState_(std::make_unique<ContextState>()) {
    contextState_->syntax = CommonSyntax();
}

MPxContextCommand::~MPxContextCommand() = default;

MStatus MPxContextCommand::doEditFlags() {
    return MS::kSuccess;
}
MStatus MPxContextCommand::doQueryFlags() {
    return MS::kSuccess;
}
MPxContext* MPxContextCommand::makeObj() {
    return nullptr;
}
MStatus MPxContextCommand::appendSyntax() {
    return MS::kSuccess;
}
bool MPxContextCommand::isUndoable() const {
    return false;
}

MSyntax MPxContextCommand::syntax(MStatus* ReturnStatus) const {
    ApiBridge::Report(ReturnStatus, MS::kSuccess);
    MSyntax handle = contextState_->syntax;
    handle.writesThrough_ = true;
    return handle;
}

MArgParser MPxContextCommand::parser(MStatus* ReturnStatus) const {
    ApiBridge::Report(ReturnStatus, contextState_->parser ? MS::kSuccess : MS::kFailure);
    return contextState_->parser ? *contextState_->parser : MArgParser(MSyntax(), MArgList());
}

MStatus MPxContextCommand::doIt(const MArgList& args) {
    MStatus status;
    const MArgParser arguments(*ApiBridge::StateOf(*this).command->syntax, args, &status);
    if (!status) {
        return status;
    }
    const std::string name = NameIn(arguments);
    auto* existing = dynamic_cast<PluginContext*>(Host::Get().tools().Find(name));
    const bool isOwn = existing && existing->Command() == ApiBridge::StateOf(*this).command->name;
    if (arguments.isFlagSet("-exists")) {
        setResult(isOwn);
        return MS::kSuccess;
    }
    if (!arguments.isQuery() && !arguments.isEdit()) {
        return Create(name, arguments);
    }
    if (!isOwn) {
        return ApiBridge::Fail(MS::kInvalidParameter, "There is no context \"" + name + "\" of this command");
    }
    return arguments.isQuery() ? Query(*existing, arguments) : Edit(*existing, arguments);
}

MStatus MPxContextCommand::Create(const std::string& wanted, const MArgParser& arguments) {
    const std::string& command = ApiBridge::StateOf(*this).command->name;
    ToolContexts& tools = Host::Get().tools();
    const std::string name = wanted.empty() ? tools.FreeName(command) : wanted;
    if (tools.Find(name)) {
        return ApiBridge::Fail(MS::kInvalidParameter, "The name \"" + name + "\" is taken");
    }
    // The instance that makes the context lives as long as the context; this one is destroyed after the call.
    std::unique_ptr<MPxContextCommand> maker(
        static_cast<MPxContextCommand*>(ApiBridge::StateOf(*this).command->creator()));
    std::unique_ptr<MPxContext> context(maker ? maker->makeObj() : nullptr);
    if (!context) {
        return ApiBridge::Fail(MS::kFailure, "The plug-in could not create the context");
    }
    ApiBridge::StateOf(*maker).command = ApiBridge::StateOf(*this).command;
    auto made = std::make_unique<PluginContext>(name, command, std::move(maker), std::move(context));
    MStatus status = Edit(*made, arguments);
    if (status) {
        tools.Add(std::move(made));
        setResult(MString(name.c_str()));
    }
    return status;
}

MStatus MPxContextCommand::Edit(PluginContext& context, const MArgParser& arguments) {
    if (arguments.numberOfFlagsUsed() == SetImages(arguments, context.Context())) {
        return MS::kSuccess;
    }
    return context.Maker().CallWith(arguments, &MPxContextCommand::doEditFlags);
}

MStatus MPxContextCommand::Query(PluginContext& context, const MArgParser& arguments) {
    for (int image = 0; image < 3; ++image) {
        if (arguments.isFlagSet(IMAGE_FLAGS[image])) {
            setResult(context.Context().image(static_cast<MPxContext::ImageIndex>(image)));
            return MS::kSuccess;
        }
    }
    return context.Maker().CallWith(arguments, &MPxContextCommand::doQueryFlags);
}

MStatus MPxContextCommand::CallWith(const MArgParser& arguments, MStatus (MPxContextCommand::*flags)()) {
    contextState_->parser.emplace(arguments);
    MStatus status = (this->*flags)();
    contextState_->parser.reset();
    return status;
}
