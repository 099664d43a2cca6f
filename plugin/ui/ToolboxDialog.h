#pragma once

#include "host/HostCallbacks.h"
#include "host/panels/DialogManager.h"
#include "ui/FloatingPanel.h"

#include <QList>

#include <functional>

class QHBoxLayout;

namespace vellix {

class HostColorField;
class Icon;
class IconButton;
class NumberSlider;
class PresetButton;
struct ToolRow;

/// The panel for drawing: the tools, the active colour, the active tool's size and opacity, ghosting, frames
/// and layers.
class ToolboxDialog final : public FloatingPanel, public ToolboxPanel {
    Q_OBJECT

public:
    explicit ToolboxDialog(QWidget* parent);
    ~ToolboxDialog() override;

    void Refresh() override;
    void RefreshOptions() override;
    QColor GetColor() const override;

protected:
    bool HandleEvent(QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    QLayout* CreateTools();
    QLayout* CreatePresets();
    void ShowPresetMenu(int number, const QPoint& place);
    void SavePreset(int number);
    /// Adds the colour field and the palette button. `width` is the row's width in pixels.
    void AddColors(QHBoxLayout& row, int width);
    QLayout* CreateOptions();
    QLayout* CreateGhostsAndLayers();
    QLayout* CreateFrames();

    /// Creates a button that executes a command line. Its object name is "qmVxToolbox" plus `name`.
    IconButton* CreateButton(const Icon& icon, const char* name, const QString& toolTip,
                             const std::function<bool()>& issue);
    /// Creates a checkable button that shows a state. Refreshes the panel after the command, even if that
    /// failed.
    IconButton* CreateSwitch(const Icon& icon, const char* name, const QString& toolTip,
                             const std::function<bool()>& issue);
    IconButton* CreateGhostSwitch(const Icon& icon, const char* name, const QString& toolTip,
                                  const std::function<bool()>& toggle);
    void ShowOptionsOf(const ToolRow& tool);
    void ShowGhostingMenu(const QPoint& place);
    void Send();

    QList<IconButton*> tools_;     ///< in the order of AllTools
    QList<PresetButton*> presets_; ///< in the order of their numbers
    IconButton* transform_ = nullptr;
    IconButton* optionsButton_ = nullptr;
    HostColorField* color_ = nullptr;
    NumberSlider* size_ = nullptr;
    NumberSlider* opacity_ = nullptr;
    IconButton* ghostPrevious_ = nullptr;
    IconButton* ghostNext_ = nullptr;
    HostCallbacks callbacks_;
};

} // namespace vellix
