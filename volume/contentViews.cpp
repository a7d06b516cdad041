#include "volume/contentViews.h"

#include <memory>

#include "volume/clusterChain.h"
#include "volume/directory.h"
#include "volume/dumpText.h"
#include "volume/plainText.h"

namespace tessel {
namespace {

bool IsEmptyFile(Long row) { return IsFile(row) && DirEntries(row).FileSize == 0; }

}  // namespace

void ShowFileText(Long row, TextDisplay& display) {
    display.Clear();
    if (IsEmptyFile(row)) return;
    const auto text = std::make_shared<PlainText>(ClusterChain(DirEntries(row).StartCluster));
    display.Append(PlainPiece(text));
    WalkChain(text->Chain(), ContentLength(row, text->Chain()), [&](std::span<const Byte> bytes) {
        text->Add(bytes);
        display.GrowLast(text->Size(), text->LineBreaks());
    });
}

void ShowFileDump(Long row, TextDisplay& display) {
    display.Clear();
    if (IsEmptyFile(row)) return;
    const auto text = std::make_shared<const DumpText>(ClusterChain(DirEntries(row).StartCluster));
    const auto shown = std::make_shared<std::int64_t>(0);
    display.Append(DumpPiece(text, shown));
    CheckChain(text->Chain(), ContentLength(row, text->Chain()), [&](std::int64_t bytes) {
        *shown = bytes;
        display.GrowLast(text->SizeOf(*shown), *shown / 16);
    });
}

}  // namespace tessel
