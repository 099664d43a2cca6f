#include "controls/CollapsibleFrame.h"

#include <QVBoxLayout>

namespace lightbox {

CollapsibleFrame::CollapsibleFrame()
    : title_(new QToolButton(this))
    , content_(new QWidget(this)) {
    title_->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
    title_->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    QFont bold = title_->font();
    bold.setBold(true);
    title_->setFont(bold);
    auto* const contentBox = new QVBoxLayout(content_);
    contentBox->setContentsMargins(0, 0, 0, 0);
    contentBox->setSpacing(0);
    auto* const box = new QVBoxLayout(this);
    box->setContentsMargins(0, 0, 0, 0);
    box->setSpacing(0);
    box->addWidget(title_);
    box->addWidget(content_, 1);
    connect(title_, &QToolButton::clicked, this, [this] {
        if (!isCollapsable_) {
            return;
        }
        const bool collapses = !isCollapsed_;
        Q_EMIT AboutToToggle(collapses);
        SetCollapsed(collapses);
        Q_EMIT Toggled(collapses);
    });
    UpdateArrow();
}

void CollapsibleFrame::SetCollapsable(bool on) {
    isCollapsable_ = on;
    UpdateArrow();
}

void CollapsibleFrame::SetCollapsed(bool on) {
    isCollapsed_ = on;
    content_->setVisible(!on);
    UpdateArrow();
}

void CollapsibleFrame::UpdateArrow() {
    title_->setArrowType(!isCollapsable_ ? Qt::NoArrow : isCollapsed_ ? Qt::RightArrow : Qt::DownArrow);
}

} // namespace lightbox
