#pragma once

#include "host/panels/DialogManager.h"

#include <QDialog>
#include <QList>

class QComboBox;
class QFormLayout;
class QLineEdit;
class QRadioButton;

namespace vellix {

enum class LayerState : qint32;

/// What the dialogs about one layer have in common: its name, its camera, its state, and OK and Cancel. OK
/// calls Apply() and closes.
class LayerFormDialog : public QDialog, public SceneFollower {
    Q_OBJECT

public:
    LayerFormDialog(const QString& title, QWidget* parent);

    /// Selects the whole name, ready to be typed over.
    void SetLayerName(const QString& name);
    /// Selects `current` when it is one of them.
    void SetCameras(const QStringList& cameras, const QString& current);
    void SetLayerState(LayerState state);

    /// Offers the cameras that there are now, and keeps the one that is chosen while it is there.
    void FollowScene() override;

protected:
    virtual void Apply() = 0;

    QFormLayout& Form() { return *m_form; }
    /// A row with the states to choose from.
    void AddStates(const QString& label, const QList<LayerState>& states);
    /// Last: OK and Cancel.
    void AddButtons();

    QString GetLayerName() const;
    QString GetCamera() const;
    /// Leaves the choice alone when the camera is not offered.
    void SelectCamera(const QString& camera);
    LayerState GetLayerState() const;

private:
    struct StateButton {
        LayerState state;
        QRadioButton* button;
    };

    QFormLayout* m_form;
    QLineEdit* m_name;
    QComboBox* m_camera;
    QList<StateButton> m_states;
};

} // namespace vellix
