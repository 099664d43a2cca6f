#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>
#include <QTemporaryDir>

/// Runs the built program without a window, as from a shell, in a temporary folder.
class Lightbox {
public:
    struct Result {
        int status = -1; ///< -1 if the program did not end by itself
        QByteArray output;
        QByteArray errors;
    };

    Result Run(const QStringList& arguments) const;
    /// Runs MEL from a script file. The program must end with status 0.
    Result RunScript(const QByteArray& mel) const;

    QString Path(const QString& name) const { return folder_.filePath(name); }
    QByteArray Read(const QString& name) const;
    void Write(const QString& name, const QByteArray& content) const;
    /// The names and contents of the files in a folder, sorted by name.
    QByteArray ReadFolder(const QString& name) const;
    /// The text of the drawing in a saved Maya ASCII scene.
    QByteArray ReadDrawing(const QString& scene) const;

private:
    QTemporaryDir folder_;
};
