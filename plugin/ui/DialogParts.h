#pragma once

#include <functional>

class QDialog;
class QHBoxLayout;

namespace vellix {

/// The row of "OK", the default button, and "Cancel" that ends a dialog. OK does what is given, which also
/// closes; Cancel rejects.
QHBoxLayout* CreateDialogButtons(QDialog& dialog, std::function<void()> apply);

} // namespace vellix
