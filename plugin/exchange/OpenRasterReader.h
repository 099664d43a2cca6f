#pragma once

#include "exchange/LayeredReader.h"

#include <QByteArray>
#include <QString>

class QXmlStreamReader;

namespace vellix {

/// Reads OpenRaster files (.ora, version 0.0.5 of the draft): one frame, at time 0. Layers in groups come
/// under their own names, with the opacity and the visibility of their groups.
class OpenRasterReader : public LayeredReader {
public:
    explicit OpenRasterReader(const QString& path);
    explicit OpenRasterReader(const QByteArray& bytes);

private:
    void Open();
    bool ReadImage(QXmlStreamReader& xml);
    bool ReadLayers(QXmlStreamReader& xml);
    bool AddLayer(const QXmlStreamReader& xml, double groupOpacity, bool groupIsVisible);
    void CheckBlending(const QXmlStreamReader& xml);
};

} // namespace vellix
