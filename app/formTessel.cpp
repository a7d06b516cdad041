#include "app/formTessel.h"

#include <new>
#include <utility>

#include "reports/directoryLines.h"
#include "volume/modGlobals.h"
#include "volume/saveTarget.h"

namespace tessel {

formTessel::formTessel() {
    Form.Name = "formTessel";
    Form.Caption = "Tessel";
    Form.ScaleWidth = 12090;
    Form.ScaleHeight = 5535;

    constexpr std::array<const char*, 4> kModes = {"File info", "Display", "Dump", "SuperBlock"};
    constexpr std::array<int, 4> kWidths = {1095, 855, 735, 1215};
    for (std::size_t i = 0; i < optDisplay.size(); ++i) {
        optDisplay[i].Name = "optDisplay(" + std::to_string(i) + ")";
        optDisplay[i].Caption = kModes[i];
        optDisplay[i].Bounds = {240, 240 + 240 * static_cast<int>(i), kWidths[i], 195};
        optDisplay[i].Group = optDisplay;
        optDisplay[i].Click = Guarded(&formTessel::optDisplay_Click);
    }
    optDisplay[0].Value = true;
    // SuperBlock has no view: it is shown, but cannot be chosen.
    optDisplay[3].Enabled = false;

    listDIR.Name = "listDIR";
    listDIR.Bounds = ControlBounds{0, 1560, 1815, 3210};
    listDIR.Hint = EntryHint;
    listDIR.Click = Guarded(&formTessel::listDIR_Click);
    listDIR.DblClick = Guarded(&formTessel::listDIR_DblClick);
    rtfDisplay.Name = "rtfDisplay";
    rtfDisplay.Bounds = ControlBounds{1800, 600, 8295, 5175};

    cmdABORT.Click = Guarded(&formTessel::cmdABORT_Click);
    cmdDirectory.Click = Guarded(&formTessel::cmdDirectory_Click);
    cmdDisplayBootSector.Click = Guarded(&formTessel::cmdDisplayBootSector_Click);
    cmdFat0.Click = Guarded(&formTessel::cmdFat0_Click);
    cmdRoot.Click = Guarded(&formTessel::cmdRoot_Click);

    constexpr std::array<std::array<const char*, 2>, 9> kFileEntries = {{
        {"mnuOpen", "Open"},
        {"mnuClose", "Close"},
        {"mnuSep8472847", "-"},
        {"mnuSaveTxt", "Save Display"},
        {"mnuSaveFile", "Save File"},
        {"mnuSep9282372899", "-"},
        {"mnuSaveDirectory", "Save Directory"},
        {"mnuSep124712", "-"},
        {"mnuExit", "Exit"},
    }};
    for (std::size_t i = 0; i < FileEntries.size(); ++i) {
        FileEntries[i].Name = kFileEntries[i][0];
        FileEntries[i].Caption = kFileEntries[i][1];
    }
    mnuOffset.Name = "mnuOffset";
    mnuOffset.Caption = "Offset";
    mnuOpen.Click = Guarded(&formTessel::mnuOpen_Click);
    mnuClose.Click = Guarded(&formTessel::mnuClose_Click);
    mnuSaveTxt.Click = Guarded(&formTessel::mnuSaveTxt_Click);
    mnuSaveFile.Click = Guarded(&formTessel::mnuSaveFile_Click);
    mnuSaveDirectory.Click = Guarded(&formTessel::mnuSaveDirectory_Click);
    mnuExit.Click = Guarded(&formTessel::mnuExit_Click);
    mnuOffset.Click = Guarded(&formTessel::mnuOffset_Click);
    mnuFile = {"mnuFile", "File", Guarded(&formTessel::mnuFile_Click), FileEntries};
    mnuOptions = {"mnuOptions", "Options", Guarded(&formTessel::mnuOptions_Click), OptionsEntries};

    CommonDialog1.Refusal = TargetRefusal;
    Form.Resize = Guarded(&formTessel::Form_Resize);
    Form.CloseBox = Guarded(&formTessel::Form_CloseBox);
    RunGuarded([this] { Form_Initialize(); });
}

std::function<void()> formTessel::Guarded(Handler handler) {
    return [this, handler] { RunGuarded([this, handler] { (this->*handler)(); }); };
}

void formTessel::RunGuarded(const std::function<void()>& handler) {
    const bool wasBusy = Busy;
    const auto report = [this, wasBusy](const std::string& text) {
        if (Busy && !wasBusy) {
            SetBusy(false);
            EnableControls(VolumeOpen);
        }
        TheHost.MessageBox(text, "Error");
    };
    {
        // Includes the time that the message box of an error is shown.
        const struct Running {
            int& Count;
            explicit Running(int& count) : Count(count) { ++Count; }
            ~Running() { --Count; }
        } running(RunningHandlers);
        try {
            handler();
        } catch (const RuntimeError& error) {
            report(ErrorReport(error));
        } catch (const std::bad_alloc&) {
            report(ErrorReport({kOutOfMemory, kProjectName, ErrorText(kOutOfMemory)}));
        } catch (const std::exception& error) {
            report(std::string("The command ended with an unexpected error.\r\n") + error.what());
        }
    }

    // Close and Exit, chosen during a long operation, run when no handler uses the image any more.
    if (RunningHandlers > 0) return;
    if (std::exchange(ClosePending, false)) mnuClose.Click();
    if (std::exchange(ExitPending, false)) TheHost.EndProgram();
}

void formTessel::Form_Load() {
    RunGuarded([this] {
        SetVolumeOpen(false);
        rtfDisplay.Text.TabStops.clear();
        for (int i = 0; i < 10; ++i) rtfDisplay.Text.TabStops.push_back(9 * i);
    });
}

void formTessel::Form_Unload() {
    RunGuarded([this] {
        if (Chooser) Chooser->Form_Unload();
    });
}

void formTessel::Form_Resize() {
    const ControlBounds display = rtfDisplay.Bounds;
    const int width = Form.ScaleWidth - display.Left;
    const int height = Form.ScaleHeight - display.Top;
    if (width > 0 && height > 0) {
        rtfDisplay.Bounds = ControlBounds{display.Left, display.Top, width, height};
    }
    const ControlBounds list = listDIR.Bounds;
    const int listHeight = Form.ScaleHeight - list.Top;
    // The list's height also depends on the display's width.
    if (width > 0 && listHeight > 0) {
        listDIR.Bounds = ControlBounds{list.Left, list.Top, list.Width, listHeight};
    }
}

void formTessel::Form_CloseBox() { mnuExit_Click(); }

void formTessel::mnuExit_Click() {
    if (Busy || SavingText) {
        StopAll();
        ExitPending = true;
    } else {
        TheHost.EndProgram();
    }
}

void formTessel::cmdABORT_Click() {
    // While a view runs inside Save Display, STOP ends the view alone; a Save Display that was
    // started inside a view ends together with it.
    if (SavingText && (!Busy || SavingWithinView)) StopSaving = true;
    StopRequested = true;
}

void formTessel::StopAll() { StopRequested = StopSaving = true; }

void formTessel::SetBusy(bool flag) {
    Busy = flag;
    StopRequested = false;
    if (!flag) WasBusy = true;
    TheHost.SetPointer(flag);
    EnableStop();
    EnableControls(!flag);
}

void formTessel::EnableStop() {
    // STOP is enabled at the start, until the busy state is left for the first time.
    cmdABORT.Enabled = Busy || SavingText || !WasBusy;
}

void formTessel::EnableControls(bool flag) {
    cmdDirectory.Enabled = flag;
    cmdFat0.Enabled = flag;
    cmdRoot.Enabled = flag;
    cmdDisplayBootSector.Enabled = flag;
    for (std::size_t i = 0; i < 3; ++i) optDisplay[i].Enabled = flag;
    listDIR.Enabled = flag;
    mnuSaveFile.Enabled = flag;
    mnuSaveDirectory.Enabled = flag;
}

void formTessel::SetVolumeOpen(bool flag) {
    VolumeOpen = flag;
    rtfDisplay.Placeholder = flag ? "" : "Open a disk image with File > Open, or drop one here.";
    if (!flag) {
        ClearList();
        ClearDisplay();
    }
    EnableControls(flag);
}

void formTessel::ClearDisplay() { rtfDisplay.Text.Clear(); }

}  // namespace tessel
