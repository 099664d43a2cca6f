#pragma once

#include <QLayout>
#include <QPointer>
#include <QWidget>

#include <array>
#include <memory>
#include <vector>

namespace lightbox {

/// The layout behind formLayout: each edge of a widget may be attached to the form, to another widget or to a
/// fraction of the form, with an offset. An edge that is not attached follows from the other one and the size
/// that the widget asks for.
class AttachLayout : public QLayout {
    Q_OBJECT

public:
    enum Edge { Left, Right, Top, Bottom };
    enum class To { None, Form, OppositeForm, Widget, OppositeWidget, Position };
    struct Attachment {
        To to = To::None;
        int offset = 0;
        QPointer<QWidget> widget;
        /// In divisions of the form.
        int position = 0;
    };

    explicit AttachLayout(QWidget* parent);
    ~AttachLayout() override;

    void Attach(QWidget& widget, Edge edge, const Attachment& attachment);
    Attachment AttachmentOf(const QWidget& widget, Edge edge) const;
    /// Into how many parts -attachPosition divides the form.
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
    /// The least size in one direction in which every widget has the room that it asks for.
    int Needed(bool isVertical, bool isMinimum) const;

    std::vector<Item> items_;
};

} // namespace lightbox
