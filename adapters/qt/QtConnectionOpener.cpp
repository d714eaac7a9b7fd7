#include "adapters/qt/QtConnectionOpener.h"

#include "adapters/qt/QtConnection.h"
#include "adapters/qt/QtText.h"

#include <QUrl>

namespace dunmora {

QtConnectionOpener::~QtConnectionOpener()
{
    while (!transfers_.empty()) {
        transfers_.back()->cancel();
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
        std::erase_if(transfers_,
                      [&](const auto& connection) { return connection.get() == &ended; });
    };
    // The last owner may release a connection while it handles its own event.
    return transfers_.emplace_back(new QtConnection(parsed, delegate, timeout_, forget),
                                   [](QtConnection* connection) { connection->deleteLater(); });
}

}  // namespace dunmora
