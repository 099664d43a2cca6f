#pragma once

#include <QByteArray>
#include <QWidget>

#include <array>

class QSplitter;

namespace lightbox {

class ViewportPanel;
class ViewportPanels;

/// The four viewports of the main window, of which one, two, or all are seen: top and persp above front and
/// side.
class PanelLayout : public QWidget {
    Q_OBJECT
public:
    /// Single: the active panel. Two: the row or the column that the active panel is in.
    enum class Arrangement { Single, TwoSideBySide, TwoStacked, Four };

    explicit PanelLayout(ViewportPanels& panels, QWidget* parent = nullptr);

    Arrangement Current() const { return arrangement_; }
    void Arrange(Arrangement arrangement);
    /// What the space bar does: the panel under the pointer alone, or what was there before.
    void ToggleSingle();

    /// The arrangement and the sizes, to be kept between sessions.
    QByteArray Save() const;
    /// False, and nothing changes, when it is not what Save() gave.
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
