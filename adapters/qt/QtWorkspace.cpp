#include "adapters/qt/QtWorkspace.h"

#include "adapters/qt/QtApplication.h"
#include "adapters/qt/QtText.h"

#include <QDesktopServices>
#include <QUrl>
#include <QUrlQuery>

#include <algorithm>

namespace dunmora {

namespace {

/// Whether the URL attaches files to the new message: some mail programs do so without asking.
bool attachesFiles(const QUrl& message)
{
    const auto fields = QUrlQuery(message).queryItems(QUrl::FullyDecoded);
    return std::any_of(fields.begin(), fields.end(), [](const auto& field) {
        return field.first.contains(QLatin1String("attach"), Qt::CaseInsensitive);
    });
}

bool mayBeOpened(const QUrl& url)
{
    const auto scheme = url.scheme();
    if (scheme == QLatin1String("http") || scheme == QLatin1String("https")) {
        return url.isValid() && !url.host().isEmpty();
    }
    return scheme == QLatin1String("mailto") && url.isValid() && !url.path().isEmpty() &&
           !attachesFiles(url);
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
