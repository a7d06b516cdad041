#pragma once

#include <string>

#include "platform/controls.h"

namespace tessel {

/// The folder chooser: a modal window with a drive list, a folder list, and a text box that shows
/// the folder list's path. One instance is created on first use and kept until the program ends, so
/// its controls and its position are kept between uses.
struct dialogGetDirectory {
    /// Sets the controls, and the window's position from the settings or to its default.
    dialogGetDirectory();
    dialogGetDirectory(const dialogGetDirectory&) = delete;
    dialogGetDirectory& operator=(const dialogGetDirectory&) = delete;

    Integer ReturnValue = 0;  ///< 1 after OK; 0 after Cancel or the close box
    bool Cancel = false;  ///< false after OK, true after Cancel; the close box does not change it
    std::string DirName;  ///< in: the folder to start in; out: the folder after OK, "" after Cancel
    std::string DriveName;  ///< in: a path on the drive to start on; out: as DirName

    /// Sets the lists from DirName and DriveName, shows the window and returns when it is hidden
    /// again. The close box does not change DirName, DriveName and Cancel.
    void ShowGetDirectory();
    /// Stores the window's position, unless it is minimised or maximised.
    void Form_Unload();

    Window Form;  ///< 7440 x 5100 twips, neither resizable nor in the task bar
    Button OKButton{.Name = "OKButton", .Caption = "OK", .Bounds = {6120, 480, 1215, 375}};
    Button CancelButton{
        .Name = "CancelButton", .Caption = "Cancel", .Bounds = {6120, 1320, 1215, 375}};
    DriveList driveDriveBox;
    FolderList dirDirBox;
    TextBox txtDirName{.Name = "txtDirName", .Bounds = {120, 4440, 7215, 375}};

  private:
    void InitDirectoryLists();
    void driveDriveBox_Change();
    void dirDirBox_Change();
    void OKButton_Click();
    void CancelButton_Click();
    void Form_CloseBox();

    bool Opening = false;  ///< the program sets the lists, not the user
};

}  // namespace tessel
