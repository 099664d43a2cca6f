#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>
#include <QTemporaryDir>

/// A folder of its own, and the built program run in it without a window, as from a shell.
class Lightbox {
public:
    struct Result {
        int status = -1; ///< -1 when the program did not end by itself
        QByteArray output;
        QByteArray errors;
    };

    Result Run(const QStringList& arguments) const;
    /// Runs MEL from a script file; the program has to end well.
    Result RunScript(const QByteArray& mel) const;

    QString Path(const QString& name) const { return folder_.filePath(name); }
    QByteArray Read(const QString& name) const;
    void Write(const QString& name, const QByteArray& content) const;
    /// The names and contents of the files in a folder, sorted by name.
    QByteArray ReadFolder(const QString& name) const;
    /// How the drawing stands in a saved Maya ASCII scene.
    QByteArray ReadDrawing(const QString& scene) const;

private:
    QTemporaryDir folder_;
};
