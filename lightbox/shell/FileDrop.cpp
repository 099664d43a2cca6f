#include "shell/FileDrop.h"

#include "mel/Interpreter.h"
#include "scene/Host.h"
#include "scene/Output.h"
#include "scene/UserInterface.h"
#include "text/Quoted.h"

#include <QDropEvent>
#include <QFileInfo>
#include <QMimeData>
#include <QTimer>
#include <QUrl>
#include <QWidget>

namespace lightbox {

namespace {

bool IsScene(const QString& path) {
    const QString suffix = QFileInfo(path).suffix().toLower();
    return suffix == "ma" || suffix == "lbx";
}

bool IsScript(const QString& path) {
    return QFileInfo(path).suffix().toLower() == "mel";
}

} // namespace

FileDrop::FileDrop(Host& host, QWidget& window)
    : QObject(&window)
    , host_(host) {
    window.setAcceptDrops(true);
    window.installEventFilter(this);
}

QStringList FileDrop::FilesOf(const QMimeData& data) const {
    QStringList files;
    int scenes = 0;
    for (const QUrl& url : data.urls()) {
        const QString path = url.toLocalFile();
        scenes += IsScene(path) ? 1 : 0;
        const bool isKnown = IsScene(path) || IsScript(path) || !ActionFor(path).empty();
        if (path.isEmpty() || scenes > 1 || !isKnown) {
            return {};
        }
        // Open the scene first, since the other files are meant for it.
        files.insert(IsScene(path) ? 0 : files.size(), path);
    }
    return files;
}

std::string FileDrop::ActionFor(const QString& path) const {
    const QString suffix = QFileInfo(path).suffix().toLower();
    if (suffix.isEmpty()) {
        return {};
    }
    try {
        constexpr std::size_t command = 3;
        const mel::Value actions =
            host_.interpreter().Call("lightboxActions", {mel::Value("drop." + suffix.toStdString())});
        return actions.Strings().size() > command ? actions.Strings()[command] : std::string();
    } catch (const mel::Error& error) {
        host_.interpreter().Report(error);
        return {};
    }
}

bool FileDrop::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::DragEnter || event->type() == QEvent::DragMove ||
        event->type() == QEvent::Drop) {
        auto* const drop = static_cast<QDropEvent*>(event);
        const QStringList files = FilesOf(*drop->mimeData());
        if (files.isEmpty()) {
            return QObject::eventFilter(watched, event);
        }
        drop->setDropAction(Qt::CopyAction);
        drop->accept();
        if (event->type() == QEvent::Drop) {
            // Wait for the event loop, so that our dialogs do not block the program that the files come from.
            QTimer::singleShot(0, this, [this, files] { Take(files); });
        }
        return true;
    }
    return QObject::eventFilter(watched, event);
}

void FileDrop::Take(const QStringList& files) {
    std::string action; // of the files that wait
    std::string waiting;
    const auto passOn = [this, &action, &waiting] {
        if (!waiting.empty()) {
            host_.interpreter().ExecuteReporting(action + "({" + waiting + "})");
        }
        waiting.clear();
    };
    for (const QString& path : files) {
        const std::string file = Quoted(path.toStdString());
        const std::string wanted = IsScene(path) || IsScript(path) ? std::string() : ActionFor(path);
        if (wanted != action || wanted.empty()) {
            passOn();
        }
        action = wanted;
        if (!wanted.empty()) {
            waiting += (waiting.empty() ? "" : ", ") + file;
        } else if (IsScript(path)) {
            host_.interpreter().ExecuteReporting("source " + file);
        } else if (!host_.ui()->SettleUnsavedChanges()) {
            return;
        } else {
            host_.interpreter().ExecuteReporting("file -force -open " + file);
        }
    }
    passOn();
}

} // namespace lightbox
