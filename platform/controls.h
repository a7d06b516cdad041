#pragma once

#include <cstdint>
#include <functional>
#include <span>
#include <string>
#include <vector>

#include "platform/property.h"
#include "platform/runtimeError.h"
#include "platform/textDisplay.h"

/// The controls of the program's windows as plain records, independent of any toolkit. A screen
/// observes their properties, and calls the functions described as actions of the user.
namespace tessel {

/// A control's rectangle inside its window, in twips (1/1440 inch, 15 per logical pixel).
struct ControlBounds {
    int Left = 0;
    int Top = 0;
    int Width = 0;
    int Height = 0;
    bool operator==(const ControlBounds&) const = default;
};

inline constexpr int kTwipsPerPixel = 15;

enum class TextColour { kBlack, kBlue };

/// Calls an event's handler if there is one.
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

    /// The user clicks the button. Does nothing while it is disabled.
    void Press() {
        if (Enabled) RaiseEvent(Click);
    }
};

/// One of a group of radio buttons, of which at most one is chosen.
struct OptionButton {
    std::string Name{};
    std::string Caption{};
    ControlBounds Bounds{};
    Property<bool> Enabled{true};
    Property<bool> Value{};
    std::function<void()> Click{};
    std::span<OptionButton> Group{};  ///< all buttons of the group, including this one

    /// The program chooses the button. Raises Click if it was not chosen already.
    void Choose();
    /// The user clicks the button: chooses it and raises Click, even if it was chosen already, so
    /// that a click replaces a report by the selected entry. Does nothing while disabled.
    void Press();
};

/// A list of text lines, each with a number.
class ListBox {
  public:
    std::string Name{};
    Property<ControlBounds> Bounds{};
    Property<bool> Enabled{true};
    std::function<void()> Click{};     ///< a line was selected
    std::function<void()> DblClick{};  ///< a line was double-clicked; Click was raised before
    /// Returns more about the line with this number, for its tool tip and accessible description.
    std::function<std::string(Long itemData)> Hint{};

    void Clear();
    void AddItem(std::string text, Long itemData);
    int Count() const { return static_cast<int>(Items.size()); }
    /// `line` is 0 to Count() - 1; any other value raises 9.
    const std::string& Text(int line) const { return ItemAt(line).Text; }
    Long ItemData(int line) const { return ItemAt(line).Data; }

    /// The selected line, -1 for none. Select changes it.
    int ListIndex() const { return Selected; }
    /// The program selects a line. Raises Click if it was not selected already. -1 clears the
    /// selection without a Click; any other line outside the list raises 9.
    void Select(int line);
    /// The user clicks a line: selects it and raises Click, even if it was selected already. Does
    /// nothing while disabled; a line outside the list raises 9.
    void ClickLine(int line);
    /// The user double-clicks a line: as ClickLine, then raises DblClick unless the click disabled
    /// the list.
    void DoubleClickLine(int line);

    /// Set by the screen that shows the list: moves the keyboard to it.
    std::function<void()> TakeFocus{};
    /// Set by the screen that shows the list: lines were added or removed.
    std::function<void()> LinesChanged{};
    /// Set by the screen that shows the list: another line, or none, is selected.
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

/// The text display.
struct DisplayBox {
    std::string Name{};
    Property<ControlBounds> Bounds{};
    TextDisplay Text;
    /// Shown in grey while the text is empty; not a part of the text.
    Property<std::string> Placeholder{};
};

struct TextBox {
    std::string Name{};
    ControlBounds Bounds{};
    Property<std::string> Text{};  ///< changed by the program and by the user's typing
};

struct MenuEntry {
    std::string Name{};
    std::string Caption{};  ///< "-" is a separator line
    Property<bool> Enabled{true};
    std::function<void()> Click{};

    bool IsSeparator() const { return Caption == "-"; }
    /// The user chooses the entry. Does nothing while it is disabled, and on a separator.
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

/// The list of the host's drives (on hosts without drive letters, the mount points of its file
/// systems), one of them chosen.
class DriveList {
  public:
    std::string Name{};
    ControlBounds Bounds{};
    std::function<void()> Change{};

    const std::string& Drive() const { return Chosen; }
    /// Chooses the drive that holds `path`, and raises Change if it was not chosen already. Raises
    /// 76 (Path not found) when the host has no such drive. When Change raises an error, the
    /// previous drive is chosen again and the error goes to the caller.
    void SetDrive(const std::string& path);
    /// Set by the screen that shows the list: another drive is chosen.
    std::function<void()> DriveChanged{};

  private:
    std::string Chosen{};
};

/// The list of a folder's parent folders and sub-folders.
class FolderList {
  public:
    std::string Name{};
    ControlBounds Bounds{};
    std::function<void()> Change{};

    const std::string& Path() const { return Chosen; }
    /// Shows the folder `path`, and raises Change if it was not shown already. Raises 76, without a
    /// change, when `path` is not a folder that can be listed.
    void SetPath(const std::string& path);
    /// Set by the screen that shows the list: another folder is shown.
    std::function<void()> PathChanged{};

  private:
    std::string Chosen{};
};

/// A window of the program.
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
    std::function<void()> CloseBox{};  ///< the user closes the window by its title bar
};

}  // namespace tessel
