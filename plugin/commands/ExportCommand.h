#pragma once

#include "commands/ExportCanvas.h"
#include "commands/FlagTable.h"

#include <maya/MApiNamespace.h>
#include <maya/MPxCommand.h>
#include <maya/MStatus.h>
#include <maya/MString.h>
#include <maya/MSyntax.h>
#include <maya/MTime.h>

#include <QImage>
#include <QString>
#include <QStringList>

#include <vector>

namespace vellix {

class ExportedLayers;
class FrameOutputs;
class LayerManager;
class LayerOutputs;

/// "qmVellixExport": writes the drawing of a camera, composed at every frame of a range (by default the
/// playback range; both ends included). Output is numbered PNG files, transparent or on an opaque background,
/// a movie at the scene's frame rate, or both, and on request a contact sheet of all frames. Ghosts are left
/// out unless requested. The layers go out one by one as well: in files of other drawing programs, or as a
/// sequence each. Changes neither the current time nor the drawing, so there is nothing to undo. The result
/// is the list of written files.
class ExportCommand : public MPxCommand {
public:
    /// The longest range, in frames. A longer one is taken for a mistake.
    static constexpr int MAX_FRAMES = 100000;

    static void* Creator();
    static MSyntax CommandSyntax();
    static MString GetCommandName();

    MStatus doIt(const MArgList& args) override;
    bool isUndoable() const override { return false; }

private:
    static const FlagTable<ExportCommand>& Flags();

    // Each returns false on a fault, and logs what is wrong and what to do.
    bool ReadArguments(const MArgList& args);
    bool CheckTimes();
    bool CheckBackground() const;
    bool CheckRange() const;
    bool CheckSize();
    bool ChooseFrames(const ExportedLayers& layers);
    bool CheckFiles(const ExportedLayers& layers) const;
    bool CheckNumber(const QString& pattern, const char* example) const;
    bool CheckMovie() const;
    bool CheckLayered() const;
    bool CheckLayerFiles(const ExportedLayers& layers) const;
    bool WriteAll(const LayerManager& layers);
    bool WriteAnimation(ExportedLayers& layers);
    bool WriteFrames(const LayerManager& layers, ExportedLayers& exported);
    void AddOutputs(FrameOutputs& frames, LayerOutputs& layers) const;

    /// Whether -layered names a file of the whole animation.
    bool IsAnimation() const;
    /// Whether frames are written one by one.
    bool WantsFrames() const;
    QImage Compose(const LayerManager& layers, int frame) const;

    QString pattern_;
    QString camera_;
    QString contactSheet_;
    QString movie_;
    QString layered_;
    QString layerFiles_;
    MTime startTime_;
    MTime endTime_;
    bool hasStart_ = false;
    bool hasEnd_ = false;
    int start_ = 0; // whole frames
    int end_ = 0;
    std::vector<int> frames_; // of the range
    bool drawingsOnly_ = false;
    bool ghosting_ = false;
    int width_ = 0; // pixels
    int height_ = 0;
    bool hasSize_ = false;
    bool hasRenderSize_ = false;
    ExportCanvas canvas_;
    bool hasBackground_ = false;
    int red_ = 0;
    int green_ = 0;
    int blue_ = 0;
    QStringList files_;
};

} // namespace vellix
