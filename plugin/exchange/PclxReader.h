#pragma once

#include "exchange/LayeredReader.h"

#include <QByteArray>
#include <QString>

class QXmlStreamReader;

namespace vellix {

/// Reads animations of Pencil2D (.pclx): its bitmap layers with their keys. The canvas is the view of its
/// camera layer; positions there count from the middle of it.
class PclxReader : public LayeredReader {
public:
    explicit PclxReader(const QString& path);
    explicit PclxReader(const QByteArray& bytes);

private:
    void Open();
    bool ReadTag(QXmlStreamReader& xml);
    bool StartLayer(const QXmlStreamReader& xml);
    bool AddPicture(const QXmlStreamReader& xml);
    bool ReadCamera(const QXmlStreamReader& xml);
    bool CheckLayers();

    bool isBitmap_ = false; ///< the layer that is being read
    bool hasCamera_ = false;
};

} // namespace vellix
