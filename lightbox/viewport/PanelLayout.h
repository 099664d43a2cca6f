#pragma once

#include <QByteArray>
#include <QWidget>

#include <array>

class QSplitter;

namespace lightbox {

class ViewportPanel;
class ViewportPanels;

/// Shows one, two or all of the main window's four viewports: top and persp above front and side.
class PanelLayout : public QWidget {
    Q_OBJECT
public:
    /// Single shows the active panel; the Two arrangements show the active panel's row or column.
    enum class Arrangement { Single, TwoSideBySide, TwoStacked, Four };

    explicit PanelLayout(ViewportPanels& panels, QWidget* parent = nullptr);

    Arrangement Current() const { return arrangement_; }
    void Arrange(Arrangement arrangement);
    /// The action of the space bar: shows the panel under the pointer alone, or returns to the previous
    /// arrangement.
    void ToggleSingle();

    /// The arrangement and the panel sizes, to be restored in the next session.
    QByteArray Save() const;
    /// False, and nothing changes, when the state does not come from Save().
    bool Restore(const QByteArray& state);

Q_SIGNALS:
    void Arranged();

private:
    ViewportPanels& panels_;
    /// Row by row: top (modelPanel1), persp (modelPanel4), front (modelPanel3), side (modelPanel2).
    std::array<ViewportPanel*, 4> cells_{};
    QSplitter* rows_ = nullptr;
    std::array<QSplitter*, 2> columns_{};
    Arrangement arrangement_ = Arrangement::Single;
    Arrangement before_ = Arrangement::Four;
};

} // namespace lightbox
