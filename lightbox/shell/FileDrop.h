#pragma once

#include <QObject>
#include <QStringList>

#include <string>

class QMimeData;
class QWidget;

namespace lightbox {

class Host;

/// Handles files dropped onto the window. A scene (.ma, .lbx) is opened, after the question about unsaved
/// changes; a script (.mel) is run; any other file is passed to the action that a plug-in offers for its
/// suffix (see addPluginActions), as an array of strings. Each is done through a MEL command, so undo, log
/// and errors work as for a typed line.
class FileDrop : public QObject {
    Q_OBJECT
public:
    /// The window owns the object.
    FileDrop(Host& host, QWidget& window);

    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    /// The dropped files, a scene first. Empty when one of them cannot be handled or when there are several
    /// scenes.
    QStringList FilesOf(const QMimeData& data) const;
    /// The plug-in command for files of that suffix; empty when there is none.
    std::string ActionFor(const QString& path) const;
    /// Takes the files in their order. Those of one action that follow each other are passed to it together.
    void Take(const QStringList& files);

    Host& host_;
};

} // namespace lightbox
