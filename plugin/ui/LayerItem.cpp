#include "ui/LayerItem.h"

#include "core/CameraHandle.h"
#include "core/LayerManager.h"
#include "core/LayerState.h"
#include "host/Guarded.h"
#include "host/GuardedConnect.h"
#include "host/Logger.h"
#include "host/MayaUtil.h"
#include "host/MenuText.h"
#include "host/panels/DialogManager.h"
#include "node/BaseNode.h"
#include "ui/CameraMenu.h"
#include "ui/DrawingMenu.h"
#include "ui/ElidedLabel.h"
#include "ui/FocusFrame.h"
#include "ui/LayerToggle.h"

#include <maya/MQtUtil.h>

#include <QApplication>
#include <QContextMenuEvent>
#include <QHBoxLayout>
#include <QLineEdit>
#include <QMenu>
#include <QMouseEvent>
#include <QPainter>

namespace vellix {

namespace {

struct StateLook {
    LayerState state;
    const char* letter;
    const char* meaning;
};

const StateLook STATES[] = {
    {LayerState::Animated, "", "Animated. Click to make it static."},
    {LayerState::Static, "S", "Static. Click to lock it."},
    {LayerState::Locked, "L", "Locked. Click to make it animated."},
};

const QString& VisibleLetter() {
    static const QString letter = QStringLiteral("V");
    return letter;
}

const QString& MarkLetter() {
    static const QString letter = QStringLiteral("G");
    return letter;
}

const StateLook& LookOf(LayerState state) {
    for (const StateLook& look : STATES) {
        if (look.state == state) {
            return look;
        }
    }
    return STATES[0];
}

/// Calls the function with the place of the layer by now, or says that it is gone.
template <typename Function>
void ForLayer(quint64 id, const Function& function) {
    const BaseNode* const node = BaseNode::GetMaster();
    const LayerPlace place = node ? node->FindLayer(static_cast<LayerId>(id)) : LayerPlace();
    if (place.layer) {
        function(place);
    } else {
        Logger::Error("Layer does not exist.");
    }
}

const LayerItem::Part PARTS[] = {LayerItem::Part::Row, LayerItem::Part::Visibility, LayerItem::Part::State,
                                 LayerItem::Part::Mark};

} // namespace

LayerItem::LayerItem(const QString& camera, int index, QWidget* parent)
    : GuardedWidget(parent)
    , camera_(camera)
    , index_(index)
    , visibility_(new LayerToggle(this))
    , state_(new LayerToggle(this))
    , name_(new ElidedLabel(this))
    , mark_(new LayerToggle(this)) {
    auto* const layout = new QHBoxLayout(this);
    layout->setContentsMargins(4, 4, 4, 4);
    layout->setSpacing(5);
    layout->addWidget(visibility_);
    layout->addWidget(state_);
    layout->addWidget(name_, 1);
    layout->addWidget(mark_);
    setAutoFillBackground(true);
    const QString name = QStringLiteral("qmVxLayer%1_%2_%3");
    const QString number = QString::number(index);
    setObjectName(name.arg(QString(), camera, number));
    visibility_->setObjectName(name.arg(QStringLiteral("Visibility"), camera, number));
    state_->setObjectName(name.arg(QStringLiteral("State"), camera, number));
    mark_->setObjectName(name.arg(QStringLiteral("Mark"), camera, number));
    ConnectGuarded(visibility_, &LayerToggle::clicked, this, &LayerItem::ToggleVisibility);
    ConnectGuarded(state_, &LayerToggle::clicked, this, &LayerItem::CycleState);
    ConnectGuarded(mark_, &LayerToggle::clicked, this, &LayerItem::ToggleMark);
    for (LayerToggle* const toggle : {visibility_, state_, mark_}) {
        toggle->installEventFilter(this);
    }
    SetTabStop(false);
    UpdateColors();
}

QString LayerItem::GetName() const {
    return name_->text();
}

void LayerItem::Show(const LayerManagerRow& row) {
    if (id_ != row.id) {
        EndRename(false);
        id_ = row.id;
    }
    if (name_->text() != row.name) {
        name_->setText(row.name);
        setAccessibleName(row.name);
    }
    visibility_->Show(row.visible ? VisibleLetter() : QString(),
                      row.visible ? QStringLiteral("Visible. Click to hide it.")
                                  : QStringLiteral("Hidden. Click to show it."));
    const StateLook& look = LookOf(row.state);
    state_->Show(QLatin1String(look.letter), QLatin1String(look.meaning));
    mark_->Show(row.marked ? MarkLetter() : QString(),
                row.marked ? QStringLiteral("Marked for ghosts. Click to unmark it.")
                           : QStringLiteral("Click to mark it for ghosts."));
}

void LayerItem::SetActive(bool active) {
    if (active_ != active) {
        active_ = active;
        UpdateColors();
    }
}

void LayerItem::UpdateColors() {
    setPalette(QPalette());
    QPalette colors = palette();
    if (active_) {
        const QWidget* const window = MQtUtil::mainWindow();
        const QPalette host = window ? window->palette() : colors;
        const QBrush& text = host.brush(QPalette::Active, QPalette::HighlightedText);
        const QBrush& back = host.brush(QPalette::Active, QPalette::Highlight);
        colors.setBrush(QPalette::Button, back);
        colors.setBrush(QPalette::Window, back);
        colors.setBrush(QPalette::WindowText, text);
        colors.setBrush(QPalette::ButtonText, text);
    } else {
        colors.setBrush(QPalette::Button, colors.brush(QPalette::Mid));
        colors.setBrush(QPalette::Window, colors.brush(QPalette::Mid));
    }
    setPalette(colors);
    // A style sheet keeps the row's palette from its children.
    const QColor text = active_ ? colors.color(QPalette::WindowText) : QColor();
    name_->SetTextColor(text);
    visibility_->SetTextColor(text);
    state_->SetTextColor(text);
    mark_->SetTextColor(text);
}

// --- actions ----------------------------------------------------------------------------------------------

void LayerItem::Activate() {
    MayaUtil::SetActiveLayer(camera_, index_);
    MayaUtil::Draw();
}

void LayerItem::OpenProperties() {
    DialogManager::ShowLayerPropertiesDialog(camera_, index_, window());
}

void LayerItem::ToggleVisibility() {
    MayaUtil::SetLayerVisible(camera_, index_, visibility_->text() != VisibleLetter());
}

void LayerItem::CycleState() {
    LayerState next = LayerState::Animated;
    if (state_->text().isEmpty()) {
        next = LayerState::Static;
    } else if (state_->text() == QLatin1String("S")) {
        next = LayerState::Locked;
    }
    MayaUtil::SetLayerState(camera_, index_, next);
}

void LayerItem::ToggleMark() {
    MayaUtil::SetLayerMarked(camera_, index_, mark_->text() != MarkLetter());
}

/// Where the layer of this row is by now; the index is negative if it is gone. The row follows later.
LayerPlace LayerItem::FindLayer() const {
    if (id_ != 0) {
        const BaseNode* const node = BaseNode::GetMaster();
        return node ? node->FindLayer(static_cast<LayerId>(id_)) : LayerPlace();
    }
    LayerPlace place;
    place.camera = camera_;
    place.index = index_;
    return place;
}

void LayerItem::BeginRename() {
    if (editor_) {
        return;
    }
    editor_ = new QLineEdit(name_->text(), this);
    editor_->setObjectName(objectName() + QStringLiteral("Name"));
    editor_->setAccessibleName(QStringLiteral("Name of the layer"));
    editor_->setGeometry(name_->geometry().adjusted(-2, -2, 0, 2));
    editor_->selectAll();
    editor_->show();
    editor_->setFocus(Qt::OtherFocusReason);
    editor_->installEventFilter(this);
    ConnectGuarded(editor_, &QLineEdit::editingFinished, this, [this] { EndRename(true); });
}

void LayerItem::EndRename(bool keep) {
    if (!editor_) {
        return;
    }
    QLineEdit* const editor = editor_;
    editor_ = nullptr; // hiding it ends the editing once more
    const QString name = editor->text();
    const bool hadFocus = editor->hasFocus();
    editor->hide();
    editor->deleteLater();
    if (hadFocus) {
        setFocus(Qt::OtherFocusReason);
    }
    const LayerPlace place = FindLayer();
    if (keep && !name.trimmed().isEmpty() && name != name_->text() && place.index >= 0) {
        MayaUtil::SetLayerName(place.camera, place.index, name);
    }
}

void LayerItem::mousePressEvent(QMouseEvent* event) {
    if (event->button() == Qt::LeftButton) {
        setFocus(Qt::MouseFocusReason);
        press_ = event->pos();
        Activate();
    }
}

void LayerItem::mouseMoveEvent(QMouseEvent* event) {
    const bool isFar = (event->pos() - press_).manhattanLength() >= QApplication::startDragDistance();
    if ((event->buttons() & Qt::LeftButton) != 0 && (isDragged_ || isFar)) {
        if (!isDragged_) {
            isDragged_ = true;
            setCursor(Qt::ClosedHandCursor);
            Q_EMIT DragStarted(this);
        }
        Q_EMIT DragMoved(event->globalPos());
    }
}

void LayerItem::mouseReleaseEvent(QMouseEvent* event) {
    if (event->button() == Qt::LeftButton) {
        EndDrag(true);
    }
}

void LayerItem::EndDrag(bool drop) {
    if (isDragged_) {
        isDragged_ = false;
        unsetCursor();
        Q_EMIT DragEnded(drop);
    }
}

void LayerItem::mouseDoubleClickEvent(QMouseEvent* event) {
    if (event->button() == Qt::LeftButton) {
        OpenProperties();
    }
}

void LayerItem::contextMenuEvent(QContextMenuEvent* event) {
    // While the menu is open the row may be deleted, and its layer may get another place.
    const QString camera = camera_;
    const quint64 id = id_;
    auto* const menu = new QMenu(window());
    menu->setAttribute(Qt::WA_DeleteOnClose);
    QWidget* const panel = window();
    ConnectGuarded(menu->addAction(QStringLiteral("%1...").arg(MenuText(GetName()))), &QAction::triggered,
                   panel, [id, panel] {
                       ForLayer(id, [panel](const LayerPlace& place) {
                           DialogManager::ShowLayerPropertiesDialog(place.camera, place.index, panel);
                       });
                   });
    menu->addSeparator();
    CameraMenu::Add(*menu, QStringLiteral("Move layer to         "), camera, [id](const QString& chosen) {
        ForLayer(id, [&chosen](const LayerPlace& place) {
            if (place.camera != chosen) {
                MayaUtil::MoveLayer(place.camera, place.index, chosen, -1);
            }
        });
    });
    const CameraHandle mover(camera);
    CameraMenu::Add(*menu, QStringLiteral("Move all layers to         "), camera,
                    [mover](const QString& chosen) { MayaUtil::MoveAllLayers(mover.Name(), chosen); });
    menu->addSeparator();
    QAction* const mark = menu->addAction(QStringLiteral("Mark Layer"));
    mark->setCheckable(true);
    mark->setChecked(mark_->text() == MarkLetter());
    ConnectGuarded(mark, &QAction::triggered, panel, [id](bool on) {
        ForLayer(id,
                 [on](const LayerPlace& place) { MayaUtil::SetLayerMarked(place.camera, place.index, on); });
    });
    DrawingMenu::Add(*menu);
    const bool byKey = event->reason() == QContextMenuEvent::Keyboard;
    menu->popup(byKey ? mapToGlobal(rect().bottomLeft()) : event->globalPos());
}

// --- keyboard ---------------------------------------------------------------------------------------------

void LayerItem::SetTabStop(bool stop) {
    setFocusPolicy(stop ? Qt::StrongFocus : Qt::ClickFocus);
    for (LayerToggle* const toggle : {visibility_, state_, mark_}) {
        toggle->setFocusPolicy(stop ? Qt::StrongFocus : Qt::ClickFocus);
    }
}

void LayerItem::PlaceInTabOrder(QWidget* after) {
    for (const Part part : PARTS) {
        QWidget* const widget = GetWidget(part);
        setTabOrder(after, widget);
        after = widget;
    }
}

QWidget* LayerItem::GetWidget(Part part) const {
    switch (part) {
    case Part::Visibility:
        return visibility_;
    case Part::State:
        return state_;
    case Part::Mark:
        return mark_;
    case Part::Row:
        break;
    }
    return const_cast<LayerItem*>(this);
}

void LayerItem::FocusPart(Part part, Qt::FocusReason reason) {
    GetWidget(part)->setFocus(reason);
}

bool LayerItem::GetFocusedPart(Part& part) const {
    for (const Part candidate : PARTS) {
        if (GetWidget(candidate)->hasFocus()) {
            part = candidate;
            return true;
        }
    }
    return false;
}

bool LayerItem::HandleEvent(QEvent* event) {
    if (event->type() == QEvent::ShortcutOverride) {
        // Delete is a shortcut of the host as well, which would delete what is selected in the scene.
        const auto& key = *static_cast<QKeyEvent*>(event);
        if (key.modifiers() == Qt::NoModifier && (key.key() == Qt::Key_Delete || key.key() == Qt::Key_F2)) {
            event->accept();
            return true;
        }
    }
    return GuardedWidget::HandleEvent(event);
}

void LayerItem::keyPressEvent(QKeyEvent* event) {
    const int key = event->key();
    if (hasFocus() && (key == Qt::Key_Space || key == Qt::Key_Return || key == Qt::Key_Enter)) {
        Activate();
        return;
    }
    if (key == Qt::Key_Escape && isDragged_) {
        EndDrag(false);
        return;
    }
    Part part = Part::Row;
    if (key == Qt::Key_F2) {
        BeginRename();
        return;
    }
    if (key == Qt::Key_Delete) {
        MayaUtil::RemoveLayer(camera_, index_);
        return;
    }
    if ((key == Qt::Key_Left || key == Qt::Key_Right) && GetFocusedPart(part)) {
        const int count = static_cast<int>(sizeof(PARTS) / sizeof(PARTS[0]));
        const int step = key == Qt::Key_Right ? 1 : -1;
        FocusPart(PARTS[qBound(0, static_cast<int>(part) + step, count - 1)], Qt::OtherFocusReason);
        return;
    }
    QWidget::keyPressEvent(event);
}

bool LayerItem::eventFilter(QObject* watched, QEvent* event) {
    bool isHandled = false;
    RunGuarded("The panel", [&] { isHandled = FilterEvent(watched, event); });
    return isHandled;
}

bool LayerItem::FilterEvent(QObject* watched, QEvent* event) {
    if (watched == editor_ && editor_) {
        const bool isKey = event->type() == QEvent::KeyPress || event->type() == QEvent::ShortcutOverride;
        if (isKey && static_cast<QKeyEvent*>(event)->key() == Qt::Key_Escape) {
            event->accept();
            if (event->type() == QEvent::KeyPress) {
                EndRename(false);
            }
            return true;
        }
    } else if (event->type() == QEvent::FocusIn) {
        Q_EMIT Focused(this);
    }
    return QWidget::eventFilter(watched, event);
}

void LayerItem::focusInEvent(QFocusEvent* event) {
    Q_EMIT Focused(this);
    QWidget::focusInEvent(event);
    update();
}

void LayerItem::focusOutEvent(QFocusEvent* event) {
    QWidget::focusOutEvent(event);
    update();
}

void LayerItem::paintEvent(QPaintEvent*) {
    if (hasFocus()) {
        QPainter painter(this);
        FocusFrame::Draw(painter, rect().adjusted(1, 1, -1, -1), palette(),
                         active_ ? QPalette::WindowText : QPalette::Highlight);
    }
}

} // namespace vellix
