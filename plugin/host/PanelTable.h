#pragma once

namespace vellix {

enum class Panel { Toolbox, ToolOptions, LayerManager, ColorPalette, Retiming };

/// A panel: a floating window of which there is one. All that commands, settings and the menu know about it.
/// A new panel needs a number and a row here, a class in ui/ that is a FloatingPanel, and a line in
/// PanelRegistration.
struct PanelRow {
    Panel panel;
    const char* title; ///< of the window and the menu item
    const char* noun;  ///< in messages
    // The command flag that shows the panel, short and long. Without its hyphen, the long one is the panel's
    // name in option variables; with "Geometry" appended, its key in the settings file.
    const char* shortFlag;
    const char* flag;
    bool isInMenu; ///< the main menu has an item that shows it

    const char* Name() const { return *flag == '-' ? flag + 1 : flag; }
};

/// All panels, in the order of the menu and the settings file.
constexpr PanelRow PANELS[] = {
    {Panel::Toolbox, "Toolbox", "toolbox", "-tb", "-toolbox", true},
    {Panel::ToolOptions, "Tool Options", "tool options panel", "-to", "-toolOptions", true},
    {Panel::LayerManager, "Layer Manager", "layer manager", "-lm", "-layerManager", true},
    {Panel::ColorPalette, "Color Palette", "color palette", "-cp", "colorPalette", false},
    {Panel::Retiming, "Retiming Tool", "retiming tool", "-rtt", "retimingTool", true},
};

/// The row of a panel. The rows stand in the order of the enumeration.
static constexpr const PanelRow& RowOf(Panel panel) {
    return PANELS[static_cast<int>(panel)];
}

} // namespace vellix
