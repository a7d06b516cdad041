#pragma once

namespace tessel {

class DisplayView;

/// Makes displays readable for screen readers: the whole text, caret and selection, with offsets in
/// UTF-16 units. Each view calls it; calls after the first have no effect.
void InstallAccessibility();

/// Reports that the text has changed, by the part of the change that is visible. Has no effect if
/// the text has not changed.
void NotifyText(DisplayView& view);
/// Reports that the caret or the selection has changed.
void NotifySelection(DisplayView& view);

}  // namespace tessel
