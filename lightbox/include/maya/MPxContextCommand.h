#pragma once

#include <maya/MArgParser.h>
#include <maya/MPxCommand.h>
#include <maya/MSyntax.h>

#include <string>

namespace lightbox {
class PluginContext;
}

/// Base of the commands that make tool contexts. Called plainly, with or without a name, such a command makes
/// a context and answers its name; with -edit or -query and the name of one of its contexts, the flags that
/// appendSyntax() added reach doEditFlags() and doQueryFlags() of the instance that made the context.
class MPxContextCommand : public MPxCommand {
public:
    MPxContextCommand();
    ~MPxContextCommand() override;

    virtual MStatus doEditFlags();
    virtual MStatus doQueryFlags();
    /// A new context; the host owns it.
    virtual MPxContext* makeObj();
    virtual MStatus appendSyntax();

    /// Creates, edits or queries a context.
    MStatus doIt(const MArgList& args) final;
    bool isUndoable() const override;

protected:
    /// For appendSyntax(): what is added to the answer belongs to the command.
    MSyntax syntax(MStatus* ReturnStatus = nullptr) const;
    /// The arguments, in doEditFlags() and doQueryFlags().
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
