#pragma once

#include <string>

#include "platform/controls.h"

namespace tessel {

/// The folder chooser: a modal window with a drive list, a folder list, and a text line that shows
/// the folder list's path. One instance lives from its first use to the end of the program, so its
/// controls and its place on the screen last from one use to the next.
struct dialogGetDirectory {
    /// Loads the window: it stands where the settings say, or where it was designed to.
    dialogGetDirectory();
    dialogGetDirectory(const dialogGetDirectory&) = delete;
    dialogGetDirectory& operator=(const dialogGetDirectory&) = delete;

    Integer ReturnValue = 0;  ///< 1 after OK; 0 after Cancel or the close box
    bool Cancel = false;      ///< false after OK, true after Cancel; the close box leaves it
    std::string DirName;      ///< in: where to start; out: the folder after OK, "" after Cancel
    std::string DriveName;    ///< in: a path on the drive to start on; out: as DirName

    /// Shows the window with its lists set from DirName and DriveName, and returns when it is
    /// hidden again. The close box leaves DirName, DriveName and Cancel as they were.
    void ShowGetDirectory();
    /// Stores where the window stands, unless it is minimised or maximised.
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

    bool Opening = false;  ///< the program, and not a person, sets the lists
};

}  // namespace tessel
