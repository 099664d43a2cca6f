#include "controls/GridLayoutControl.h"

#include <QGridLayout>
#include <QWidget>

#include <algorithm>

namespace lightbox {

GridLayoutControl::GridLayoutControl(const ControlCreation& creation)
    : Control(creation, new QWidget)
    , grid_(new QGridLayout(Widget())) {
    grid_->setContentsMargins(0, 0, 0, 0);
    grid_->setSpacing(0);
}

void GridLayoutControl::AddChild(Control& child) {
    // The child has to be in the grid before Arrange() computes its cell.
    grid_->addWidget(child.Widget(), 0, 0);
    Arrange();
}

void GridLayoutControl::RemoveChild(Control& child) {
    if (QWidget* const widget = child.Widget()) {
        grid_->removeWidget(widget);
    }
}

const GridLayoutControl::Column& GridLayoutControl::ColumnOf(int number) const {
    const auto found = columns.find(number);
    return found == columns.end() ? usual : found->second;
}

std::pair<int, int> GridLayoutControl::CellOf(const Control& child) const {
    int index = 0;
    for (const Control* const other : Children()) {
        if (other == &child) {
            break;
        }
        index += other->Widget() && !other->Menu() ? 1 : 0;
    }
    const int most = std::max(1, count);
    return byColumn ? std::pair(index % most, index / most) : std::pair(index / most, index % most);
}

bool GridLayoutControl::StretchesWidth(const Control& child) const {
    const int number = CellOf(child).second + 1;
    return cellWidth > 0 || ColumnOf(number).fills || number == adjustable;
}

bool GridLayoutControl::StretchesHeight(const Control&) const {
    return cellHeight > 0;
}

void GridLayoutControl::SetSpacing(int rows, int columnSpacing) {
    grid_->setVerticalSpacing(std::max(0, rows));
    grid_->setHorizontalSpacing(std::max(0, columnSpacing));
}

void GridLayoutControl::Arrange() {
    int lastRow = 0;
    int lastColumn = 0;
    for (Control* const child : Children()) {
        QWidget* const widget = child->Widget();
        if (!widget || child->Menu()) {
            continue;
        }
        const auto [row, index] = CellOf(*child);
        const Column& column = ColumnOf(index + 1);
        const bool fills = StretchesWidth(*child);
        grid_->removeWidget(widget);
        grid_->addWidget(widget, row, index, fills ? Qt::Alignment() : column.alignment | Qt::AlignVCenter);
        const int width = cellWidth > 0 ? cellWidth : column.width;
        grid_->setColumnMinimumWidth(index, width);
        grid_->setRowMinimumHeight(row, cellHeight);
        child->ApplySize();
        if (width > 0 && index + 1 != adjustable) {
            // A column keeps its width, even if children have larger size hints.
            const int room = std::max(1, width - column.offset);
            fills ? widget->setFixedWidth(room) : widget->setMaximumWidth(room);
        }
        if (cellHeight > 0) {
            widget->setFixedHeight(cellHeight);
        }
        lastRow = std::max(lastRow, row);
        lastColumn = std::max(lastColumn, index);
    }
    for (int index = 0; index <= lastColumn; ++index) {
        grid_->setColumnStretch(index, index + 1 == adjustable ? 1 : 0);
    }
    grid_->setColumnStretch(lastColumn + 1, adjustable > 0 ? 0 : 1);
    grid_->setRowStretch(lastRow + 1, 1);
}

} // namespace lightbox
