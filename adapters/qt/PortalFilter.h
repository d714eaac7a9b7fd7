#pragma once

#include <QList>
#include <QMetaType>
#include <QString>

class QDBusArgument;

namespace dunmora {

/// A pattern of the desktop portal's file filters.
struct PortalPattern {
    // The portal's number for a pattern of file names.
    uint kind = 0;
    QString text;
};

/// A file filter as the desktop portal expects it.
struct PortalFilter {
    QString name;
    QList<PortalPattern> patterns;
};

/// vCard files, and all files. Registers the types with Qt D-Bus.
QList<PortalFilter> vCardPortalFilters();

QDBusArgument& operator<<(QDBusArgument& argument, const PortalPattern& pattern);
const QDBusArgument& operator>>(const QDBusArgument& argument, PortalPattern& pattern);
QDBusArgument& operator<<(QDBusArgument& argument, const PortalFilter& filter);
const QDBusArgument& operator>>(const QDBusArgument& argument, PortalFilter& filter);

}  // namespace dunmora

Q_DECLARE_METATYPE(dunmora::PortalPattern)
Q_DECLARE_METATYPE(dunmora::PortalFilter)
