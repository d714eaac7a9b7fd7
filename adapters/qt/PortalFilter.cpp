#include "adapters/qt/PortalFilter.h"

#include <QDBusArgument>
#include <QDBusMetaType>

namespace dunmora {

QList<PortalFilter> vCardPortalFilters()
{
    qDBusRegisterMetaType<PortalPattern>();
    qDBusRegisterMetaType<QList<PortalPattern>>();
    qDBusRegisterMetaType<PortalFilter>();
    qDBusRegisterMetaType<QList<PortalFilter>>();
    // Some desktops distinguish upper and lower case.
    return {{QStringLiteral("vCard files"),
             {{0, QStringLiteral("*.vcf")},
              {0, QStringLiteral("*.vcard")},
              {0, QStringLiteral("*.VCF")},
              {0, QStringLiteral("*.VCARD")}}},
            {QStringLiteral("All files"), {{0, QStringLiteral("*")}}}};
}

QDBusArgument& operator<<(QDBusArgument& argument, const PortalPattern& pattern)
{
    argument.beginStructure();
    argument << pattern.kind << pattern.text;
    argument.endStructure();
    return argument;
}

const QDBusArgument& operator>>(const QDBusArgument& argument, PortalPattern& pattern)
{
    argument.beginStructure();
    argument >> pattern.kind >> pattern.text;
    argument.endStructure();
    return argument;
}

QDBusArgument& operator<<(QDBusArgument& argument, const PortalFilter& filter)
{
    argument.beginStructure();
    argument << filter.name << filter.patterns;
    argument.endStructure();
    return argument;
}

const QDBusArgument& operator>>(const QDBusArgument& argument, PortalFilter& filter)
{
    argument.beginStructure();
    argument >> filter.name >> filter.patterns;
    argument.endStructure();
    return argument;
}

}  // namespace dunmora
