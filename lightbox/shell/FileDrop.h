#pragma once

#include <QObject>
#include <QStringList>

#include <string>

class QMimeData;
class QWidget;

namespace lightbox {

class Host;

/// Files that are dropped onto the window: a scene (.ma, .lbx) is opened, after the question about unsaved
/// changes; a script (.mel) is run; with any other file is done what a plug-in offers for its suffix (see
/// addPluginActions). Each is done as the typed line would do it, so that it is undone, logged and refused
/// alike.
class FileDrop : public QObject {
    Q_OBJECT
public:
    /// The window owns it.
    FileDrop(Host& host, QWidget& window);

    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    /// The files that mean something here; none when one of them does not, or when there are several scenes.
    QStringList FilesOf(const QMimeData& data) const;
    /// The command of a plug-in that takes such a file; empty when there is none.
    std::string ActionFor(const QString& path) const;
    void Take(const QString& path);

    Host& host_;
};

} // namespace lightbox
