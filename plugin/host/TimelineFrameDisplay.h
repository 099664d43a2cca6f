#pragma once

#include <QtGlobal>

namespace vellix {

/// When the active layer's frames are marked over the time slider. The values are stored in the settings
/// file.
enum class TimelineFrameDisplay : qint32 {
    Always = 0,
    SelectionOrContext = 1, ///< while the drawing node is selected or the draw tool is current
    Off = 2
};

} // namespace vellix
