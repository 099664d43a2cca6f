#pragma once

#include <QToolButton>
#include <QWidget>

namespace lightbox {

/// The widget of frameLayout: a title row, with an arrow when it can be folded, above the content.
class CollapsibleFrame : public QWidget {
    Q_OBJECT

public:
    CollapsibleFrame();

    QWidget& Content() const { return *content_; }
    QToolButton& Title() const { return *title_; }
    void SetCollapsable(bool on);
    bool IsCollapsable() const { return isCollapsable_; }
    void SetCollapsed(bool on);
    bool IsCollapsed() const { return isCollapsed_; }
    void SetTitleVisible(bool on) { title_->setVisible(on); }

Q_SIGNALS:
    /// The user folds or unfolds it: before and after.
    void AboutToToggle(bool collapses);
    void Toggled(bool collapsed);

private:
    void UpdateArrow();

    QToolButton* title_;
    QWidget* content_;
    bool isCollapsable_ = false;
    bool isCollapsed_ = false;
};

} // namespace lightbox
