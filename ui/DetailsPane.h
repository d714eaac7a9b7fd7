#pragma once

#include "review/CardLines.h"

#include <functional>
#include <span>
#include <string>
#include <string_view>

namespace dunmora {

class Command;
class DetailsView;
class Interface;
class TextField;
class View;

/// The pane below the review table that shows one person's whole card, compared with another copy.
/// The user shows and hides it.
///
/// Thread: the main thread. Errors: none.
class DetailsPane final {
public:
    /// Finds its outlets and connects its command in the main interface, which must outlive this.
    /// `wasShown` is called when the user shows the pane again.
    DetailsPane(Interface& mainInterface, std::function<void()> wasShown);
    ~DetailsPane() = default;
    DetailsPane(const DetailsPane&) = delete;
    DetailsPane& operator=(const DetailsPane&) = delete;

    bool isShown() const { return isShown_; }

    /// Shows a card's lines, below a heading. `other` is what a verdict calls the copies that they
    /// were compared with: "the kept copy".
    void show(std::string_view heading, std::span<const CardLine> lines, std::string_view other);

private:
    void toggle();

    std::function<void()> wasShown_;
    bool isShown_ = true;
    std::string heading_;
    View* vwDetails_;
    TextField* txtDetails_;
    DetailsView* lstDetails_;
    Command* command_;
};

}  // namespace dunmora
