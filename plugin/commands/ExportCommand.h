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

/// "qmVellixExport": writes the drawing of a camera, composed at every frame of a range (by default the
/// playback range; both ends included). Output is numbered PNG files, transparent or on an opaque background,
/// a movie at the scene's frame rate, or both, and on request a contact sheet of all frames. Ghosts are left
/// out unless requested. Changes neither the current time nor the drawing, so there is nothing to undo. The
/// result is the list of written files.
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
    bool CheckFiles() const;
    bool CheckMovie() const;
    bool WriteAll(const LayerManager& layers);
    QImage Compose(const LayerManager& layers, int frame) const;

    QString m_pattern;
    QString m_camera;
    QString m_contactSheet;
    QString m_movie;
    MTime m_startTime;
    MTime m_endTime;
    int m_start = 0; // whole frames
    int m_end = 0;
    bool m_ghosting = false;
    bool m_hasBackground = false;
    int m_red = 0;
    int m_green = 0;
    int m_blue = 0;
    QStringList m_files;
};

} // namespace vellix
