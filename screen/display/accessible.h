#pragma once

namespace tessel {

class DisplayView;

/// Makes displays readable for screen readers: they find the lines in sight as a text of their own,
/// whose offsets count from the first of them. Called by each view; the first call counts.
void InstallAccessibility();

/// True while something listens; what is told below costs nothing otherwise.
bool AccessibilityActive();
/// The lines in sight may be others now.
void NotifyVisibleLines(DisplayView& view);
/// The caret or the selection has moved.
void NotifySelection(DisplayView& view);

}  // namespace tessel
