#pragma once

#include "commands/ActiveLayers.h"
#include "commands/FlagTable.h"
#include "core/CameraHandle.h"
#include "core/Identity.h"
#include "core/LayerSpot.h"

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
struct LayerPlace;

/// "qmVellixLayer": reads and changes the layers of one camera, whose name is the command's object. Layers
/// are addressed by their index from the bottom of the stack. Undo and redo act on the very layers of the
/// first run. If one is gone they log an error and change nothing.
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
    MStatus EditActiveUndo();
    MStatus Add();
    MStatus Insert();
    MStatus InsertUndo();
    MStatus Delete();
    MStatus DeleteAll();
    MStatus DeleteChosen();
    MStatus DeleteUndo();
    MStatus Move();
    MStatus MoveUndo();
    MStatus MoveAll();
    MStatus MoveAllUndo();
    MStatus ExchangeName();
    MStatus QueryName();
    MStatus ExchangeVisibility();
    MStatus QueryVisibility();
    MStatus EditMark();
    MStatus QueryMark();
    MStatus ExchangeOpacity();
    MStatus QueryOpacity();
    MStatus ExchangeState();
    MStatus QueryState();
    MStatus Import();

    MStatus Run(const Flag::Step& step);
    bool CheckCamera() const;
    bool CheckLayer() const;
    bool CheckState() const;
    bool ChooseLayer();
    void ChooseAllLayers();
    bool FindLayer(LayerId id, LayerPlace& place) const;
    /// Returns false, and logs an error, if one of the layers is not on the camera.
    bool FindLayers(const std::vector<LayerId>& ids, const QString& camera) const;
    MStatus InsertNewLayer(int destination);
    bool TakeOut(const std::vector<LayerId>& ids);
    /// Puts the layers that were taken out back to their spots.
    bool ForgetLayersOfDroppedStrokes();
    MStatus PutBack();
    void RememberActive() noexcept;
    void TakeOutAgain(std::size_t count);
    MStatus MoveAgain();
    bool MoveTo(const LayerSpot& spot);
    void FollowActiveLayer();
    /// Swaps the given value with that of the layer.
    template <typename Value, typename Get, typename Set>
    MStatus Exchange(Value& value, Get get, Set set);

    struct Removed {
        LayerId id;
        LayerSpot spot;
        std::unique_ptr<Layer> layer;
        bool isOfStroke = false; // added by the press of the stroke that was in progress then
    };

    const Flag* flag_ = nullptr;    // the flag whose action runs; null for none
    const char* refusal_ = nullptr; // error message if flag_ is null
    bool isQuery_ = false;
    bool undoable_ = false;
    bool hasRun_ = false; // the first run has chosen or made the layers
    bool isDone_ = false; // and they are as it left them
    BaseNode* node_ = nullptr;
    std::shared_ptr<LayerManager> drawing_; // of the node, during a step

    // The arguments. Only the first run goes by them.
    QString camera_;
    QString newCamera_;
    QString layerName_;
    int layerIndex_ = -1;
    int destination_ = -1;
    int layerState_ = -1; // of a new layer; negative if none was given
    int stateValue_ = 0;
    bool visible_ = true;
    bool marked_ = false;
    double opacity_ = 1.0;

    LayerId layer_ = LayerId::None; // the layer that was made, moved, removed or changed
    std::vector<LayerId> layers_;   // the layers to delete, or all of the camera, from the bottom up
    LayerSpot from_;
    LayerSpot to_;
    std::vector<LayerSpot> spots_;
    CameraHandle source_;
    CameraHandle target_;
    ActiveLayers before_;
    std::unique_ptr<const ActiveLayers> after_; // what was active after the first run; null if not known
    std::vector<Removed> removed_;              // while they are not in the drawing, from the bottom up
};

} // namespace vellix
