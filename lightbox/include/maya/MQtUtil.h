#pragma once

#include <maya/MString.h>

#include <QString>

class QWidget;

/// The way between the host's user interface and Qt.
class MQtUtil {
public:
    static QString toQString(const MString& mstr);
    static MString toMString(const QString& qstr);
    /// The main window; null in batch.
    static QWidget* mainWindow();
    /// The widget of a control that MEL created under that name; null when there is none, and in batch. Not
    /// owned.
    static QWidget* findControl(MString controlName, const QWidget* ancestor = nullptr);
};
