#include "adapters/qt/QtAlert.h"

#include "adapters/qt/AlertDialog.h"
#include "adapters/qt/QtApplication.h"

namespace dunmora {

int QtAlert::runModal(const AlertContent& content)
{
    int response = kAlternateButton;
    application_.performOnMainThread(
        [&] { response = runModal(application_.sessions(), content); });
    return response;
}

int QtAlert::runModal(ModalSessions& sessions, const AlertContent& content)
{
    AlertDialog dialog(content, sessions.front());
    QObject::connect(&dialog, &QDialog::finished, &sessions, [&] { sessions.end(dialog); });
    sessions.run(dialog);
    if (dialog.result() == AlertDialog::kOther) {
        return kOtherButton;
    }
    const bool isAccepted = dialog.result() == QDialog::Accepted;
    return isAccepted || !content.alternateButton ? kDefaultButton : kAlternateButton;
}

}  // namespace dunmora
