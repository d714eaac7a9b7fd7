#include "ui/Check.h"

#include "platform/CheckBox.h"

namespace dunmora {

void Check(CheckBox& box, bool on)
{
    box.setState(on ? CheckState::On : CheckState::Off);
}

}  // namespace dunmora
