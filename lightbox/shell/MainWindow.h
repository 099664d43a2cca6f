#pragma once

#include <QMainWindow>

#include <cstdint>
#include <vector>

namespace lightbox {

class Host;
class PanelLayout;
class RecentFiles;
class ViewportPanels;

/// The window of the program: menu bar, shelf, viewports, time slider, command line and help line, one below
/// the other. The objectName is "MayaWindow", by which scripts and plug-ins find it.
class MainWindow : public QMainWindow {
    Q_OBJECT
public:
    /// Where others put what they show. The window owns what is put into it.
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

    /// Puts the window where it was when it was closed last, if that is on a screen that is there.
    void RestoreState();
    void SaveState();
    /// Shown in the help line, when there is one.
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
