#pragma once

#include "commands/ActiveLayers.h"
#include "commands/FlagTable.h"

#include <maya/MApiNamespace.h>
#include <maya/MPxCommand.h>
#include <maya/MStatus.h>
#include <maya/MString.h>
#include <maya/MSyntax.h>

#include <QString>

#include <memory>
#include <vector>

namespace vellix {

class BaseNode;
class Layer;

/// "qmVellixLayer": reads and changes the layers of one camera, whose name is the command's object. Layers
/// are addressed by their index from the bottom of the stack.
class LayerCommand : public MPxCommand {
public:
    LayerCommand();
    ~LayerCommand() override;

    static void* Creator();
    static MSyntax CommandSyntax();
    static MString GetCommandName();

    MStatus doIt(const MArgList& args) override;
    MStatus redoIt() override;
    MStatus undoIt() override;
    bool isUndoable() const override { return undoable_; }

private:
    using Flag = FlagRow<LayerCommand>;

    static const FlagTable<LayerCommand>& Flags();
    MStatus Parse(const MArgList& args);

    MStatus Count();
    MStatus QueryActive();
    MStatus EditActive();
    MStatus RestoreActive();
    MStatus Add();
    MStatus Insert();
    MStatus InsertUndo();
    MStatus Delete();
    MStatus DeleteUndo();
    MStatus DeleteAll();
    MStatus DeleteAllUndo();
    MStatus Move();
    MStatus MoveUndo();
    MStatus MoveWithin(int from, int to);
    MStatus MoveAcross();
    MStatus MoveAll();
    MStatus MoveAllUndo();
    MStatus ExchangeName();
    MStatus QueryName();
    MStatus ExchangeVisibility();
    MStatus QueryVisibility();
    MStatus ExchangeOpacity();
    MStatus QueryOpacity();
    MStatus ExchangeState();
    MStatus QueryState();
    MStatus Import();

    MStatus Run(const Flag::Step& step);
    bool CheckLayer() const;
    bool CheckState() const;
    MStatus InsertNewLayer(int destination);
    MStatus PutBack(int index);
    /// Gives the layer the value, and the value what the layer had.
    template <typename Value, typename Get, typename Set>
    MStatus Exchange(Value& value, Get get, Set set);

    const Flag* flag_ = nullptr;    // what is done
    const char* refusal_ = nullptr; // said when there is nothing to do
    bool asks_ = false;
    bool undoable_ = false;
    BaseNode* node_ = nullptr;

    QString camera_;
    QString newCamera_;
    QString layerName_;
    int layerIndex_ = -1;
    int destination_ = -1;
    int resultIndex_ = -1; // where a layer came to stand, for the way back
    int movedCount_ = 0;
    int layerState_ = -1; // of a new layer, negative for none
    int stateValue_ = 0;
    bool visible_ = true;
    double opacity_ = 1.0;

    ActiveLayers before_;
    std::vector<std::unique_ptr<Layer>> removedLayers_; // while they are out of the document
};

} // namespace vellix
