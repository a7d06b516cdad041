#include "screen/display/text/textSearch.h"

#include <algorithm>
#include <functional>

namespace tessel {
namespace {

void FoldCase(std::string& text) {
    // Without a branch: a large part of what a search costs.
    for (char& byte : text) {
        const bool capital = byte >= 'A' && byte <= 'Z';
        byte = static_cast<char>(byte | (capital ? 0x20 : 0));
    }
}

/// Where `needle` stands in `hay`, the last place when `backwards`; -1 when it doesn't.
std::int64_t Find(const std::string& hay, const std::string& needle, bool backwards) {
    if (backwards) {
        const std::boyer_moore_horspool_searcher wanted(needle.rbegin(), needle.rend());
        const auto [from, to] = wanted(hay.rbegin(), hay.rend());
        return from == to ? -1 : hay.rend() - to;
    }
    const std::boyer_moore_horspool_searcher wanted(needle.begin(), needle.end());
    const auto [from, to] = wanted(hay.begin(), hay.end());
    return from == to ? -1 : from - hay.begin();
}

}  // namespace

TextSearch::TextSearch(const TextDisplay& text, SearchWish wish, TextOffset from)
    : Text(text),
      Generation(text.Generation()),
      Wanted(std::move(wish)),
      Needle(Wanted.Text),
      First{},
      Second{},
      Places(0) {
    if (!Wanted.MatchCase) FoldCase(Needle);
    const std::int64_t size = HitSize();
    if (size > 0) Places = std::max<std::int64_t>(Text.Size() - size + 1, 0);
    if (Wanted.Backwards) {
        const TextOffset turn = std::clamp<TextOffset>(from - size + 1, 0, Places);
        First = {0, turn};
        Second = {turn, Places};
    } else {
        const TextOffset turn = std::clamp<TextOffset>(from, 0, Places);
        First = {turn, Places};
        Second = {0, turn};
    }
}

TextSearch::State TextSearch::Step() {
    if (!SecondLeg && First.From >= First.To) SecondLeg = true;
    Leg& leg = SecondLeg ? Second : First;
    if (leg.From >= leg.To) return State::kNone;
    Leg part = leg;
    if (Wanted.Backwards) {
        part.From = std::max(leg.From, leg.To - kStep);
        leg.To = part.From;
    } else {
        part.To = std::min(leg.To, leg.From + kStep);
        leg.From = part.To;
    }
    Done += part.To - part.From;
    return ScanPart(part);
}

TextSearch::State TextSearch::ScanPart(Leg part) {
    // A hit may reach over the border of a part, but begins in one only.
    std::string hay = Text.Text(part.From, part.To - part.From + HitSize() - 1);
    if (!Wanted.MatchCase) FoldCase(hay);
    const std::int64_t at = Find(hay, Needle, Wanted.Backwards);
    if (at < 0) return State::kGoing;
    Found = part.From + at;
    return State::kFound;
}

int TextSearch::Percent() const {
    return Places == 0 ? 100 : static_cast<int>(Done * 100 / Places);
}

}  // namespace tessel
