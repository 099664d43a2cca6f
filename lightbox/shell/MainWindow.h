#pragma once

#include <QMainWindow>

#include <cstdint>
#include <vector>

namespace lightbox {

class Host;
class PanelLayout;
class RecentFiles;
class ViewportPanels;

/// The main window: menu bar, shelf, viewports, time slider, command line and help line, from top to bottom.
/// Scripts and plug-ins find it by its objectName "MayaWindow".
class MainWindow : public QMainWindow {
    Q_OBJECT
public:
    /// The areas that take widgets. The window owns the widgets.
    enum class Place { Shelf, Time, Command };

    explicit MainWindow(Host& host);
    ~MainWindow() override;

    /// Adds a widget at the end of a place.
    void Put(Place place, QWidget* widget);
    void SetPlaceVisible(Place place, bool visible);
    bool IsPlaceVisible(Place place) const;
    ViewportPanels& Panels() { return *panels_; }
    PanelLayout& Layout() { return *layout_; }
    RecentFiles& Recent() { return *recent_; }

    /// Restores the geometry of the last session, if it is on an existing screen, and the panel layout.
    void RestoreState();
    void SaveState();
    /// Shows a text in the help line, if there is one.
    void ShowHelp(const QString& text);

Q_SIGNALS:
    void HelpShown(const QString& text);

protected:
    void closeEvent(QCloseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    QWidget* PlaceOf(Place place) const;
    void UpdateTitle();

    Host& host_;
    ViewportPanels* panels_ = nullptr;
    PanelLayout* layout_ = nullptr;
    RecentFiles* recent_ = nullptr;
    QWidget* shelf_ = nullptr;
    QWidget* time_ = nullptr;
    QWidget* command_ = nullptr;
    std::vector<std::intptr_t> callbacks_;
};

} // namespace lightbox
