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

BoxLayoutControl& Box(Control& control) {
    return dynamic_cast<BoxLayoutControl&>(control);
}

GridLayoutControl& Grid(Control& control) {
    return dynamic_cast<GridLayoutControl&>(control);
}

void SetMargins(BoxLayoutControl& layout, const std::string& side, int offset) {
    const bool isLeft = side == "left" || side == "both";
    const bool isRight = side == "right" || side == "both";
    layout.Box().setContentsMargins(isLeft ? offset : 0, 0, isRight ? offset : 0, 0);
    if (side == "both") {
        layout.SetStretches(true, false);
    }
}

ControlFlags ColumnFlags() {
    return {
        {"-adj",
         "-adjustableColumn",
         {ON},
         [](Control& control, const CommandCall& call) {
             Box(control).SetStretches(call.Bool("-adjustableColumn"), false);
         },
         [](Control& control) { return Value(Box(control).StretchesWidth(control)); }},
        {"-cal",
         "-columnAlign",
         {TEXT},
         [](Control& control, const CommandCall& call) {
             control.notes["-columnAlign"] = call.String("-columnAlign");
             Box(control).SetAlignment(Alignment(call.String("-columnAlign")));
         },
         [](Control& control) { return Value(control.notes["-columnAlign"]); }},
        {"-cat",
         "-columnAttach",
         {TEXT, INT},
         [](Control& control, const CommandCall& call) {
             SetMargins(Box(control), call.String("-columnAttach"), call.Int("-columnAttach", 1));
         },
         nullptr},
        {"-co",
         "-columnOffset",
         {TEXT, INT},
         [](Control& control, const CommandCall& call) {
             SetMargins(Box(control), call.String("-columnOffset"), call.Int("-columnOffset", 1));
         },
         nullptr},
        {"-cw",
         "-columnWidth",
         {INT},
         [](Control& control, const CommandCall& call) { control.SetWidth(call.Int("-columnWidth")); },
         [](Control& control) { return Value(control.RequestedWidth()); }},
        {"-rs",
         "-rowSpacing",
         {INT},
         [](Control& control, const CommandCall& call) {
             Box(control).Box().setSpacing(std::max(0, call.Int("-rowSpacing")));
         },
         [](Control& control) { return Value(Box(control).Box().spacing()); }},
    };
}

/// A flag that changes one column; its first argument is the column's number.
template <class Change>
ControlFlag EachColumn(const char* shortName, const char* longName, std::vector<MSyntax::MArgType> arguments,
                       Change change) {
    const std::string flag = longName;
    ControlFlag row{shortName, flag, std::move(arguments),
                    [flag, change](Control& control, const CommandCall& call) {
                        GridLayoutControl& grid = Grid(control);
                        for (unsigned use = 0; use < call.UseCount(flag.c_str()); ++use) {
                            const int number = call.Int(flag.c_str(), 0, use);
                            Column& column = grid.columns.try_emplace(number, grid.usual).first->second;
                            change(column, call, flag.c_str(), use);
                        }
                        grid.Arrange();
                    },
                    nullptr};
    row.isMultiUse = true;
    return row;
}

/// A flag with one argument for each of several columns: -columnWidth3 80 75 150.
template <class Change>
void AddForSeveral(ControlFlags& flags, const std::string& shortName, const std::string& longName,
                   MSyntax::MArgType type, Change change) {
    for (int count = 1; count <= MAX_COLUMNS; ++count) {
        const std::string flag = longName + std::to_string(count);
        flags.push_back({shortName + std::to_string(count), flag,
                         std::vector<MSyntax::MArgType>(static_cast<std::size_t>(count), type),
                         [flag, count, change](Control& control, const CommandCall& call) {
                             GridLayoutControl& grid = Grid(control);
                             for (int index = 0; index < count; ++index) {
                                 Column& column =
                                     grid.columns.try_emplace(index + 1, grid.usual).first->second;
                                 change(column, call.Argument(flag.c_str(), static_cast<unsigned>(index)));
                             }
                             grid.Arrange();
                         },
                         nullptr});
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
ControlFlag GridFlag(const char* shortName, const char* longName, int GridLayoutControl::*member,
                     bool isByColumn = false) {
    const std::string flag = longName;
    return {shortName,
            flag,
            {INT},
            [flag, member, isByColumn](Control& control, const CommandCall& call) {
                GridLayoutControl& grid = Grid(control);
                grid.*member = std::clamp(call.Int(flag.c_str()), 0, 10000);
                if (member == &GridLayoutControl::count) {
                    grid.byColumn = isByColumn;
                }
                grid.Arrange();
            },
            [member](Control& control) { return Value(Grid(control).*member); }};
}

/// -adjustableColumn N, and the variants with the number in the name (-adjustableColumn3).
ControlFlags AdjustableFlags() {
    ControlFlags flags = {GridFlag("-adj", "-adjustableColumn", &GridLayoutControl::adjustable)};
    for (int number = 1; number <= MAX_COLUMNS; ++number) {
        const std::string count = std::to_string(number);
        ControlFlag flag =
            GridFlag("", ("-adjustableColumn" + count).c_str(), &GridLayoutControl::adjustable);
        flag.shortName = "-ad" + count;
        flags.push_back(std::move(flag));
    }
    return flags;
}

ControlFlag SpacingFlag() {
    ControlFlag flag{"-rs",
                     "-rowSpacing",
                     {INT, INT},
                     [](Control& control, const CommandCall& call) {
                         Grid(control).SetSpacing(call.Int("-rowSpacing", 1), 0);
                     },
                     nullptr};
    flag.isMultiUse = true;
    return flag;
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
    ControlType type;
    type.name = name;
    type.family = ControlType::Family::Layout;
    type.flags = std::move(flags) + LayoutFlags();
    type.create = std::move(create);
    return type;
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
