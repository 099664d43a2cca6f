#include "node/LayerDataFormat.h"

#include "core/Frame.h"
#include "core/Layer.h"
#include "host/Logger.h"

namespace vellix {

void LayerDataFormat::ReportNotEncoded(const Layer& layer, const Frame& frame) {
    Logger::Error(
        QString("The picture of layer %1 at frame %2 cannot be encoded, for lack of memory. The scene "
                "cannot be saved now.")
            .arg(layer.GetName(), QString::number(frame.GetTimeValue())));
}

} // namespace vellix
