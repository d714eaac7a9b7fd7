#include "adapters/qt/RowCopy.h"

#include "adapters/qt/TableModel.h"

#include <QClipboard>
#include <QGuiApplication>

#include <utility>

namespace dunmora {

void RowCopy::start(std::vector<std::size_t> sourceRows)
{
    if (sourceRows.empty()) {
        return;
    }
    sourceRows_ = std::move(sourceRows);
    text_.clear();
    loop_.start(
        sourceRows_.size(),
        [this](std::size_t index) {
            if (index > 0) {
                text_ += u'\n';
            }
            text_ += model_.tabSeparatedText(sourceRows_[index]);
        },
        [this] { QGuiApplication::clipboard()->setText(std::exchange(text_, {})); });
}

}  // namespace dunmora
