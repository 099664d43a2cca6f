#pragma once

#include <maya/MString.h>

#include <QString>

class QWidget;

/// Access to the host's user interface in Qt.
class MQtUtil {
public:
    static QString toQString(const MString& mstr);
    static MString toMString(const QString& qstr);
    /// The main window; null in batch.
    static QWidget* mainWindow();
    /// The widget of a MEL control of that name; null when there is none, and in batch. The caller does not
    /// own it.
    static QWidget* findControl(MString controlName, const QWidget* ancestor = nullptr);
};
