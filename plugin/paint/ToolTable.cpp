#include "paint/ToolTable.h"

#include <algorithm>

namespace vellix {

namespace {

template <typename Condition>
const ToolRow* FindWhere(Condition condition) {
    const std::vector<ToolRow>& tools = AllTools();
    const auto found = std::find_if(tools.begin(), tools.end(), condition);
    return found != tools.end() ? &*found : nullptr;
}

} // namespace

const std::vector<ToolRow>& AllTools() {
    static const std::vector<ToolRow> tools = {
        {ToolType::Pencil, "pencil", "Pencil", "Draw thin, even lines", "-pt", "-pencilTool", "-po",
         "-pencilOptions", ToolKind::Freehand, 6, 100, ToolRow::PRESSURE, "-psp", "-pencilSizePressure",
         "-pop", "-pencilOpacityPressure"},
        {ToolType::Brush, "brush", "Brush", "Paint with a soft or hard brush", "-bt", "-brushTool", "-bo",
         "-brushOptions", ToolKind::Freehand, 6, 100,
         ToolRow::HARDNESS | ToolRow::PRESSURE | ToolRow::PRESSURE_ON, "-bsp", "-brushSizePressure", "-bop",
         "-brushOpacityPressure"},
        {ToolType::Eraser, "eraser", "Eraser", "Erase what is drawn", "-et", "-eraserTool", "-eo",
         "-eraserOptions", ToolKind::Freehand, 40, 100,
         ToolRow::HARDNESS | ToolRow::PRESSURE | ToolRow::SESSION_OPTIONS, "-esp", "-eraserSizePressure",
         "-eop", "-eraserOpacityPressure"},
        {ToolType::Text, "text", "Text", "Click in a view and type", "-tt", "-textTool", "-txo",
         "-textOptions", ToolKind::Text, 20, 100, 0},
        {ToolType::Line, "line", "Line", "Drag a straight line", "-lt", "-lineTool", "-lo", "-lineOptions",
         ToolKind::Shape, 6, 50, 0},
        {ToolType::Arrow, "arrow", "Arrow", "Drag an arrow to its tip", "-at", "-arrowTool", "-ao",
         "-arrowOptions", ToolKind::Shape, 6, 50, 0},
        {ToolType::Ellipse, "ellipse", "Ellipse", "Drag an ellipse", "-elt", "-ellipseTool", "-elo",
         "-ellipseOptions", ToolKind::Shape, 6, 50, 0},
        {ToolType::Rectangle, "rectangle", "Rectangle", "Drag a rectangle", "-rt", "-rectangleTool", "-ro",
         "-rectangleOptions", ToolKind::Shape, 6, 50, 0},
    };
    return tools;
}

const ToolRow* FindTool(ToolType type) {
    return FindWhere([type](const ToolRow& tool) { return tool.type == type; });
}

const ToolRow* FindTool(const QString& word) {
    return FindWhere([&word](const ToolRow& tool) { return word == QLatin1String(tool.word); });
}

ToolKind KindOf(ToolType type) {
    const ToolRow* const tool = FindTool(type);
    return tool ? tool->kind : ToolKind::None;
}

} // namespace vellix
