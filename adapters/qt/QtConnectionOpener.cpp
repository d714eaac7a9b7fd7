#include "adapters/qt/QtConnectionOpener.h"

#include "adapters/qt/QtConnection.h"
#include "adapters/qt/QtText.h"

#include <QUrl>

namespace dunmora {

QtConnectionOpener::~QtConnectionOpener()
{
    while (!underWay_.empty()) {
        underWay_.back()->cancel();
    }
}

std::shared_ptr<Connection> QtConnectionOpener::openConnection(const std::string& url,
                                                               ConnectionDelegate& delegate)
{
    const QUrl parsed(toQString(url), QUrl::StrictMode);
    if (!QtConnection::canGet(parsed)) {
        return nullptr;
    }
    const auto forget = [this](const QtConnection& ended) {
        std::erase_if(underWay_,
                      [&](const auto& connection) { return connection.get() == &ended; });
    };
    // The last one to hold it may let go in the middle of its own events.
    return underWay_.emplace_back(new QtConnection(parsed, delegate, timeout_, forget),
                                  [](QtConnection* connection) { connection->deleteLater(); });
}

}  // namespace dunmora
