#include "ui/DrawingTools.h"

#include "host/MayaUtil.h"
#include "host/Settings.h"
#include "paint/ToolType.h"
#include "ui/Icons.h"

namespace vellix {

ToolValues ToolValues::Read(const DrawingTool& tool) {
    return {Settings::GetToolSize(tool.type), Settings::GetToolOpacity(tool.type),
            Settings::GetToolHardness(tool.type), Settings::IsTabletPressureEnabled(tool.type),
            Settings::textFontFamily};
}

bool ToolValues::Send(const DrawingTool& tool) const {
    switch (tool.type) {
    case ToolType::Pencil:
        return MayaUtil::SetPencilOptions(size, opacity, pressure);
    case ToolType::Brush:
        return MayaUtil::SetBrushOptions(size, opacity, hardness, pressure);
    case ToolType::Eraser:
        return MayaUtil::SetEraserOptions(size, opacity, hardness, pressure);
    case ToolType::Text:
        return MayaUtil::SetTextOptions(size, opacity, fontFamily);
    case ToolType::Line:
        return MayaUtil::SetLineOptions(size, opacity);
    case ToolType::Arrow:
        return MayaUtil::SetArrowOptions(size, opacity);
    case ToolType::Ellipse:
        return MayaUtil::SetEllipseOptions(size, opacity);
    case ToolType::Rectangle:
        return MayaUtil::SetRectangleOptions(size, opacity);
    case ToolType::Transform:
        break;
    }
    return false;
}

const std::array<DrawingTool, 8>& GetDrawingTools() {
    static const std::array<DrawingTool, 8> tools = {{
        {ToolType::Pencil, Icon::Pencil, "Pencil", "Draw thin, even lines", MayaUtil::SetPencilTool,
         Settings::MAX_PENCIL_SIZE, false, true},
        {ToolType::Brush, Icon::Brush, "Brush", "Paint with a soft or hard brush", MayaUtil::SetBrushTool,
         Settings::MAX_BRUSH_SIZE, true, true},
        {ToolType::Eraser, Icon::Eraser, "Eraser", "Take away what is drawn", MayaUtil::SetEraserTool,
         Settings::MAX_ERASER_SIZE, true, true},
        {ToolType::Text, Icon::Text, "Text", "Click in a view and type", MayaUtil::SetTextTool,
         Settings::MAX_TEXT_SIZE, false, false},
        {ToolType::Line, Icon::Line, "Line", "Drag a straight line", MayaUtil::SetLineTool,
         Settings::MAX_LINE_SIZE, false, false},
        {ToolType::Arrow, Icon::Arrow, "Arrow", "Drag an arrow to its tip", MayaUtil::SetArrowTool,
         Settings::MAX_ARROW_SIZE, false, false},
        {ToolType::Ellipse, Icon::Ellipse, "Ellipse", "Drag an ellipse", MayaUtil::SetEllipseTool,
         Settings::MAX_ELLIPSE_SIZE, false, false},
        {ToolType::Rectangle, Icon::Rectangle, "Rectangle", "Drag a rectangle", MayaUtil::SetRectangleTool,
         Settings::MAX_RECTANGLE_SIZE, false, false},
    }};
    return tools;
}

const DrawingTool* GetActiveDrawingTool() {
    for (const DrawingTool& tool : GetDrawingTools()) {
        if (tool.type == Settings::activeTool) {
            return &tool;
        }
    }
    return nullptr;
}

} // namespace vellix
