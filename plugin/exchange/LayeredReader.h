#pragma once

#include "exchange/LayeredDrawing.h"
#include "exchange/ZipReader.h"
#include "paint/NonCopyable.h"

#include <QByteArray>
#include <QString>
#include <QStringList>

class QXmlStreamReader;

namespace vellix {

/// What the readers of layered archives share. Opening one reads the list of its layers; their pictures,
/// which are then without bytes, are read one at a time.
class LayeredReader : private NonCopyable {
public:
    virtual ~LayeredReader();

    /// What is wrong, in a sentence without a full stop; empty while nothing is.
    const QString& Fault() const { return fault_; }
    /// What the file holds that does not come along, in sentences.
    const QStringList& Warnings() const { return warnings_; }
    /// The layers, and their pictures without bytes. Canvas and positions are within what can be painted.
    const LayeredDrawing& Drawing() const { return drawing_; }
    /// Of the pictures in the archive, in bytes.
    qint64 ByteCount() const;

    /// Reads a picture of the drawing as PNG bytes, which are sound; none for one that the file keeps as a
    /// blank. Returns false, with Fault(), if they are missing, damaged or of more than MAX_PNG_SIDE pixels a
    /// side. Throws std::bad_alloc when memory is short.
    bool Read(const LayeredPicture& picture, QByteArray& png);

protected:
    explicit LayeredReader(const QString& path);
    explicit LayeredReader(const QByteArray& bytes);

    bool Fail(const QString& fault);
    void Warn(const QString& warning);
    /// Reads a member of text, which is no longer than descriptions of drawings are.
    bool ReadText(const QString& name, QByteArray& text);
    /// Whether the canvas can be painted. Fails if not.
    bool CheckCanvas();
    /// A position in pixels; fails for one that is no number or out of all proportion.
    bool ToPosition(const QString& text, int& position);
    /// An opacity, 0..1; fails for one that is no number.
    bool ToOpacity(const QString& text, double& opacity);
    /// Fails for XML that is not well-formed.
    bool CheckXml(const QXmlStreamReader& xml, const QString& member);
    /// Reads on to the next tag. Returns false at the end, and fails where the XML declares or uses entities
    /// of its own.
    bool NextTag(QXmlStreamReader& xml, const QString& member);

    ZipReader archive_;
    LayeredDrawing drawing_;

private:
    QString fault_;
    QStringList warnings_;
};

} // namespace vellix
