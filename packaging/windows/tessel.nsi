; The setup of Tessel for Windows: for the user alone and without a question of rights. Switches:
; /S installs silently, /D=FOLDER names the folder (last, and without quotation marks), /AllUsers
; installs for everybody, which wants an administrator. make-windows defines VERSION, STAGE (what is
; installed), ICON, OUTPUT and FILES (a list of what the uninstaller deletes).
Target amd64-unicode
Unicode true
SetCompressor /SOLID lzma
RequestExecutionLevel user
ManifestDPIAware true
ManifestLongPathAware true

!include MUI2.nsh
!include FileFunc.nsh
!include LogicLib.nsh
!include x64.nsh

Name "Tessel"
OutFile "${OUTPUT}"
VIProductVersion "${VERSION}.0"
VIAddVersionKey ProductName "Tessel"
VIAddVersionKey ProductVersion "${VERSION}"
VIAddVersionKey FileVersion "${VERSION}"
VIAddVersionKey FileDescription "Setup of Tessel"
VIAddVersionKey CompanyName "Tessel developers"
VIAddVersionKey LegalCopyright "Tessel developers"

!define MUI_ICON "${ICON}"
!define MUI_UNICON "${ICON}"
!define MUI_FINISHPAGE_RUN "$INSTDIR\tessel.exe"
!insertmacro MUI_PAGE_DIRECTORY
!insertmacro MUI_PAGE_INSTFILES
!insertmacro MUI_PAGE_FINISH
!insertmacro MUI_UNPAGE_CONFIRM
!insertmacro MUI_UNPAGE_INSTFILES
!insertmacro MUI_LANGUAGE "English"

!define CLASSES "Software\Classes"
!define KIND "Tessel.DiskImage"
!define UNINSTALL "Software\Microsoft\Windows\CurrentVersion\Uninstall\Tessel"

!macro ForEachType does
    !insertmacro ${does} ".img"
    !insertmacro ${does} ".ima"
    !insertmacro ${does} ".dsk"
!macroend

; Adds Tessel to what "Open with" offers for a kind of file. The program that opens it stays.
!macro OfferFor extension
    WriteRegStr SHCTX "${CLASSES}\${extension}\OpenWithProgids" "${KIND}" ""
    WriteRegStr SHCTX "${CLASSES}\Applications\tessel.exe\SupportedTypes" "${extension}" ""
!macroend
!macro WithdrawFor extension
    DeleteRegValue SHCTX "${CLASSES}\${extension}\OpenWithProgids" "${KIND}"
    DeleteRegKey /ifempty SHCTX "${CLASSES}\${extension}\OpenWithProgids"
    DeleteRegKey /ifempty SHCTX "${CLASSES}\${extension}"
!macroend

!macro DesktopLearns
    System::Call "shell32::SHChangeNotify(i 0x08000000, i 0, p 0, p 0)"
!macroend

; A program that runs cannot be replaced or deleted.
!macro RefuseWhileRunning
    ${If} ${FileExists} "$INSTDIR\tessel.exe"
        ClearErrors
        FileOpen $0 "$INSTDIR\tessel.exe" a
        ${If} ${Errors}
            MessageBox MB_OK|MB_ICONEXCLAMATION "Tessel is running. Please close it and try again." /SD IDOK
            SetErrorLevel 3
            Quit
        ${EndIf}
        FileClose $0
    ${EndIf}
!macroend

Function .onInit
    ${IfNot} ${RunningX64}
        MessageBox MB_OK|MB_ICONSTOP "Tessel is for 64-bit Windows." /SD IDOK
        SetErrorLevel 3
        Quit
    ${EndIf}
    SetRegView 64
    ${GetParameters} $0
    ClearErrors
    ${GetOptions} $0 "/AllUsers" $1
    ${If} ${Errors}
        SetShellVarContext current
        StrCpy $1 "$LOCALAPPDATA\Programs\Tessel"
    ${Else}
        SetShellVarContext all
        StrCpy $1 "$PROGRAMFILES64\Tessel"
    ${EndIf}
    ${If} $INSTDIR == ""
        ReadRegStr $INSTDIR SHCTX "${UNINSTALL}" "InstallLocation"
    ${EndIf}
    ${If} $INSTDIR == ""
        StrCpy $INSTDIR $1
    ${EndIf}
FunctionEnd

Section
    !insertmacro RefuseWhileRunning
    ClearErrors
    SetOutPath "$INSTDIR"
    File /r "${STAGE}/*"
    WriteUninstaller "$INSTDIR\uninstall.exe"
    ${If} ${Errors}
        MessageBox MB_OK|MB_ICONSTOP "Tessel could not be written to $INSTDIR." /SD IDOK
        SetErrorLevel 3
        Quit
    ${EndIf}
    CreateShortcut "$SMPROGRAMS\Tessel.lnk" "$INSTDIR\tessel.exe"

    WriteRegStr SHCTX "${CLASSES}\${KIND}" "" "FAT disk image"
    WriteRegStr SHCTX "${CLASSES}\${KIND}\DefaultIcon" "" "$INSTDIR\tessel.exe,0"
    WriteRegStr SHCTX "${CLASSES}\${KIND}\shell\open\command" "" '"$INSTDIR\tessel.exe" "%1"'
    WriteRegStr SHCTX "${CLASSES}\Applications\tessel.exe" "FriendlyAppName" "Tessel"
    WriteRegStr SHCTX "${CLASSES}\Applications\tessel.exe\shell\open\command" "" '"$INSTDIR\tessel.exe" "%1"'
    !insertmacro ForEachType OfferFor

    WriteRegStr SHCTX "${UNINSTALL}" "DisplayName" "Tessel"
    WriteRegStr SHCTX "${UNINSTALL}" "DisplayVersion" "${VERSION}"
    WriteRegStr SHCTX "${UNINSTALL}" "DisplayIcon" "$INSTDIR\tessel.exe,0"
    WriteRegStr SHCTX "${UNINSTALL}" "Publisher" "Tessel developers"
    WriteRegStr SHCTX "${UNINSTALL}" "InstallLocation" "$INSTDIR"
    WriteRegStr SHCTX "${UNINSTALL}" "UninstallString" '"$INSTDIR\uninstall.exe"'
    WriteRegStr SHCTX "${UNINSTALL}" "QuietUninstallString" '"$INSTDIR\uninstall.exe" /S'
    WriteRegDWORD SHCTX "${UNINSTALL}" "NoModify" 1
    WriteRegDWORD SHCTX "${UNINSTALL}" "NoRepair" 1
    ${GetSize} "$INSTDIR" "/S=0K" $0 $1 $2
    WriteRegDWORD SHCTX "${UNINSTALL}" "EstimatedSize" $0
    !insertmacro DesktopLearns
SectionEnd

Function un.onInit
    SetRegView 64
    ; Whose it is, the registry knows.
    SetShellVarContext all
    ReadRegStr $0 SHCTX "${UNINSTALL}" "InstallLocation"
    ${If} $0 != $INSTDIR
        SetShellVarContext current
    ${EndIf}
FunctionEnd

; Deletes what was installed and nothing else; the user's settings stay.
Section Uninstall
    !insertmacro RefuseWhileRunning
    !include "${FILES}"
    Delete "$INSTDIR\uninstall.exe"
    RMDir "$INSTDIR"
    Delete "$SMPROGRAMS\Tessel.lnk"
    !insertmacro ForEachType WithdrawFor
    DeleteRegKey SHCTX "${CLASSES}\${KIND}"
    DeleteRegKey SHCTX "${CLASSES}\Applications\tessel.exe"
    DeleteRegKey SHCTX "${UNINSTALL}"
    !insertmacro DesktopLearns
SectionEnd
