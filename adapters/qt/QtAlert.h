#pragma once

#include "platform/Alert.h"

namespace dunmora {

class ModalSessions;
class QtApplication;

/// Asks in a message box. The texts are shown as they are; a long one can be scrolled.
class QtAlert final : public Alert {
public:
    /// The application must outlive it.
    explicit QtAlert(QtApplication& application) : application_(application) {}

    int runModal(const AlertContent& content) override;

    /// The same for who is on the main thread and knows the sessions alone.
    static int runModal(ModalSessions& sessions, const AlertContent& content);

private:
    QtApplication& application_;
};

}  // namespace dunmora
