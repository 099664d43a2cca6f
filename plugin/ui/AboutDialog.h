#pragma once

#include <QDialog>

class QVBoxLayout;

namespace vellix {

/// What this is, what it runs in, under which licence, and where its documentation is.
class AboutDialog : public QDialog {
    Q_OBJECT

public:
    /// The documentation lies in a folder "docs" at or above the folder that the plug-in was loaded from;
    /// where there is none, no link is shown.
    AboutDialog(const QString& pluginFolder, QWidget* parent);

    /// The first page of the documentation, absolute; empty when there is none.
    static QString FindDocumentation(const QString& pluginFolder);

private:
    QLayout* CreateTitle();
    void AddText(QVBoxLayout& column, const QString& text);
};

} // namespace vellix
