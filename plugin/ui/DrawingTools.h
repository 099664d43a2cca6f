#pragma once

#include <QString>

#include <array>

namespace vellix {

enum class Icon;
enum class ToolType : qint32;

/// A drawing tool as the panels show it.
struct DrawingTool {
    ToolType type;
    Icon icon;
    const char* name;
    const char* hint;
    /// Issues the line that takes the tool.
    bool (*take)();
    int mostSize;
    bool hasHardness;
    bool hasPressure;
};

/// What a drawing tool draws with. Size in pixels, of text in points; opacity and hardness in percent.
struct ToolValues {
    int size;
    int opacity;
    int hardness; ///< of the tools that have it
    bool pressure;
    QString fontFamily; ///< of text

    static ToolValues Read(const DrawingTool& tool);
    /// Issues the one line that sets all of them.
    bool Send(const DrawingTool& tool) const;
};

/// All drawing tools, in the order of their numbers.
const std::array<DrawingTool, 8>& GetDrawingTools();

/// The active one; null while the settings name none.
const DrawingTool* GetActiveDrawingTool();

} // namespace vellix
