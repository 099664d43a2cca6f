#pragma once

#include "core/Identity.h"
#include "ui/LayerFormDialog.h"

class QCheckBox;

namespace vellix {

/// Edits the name, camera, visibility and state of one layer. OK executes one command line for each that
/// changed, on the layer that the dialog was opened for, wherever it is in its stack by then.
class LayerPropertiesDialog : public LayerFormDialog {
    Q_OBJECT

public:
    LayerPropertiesDialog(const QString& camera, int index, QWidget* parent = nullptr);

    // These set the values that OK compares with.
    void SetLayerName(const QString& name);
    void SetVisibility(bool visible);
    void SetLayerState(LayerState state);
    /// Selects the layer's camera, which is added to the list if it is missing.
    void SetCameras(const QStringList& cameras);

    /// Closes when the layer no longer exists.
    void FollowScene() override;

    /// Opens a dialog for the layer. Logs an error if there is no such layer.
    static void Open(const QString& camera, int index, QWidget* parent);

protected:
    void Apply() override { UpdateLayer(); }

private:
    void UpdateLayer();

    QString layerCamera_; ///< the layer's camera when the values were set
    LayerId layer_ = LayerId::None;
    QString layerName_;
    bool visibility_ = false;
    LayerState state_;
    QCheckBox* visible_;
};

} // namespace vellix
