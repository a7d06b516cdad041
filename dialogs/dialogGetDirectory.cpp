#include "dialogs/dialogGetDirectory.h"

#include "dialogs/settings.h"
#include "platform/host.h"
#include "platform/hostFiles.h"

namespace tessel {
namespace {

/// Runs `step`; returns false when it raises an error.
template <class Step>
bool Try(const Step& step) {
    try {
        step();
        return true;
    } catch (const RuntimeError&) {
        return false;
    }
}

}  // namespace

dialogGetDirectory::dialogGetDirectory() {
    Form.Name = "dialogGetDirectory";
    Form.Caption = "Directory";
    Form.ScaleWidth = 7440;
    Form.ScaleHeight = 5100;
    // The design-time position, used until one is stored.
    Form.Top = 3000;
    Form.Left = 3000;
    driveDriveBox.Name = "driveDriveBox";
    driveDriveBox.Bounds = {120, 240, 5775, 315};
    dirDirBox.Name = "dirDirBox";
    dirDirBox.Bounds = {120, 600, 5775, 3690};

    driveDriveBox.Change = [this] { driveDriveBox_Change(); };
    dirDirBox.Change = [this] { dirDirBox_Change(); };
    OKButton.Click = [this] { OKButton_Click(); };
    CancelButton.Click = [this] { CancelButton_Click(); };
    Form.CloseBox = [this] { Form_CloseBox(); };

    Form.Top = ReadPosition(kTopKey, Form.Top);
    Form.Left = ReadPosition(kLeftKey, Form.Left);
}

void dialogGetDirectory::Form_Unload() {
    if (!Form.Normal) return;
    WritePosition(kTopKey, Form.Top);
    WritePosition(kLeftKey, Form.Left);
}

void dialogGetDirectory::ShowGetDirectory() {
    InitDirectoryLists();
    Form.Visible = true;
    TheHost.ShowModal(Form);
}

void dialogGetDirectory::InitDirectoryLists() {
    const std::string current = CurrentFolder();
    Opening = true;
    if (Try([this] { driveDriveBox.SetDrive(DriveName); })) {
        if (!Try([this] { dirDirBox.SetPath(DirName); })) Try([&] { dirDirBox.SetPath(current); });
    } else {
        Try([&] { driveDriveBox.SetDrive(current); });
    }
    Opening = false;
    // When no folder could be shown so far, show the current one or the first drive's root.
    for (const std::string& folder : {current, DriveRoot(HostDrives().front())}) {
        if (dirDirBox.Path().empty()) Try([&] { dirDirBox.SetPath(folder); });
    }
    txtDirName.Text = dirDirBox.Path();
}

void dialogGetDirectory::driveDriveBox_Change() {
    const std::string root = DriveRoot(driveDriveBox.Drive());
    // The user may have access to the start folder without access to the root of its drive. When
    // the user picks a drive, its root must be shown: SetPath raises an error if it cannot be.
    if (Opening && !FolderCanBeListed(root)) return;
    dirDirBox.SetPath(root);
}

void dialogGetDirectory::dirDirBox_Change() { txtDirName.Text = dirDirBox.Path(); }

void dialogGetDirectory::OKButton_Click() {
    DirName = dirDirBox.Path();
    DriveName = driveDriveBox.Drive();
    Cancel = false;
    ReturnValue = 1;
    Form.Visible = false;
}

void dialogGetDirectory::CancelButton_Click() {
    DirName.clear();
    DriveName.clear();
    Cancel = true;
    ReturnValue = 0;
    Form.Visible = false;
}

void dialogGetDirectory::Form_CloseBox() {
    ReturnValue = 0;
    Form.Visible = false;
}

}  // namespace tessel
