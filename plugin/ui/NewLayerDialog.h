#pragma once

#include "ui/LayerFormDialog.h"

#include <memory>

namespace vellix {

/// Asks for the name, camera and state of a new layer and adds it. Also creates the drawing node if the scene
/// has none.
class NewLayerDialog : public LayerFormDialog {
    Q_OBJECT

public:
    explicit NewLayerDialog(QWidget* parent = nullptr);

    /// Creates a dialog filled in for the current scene.
    static std::unique_ptr<NewLayerDialog> Create(QWidget* parent);

protected:
    void Apply() override { AddLayer(); }

private:
    void AddLayer();
};

} // namespace vellix
