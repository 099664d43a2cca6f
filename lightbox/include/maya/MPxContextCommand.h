#pragma once

#include <maya/MPxCommand.h>

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

    // A context command is not undoable.
    bool isUndoable() const override;

protected:
    MSyntax syntax(MStatus* ReturnStatus = nullptr) const;
    MArgParser parser(MStatus* ReturnStatus = nullptr) const;

private:
    friend class lightbox::Access;
    struct ContextState;
    std::unique_ptr<ContextState> contextState_;
};
