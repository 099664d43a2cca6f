#include "shell/MainWindow.h"

#include "formats/SceneFiles.h"
#include "scene/EventBus.h"
#include "scene/Host.h"
#include "scene/OptionVars.h"
#include "shell/RecentFiles.h"
#include "shell/UnsavedChanges.h"
#include "viewport/PanelLayout.h"
#include "viewport/ViewportPanels.h"

#include <QCloseEvent>
#include <QFileInfo>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QMenuBar>
#include <QScreen>
#include <QVBoxLayout>

namespace lightbox {

namespace {

const char* const GEOMETRY_VARIABLE = "lightboxWindowGeometry";
const char* const PANELS_VARIABLE = "lightboxWindowPanels";

QWidget* MakePlace(const char* name, QVBoxLayout* column) {
    auto* const place = new QWidget;
    place->setObjectName(name);
    auto* const layout = new QVBoxLayout(place);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    column->addWidget(place);
    return place;
}

QByteArray StoredBytes(const OptionVars& variables, const char* name) {
    const OptionVars::Value* const value = variables.Find(name);
    const auto* text = value ? std::get_if<std::string>(value) : nullptr;
    return text ? QByteArray::fromBase64(QByteArray::fromStdString(*text)) : QByteArray();
}

} // namespace

MainWindow::MainWindow(Host& host)
    : host_(host) {
    setObjectName("MayaWindow");
    menuBar()->setNativeMenuBar(false);
    recent_ = new RecentFiles(host, this);
    panels_ = new ViewportPanels(host, this);
    auto* const centre = new QWidget;
    auto* const column = new QVBoxLayout(centre);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(0);
    shelf_ = MakePlace("shelfArea", column);
    layout_ = new PanelLayout(*panels_);
    column->addWidget(layout_, 1);
    time_ = MakePlace("timeArea", column);
    command_ = MakePlace("commandArea", column);
    setCentralWidget(centre);
    resize(1280, 860);
    for (const char* event : {"SceneOpened", "SceneSaved", "NewSceneOpened", "SceneImported"}) {
        callbacks_.push_back(host.events().AddCallback(event, [this] { UpdateTitle(); }));
    }
    UpdateTitle();
}

MainWindow::~MainWindow() {
    for (const std::intptr_t callback : callbacks_) {
        host_.events().Remove(callback);
    }
}

QWidget* MainWindow::PlaceOf(Place place) const {
    switch (place) {
    case Place::Shelf:
        return shelf_;
    case Place::Time:
        return time_;
    case Place::Command:
        break;
    }
    return command_;
}

void MainWindow::Put(Place place, QWidget* widget) {
    PlaceOf(place)->layout()->addWidget(widget);
}

void MainWindow::SetPlaceVisible(Place place, bool visible) {
    PlaceOf(place)->setVisible(visible);
}

bool MainWindow::IsPlaceVisible(Place place) const {
    return !PlaceOf(place)->isHidden();
}

void MainWindow::RestoreState() {
    const bool isPlaced = restoreGeometry(StoredBytes(host_.optionVars(), GEOMETRY_VARIABLE));
    const QScreen* const screen = QGuiApplication::primaryScreen();
    if (!isPlaced && screen) {
        const QRect area = screen->availableGeometry();
        resize(QSize(1440, 900).boundedTo(area.size()));
        move(area.center() - rect().center());
    }
    layout_->Restore(StoredBytes(host_.optionVars(), PANELS_VARIABLE));
}

void MainWindow::SaveState() {
    const auto store = [this](const char* name, const QByteArray& bytes) {
        host_.optionVars().Set(name, bytes.toBase64().toStdString());
    };
    store(GEOMETRY_VARIABLE, saveGeometry());
    store(PANELS_VARIABLE, layout_->Save());
}

void MainWindow::ShowHelp(const QString& text) {
    Q_EMIT HelpShown(text);
}

void MainWindow::closeEvent(QCloseEvent* event) {
    // The host deletes the window after the event loop has ended.
    event->ignore();
    if (host_.QuitStatus() || UnsavedChanges::Settle(host_.files(), host_.output(), this)) {
        host_.RequestQuit(host_.QuitStatus().value_or(0));
    }
}

void MainWindow::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_Space && event->modifiers() == Qt::NoModifier && !event->isAutoRepeat()) {
        layout_->ToggleSingle();
        return;
    }
    QMainWindow::keyPressEvent(event);
}

void MainWindow::UpdateTitle() {
    const QString path = QString::fromStdString(host_.files().SceneName());
    const QString name = path.isEmpty() ? QString("untitled") : QFileInfo(path).fileName();
    setWindowTitle(name + "[*] - Lightbox");
    setWindowFilePath(path);
}

} // namespace lightbox
