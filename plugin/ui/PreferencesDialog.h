#pragma once

#include <QDialog>

class QCheckBox;
class QRadioButton;
class QSpinBox;

namespace vellix {

class FlatButton;

/// The switches that are kept in the settings file. OK takes them over and writes the file; the color of the
/// frames on the timeline counts as soon as it is chosen.
class PreferencesDialog : public QDialog {
    Q_OBJECT

public:
    explicit PreferencesDialog(QWidget* parent);

private:
    QWidget* CreateGeneralPage();
    QWidget* CreateLayersPage();
    QWidget* CreateColorGroup();
    /// A check box in that layout for a setting; automation finds it as "qmVxPreferences" and its name.
    void AddSwitch(QLayout& layout, const char* name, const QString& label, bool& setting,
                   const QString& toolTip);

    void LoadSettings();
    void ChooseTimelineFrameColor();
    void UseTimelineFrameColor(const QColor& color);
    /// Shows the button's color on the timeline and keeps it in memory.
    void UpdateTimelineFrameColor();
    void Apply();

    struct Switch {
        QCheckBox* box;
        bool* setting;
    };

    FlatButton* m_timelineFrameColor = nullptr;
    QList<Switch> m_switches; ///< in the order in which they are stored
    QRadioButton* m_animatedLayers = nullptr;
    QRadioButton* m_staticLayers = nullptr;
    QSpinBox* m_staticFrameTime = nullptr;
};

} // namespace vellix
