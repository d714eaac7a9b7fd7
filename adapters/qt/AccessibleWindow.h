#pragma once

class QAccessibleInterface;
class QObject;
class QString;

namespace dunmora {

/// Describes a dialog of an interface file to assistive technology: as a notification while it is
/// shown without the keyboard focus. Screen readers read a notification out when it appears; of
/// other windows they only notice that they get the focus.
/// A factory for QAccessible::installFactory. Thread: the main thread.
QAccessibleInterface* accessibleWindow(const QString& className, QObject* object);

}  // namespace dunmora
