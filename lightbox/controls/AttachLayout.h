#pragma once

#include <QLayout>
#include <QPointer>
#include <QWidget>

#include <array>
#include <memory>
#include <vector>

namespace lightbox {

/// The layout behind formLayout: each edge of a widget may be attached to the form, to another widget or to a
/// fraction of the form, with an offset. A free edge follows from the opposite edge and the widget's size
/// hint.
class AttachLayout : public QLayout {
    Q_OBJECT

public:
    enum Edge { Left, Right, Top, Bottom };
    enum class To { None, Form, OppositeForm, Widget, OppositeWidget, Position };
    struct Attachment {
        To to = To::None;
        int offset = 0;
        QPointer<QWidget> widget;
        /// For To::Position: counted in `divisions` of the form.
        int position = 0;
    };

    explicit AttachLayout(QWidget* parent);
    ~AttachLayout() override;

    void Attach(QWidget& widget, Edge edge, const Attachment& attachment);
    Attachment AttachmentOf(const QWidget& widget, Edge edge) const;
    /// The number of parts that -attachPosition divides the form into.
    int divisions = 100;

    void addItem(QLayoutItem* item) override;
    int count() const override;
    QLayoutItem* itemAt(int index) const override;
    QLayoutItem* takeAt(int index) override;
    QSize sizeHint() const override;
    QSize minimumSize() const override;
    void setGeometry(const QRect& rectangle) override;

private:
    struct Item {
        std::unique_ptr<QLayoutItem> item;
        std::array<Attachment, 4> edges;
    };
    /// One direction of the layout being solved.
    struct Axis;

    const Item* Find(const QWidget& widget) const;
    /// The smallest size of the form, in pixels, at which every widget gets its hint (or its minimum) in one
    /// direction.
    int Needed(bool isVertical, bool isMinimum) const;

    std::vector<Item> items_;
};

} // namespace lightbox
