#pragma once

#include <QDialog>

class QCheckBox;
class QRadioButton;
class QSpinBox;

namespace vellix {

class FlatButton;

/// Edits the preferences in the settings file. OK applies them and writes the file. The colour of the
/// timeline's frames applies as soon as it is chosen.
class PreferencesDialog : public QDialog {
    Q_OBJECT

public:
    explicit PreferencesDialog(QWidget* parent);

private:
    QWidget* CreateGeneralPage();
    QWidget* CreateLayersPage();
    QWidget* CreateColorGroup();
    /// Adds a check box for a setting to the layout. Its object name is "qmVxPreferences" plus `name`.
    void AddSwitch(QLayout& layout, const char* name, const QString& label, bool& setting,
                   const QString& toolTip);

    void LoadSettings();
    void ChooseTimelineFrameColor();
    void UseTimelineFrameColor(const QColor& color);
    /// Applies the button's colour to the timeline and stores it in Settings.
    void UpdateTimelineFrameColor();
    void Apply();

    struct Switch {
        QCheckBox* box;
        bool* setting;
    };

    FlatButton* timelineFrameColor_ = nullptr;
    QList<Switch> switches_; ///< in the order of the settings file
    QRadioButton* animatedLayers_ = nullptr;
    QRadioButton* staticLayers_ = nullptr;
    QSpinBox* staticFrameTime_ = nullptr;
};

} // namespace vellix
