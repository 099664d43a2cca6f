#pragma once

#include <QObject>

#include <functional>

class QWidget;

namespace vellix {

/// The keys for undo and redo while a field that can be typed into has the focus: they take back typing while
/// something is typed that does not count yet, and are the host's, for the scene, at all other times. Lives
/// as long as the field.
class FieldUndo : public QObject {
public:
    FieldUndo(QWidget& field, std::function<bool()> isBeingTyped);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    std::function<bool()> m_isBeingTyped;
};

} // namespace vellix
