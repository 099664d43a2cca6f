#pragma once

#include "controls/Control.h"
#include "controls/ControlType.h"

#include <map>

class QGridLayout;

namespace lightbox {

/// A layout that fills rows or columns of cells with its children in the order they come. Columns are counted
/// from 1, as scripts count them.
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
    /// Number of columns, or with `byColumn` of rows.
    int count = 1;
    bool byColumn = false;
    /// The column that takes the room that is left; 0 for none.
    int adjustable = 0;
    std::map<int, Column> columns;
    /// For columns that are not in the table.
    Column usual;
    /// The size of all cells; 0 leaves it to the children.
    int cellWidth = 0;
    int cellHeight = 0;

    void SetSpacing(int rows, int columns);
    /// Lays the children out anew after a change of the above.
    void Arrange();

private:
    const Column& ColumnOf(int number) const;
    /// Row and column of a child, from 0.
    std::pair<int, int> CellOf(const Control& child) const;

    QGridLayout* grid_;
};

} // namespace lightbox
