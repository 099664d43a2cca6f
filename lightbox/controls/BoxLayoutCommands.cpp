// columnLayout, rowLayout, rowColumnLayout, gridLayout, flowLayout.

#include "controls/BoxLayoutControl.h"
#include "controls/ControlRegistry.h"
#include "controls/FlagTypes.h"
#include "controls/GridLayoutControl.h"
#include "controls/Registration.h"
#include "controls/WindowCommandTable.h"
#include "mel/Error.h"

#include <algorithm>

namespace lightbox {

namespace {

using mel::CommandCall;
using mel::Value;
using Column = GridLayoutControl::Column;

Qt::Alignment Alignment(const std::string& text) {
    return text == "right" ? Qt::AlignRight : text == "center" ? Qt::AlignHCenter : Qt::AlignLeft;
}

GridLayoutControl& Grid(Control& control) {
    return dynamic_cast<GridLayoutControl&>(control);
}

/// A flag with a side and the margin there, in pixels.
ControlFlag SideMarginFlag(const char* shortName, const char* longName) {
    const std::string flag = longName;
    return {shortName,
            flag,
            {TEXT, INT},
            [flag](Control& control, const CommandCall& call) {
                const std::string& side = call.String(flag.c_str());
                const int offset = call.Int(flag.c_str(), 1);
                const bool isLeft = side == "left" || side == "both";
                const bool isRight = side == "right" || side == "both";
                auto& layout = dynamic_cast<BoxLayoutControl&>(control);
                layout.Box().setContentsMargins(isLeft ? offset : 0, 0, isRight ? offset : 0, 0);
                if (side == "both") {
                    layout.SetStretches(true, false);
                }
            },
            nullptr};
}

ControlFlags ColumnFlags() {
    return {
        ValueFlag<BoxLayoutControl, bool>(
            "-adj", "-adjustableColumn",
            [](BoxLayoutControl& layout, bool on) { layout.SetStretches(on, false); },
            [](const BoxLayoutControl& layout) { return layout.StretchesWidth(layout); }),
        NoteFlag("-cal", "-columnAlign", TEXT,
                 [](Control& control, const std::string& side) {
                     dynamic_cast<BoxLayoutControl&>(control).SetAlignment(Alignment(side));
                 }),
        SideMarginFlag("-cat", "-columnAttach"),
        SideMarginFlag("-co", "-columnOffset"),
        ValueFlag<Control, int>("-cw", "-columnWidth", &Control::SetWidth, &Control::RequestedWidth),
        ValueFlag<BoxLayoutControl, int>(
            "-rs", "-rowSpacing",
            [](const BoxLayoutControl& layout, int pixels) { layout.Box().setSpacing(std::max(0, pixels)); },
            [](const BoxLayoutControl& layout) { return layout.Box().spacing(); }),
    };
}

/// The settings of a column, counted from 1.
Column& ColumnOf(GridLayoutControl& grid, int number) {
    return grid.columns.try_emplace(number, grid.usual).first->second;
}

/// A flag that changes one column; its first argument is the column's number.
template <class Change>
ControlFlag EachColumn(const char* shortName, const char* longName, std::vector<MSyntax::MArgType> arguments,
                       Change change) {
    return MultiFlag(shortName, longName, std::move(arguments),
                     [longName, change](Control& control, const CommandCall& call, unsigned use) {
                         GridLayoutControl& grid = Grid(control);
                         change(ColumnOf(grid, call.Int(longName, 0, use)), call, longName, use);
                         grid.Arrange();
                     });
}

/// Flags with one argument for each of several columns: -columnWidth3 80 75 150.
template <class Change>
void AddForSeveral(ControlFlags& flags, const std::string& shortName, const std::string& longName,
                   MSyntax::MArgType type, Change change) {
    for (int count = 1; count <= MAX_COLUMNS; ++count) {
        flags.push_back(SeveralFlag(shortName, longName, count, type,
                                    [change](Control& control, int number, const Value& value) {
                                        GridLayoutControl& grid = Grid(control);
                                        change(ColumnOf(grid, number), value);
                                        grid.Arrange();
                                    }));
    }
}

void Attach(Column& column, const std::string& side, int offset) {
    column.fills = side == "both";
    column.alignment = side == "right" ? Qt::AlignRight : Qt::AlignLeft;
    column.offset = std::max(0, offset);
}

ControlFlags GridColumnFlags() {
    ControlFlags flags = {
        EachColumn("-cw", "-columnWidth", {INT, INT},
                   [](Column& column, const CommandCall& call, const char* flag, unsigned use) {
                       column.width = std::max(0, call.Int(flag, 1, use));
                   }),
        EachColumn("-cal", "-columnAlign", {INT, TEXT},
                   [](Column& column, const CommandCall& call, const char* flag, unsigned use) {
                       column.alignment = Alignment(call.String(flag, 1, use));
                   }),
        EachColumn("-cat", "-columnAttach", {INT, TEXT, INT},
                   [](Column& column, const CommandCall& call, const char* flag, unsigned use) {
                       Attach(column, call.String(flag, 1, use), call.Int(flag, 2, use));
                   }),
        EachColumn("-co", "-columnOffset", {INT, TEXT, INT},
                   [](Column& column, const CommandCall& call, const char* flag, unsigned use) {
                       column.offset = std::max(0, call.Int(flag, 2, use));
                   }),
        CreateFlag("-rat", "-rowAttach", {INT, TEXT, INT}),
    };
    flags.back().isMultiUse = true;
    AddForSeveral(flags, "-cw", "-columnWidth", INT,
                  [](Column& column, const Value& value) { column.width = std::max(0, value.AsInt()); });
    AddForSeveral(flags, "-cl", "-columnAlign", TEXT,
                  [](Column& column, const Value& value) { column.alignment = Alignment(value.AsString()); });
    AddForSeveral(flags, "-ct", "-columnAttach", TEXT, [](Column& column, const Value& value) {
        Attach(column, value.AsString(), column.offset);
    });
    AddForSeveral(flags, "-co", "-columnOffset", INT,
                  [](Column& column, const Value& value) { column.offset = std::max(0, value.AsInt()); });
    return flags;
}

/// A flag for an integer member of the grid.
ControlFlag GridFlag(const std::string& shortName, const std::string& longName,
                     int GridLayoutControl::*member, bool isByColumn = false) {
    return ValueFlag<GridLayoutControl, int>(
        shortName, longName,
        [member, isByColumn](GridLayoutControl& grid, int value) {
            grid.*member = std::clamp(value, 0, 10000);
            if (member == &GridLayoutControl::count) {
                grid.byColumn = isByColumn;
            }
            grid.Arrange();
        },
        member);
}

/// -adjustableColumn N, and the variants with the number in the name (-adjustableColumn3).
ControlFlags AdjustableFlags() {
    ControlFlags flags = {GridFlag("-adj", "-adjustableColumn", &GridLayoutControl::adjustable)};
    for (int number = 1; number <= MAX_COLUMNS; ++number) {
        const std::string count = std::to_string(number);
        flags.push_back(GridFlag("-ad" + count, "-adjustableColumn" + count, &GridLayoutControl::adjustable));
    }
    return flags;
}

ControlFlag SpacingFlag() {
    return MultiFlag("-rs", "-rowSpacing", {INT, INT},
                     [](Control& control, const CommandCall& call, unsigned) {
                         Grid(control).SetSpacing(call.Int("-rowSpacing", 1), 0);
                     });
}

ControlFlag CellSizeFlag() {
    return {"-cwh",
            "-cellWidthHeight",
            {INT, INT},
            [](Control& control, const CommandCall& call) {
                Grid(control).cellWidth = std::clamp(call.Int("-cellWidthHeight", 0), 0, 10000);
                Grid(control).cellHeight = std::clamp(call.Int("-cellWidthHeight", 1), 0, 10000);
                Grid(control).Arrange();
            },
            [](Control& control) {
                return Value(Value::IntArray{Grid(control).cellWidth, Grid(control).cellHeight});
            }};
}

ControlType Layout(const char* name, ControlFlags flags,
                   std::function<std::unique_ptr<Control>(const ControlCreation&)> create) {
    return {name, ControlType::Family::Layout, std::move(flags) + LayoutFlags(), std::move(create)};
}

std::unique_ptr<GridLayoutControl> NewGrid(const ControlCreation& creation, bool fills) {
    auto grid = std::make_unique<GridLayoutControl>(creation);
    grid->usual.fills = fills;
    return grid;
}

} // namespace

void RegisterBoxLayoutCommands(WindowCommandTable& table) {
    table.Add(Layout("columnLayout", ColumnFlags(), [](const ControlCreation& creation) {
        return std::make_unique<BoxLayoutControl>(creation, Qt::Vertical);
    }));
    table.Add(Layout(
        "flowLayout",
        {NoteFlag("-wr", "-wrap", ON), NoteFlag("-vr", "-vertical", ON),
         NoteFlag("-cs", "-columnSpacing", INT)},
        [](const ControlCreation& creation) {
            const bool isVertical = creation.call.Has("-vertical") && creation.call.Bool("-vertical");
            return std::make_unique<BoxLayoutControl>(creation, isVertical ? Qt::Vertical : Qt::Horizontal);
        }));
    const ControlFlag columns = GridFlag("-nc", "-numberOfColumns", &GridLayoutControl::count);
    const ControlFlag rows = GridFlag("-nr", "-numberOfRows", &GridLayoutControl::count, true);
    table.Add(Layout("rowLayout", ControlFlags{columns} + AdjustableFlags() + GridColumnFlags(),
                     [](const ControlCreation& creation) { return NewGrid(creation, false); }));
    table.Add(Layout("rowColumnLayout",
                     ControlFlags{columns, rows, SpacingFlag()} + AdjustableFlags() + GridColumnFlags(),
                     [](const ControlCreation& creation) { return NewGrid(creation, true); }));
    table.Add(
        Layout("gridLayout",
               {columns, rows, CellSizeFlag(), GridFlag("-cw", "-cellWidth", &GridLayoutControl::cellWidth),
                GridFlag("-ch", "-cellHeight", &GridLayoutControl::cellHeight),
                NoteFlag("-ag", "-autoGrow", ON), NoteFlag("-acv", "-allowEmptyCells", ON)},
               [](const ControlCreation& creation) {
                   auto grid = NewGrid(creation, true);
                   constexpr int usualCell = 90;
                   constexpr int usualHeight = 25;
                   grid->cellWidth = usualCell;
                   grid->cellHeight = usualHeight;
                   return grid;
               }));
}

} // namespace lightbox
