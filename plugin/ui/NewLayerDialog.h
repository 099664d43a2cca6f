#pragma once

#include "ui/LayerFormDialog.h"

namespace vellix {

/// Asks for the name, camera and state of a layer, and adds it, together with the drawing node when the scene
/// has none.
class NewLayerDialog : public LayerFormDialog {
    Q_OBJECT

public:
    explicit NewLayerDialog(QWidget* parent = nullptr);

    /// Shows one, filled for the scene as it is.
    static void Open(QWidget* parent);

protected:
    void Apply() override { AddLayer(); }

private:
    void AddLayer();
};

} // namespace vellix
