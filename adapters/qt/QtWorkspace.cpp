#include "adapters/qt/QtWorkspace.h"

#include "adapters/qt/QtAlert.h"
#include "adapters/qt/QtApplication.h"
#include "adapters/qt/QtPath.h"
#include "adapters/qt/QtText.h"
#include "text/DisplayText.h"

#include <QDesktopServices>
#include <QUrl>
#include <QUrlQuery>

#include <algorithm>
#include <cstddef>
#include <optional>
#include <string_view>
#include <system_error>

namespace dunmora {

namespace {

/// What every recipient of a URI should support (RFC 9110 §4.1).
constexpr std::size_t kMaximumAddress = 8000;
/// RFC 1035 §2.3.4 allows 255 octets, which include the lengths of the labels.
constexpr qsizetype kMaximumHost = 253;

/// Whether the URL attaches files to the new message: some mail programs do so without asking.
bool attachesFiles(const QUrl& message)
{
    const auto fields = QUrlQuery(message).queryItems(QUrl::FullyDecoded);
    return std::any_of(fields.begin(), fields.end(), [](const auto& field) {
        return field.first.contains(QLatin1String("attach"), Qt::CaseInsensitive);
    });
}

bool isWebPage(const QUrl& url)
{
    const auto scheme = url.scheme();
    const bool isWeb = scheme == QLatin1String("http") || scheme == QLatin1String("https");
    return isWeb && url.isValid() && !url.host().isEmpty();
}

bool mayBeOpened(const QUrl& url)
{
    return isWebPage(url) || (url.scheme() == QLatin1String("mailto") && url.isValid() &&
                              !url.path().isEmpty() && !attachesFiles(url));
}

/// The host that is looked up, without the brackets of an IPv6 address.
QString hostOf(const QUrl& page)
{
    return page.host(QUrl::FullyEncoded);
}

/// An address from a line that may end in CR LF, of which the line feed is gone.
std::string_view withoutLineEnd(std::string_view url)
{
    return url.ends_with('\r') ? url.substr(0, url.size() - 1) : url;
}

/// Returns what may be opened of an untrusted address, if anything.
std::optional<QUrl> untrustedPage(std::string_view url)
{
    if (url.size() > kMaximumAddress) {
        return std::nullopt;
    }
    QUrl page(toQString(url), QUrl::StrictMode);
    if (!isWebPage(page) || hostOf(page).size() > kMaximumHost) {
        return std::nullopt;
    }
    // "http://known.example@other.example/" leads to the other host.
    page.setUserInfo(QString());
    return page;
}

bool openInProgram(const QUrl& url, QtApplication& application)
{
    bool isOpened = false;
    application.performOnMainThread([&] { isOpened = QDesktopServices::openUrl(url); });
    return isOpened;
}

}  // namespace

bool QtWorkspace::openURL(const std::string& url)
{
    const QUrl parsed(toQString(url), QUrl::StrictMode);
    return mayBeOpened(parsed) && openInProgram(parsed, application_);
}

void QtWorkspace::openWebPage(const std::string& url)
{
    const auto address = withoutLineEnd(url);
    const auto page = untrustedPage(address);
    if (page && openInProgram(*page, application_)) {
        return;
    }
    const auto text = quotedText(shownText(address)) +
                      (page ? " cannot be opened: no web browser could be started."
                            : " cannot be opened: it is not the address of a web page.");
    // Shown later, so that the caller can close its window first.
    const auto report = [&sessions = application_.sessions(), text] {
        QtAlert::runModal(sessions,
                          {text, "", "OK", std::nullopt, std::nullopt, AlertStyle::Failure});
    };
    QMetaObject::invokeMethod(&application_, report, Qt::QueuedConnection);
}

bool QtWorkspace::openLocalPage(const std::filesystem::path& page)
{
    std::error_code error;
    return page.is_absolute() && page.extension() == ".html" &&
           std::filesystem::is_regular_file(page, error) &&
           openInProgram(QUrl::fromLocalFile(textOf(page)), application_);
}

std::string QtWorkspace::webHost(const std::string& url) const
{
    const auto page = untrustedPage(withoutLineEnd(url));
    if (!page) {
        return {};
    }
    const auto host = hostOf(*page).toStdString();
    return host.find(':') == std::string::npos ? host : "[" + host + "]";
}

}  // namespace dunmora
