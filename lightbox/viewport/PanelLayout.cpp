#include "viewport/PanelLayout.h"

#include "scene/CameraView.h"
#include "viewport/ViewportPanel.h"
#include "viewport/ViewportPanels.h"
#include "viewport/ViewportWidget.h"

#include <QDataStream>
#include <QSplitter>
#include <QVBoxLayout>

#include <algorithm>

namespace lightbox {

namespace {

constexpr quint32 STATE_MARK = 0x4c50414e;

struct Cell {
    const char* panel;
    const char* camera;
    const char* label;
};

/// The panels row by row, with their MEL names.
constexpr Cell CELLS[] = {{"modelPanel1", "top", "Top View"},
                          {"modelPanel4", "persp", "Persp View"},
                          {"modelPanel3", "front", "Front View"},
                          {"modelPanel2", "side", "Side View"}};

QSplitter* MakeSplitter(Qt::Orientation orientation) {
    auto* const splitter = new QSplitter(orientation);
    splitter->setHandleWidth(3);
    splitter->setChildrenCollapsible(false);
    return splitter;
}

} // namespace

PanelLayout::PanelLayout(ViewportPanels& panels, QWidget* parent)
    : QWidget(parent)
    , panels_(panels) {
    panels.SetLayout(this);
    setObjectName("viewPanes");
    auto* const layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    rows_ = MakeSplitter(Qt::Vertical);
    layout->addWidget(rows_);
    for (std::size_t row = 0; row < 2; ++row) {
        columns_[row] = MakeSplitter(Qt::Horizontal);
        rows_->addWidget(columns_[row]);
        for (std::size_t column = 0; column < 2; ++column) {
            const Cell& cell = CELLS[row * 2 + column];
            ViewportPanel& panel = panels.Create(cell.panel, columns_[row]);
            panel.SetLabel(cell.label);
            panel.LookThrough(cell.camera);
            columns_[row]->addWidget(&panel);
            cells_[row * 2 + column] = &panel;
        }
        columns_[row]->setSizes({1000, 1000});
        connect(columns_[row], &QSplitter::splitterMoved, this,
                [this, row] { columns_[1 - row]->setSizes(columns_[row]->sizes()); });
    }
    rows_->setSizes({1000, 1000});
    panels.SetActive(*cells_[1]);
    Arrange(Arrangement::Single);
}

void PanelLayout::Arrange(Arrangement arrangement) {
    const auto found = std::find(cells_.begin(), cells_.end(), panels_.Active());
    // When a floating panel is active, use the perspective view.
    const std::size_t active = found == cells_.end() ? 1 : static_cast<std::size_t>(found - cells_.begin());
    const auto isShown = [&](std::size_t cell) {
        switch (arrangement) {
        case Arrangement::Single:
            return cell == active;
        case Arrangement::TwoSideBySide:
            return cell / 2 == active / 2;
        case Arrangement::TwoStacked:
            return cell % 2 == active % 2;
        case Arrangement::Four:
            break;
        }
        return true;
    };
    for (std::size_t row = 0; row < 2; ++row) {
        columns_[row]->setVisible(isShown(row * 2) || isShown(row * 2 + 1));
        for (std::size_t column = 0; column < 2; ++column) {
            cells_[row * 2 + column]->setVisible(isShown(row * 2 + column));
        }
    }
    arrangement_ = arrangement;
    Q_EMIT Arranged();
}

void PanelLayout::ToggleSingle() {
    if (arrangement_ == Arrangement::Single) {
        Arrange(before_);
        return;
    }
    ViewportPanel* const pointed = panels_.UnderPointer();
    if (pointed && std::find(cells_.begin(), cells_.end(), pointed) != cells_.end()) {
        panels_.SetActive(*pointed);
    }
    before_ = arrangement_;
    Arrange(Arrangement::Single);
}

QByteArray PanelLayout::Save() const {
    QByteArray state;
    QDataStream stream(&state, QIODevice::WriteOnly);
    stream.setVersion(QDataStream::Qt_5_6);
    const auto active = std::find(cells_.begin(), cells_.end(), panels_.Active());
    stream << STATE_MARK << static_cast<qint32>(arrangement_) << static_cast<qint32>(before_)
           << static_cast<qint32>(active - cells_.begin()) << rows_->saveState() << columns_[0]->saveState();
    return state;
}

bool PanelLayout::Restore(const QByteArray& state) {
    QDataStream stream(state);
    stream.setVersion(QDataStream::Qt_5_6);
    quint32 mark = 0;
    qint32 arrangement = -1;
    qint32 before = -1;
    qint32 active = -1;
    QByteArray rows;
    QByteArray columns;
    stream >> mark >> arrangement >> before >> active >> rows >> columns;
    const auto isKnown = [](qint32 value) {
        return value >= 0 && value <= static_cast<qint32>(Arrangement::Four);
    };
    if (stream.status() != QDataStream::Ok || mark != STATE_MARK || !isKnown(arrangement) ||
        !isKnown(before)) {
        return false;
    }
    if (active >= 0 && active < static_cast<qint32>(cells_.size())) {
        panels_.SetActive(*cells_[static_cast<std::size_t>(active)]);
    }
    rows_->restoreState(rows);
    for (QSplitter* const splitter : columns_) {
        splitter->restoreState(columns);
    }
    before_ = static_cast<Arrangement>(before);
    Arrange(static_cast<Arrangement>(arrangement));
    return true;
}

} // namespace lightbox
