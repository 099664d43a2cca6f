#pragma once

#include <QToolButton>
#include <QWidget>

namespace lightbox {

/// The widget of frameLayout: a title row above the content. The title has an arrow when the frame is
/// collapsable.
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
    /// Sent before and after the user collapses or expands the frame.
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
