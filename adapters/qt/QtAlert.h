#pragma once

#include "platform/Alert.h"

namespace dunmora {

class QtApplication;

/// Asks in a message box. The texts are shown as they are; a long one can be scrolled.
class QtAlert final : public Alert {
public:
    /// The application must outlive it.
    explicit QtAlert(QtApplication& application) : application_(application) {}

    int runModal(const AlertContent& content) override;

private:
    int ask(const AlertContent& content);

    QtApplication& application_;
};

}  // namespace dunmora
