#include "ui/AppData.h"

#include <utility>

namespace dunmora {

AppData& AppData::app()
{
    static auto& instance = *new AppData;
    return instance;
}

void AppData::setProgress(std::shared_ptr<ProgressWindowController> progress)
{
    progress_ = std::move(progress);
}

}  // namespace dunmora
