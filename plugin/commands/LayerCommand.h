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
    bool isUndoable() const override { return m_undoable; }

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
    /// Swaps the given value with that of the layer.
    template <typename Value, typename Get, typename Set>
    MStatus Exchange(Value& value, Get get, Set set);

    const Flag* m_flag = nullptr;    // the flag whose action runs; null for none
    const char* m_refusal = nullptr; // error message if m_flag is null
    bool m_isQuery = false;
    bool m_undoable = false;
    BaseNode* m_node = nullptr;

    QString m_camera;
    QString m_newCamera;
    QString m_layerName;
    int m_layerIndex = -1;
    int m_destination = -1;
    int m_resultIndex = -1; // index of the inserted or moved layer, for undo
    int m_movedCount = 0;
    int m_layerState = -1; // of a new layer; negative if none was given
    int m_stateValue = 0;
    bool m_visible = true;
    double m_opacity = 1.0;

    ActiveLayers m_before;
    std::vector<std::unique_ptr<Layer>> m_removedLayers; // while they are not in the drawing
};

} // namespace vellix
