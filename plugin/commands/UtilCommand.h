#pragma once

#include "commands/FlagTable.h"

#include <maya/MApiNamespace.h>
#include <maya/MPxCommand.h>
#include <maya/MStatus.h>
#include <maya/MString.h>
#include <maya/MSyntax.h>

#include <QString>

class QColor;

namespace vellix {

enum class ToolType : qint32;
struct HeldKey;
struct PanelRow;
struct PressureCurve;
struct ToolRow;

/// "qmVellixUtil": everything that does not edit the drawing. Chooses the tool, its options and the active
/// colour; sets ghosting and the display of the frame marks; opens and refreshes the panels. Changes Settings
/// at once and is not undoable.
class UtilCommand : public MPxCommand {
public:
    static void* Creator();
    static MSyntax CommandSyntax();
    static MString GetCommandName();

    MStatus doIt(const MArgList& args) override;
    bool isUndoable() const override { return false; }

private:
    using Flag = FlagRow<UtilCommand>;

    static const FlagTable<UtilCommand>& Flags();
    static std::vector<Flag> Rows();
    static void AddTools(std::vector<Flag>& rows);
    static void AddLine(std::vector<Flag>& rows);
    static void AddLightTable(std::vector<Flag>& rows);
    static void AddPanels(std::vector<Flag>& rows);
    static MStatus Refuse();

    /// Returns false, and logs an error, if the host has no user interface. `what` needs one.
    static bool RequireWindow(const char* what);
    static MStatus ActivateContext(const char* tool, const QString& contextCommand, MString& name);
    static MStatus ActivateDrawContext();
    static MStatus ActivateTransformContext();
    static MStatus SetActiveTool(ToolType tool);

    MStatus SetOptions(const ToolRow& tool) const;
    MStatus SetSmoothCurves() const;
    MStatus SetStabiliser() const;
    MStatus SetSizePressure(ToolType tool) const;
    MStatus SetOpacityPressure(ToolType tool) const;
    PressureCurve GetCurve() const;
    /// Returns false, and logs an error, if there is no preset of the number.
    bool HasPreset() const;
    MStatus ChoosePreset() const;
    MStatus SavePreset() const;
    MStatus NamePreset() const;
    MStatus SetPresetKeys() const;

    /// Gets the colour given by the three components. Returns false, and logs an error, if a component is out
    /// of range.
    bool GetColor(QColor& color) const;
    MStatus SetActiveColor() const;
    MStatus SetGhostColor(QColor& setting) const;
    MStatus SwitchGhosts(bool& setting) const;
    MStatus SetGhostCount(int& setting) const;
    MStatus SetGhostColorOverride() const;
    static MStatus UpdateGhosting();

    MStatus Flip() const;
    MStatus EndFlip() const;
    MStatus Roll() const;
    MStatus SetFlipAllLayers() const;
    MStatus SetRollCount() const;
    MStatus SetRollRate() const;
    MStatus SetGhostLayers() const;
    MStatus MarkLayer() const;
    MStatus PinDrawing() const;
    static MStatus UnpinAll();
    MStatus SetOtherLayersOpacity() const;
    MStatus SetHeldKey(const HeldKey& action) const;

    MStatus SetTimelineFrameDisplay() const;
    static MStatus RefreshTimelineDisplay();
    static MStatus CreateFloatingViewport();
    MStatus MoveToFloatingViewport() const;

    static MStatus ShowPanel(const PanelRow& panel);
    static MStatus ShowLayerManager();
    static MStatus RefreshLayerManager();
    static MStatus RefreshToolbox();
    static MStatus ShowDialog(const char* what, bool (*show)());
    static MStatus ShowLayerProperties();
    static MStatus ResetPanels();

    int size_ = 0; // tool size; the members up to tablet_ are tool options too
    int opacity_ = 0;
    int hardness_ = 0;
    int tablet_ = 0;
    int red_ = 0;
    int green_ = 0;
    int blue_ = 0;
    int number_ = 0;
    int switch_ = 0; // negative: toggle
    int least_ = 0;  // the members up to middle_ are a curve of pressure
    int middleAt_ = 0;
    int middle_ = 0;
    int steps_ = 0; // of a flip, in drawings
    QString text_;  // font family, the camera whose layers are moved, a preset's name, or a key
};

} // namespace vellix
