#pragma once

#include "ui/LayerFormDialog.h"

#include <memory>

namespace vellix {

/// Asks for the name, camera and state of a layer, and adds it, together with the drawing node when the scene
/// has none.
class NewLayerDialog : public LayerFormDialog {
    Q_OBJECT

public:
    explicit NewLayerDialog(QWidget* parent = nullptr);

    /// One filled for the scene as it is.
    static std::unique_ptr<NewLayerDialog> Create(QWidget* parent);

protected:
    void Apply() override { AddLayer(); }

private:
    void AddLayer();
};

} // namespace vellix
