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

/// Base of the dialogs for one layer: its name, camera and state, and the buttons OK and Cancel. OK calls
/// Apply() and closes.
class LayerFormDialog : public QDialog, public SceneFollower {
    Q_OBJECT

public:
    LayerFormDialog(const QString& title, QWidget* parent);

    /// Sets the name and selects all of it, ready to be typed over.
    void SetLayerName(const QString& name);
    /// Sets the cameras to choose from, and selects `current` if it is one of them.
    void SetCameras(const QStringList& cameras, const QString& current);
    void SetLayerState(LayerState state);

    /// Updates the cameras on offer, and keeps the chosen one while it exists.
    void FollowScene() override;

protected:
    virtual void Apply() = 0;

    QFormLayout& Form() { return *form_; }
    /// Adds a row of states to choose from.
    void AddStates(const QString& label, const QList<LayerState>& states);
    /// Adds OK and Cancel. Called last.
    void AddButtons();

    QString GetLayerName() const;
    QString GetCamera() const;
    /// Does nothing if the camera is not on offer.
    void SelectCamera(const QString& camera);
    LayerState GetLayerState() const;

private:
    struct StateButton {
        LayerState state;
        QRadioButton* button;
    };

    QFormLayout* form_;
    QLineEdit* name_;
    QComboBox* camera_;
    QList<StateButton> states_;
};

} // namespace vellix
