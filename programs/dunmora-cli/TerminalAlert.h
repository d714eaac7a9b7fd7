#pragma once

#include "platform/Alert.h"

#include <iosfwd>

namespace dunmora {

/// An alert on a terminal: prints the text and, if there are two buttons, reads one line.
/// "y", "yes", "ok" and "okay" in any case take the default button; everything else, plain Enter
/// and the end of the input take the alternate one. A third button is not offered: the commands
/// have options instead.
class TerminalAlert final : public Alert {
public:
    TerminalAlert(std::istream& in, std::ostream& err) : in_(in), err_(err) {}

    int runModal(const AlertContent& content) override;

private:
    bool readsYes();

    std::istream& in_;
    std::ostream& err_;
};

}  // namespace dunmora
