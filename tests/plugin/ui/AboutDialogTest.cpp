#include "ui/AboutDialog.h"

#include "plugin/ui/DialogFixture.h"

#include <QDir>
#include <QFile>
#include <QLabel>

namespace vellix {

TEST(AboutDialogTest, TheDocumentationIsFoundWhereverThePluginIsInstalled) {
    QTemporaryDir root;
    const QDir tree(root.path());
    const auto put = [&tree](const QString& file) {
        tree.mkpath(QFileInfo(file).path());
        QFile page(tree.filePath(file));
        EXPECT_TRUE(page.open(QIODevice::WriteOnly));
    };
    const QString shared = "unix/share/doc/" + QCoreApplication::applicationName().toLower() + "/commands.md";
    put("module/docs/index.html");
    put("module/docs/commands.md");
    put(shared);
    const struct {
        const char* plugin;
        QString page;
    } rows[] = {{"module/plug-ins/2018/vellix2.so", "module/docs/index.html"},
                {"unix/lib/host/plug-ins/vellix2.so", shared},
                {"alone/a/b/c/d/e/vellix2.so", QString()}};
    for (const auto& row : rows) {
        put(row.plugin);
        const QString page = row.page.isEmpty() ? QString() : tree.absoluteFilePath(row.page);
        EXPECT_EQ(AboutDialog::FindDocumentation(tree.filePath(row.plugin)), page);
        EXPECT_EQ(AboutDialog::FindDocumentation(QFileInfo(tree.filePath(row.plugin)).path()), page);
    }
    EXPECT_EQ(AboutDialog::FindDocumentation(QString()), QString());
}

class AboutDialogInHostTest : public DialogFixture {};

TEST_F(AboutDialogInHostTest, SaysWhatItIsAndCloses) {
    QWidget* dialog = Open("-about", "About Vellix 2");
    QString text;
    for (const auto* label : dialog->findChildren<QLabel*>()) {
        text += label->text() + "\n";
    }
    EXPECT_TRUE(text.contains("Vellix 2")) << text.toStdString();
    EXPECT_TRUE(text.contains("Version " + Settings::VERSION_STRING));
    EXPECT_TRUE(text.contains(QString("Qt ") + qVersion()));
    QTest::keyClick(dialog, Qt::Key_Return);
    Settle();
    EXPECT_EQ(FindWindow("About Vellix 2"), nullptr);
}

} // namespace vellix
