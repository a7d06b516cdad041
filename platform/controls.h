#pragma once

#include <cstdint>
#include <functional>
#include <span>
#include <string>
#include <vector>

#include "platform/property.h"
#include "platform/runtimeError.h"
#include "platform/textDisplay.h"

/// The controls of the program's windows as plain records. A screen attaches to them by observing
/// their properties and by calling what stands under "a person"; nothing here knows a toolkit.
namespace tessel {

/// Where a control stands inside its window. All four are twips (1/1440 inch, 15 a logical pixel).
struct ControlBounds {
    int Left = 0;
    int Top = 0;
    int Width = 0;
    int Height = 0;
    bool operator==(const ControlBounds&) const = default;
};

inline constexpr int kTwipsPerPixel = 15;

enum class TextColour { kBlack, kBlue };

/// Calls an event's handler, when there is one.
inline void RaiseEvent(const std::function<void()>& handler) {
    if (handler) handler();
}

struct Frame {
    std::string Name{};
    std::string Caption{};
    ControlBounds Bounds{};
};

struct Label {
    std::string Name{};
    ControlBounds Bounds{};
    Property<std::string> Caption{};
    Property<TextColour> Colour{};
    Property<std::string> Hint{};  ///< more about the caption: tool tip and accessible description
};

struct Button {
    std::string Name{};
    std::string Caption{};
    ControlBounds Bounds{};
    Property<bool> Enabled{true};
    std::function<void()> Click{};

    /// A person's click: does nothing while the button is disabled.
    void Press() {
        if (Enabled) RaiseEvent(Click);
    }
};

/// One of a group of buttons of which at most one is chosen.
struct OptionButton {
    std::string Name{};
    std::string Caption{};
    ControlBounds Bounds{};
    Property<bool> Enabled{true};
    Property<bool> Value{};
    std::function<void()> Click{};
    std::span<OptionButton> Group{};  ///< all buttons of the group, this one too

    /// The program's choice: raises Click when the choice changes.
    void Choose();
    /// A person's click: chooses, and raises Click also on the button that is already chosen, so
    /// that an entry can be shown again over a report. Does nothing while disabled.
    void Press();
};

/// A list of text lines that each carry a number.
class ListBox {
  public:
    std::string Name{};
    Property<ControlBounds> Bounds{};
    Property<bool> Enabled{true};
    std::function<void()> Click{};     ///< a line was selected
    std::function<void()> DblClick{};  ///< a line was double-clicked; its Click has already run

    void Clear();
    void AddItem(std::string text, Long itemData);
    int Count() const { return static_cast<int>(Items.size()); }
    /// `line` is 0 to Count() - 1; anything else raises 9.
    const std::string& Text(int line) const { return ItemAt(line).Text; }
    Long ItemData(int line) const { return ItemAt(line).Data; }

    /// The selected line, -1 when none is. Assign through Select.
    int ListIndex() const { return Selected; }
    /// The program's selection: raises Click when it changes the selected line. -1 selects none,
    /// without an event; any other line outside the list raises 9.
    void Select(int line);
    /// A person's click on a line: selects it and raises Click, also on the line that is already
    /// selected. Does nothing while disabled; raises as Select does.
    void ClickLine(int line);
    /// A person's double-click: the click, and then DblClick.
    void DoubleClickLine(int line);

    /// The notices to the one screen: lines were added or removed; another line is selected.
    std::function<void()> LinesChanged{};
    std::function<void()> SelectionChanged{};

  private:
    struct Item {
        std::string Text{};
        Long Data;
    };
    const Item& ItemAt(int line) const;

    std::vector<Item> Items{};
    int Selected = -1;
};

/// The rich-text display: its text, and where it stands.
struct DisplayBox {
    std::string Name{};
    Property<ControlBounds> Bounds{};
    TextDisplay Text;
};

struct TextBox {
    std::string Name{};
    ControlBounds Bounds{};
    Property<std::string> Text{};  ///< shown and typed into
};

struct MenuEntry {
    std::string Name{};
    std::string Caption{};  ///< "-" is a separator line
    Property<bool> Enabled{true};
    std::function<void()> Click{};

    bool IsSeparator() const { return Caption == "-"; }
    /// A person's choice of the entry: does nothing while it is disabled.
    void Press() {
        if (Enabled && !IsSeparator()) RaiseEvent(Click);
    }
};

struct Menu {
    std::string Name{};
    std::string Caption{};
    std::function<void()> Click{};  ///< the menu opens
    std::span<MenuEntry> Entries{};
};

/// The list of the host's drives (where there are no drive letters: of the mounted file systems'
/// folders), one of them chosen.
class DriveList {
  public:
    std::string Name{};
    ControlBounds Bounds{};
    std::function<void()> Change{};

    const std::string& Drive() const { return Chosen; }
    /// Chooses the drive that `path` lies on and raises Change when it is another one. Raises 76
    /// (Path not found) when the host has no such drive.
    void SetDrive(const std::string& path);
    /// The notice to the one screen: another drive is chosen.
    std::function<void()> DriveChanged{};

  private:
    std::string Chosen{};
};

/// The list of a folder's sub-folders and of the folders above it.
class FolderList {
  public:
    std::string Name{};
    ControlBounds Bounds{};
    std::function<void()> Change{};

    const std::string& Path() const { return Chosen; }
    /// Goes to the folder `path` and raises Change when it is another one. Raises 76 when it is no
    /// folder that can be entered; the list then stays where it was.
    void SetPath(const std::string& path);
    /// The notice to the one screen: another folder is shown.
    std::function<void()> PathChanged{};

  private:
    std::string Chosen{};
};

/// A window as its program sees it.
struct Window {
    std::string Name{};
    Property<std::string> Caption{};
    int ScaleWidth = 0;   ///< inner size, twips
    int ScaleHeight = 0;  ///< inner size, twips
    float Left = 0;       ///< on the screen, twips
    float Top = 0;        ///< on the screen, twips
    bool Normal = true;   ///< neither minimised nor maximised
    Property<bool> Visible{};
    std::function<void()> Resize{};    ///< the inner size has changed
    std::function<void()> CloseBox{};  ///< a person closes the window by its title bar
};

}  // namespace tessel
