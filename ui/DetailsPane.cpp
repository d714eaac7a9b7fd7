#include "ui/DetailsPane.h"

#include "platform/DetailsView.h"
#include "platform/InterfaceLoader.h"
#include "platform/TextField.h"
#include "text/DisplayText.h"
#include "ui/GroupedNumber.h"

#include <algorithm>
#include <string>
#include <utility>
#include <vector>

namespace dunmora {

namespace {

/// More than a person's card has. Measuring the lines of a longer one would stall the window.
constexpr std::size_t kMostLines = 300;
/// A value that is longer is not read aloud.
constexpr std::size_t kMaxSpokenBytes = kMaxShownBytes / 2;

DetailsLine::Sign signOf(CardVerdict verdict)
{
    switch (verdict) {
    case CardVerdict::Same:
        return DetailsLine::Sign::Same;
    case CardVerdict::Different:
        return DetailsLine::Sign::Different;
    case CardVerdict::OnlyHere:
        return DetailsLine::Sign::OnlyHere;
    case CardVerdict::None:
        break;
    }
    return DetailsLine::Sign::None;
}

std::string verdictText(const CardLine& line, std::string_view other)
{
    switch (line.verdict) {
    case CardVerdict::Same:
        return "same in " + std::string(other);
    case CardVerdict::Different:
        return "in " + std::string(other) + ": " + line.keptValue;
    case CardVerdict::OnlyHere:
        return "only here";
    case CardVerdict::None:
        break;
    }
    return {};
}

DetailsLine detailsLine(const CardLine& line, std::string_view other)
{
    DetailsLine shown;
    shown.title = line.title;
    shown.value = line.value;
    shown.sign = signOf(line.verdict);
    shown.verdict = verdictText(line, other);
    shown.picture = line.picture;
    shown.accessibleText = shown.title + ": ";
    shown.accessibleText += shownPart(shown.value, kMaxSpokenBytes);
    if (!shown.verdict.empty()) {
        shown.accessibleText += "; " + shown.verdict;
    }
    return shown;
}

}  // namespace

DetailsPane::DetailsPane(Interface& mainInterface, std::function<void()> wasShown)
    : wasShown_(std::move(wasShown)),
      vwDetails_(&mainInterface.view("vwDetails")),
      txtDetails_(&mainInterface.textField("txtDetails")),
      lstDetails_(&mainInterface.detailsView("lstDetails")),
      command_(&mainInterface.command("OnDetails"))
{
    command_->setHandler([this](View* /*sender*/) { toggle(); });
    command_->setChecked(isShown_);
}

void DetailsPane::show(std::string_view heading, std::span<const CardLine> lines,
                       std::string_view other)
{
    // Assistive technology reads a text that is set again.
    if (auto text = windowText(heading); text != heading_) {
        heading_ = std::move(text);
        txtDetails_->setStringValue(heading_);
    }
    std::vector<DetailsLine> shown;
    for (const auto& line : lines.first(std::min(lines.size(), kMostLines))) {
        shown.push_back(detailsLine(line, other));
    }
    if (lines.size() > kMostLines) {
        DetailsLine more;
        more.value = groupedNumber(lines.size() - kMostLines) + " more";
        more.accessibleText = more.value;
        shown.push_back(std::move(more));
    }
    lstDetails_->setLines(std::move(shown));
}

void DetailsPane::toggle()
{
    isShown_ = !isShown_;
    command_->setChecked(isShown_);
    vwDetails_->setHidden(!isShown_);
    if (isShown_) {
        wasShown_();
    }
}

}  // namespace dunmora
