#include "ui/AboutDialog.h"

#include "host/GuardedConnect.h"
#include "host/Settings.h"
#include "ui/IconView.h"

#include <maya/MGlobal.h>

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QLabel>
#include <QPushButton>
#include <QUrl>
#include <QVBoxLayout>

namespace vellix {

namespace {

constexpr int ABOUT_MARGIN = 16;
constexpr int ABOUT_SPACING = 10;
constexpr int ABOUT_ICON_SIDE = 48;
constexpr double TITLE_SCALE = 1.7;
/// Folders searched for the documentation: the plug-in's own and those above it.
constexpr int MAX_LEVELS = 4;

QString DescribeHost() {
    const QString name = QStringLiteral("%1 %2").arg(QCoreApplication::applicationName(),
                                                     QCoreApplication::applicationVersion());
    return QStringLiteral("Runs in %1, plug-in interface %2, with Qt %3.")
        .arg(name.trimmed())
        .arg(MGlobal::apiVersion())
        .arg(QString::fromLatin1(qVersion()));
}

} // namespace

AboutDialog::AboutDialog(const QString& pluginFolder, QWidget* parent)
    : QDialog(parent) {
    setObjectName(QStringLiteral("qmVxAbout"));
    setWindowTitle(QStringLiteral("About %1").arg(Settings::APPLICATION_TITLE));
    setWindowFlags(windowFlags() & ~Qt::WindowContextHelpButtonHint);
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(ABOUT_MARGIN, ABOUT_MARGIN, ABOUT_MARGIN, ABOUT_MARGIN);
    column->setSpacing(ABOUT_SPACING);
    column->setSizeConstraint(QLayout::SetFixedSize);
    column->addLayout(CreateTitle());
    AddText(*column,
            QStringLiteral("Sketch 2D drawings over the 3D viewport: layers of keyed drawings for every "
                           "camera, ghosts, and everything saved in the scene."));
    AddText(*column, DescribeHost());
    AddText(*column, QStringLiteral("Copyright %1 %2. All rights reserved. Qt is used under the GNU Lesser "
                                    "General Public License, version 3.")
                         .arg(QChar(0xA9))
                         .arg(Settings::AUTHOR));
    const QString documentation = FindDocumentation(pluginFolder);
    if (!documentation.isEmpty()) {
        AddText(*column,
                QStringLiteral("<a href=\"%1\">Documentation</a>")
                    .arg(QString::fromUtf8(QUrl::fromLocalFile(documentation).toEncoded()).toHtmlEscaped()));
    }
    auto* ok = new QPushButton(QStringLiteral("OK"));
    ok->setDefault(true);
    ConnectGuarded(ok, &QAbstractButton::clicked, this, &QDialog::accept);
    column->addWidget(ok, 0, Qt::AlignRight);
    ok->setFocus();
}

QString AboutDialog::FindDocumentation(const QString& pluginFolder) {
    // Some hosts pass the plug-in's file instead of its folder.
    const QFileInfo given(pluginFolder);
    QDir folder = given.isFile() ? given.absoluteDir() : QDir(pluginFolder);
    // "docs" is the place in a module or a working tree, "share/doc" in a Unix installation.
    const QString shared = QStringLiteral("share/doc/%1").arg(QCoreApplication::applicationName().toLower());
    for (int level = 0; level < MAX_LEVELS && !pluginFolder.isEmpty(); ++level) {
        for (const QString& docs : {QStringLiteral("docs"), shared}) {
            for (const char* page : {"index.html", "index.md", "drawing.md", "commands.md"}) {
                const QFileInfo file(folder.filePath(docs + QLatin1Char('/') + QLatin1String(page)));
                if (file.isFile()) {
                    return file.absoluteFilePath();
                }
            }
        }
        if (!folder.cdUp()) {
            break;
        }
    }
    return QString();
}

QLayout* AboutDialog::CreateTitle() {
    auto* title = new QLabel(Settings::APPLICATION_TITLE);
    QFont font = title->font();
    font.setPointSizeF(font.pointSizeF() * TITLE_SCALE);
    font.setBold(true);
    title->setFont(font);
    auto* texts = new QVBoxLayout;
    texts->setSpacing(0);
    texts->addWidget(title);
    texts->addWidget(new QLabel(QStringLiteral("Version %1").arg(Settings::VERSION_STRING)));
    auto* row = new QHBoxLayout;
    row->setSpacing(ABOUT_SPACING);
    row->addWidget(new IconView(ToolType::Brush, ABOUT_ICON_SIDE));
    row->addLayout(texts, 1);
    return row;
}

void AboutDialog::AddText(QVBoxLayout& column, const QString& text) {
    auto* label = new QLabel(text);
    label->setWordWrap(true);
    label->setOpenExternalLinks(true);
    label->setTextInteractionFlags(Qt::TextBrowserInteraction);
    // About sixty letters per line in any font.
    label->setFixedWidth(label->fontMetrics().averageCharWidth() * 60);
    column.addWidget(label);
}

} // namespace vellix
