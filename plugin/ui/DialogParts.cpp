#include "ui/DialogParts.h"

#include "host/GuardedConnect.h"

#include <QDialog>
#include <QHBoxLayout>
#include <QPushButton>

#include <utility>

namespace vellix {

namespace {

constexpr int BUTTON_SPACING = 6;

} // namespace

QHBoxLayout* CreateDialogButtons(QDialog& dialog, std::function<void()> apply) {
    auto* row = new QHBoxLayout;
    row->setSpacing(BUTTON_SPACING);
    row->addStretch();
    auto* ok = new QPushButton(QStringLiteral("OK"));
    auto* cancel = new QPushButton(QStringLiteral("Cancel"));
    ok->setObjectName(dialog.objectName() + QStringLiteral("Ok"));
    cancel->setObjectName(dialog.objectName() + QStringLiteral("Cancel"));
    ok->setDefault(true);
    cancel->setAutoDefault(false);
    row->addWidget(ok);
    row->addWidget(cancel);
    ConnectGuarded(ok, &QPushButton::clicked, &dialog, std::move(apply));
    ConnectGuarded(cancel, &QPushButton::clicked, &dialog, &QDialog::reject);
    return row;
}

} // namespace vellix
