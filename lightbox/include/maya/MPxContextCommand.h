#pragma once

#include <maya/MArgParser.h>
#include <maya/MPxCommand.h>
#include <maya/MSyntax.h>

#include <string>

namespace lightbox {
class PluginContext;
}

/// Base class of commands that make tool contexts. Called without a mode flag, with or without a name, such a
/// command makes a context and returns its name. With -edit or -query and the name of one of its contexts,
/// the instance that made the context gets the flags of appendSyntax() in doEditFlags() and doQueryFlags().
class MPxContextCommand : public MPxCommand {
public:
    MPxContextCommand();
    ~MPxContextCommand() override;

    virtual MStatus doEditFlags();
    virtual MStatus doQueryFlags();
    /// Makes a context; the host owns it.
    virtual MPxContext* makeObj();
    virtual MStatus appendSyntax();

    /// Creates, edits or queries a context.
    MStatus doIt(const MArgList& args) final;
    bool isUndoable() const override;

protected:
    /// For appendSyntax(): additions to the returned syntax change the command's own.
    MSyntax syntax(MStatus* ReturnStatus = nullptr) const;
    /// The arguments; only for doEditFlags() and doQueryFlags().
    MArgParser parser(MStatus* ReturnStatus = nullptr) const;

private:
    friend class lightbox::ApiBridge;
    struct ContextState;

    MStatus Create(const std::string& name, const MArgParser& arguments);
    static MStatus Edit(lightbox::PluginContext& context, const MArgParser& arguments);
    static MStatus Query(lightbox::PluginContext& context, const MArgParser& arguments);
    MStatus CallWith(const MArgParser& arguments, MStatus (MPxContextCommand::*flags)());

    std::unique_ptr<ContextState> contextState_;
};
