#pragma once

#include <QtGlobal>

namespace vellix {

/// When the frames of the active layer are marked over the time slider. The values persist in the settings.
enum class TimelineFrameDisplay : qint32 {
    Always = 0,
    SelectionOrContext = 1, ///< while the drawing node is selected or the draw tool is current
    Off = 2
};

} // namespace vellix
