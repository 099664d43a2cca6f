#pragma once

#include <QDialog>

class QVBoxLayout;

namespace vellix {

/// Shows the product and its version, the host, the copyright, Qt's licence and a link to the documentation.
class AboutDialog : public QDialog {
    Q_OBJECT

public:
    /// Looks for the documentation in a folder "docs" at or above `pluginFolder`, from which the plug-in was
    /// loaded. Shows no link where there is none.
    AboutDialog(const QString& pluginFolder, QWidget* parent);

    /// The absolute path of the documentation's first page; empty if there is none.
    static QString FindDocumentation(const QString& pluginFolder);

private:
    QLayout* CreateTitle();
    void AddText(QVBoxLayout& column, const QString& text);
};

} // namespace vellix
