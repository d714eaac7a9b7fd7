#include "ui/GroupedNumber.h"

#include "platform/Desktop.h"
#include "platform/NumberFormat.h"

namespace dunmora {

std::string groupedNumber(std::size_t number)
{
    return Desktop::current().numberFormat.grouped(number);
}

}  // namespace dunmora
