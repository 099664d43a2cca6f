#pragma once

#include "ui/FloatingPanel.h"

#include <QList>

namespace vellix {

class FlatButton;

/// Sixteen swatches, the custom colours of the toolkit's colour chooser: a click makes one the active colour.
class ColorPaletteDialog : public FloatingPanel {
    Q_OBJECT

public:
    explicit ColorPaletteDialog(QWidget* parent);

    /// Shows the chooser's custom colours as they are now.
    void RefreshColors();

protected:
    void showEvent(QShowEvent* event) override;

private:
    void OnColorSelected();
    void ShowMenu(const QPoint& place);
    /// Opens the colour chooser, in which the custom colours are edited.
    void CustomizeColors();

    QList<FlatButton*> m_swatches;
};

} // namespace vellix
