#pragma once

#include <QObject>

#include <functional>

class QWidget;

namespace vellix {

/// Handles the undo and redo keys while an input field has the focus. They act on the field while uncommitted
/// text is being typed; at all other times they reach the host and act on the scene. The field owns this
/// object.
class FieldUndo : public QObject {
public:
    FieldUndo(QWidget& field, std::function<bool()> isBeingTyped);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    std::function<bool()> isBeingTyped_;
};

} // namespace vellix
