#pragma once

#include "ui/FloatingPanel.h"

#include <QList>

namespace vellix {

class FlatButton;

/// Sixteen swatches with the custom colours of Qt's colour chooser. A click makes a swatch's colour the
/// active colour.
class ColorPaletteDialog : public FloatingPanel {
    Q_OBJECT

public:
    explicit ColorPaletteDialog(QWidget* parent);

    /// Updates the swatches from the chooser's custom colours.
    void RefreshColors();

protected:
    void showEvent(QShowEvent* event) override;

private:
    void OnColorSelected();
    void ShowMenu(const QPoint& place);
    /// Opens the colour chooser, where the user edits the custom colours.
    void CustomizeColors();

    QList<FlatButton*> swatches_;
};

} // namespace vellix
