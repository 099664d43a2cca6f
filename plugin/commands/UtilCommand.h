#pragma once

#include <maya/MApiNamespace.h>
#include <maya/MPxCommand.h>
#include <maya/MStatus.h>
#include <maya/MString.h>
#include <maya/MSyntax.h>

#include <QString>

#include <functional>
#include <string>
#include <vector>

class QColor;
class QWidget;

namespace vellix {

enum class ToolType : qint32;
struct ToolRow;

/// "qmVellixUtil": everything that is not an edit of the drawing. It chooses the tool, its options and the
/// active colour, says what is ghosted and where the frame marks are shown, and opens and refreshes the
/// panels. It changes Settings at once and is not undoable.
class UtilCommand : public MPxCommand {
public:
    static void* Creator();
    static MSyntax CommandSyntax();
    static MString GetCommandName();

    MStatus doIt(const MArgList& args) override;
    bool isUndoable() const override { return false; }

private:
    using Action = std::function<MStatus(UtilCommand& command)>;

    /// One row of the table of flags. `arguments` has a letter for each: u a whole number from 0, i a whole
    /// number, s a text. A flag with a query needs -edit to set and -query to ask.
    struct Operation {
        const char* shortName;
        const char* longName;
        std::string arguments;
        Action run;
        Action query;
    };
    static const std::vector<Operation>& Operations();
    static void AddTools(std::vector<Operation>& operations);

    MStatus Run(const Operation& operation, const MArgDatabase& arguments);
    bool Read(const Operation& operation, const MArgDatabase& arguments);
    static MStatus Refuse();

    static bool NeedWindow(const char* what);
    static MStatus ActivateContext(const char* tool, const QString& contextCommand, MString& name);
    static MStatus ActivateDrawContext();
    static MStatus ActivateTransformContext();
    static MStatus SetActiveTool(ToolType tool);

    MStatus SetOptions(const ToolRow& tool) const;

    /// The colour of the three components; an error is logged, and false returned, when there is none.
    bool GetColor(QColor& color) const;
    static MStatus Answer(const QColor& color);
    template <typename Value>
    static MStatus Answer(Value value) {
        setResult(value);
        return MStatus();
    }
    MStatus SetActiveColor() const;
    MStatus SetGhostColor(QColor& setting) const;
    MStatus SwitchGhosts(bool& setting) const;
    MStatus SetGhostCount(int& setting) const;
    MStatus SetGhostColorOverride() const;
    static MStatus UpdateGhosting();

    MStatus SetTimelineFrameDisplay() const;
    static MStatus RefreshTimelineDisplay();
    static MStatus CreateFloatingViewport();
    MStatus MoveToFloatingViewport() const;

    static MStatus ShowPanel(const char* what, QWidget* (*get)());
    static MStatus ShowLayerManager();
    static MStatus RefreshLayerManager();
    static MStatus RefreshToolbox();
    static MStatus ShowDialog(const char* what, bool (*show)());
    static MStatus ShowLayerProperties();
    static MStatus ResetPanels();

    unsigned int m_values[4] = {}; // a colour, or size, opacity, hardness and tablet switch of a tool
    int m_switch = 0;              // negative: the other way round
    QString m_text;                // font family, or the camera whose layers move
};

} // namespace vellix
