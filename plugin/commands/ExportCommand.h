#pragma once

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

namespace vellix {

class LayerManager;

/// "qmVellixExport": writes the drawing of a camera, composed at every frame of a range (the playback range
/// unless one is given, both ends included), as numbered PNG files with transparency, or on an opaque
/// background, as a movie at the scene's rate, or as both. Ghosts are left out unless asked for. On demand
/// all frames are shown together on a contact sheet. Changes neither the current time nor the drawing, so
/// there is nothing to undo. The result is the list of the files that were written.
class ExportCommand : public MPxCommand {
public:
    /// More frames than this are taken for a slip in the range.
    static constexpr int MAX_FRAMES = 100000;

    static void* Creator();
    static MSyntax CommandSyntax();
    static MString GetCommandName();

    MStatus doIt(const MArgList& args) override;
    bool isUndoable() const override { return false; }

private:
    static const FlagTable<ExportCommand>& Flags();

    // Each logs what is wrong and what to do when it returns false.
    bool ReadArguments(const MArgList& args);
    bool CheckTimes();
    bool CheckBackground() const;
    bool CheckRange() const;
    bool CheckFiles() const;
    bool CheckMovie() const;
    bool WriteAll(const LayerManager& layers);
    QImage Compose(const LayerManager& layers, int frame) const;

    QString pattern_;
    QString camera_;
    QString contactSheet_;
    QString movie_;
    MTime startTime_;
    MTime endTime_;
    int start_ = 0; // whole frames
    int end_ = 0;
    bool ghosting_ = false;
    bool hasBackground_ = false;
    int red_ = 0;
    int green_ = 0;
    int blue_ = 0;
    QStringList files_;
};

} // namespace vellix
