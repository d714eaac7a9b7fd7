#include "adapters/qt/QtNumberFormat.h"

namespace dunmora {

std::string QtNumberFormat::grouped(std::size_t number) const
{
    return locale_.toString(qulonglong{number}).toStdString();
}

}  // namespace dunmora
