#include "adapters/qt/QtWorkspace.h"

#include "adapters/qt/QtApplication.h"
#include "adapters/qt/QtText.h"

#include <QDesktopServices>
#include <QUrl>

namespace dunmora {

namespace {

bool mayBeOpened(const QUrl& url)
{
    const auto scheme = url.scheme();
    if (scheme == QLatin1String("http") || scheme == QLatin1String("https")) {
        return url.isValid() && !url.host().isEmpty();
    }
    return scheme == QLatin1String("mailto") && url.isValid() && !url.path().isEmpty();
}

}  // namespace

bool QtWorkspace::openURL(const std::string& url)
{
    const QUrl parsed(toQString(url), QUrl::StrictMode);
    if (!mayBeOpened(parsed)) {
        return false;
    }
    bool isOpened = false;
    application_.performOnMainThread([&] { isOpened = QDesktopServices::openUrl(parsed); });
    return isOpened;
}

}  // namespace dunmora
