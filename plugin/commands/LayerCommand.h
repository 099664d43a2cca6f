#pragma once

#include "commands/ActiveLayers.h"

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
    LayerCommand() = default;
    ~LayerCommand() override;

    static void* Creator();
    static MSyntax CommandSyntax();
    static MString GetCommandName();

    MStatus doIt(const MArgList& args) override;
    MStatus redoIt() override;
    MStatus undoIt() override;
    bool isUndoable() const override { return m_undoable; }

private:
    using Reader = void (LayerCommand::*)(const MArgDatabase& arguments);
    using Step = MStatus (LayerCommand::*)();

    /// One row of the table of operations: the flag that asks for it, what reads the flag's arguments, the
    /// change and its reversal (none for a plain answer).
    struct Operation {
        const char* flag;
        Reader read;
        Step redo;
        Step undo;
    };
    static const Operation OPERATIONS[];
    static const Operation EDIT_ACTIVE;
    static const Operation QUERY_ACTIVE;

    MStatus Parse(const MArgList& args);
    void ReadNothing(const MArgDatabase& arguments);
    void ReadIndex(const MArgDatabase& arguments);
    void ReadInsert(const MArgDatabase& arguments);
    void ReadMove(const MArgDatabase& arguments);
    void ReadMoveAll(const MArgDatabase& arguments);
    void ReadName(const MArgDatabase& arguments);
    void ReadVisibility(const MArgDatabase& arguments);
    void ReadOpacity(const MArgDatabase& arguments);
    void ReadState(const MArgDatabase& arguments);
    void ReadNewLayer(const MArgDatabase& arguments);

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

    MStatus Run(Step step);
    bool CheckLayer() const;
    MStatus InsertNewLayer(int destination);
    bool PutBackFirst(int index);

    const Operation* m_operation = nullptr;
    const char* m_refusal = "Invalid command parameters"; // said when there is no operation
    bool m_undoable = false;
    BaseNode* m_node = nullptr;

    QString m_camera;
    QString m_newCamera;
    QString m_layerName;
    int m_layerIndex = 0;
    int m_destination = -1;
    int m_resultIndex = -1; // where a layer came to stand, for the way back
    int m_movedCount = 0;
    int m_layerState = -1;
    int m_stateValue = 0;
    bool m_visible = true;
    double m_opacity = 1.0;

    ActiveLayers m_before;
    std::vector<std::unique_ptr<Layer>> m_removedLayers; // while they are out of the document
};

} // namespace vellix
