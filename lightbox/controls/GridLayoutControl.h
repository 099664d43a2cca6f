#pragma once

#include "controls/Control.h"
#include "controls/ControlType.h"

#include <map>

class QGridLayout;

namespace lightbox {

/// A layout that puts its children into the cells of a grid, row by row or column by column. Columns are
/// counted from 1, as scripts count them.
class GridLayoutControl : public Control {
public:
    explicit GridLayoutControl(const ControlCreation& creation);

    void AddChild(Control& child) override;
    void RemoveChild(Control& child) override;
    bool StretchesWidth(const Control& child) const override;
    bool StretchesHeight(const Control& child) const override;
    bool TakesChildren() const override { return true; }

    struct Column {
        /// In pixels; 0 takes what its children need.
        int width = 0;
        Qt::Alignment alignment = Qt::AlignLeft;
        bool fills = false;
        int offset = 0;
    };
    /// The number of columns; with `byColumn`, the number of rows.
    int count = 1;
    bool byColumn = false;
    /// The column that takes the remaining width; 0 for none.
    int adjustable = 0;
    std::map<int, Column> columns;
    /// The settings of columns that `columns` does not contain.
    Column usual;
    /// The size of all cells in pixels; 0 leaves it to the children.
    int cellWidth = 0;
    int cellHeight = 0;

    void SetSpacing(int rows, int columns);
    /// Lays the children out again after any of the members above changed.
    void Arrange();

private:
    const Column& ColumnOf(int number) const;
    /// Row and column of a child, from 0.
    std::pair<int, int> CellOf(const Control& child) const;

    QGridLayout* grid_;
};

} // namespace lightbox
