#include "tests/fakes/QuietDesktop.h"

#include "platform/TextField.h"
#include "platform/Window.h"

#include <stdexcept>

namespace dunmora::test {

namespace {

class QuietTextField final : public TextField {
public:
    void setHidden(bool /*hidden*/) override {}
    void setNeedsDisplay() override {}
    void setStringValue(std::string_view text) override { stringValue_ = text; }

private:
    std::string stringValue_;
};

class QuietWindow final : public Window {
public:
    void setTitle(const std::string& /*title*/) override {}
    void setLevel(WindowLevel /*level*/) override {}
    void setDelegate(WindowDelegate* /*delegate*/) override {}
    void show(KeyboardFocus /*focus*/) override {}
    void close() override {}
};

class QuietInterface final : public Interface {
public:
    explicit QuietInterface(QuietProgressIndicator& bar) : bar_(bar) {}

    Window& window() override { return window_; }
    TextField& textField(std::string_view /*outlet*/) override { return text_; }
    ProgressIndicator& progressIndicator(std::string_view /*outlet*/) override { return bar_; }
    View& view(std::string_view outlet) override { missing(outlet); }
    Button& button(std::string_view outlet) override { missing(outlet); }
    CheckBox& checkBox(std::string_view outlet) override { missing(outlet); }
    TableView& tableView(std::string_view outlet) override { missing(outlet); }
    DetailsView& detailsView(std::string_view outlet) override { missing(outlet); }
    Menu& menu(std::string_view outlet) override { missing(outlet); }
    Command& command(std::string_view name) override { missing(name); }
    std::vector<Shortcut> shortcuts() const override { return {}; }

private:
    [[noreturn]] static void missing(std::string_view name)
    {
        throw std::logic_error("no " + std::string(name));
    }

    QuietProgressIndicator& bar_;
    QuietWindow window_;
    QuietTextField text_;
};

}  // namespace

void QuietProgressIndicator::setHidden(bool /*hidden*/) {}

void QuietProgressIndicator::setNeedsDisplay()
{
    ++redrawsAsked;
}

void QuietProgressIndicator::setMinValue(double value)
{
    minValue = value;
}

void QuietProgressIndicator::setMaxValue(double value)
{
    maxValue = value;
}

void QuietProgressIndicator::setDoubleValue(double value)
{
    doubleValue = value;
}

void QuietProgressIndicator::startAnimation() {}
void QuietProgressIndicator::stopAnimation() {}

std::unique_ptr<Interface> QuietInterfaceLoader::load(std::string_view /*name*/)
{
    return std::make_unique<QuietInterface>(bar);
}

void QuietApplication::terminate(const void* /*sender*/) {}

int QuietApplication::runModalForWindow(Window& /*window*/)
{
    return kRunAborted;
}

void QuietApplication::abortModal() {}

void QuietApplication::detachNewThread(std::string_view /*name*/, std::function<void()> body)
{
    body();
}

void QuietApplication::performOnMainThread(const std::function<void()>& work)
{
    work();
}

std::optional<std::filesystem::path>
QuietSavePanel::runModal(const std::string& /*name*/, const std::filesystem::path& /*folder*/)
{
    return std::nullopt;
}

std::optional<std::filesystem::path>
QuietOpenPanel::runModal(Kind /*kind*/, const std::filesystem::path& /*folder*/)
{
    return std::nullopt;
}

std::shared_ptr<Connection> QuietConnectionOpener::openConnection(const std::string& /*url*/,
                                                                  ConnectionDelegate& /*delegate*/)
{
    return nullptr;
}

QuietDesktop::QuietDesktop()
{
    Desktop::install(desktop);
}

}  // namespace dunmora::test
