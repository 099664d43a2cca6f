#pragma once

#include <QObject>
#include <QStringList>

class QMimeData;
class QWidget;

namespace lightbox {

class Host;

/// Files that are dropped onto the window: a scene (.ma, .lbx) is opened, after the question about unsaved
/// changes; a recording (.json) is drawn on the active layer of the camera that the active view looks
/// through; a script
/// (.mel) is run. Each is done as the typed line would do it, so that it is undone, logged and refused alike.
class FileDrop : public QObject {
    Q_OBJECT
public:
    /// The window owns it.
    FileDrop(Host& host, QWidget& window);

    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    /// The files that mean something here; none when one of them does not, or when there are several scenes.
    static QStringList FilesOf(const QMimeData& data);
    void Take(const QString& path);

    Host& host_;
};

} // namespace lightbox
