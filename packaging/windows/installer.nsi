; Installs Kivo Screen for one user, with no rights of an administrator. build_installer.sh calls this with
;   STAGE         the folder with the program as it is to be installed; its "installed.txt" names every file in it and then
;                 every folder, with a backslash at the end
;   VERSION, SIZE_KB, OUTPUT, ICON
;
; Command line: /S installs or removes without asking, /D=FOLDER says where to, /AUTOSTART starts it with Windows,
; /NOAUTOSTART no longer does. The uninstaller keeps what the user made; /SETTINGS removes that too. The exit status is 0,
; or 2 where nothing could be done.

Target amd64-unicode ; as the program: the installer needs nothing that is not needed anyway
Unicode true
SetCompressor /SOLID lzma
RequestExecutionLevel user
Name "Kivo Screen"
OutFile "${OUTPUT}"
InstallDir "$LOCALAPPDATA\Programs\Kivo Screen"
!define UNINSTALL_KEY "Software\Microsoft\Windows\CurrentVersion\Uninstall\Kivo Screen"
!define RUN_KEY "Software\Microsoft\Windows\CurrentVersion\Run"
; Where the task manager and the system's settings note that an entry of that key is switched off.
!define APPROVED_KEY "Software\Microsoft\Windows\CurrentVersion\Explorer\StartupApproved\Run"
; Unpacked here first, inside the target: whatever goes wrong then, the version that is there stays whole.
!define UNPACKED "$INSTDIR\KivoScreen.new"
InstallDirRegKey HKCU "${UNINSTALL_KEY}" "InstallLocation"
AllowSkipFiles off ; a file that cannot be written ends it, also with /S
ManifestDPIAware true
VIProductVersion "${VERSION}.0"
VIAddVersionKey "ProductName" "Kivo Screen"
VIAddVersionKey "FileDescription" "Kivo Screen installer"
VIAddVersionKey "FileVersion" "${VERSION}"
VIAddVersionKey "ProductVersion" "${VERSION}"
VIAddVersionKey "LegalCopyright" "MIT licence"

!include MUI2.nsh
!include FileFunc.nsh
!include TextFunc.nsh
!include LogicLib.nsh
!include WinMessages.nsh
!include Sections.nsh

Var Former ; the folder of the version that is there already; empty where there is none
Var Folder ; whose files are looked at, without a backslash at its end
Var List   ; the file that names them
Var Busy   ; one of them that somebody holds open
Var Tries
Var Ended  ; 1: a running copy has been asked to end

!define MUI_ICON "${ICON}"
!define MUI_UNICON "${ICON}"
!define MUI_COMPONENTSPAGE_SMALLDESC
!define MUI_FINISHPAGE_RUN "$INSTDIR\KivoScreen.exe"
!insertmacro MUI_PAGE_COMPONENTS
!define MUI_PAGE_CUSTOMFUNCTION_PRE SkipFolderPage
!insertmacro MUI_PAGE_DIRECTORY
!insertmacro MUI_PAGE_INSTFILES
!insertmacro MUI_PAGE_FINISH
!insertmacro MUI_UNPAGE_COMPONENTS
!insertmacro MUI_UNPAGE_INSTFILES
!insertmacro MUI_LANGUAGE "English"
!insertmacro MUI_LANGUAGE "SimpChinese"
!insertmacro MUI_LANGUAGE "Russian"

!include /CHARSET=UTF8 installer_texts.nsh

; What installer and uninstaller both do. Functions of an uninstaller have names of their own.
!macro SharedFunctions un

; Asks the running copies to end, as the end of the user's session would: an ordinary close only hides them in the tray. A
; folder window may have the program's title, and a hidden window may not be there yet, so what counts is whose window it is.
Function ${un}EndCopies
    StrCpy $0 0
    ${Do}
        FindWindow $0 "" "" 0 $0
        ${If} $0 = 0
            ${ExitDo}
        ${EndIf}
        System::Call 'user32::GetClassNameW(p r0, w .r1, i 100)'
        StrCpy $1 $1 2
        ${If} $1 != "Qt"
            ${Continue}
        ${EndIf}
        System::Call 'user32::GetWindowThreadProcessId(p r0, *i .r1)'
        System::Call 'kernel32::OpenProcess(i 0x1000, i 0, i r1)p.r2' ; PROCESS_QUERY_LIMITED_INFORMATION
        ${If} $2 <> 0
            System::Call 'kernel32::QueryFullProcessImageNameW(p r2, i 0, w .r3, *i ${NSIS_MAX_STRLEN})'
            System::Call 'kernel32::CloseHandle(p r2)'
            StrCpy $3 $3 "" -15
            ${If} $3 == "\KivoScreen.exe"
                SendMessage $0 ${WM_ENDSESSION} 1 0 /TIMEOUT=3000
                StrCpy $Ended 1
            ${EndIf}
        ${EndIf}
    ${Loop}
FunctionEnd

; The next line of the list that is open as $8, in $9; empty at its end. A list in the user's folder may be damaged, and what
; is deleted by it must not lie elsewhere or be more than one file.
Function ${un}NextListed
    ${Do}
        ClearErrors
        FileRead $8 $9
        ${If} ${Errors}
            StrCpy $9 ""
            ${ExitDo}
        ${EndIf}
        ${TrimNewLines} "$9" $9
        StrLen $7 $9
        System::Call 'shlwapi::StrCSpnW(w r9, w "*?:/")i.r6'
        System::Call 'shlwapi::StrStrW(w r9, w "..")p.r5'
        ${If} $7 > 0
        ${AndIf} $7 = $6
        ${AndIf} $5 = 0
            ${ExitDo}
        ${EndIf}
    ${Loop}
FunctionEnd

Function ${un}FindBusy
    StrCpy $Busy ""
    FileOpen $8 "$List" r
    ${Do}
        Call ${un}NextListed
        StrCpy $4 $9 1 -1
        ${If} $9 == ""
            ${ExitDo}
        ${ElseIf} $4 != "\"
        ${AndIf} ${FileExists} "$Folder\$9"
            SetFileAttributes "$Folder\$9" NORMAL ; what is read-only could not be opened either
            ClearErrors
            FileOpen $4 "$Folder\$9" a
            ${If} ${Errors}
                StrCpy $Busy "$Folder\$9"
                ${ExitDo}
            ${EndIf}
            FileClose $4
        ${EndIf}
    ${Loop}
    FileClose $8
FunctionEnd

; Comes back when none of the files in $Folder is in use; ends the program where that cannot be had. Nothing has been changed
; then, so a copy that was ended on the way is started again.
Function ${un}MakeFree
    StrCpy $Tries 0
    ${Do}
        Call ${un}FindBusy
        ${If} $Busy == ""
            ${ExitDo}
        ${EndIf}
        ; Each time: one that has just been started has no window yet.
        Call ${un}EndCopies
        IntOp $Tries $Tries + 1
        ${If} $Tries > 100
            MessageBox MB_RETRYCANCEL|MB_ICONEXCLAMATION "$(StillRunning)" /SD IDCANCEL IDRETRY again
            ${If} $Ended = 1
                Exec '"$Folder\KivoScreen.exe"'
            ${EndIf}
            Abort
            again:
            StrCpy $Tries 0
        ${EndIf}
        Sleep 100
    ${Loop}
FunctionEnd

; Takes away what $List names, and a folder only when nothing else lies in it.
Function ${un}RemoveListed
    FileOpen $8 "$List" r
    ${Do}
        Call ${un}NextListed
        StrCpy $4 $9 1 -1
        ${If} $9 == ""
            ${ExitDo}
        ${ElseIf} $4 == "\"
            RMDir "$Folder\$9"
        ${Else}
            Delete "$Folder\$9"
        ${EndIf}
    ${Loop}
    FileClose $8
    Delete "$Folder\installed.txt"
    Delete "$Folder\Uninstall.exe"
    RMDir "$Folder"
FunctionEnd

!macroend
!insertmacro SharedFunctions ""
!insertmacro SharedFunctions "un."

; The version in $Folder knows its files best: a newer one may lack some of them.
Function ChooseList
    StrCpy $List "$Folder\installed.txt"
    ${IfNot} ${FileExists} "$List"
        StrCpy $List "${UNPACKED}\installed.txt"
    ${EndIf}
FunctionEnd

Function MakeFormerFree
    ${If} ${FileExists} "$Folder\KivoScreen.exe"
        Call ChooseList
        Call MakeFree
    ${EndIf}
FunctionEnd

Function RemoveFormer
    ${If} ${FileExists} "$Folder\KivoScreen.exe"
        Call ChooseList
        Call RemoveListed
    ${EndIf}
FunctionEnd

; From where it was unpacked to where it belongs: on the same disk, so this is only a matter of names.
Function MoveIntoPlace
    FileOpen $8 "${UNPACKED}\installed.txt" r
    ${Do}
        Call NextListed
        StrCpy $4 $9 1 -1
        ${If} $9 == ""
            ${ExitDo}
        ${ElseIf} $4 == "\"
            RMDir "${UNPACKED}\$9"
            ${Continue}
        ${EndIf}
        ${GetParent} "$INSTDIR\$9" $4
        CreateDirectory "$4"
        StrCpy $Tries 0
        ${Do}
            Delete "$INSTDIR\$9"
            ClearErrors
            Rename "${UNPACKED}\$9" "$INSTDIR\$9"
            ${IfNot} ${Errors}
                ${ExitDo}
            ${EndIf}
            ; A scanner may be looking at it.
            IntOp $Tries $Tries + 1
            ${If} $Tries > 50
                MessageBox MB_OK|MB_ICONSTOP "$(NotWritable)" /SD IDOK
                Abort
            ${EndIf}
            Sleep 100
        ${Loop}
    ${Loop}
    FileClose $8
    Delete "$INSTDIR\installed.txt"
    Rename "${UNPACKED}\installed.txt" "$INSTDIR\installed.txt"
    RMDir "${UNPACKED}"
FunctionEnd

Section "$(ProgramName)" SectionProgram
    SectionIn RO
    RMDir /r "${UNPACKED}"
    ClearErrors
    CreateDirectory "${UNPACKED}"
    ${If} ${Errors}
        MessageBox MB_OK|MB_ICONSTOP "$(NotWritable)" /SD IDOK
        Abort
    ${EndIf}
    SetOutPath "${UNPACKED}"
    File /r "${STAGE}/*"
    SetOutPath "$INSTDIR"

    ; A former version may lie elsewhere. Nothing goes before all that has to go can go.
    SetDetailsPrint none
    ${If} $Former != ""
        StrCpy $Folder "$Former"
        Call MakeFormerFree
    ${EndIf}
    StrCpy $Folder "$INSTDIR"
    Call MakeFormerFree
    ${If} $Former != ""
        StrCpy $Folder "$Former"
        Call RemoveFormer
    ${EndIf}
    StrCpy $Folder "$INSTDIR"
    Call RemoveFormer
    Call MoveIntoPlace
    SetDetailsPrint both

    WriteUninstaller "$INSTDIR\Uninstall.exe"
    WriteRegStr HKCU "${UNINSTALL_KEY}" "DisplayName" "Kivo Screen"
    WriteRegStr HKCU "${UNINSTALL_KEY}" "DisplayVersion" "${VERSION}"
    WriteRegStr HKCU "${UNINSTALL_KEY}" "DisplayIcon" "$INSTDIR\KivoScreen.exe"
    WriteRegStr HKCU "${UNINSTALL_KEY}" "Publisher" "Kivo Screen developers"
    WriteRegStr HKCU "${UNINSTALL_KEY}" "InstallLocation" "$INSTDIR"
    WriteRegStr HKCU "${UNINSTALL_KEY}" "UninstallString" '"$INSTDIR\Uninstall.exe"'
    WriteRegStr HKCU "${UNINSTALL_KEY}" "QuietUninstallString" '"$INSTDIR\Uninstall.exe" /S'
    WriteRegDWORD HKCU "${UNINSTALL_KEY}" "EstimatedSize" ${SIZE_KB}
    WriteRegDWORD HKCU "${UNINSTALL_KEY}" "NoModify" 1
    WriteRegDWORD HKCU "${UNINSTALL_KEY}" "NoRepair" 1
SectionEnd

Section "$(MenuName)" SectionMenu
    CreateShortCut "$SMPROGRAMS\Kivo Screen.lnk" "$INSTDIR\KivoScreen.exe"
SectionEnd

Section /o "$(DesktopName)" SectionDesktop
    CreateShortCut "$DESKTOP\Kivo Screen.lnk" "$INSTDIR\KivoScreen.exe"
SectionEnd

; A choice: nothing starts by itself unless its owner wants it to.
Section /o "$(AutostartName)" SectionAutostart
    WriteRegStr HKCU "${RUN_KEY}" "Kivo Screen" '"$INSTDIR\KivoScreen.exe"'
    DeleteRegValue HKCU "${APPROVED_KEY}" "Kivo Screen"
SectionEnd

Section "-" SectionLast
    ; An update shows what was chosen before; what is no longer chosen goes.
    ${IfNot} ${SectionIsSelected} ${SectionAutostart}
        DeleteRegValue HKCU "${RUN_KEY}" "Kivo Screen"
        DeleteRegValue HKCU "${APPROVED_KEY}" "Kivo Screen"
    ${EndIf}
    ${If} $Former != ""
    ${AndIfNot} ${SectionIsSelected} ${SectionMenu}
        Delete "$SMPROGRAMS\Kivo Screen.lnk"
    ${EndIf}
    ${If} $Former != ""
    ${AndIfNot} ${SectionIsSelected} ${SectionDesktop}
        Delete "$DESKTOP\Kivo Screen.lnk"
    ${EndIf}
    ${If} $Ended = 1
        Exec '"$INSTDIR\KivoScreen.exe"'
    ${EndIf}
SectionEnd

!insertmacro MUI_FUNCTION_DESCRIPTION_BEGIN
    !insertmacro MUI_DESCRIPTION_TEXT ${SectionProgram} "$(ProgramText)"
    !insertmacro MUI_DESCRIPTION_TEXT ${SectionMenu} "$(MenuText)"
    !insertmacro MUI_DESCRIPTION_TEXT ${SectionDesktop} "$(DesktopText)"
    !insertmacro MUI_DESCRIPTION_TEXT ${SectionAutostart} "$(AutostartText)"
!insertmacro MUI_FUNCTION_DESCRIPTION_END

; Leaves 1 in $0 where the program starts with Windows.
Function StartsWithWindows
    ReadRegStr $1 HKCU "${RUN_KEY}" "Kivo Screen"
    ; An odd first byte is "off"; no value is "on". The handle is HKEY_CURRENT_USER's, as 64 bits have it.
    System::Call '*(&i1 2, &i1[63])p.r2'
    System::Call 'advapi32::RegGetValueW(p -2147483647, w "${APPROVED_KEY}", w "Kivo Screen", i 8, p 0, p r2, *i 64)'
    System::Call '*$2(&i1.r3)'
    System::Free $2
    IntOp $3 $3 & 1
    StrCpy $0 0
    ${If} $1 != ""
    ${AndIf} $3 = 0
        StrCpy $0 1
    ${EndIf}
FunctionEnd

; An update keeps what was chosen before.
Function .onInit
    ReadRegStr $Former HKCU "${UNINSTALL_KEY}" "InstallLocation"
    ${If} $Former != ""
    ${AndIfNot} ${FileExists} "$Former\KivoScreen.exe"
        StrCpy $Former ""
    ${EndIf}
    ${If} $Former != ""
    ${AndIfNot} ${FileExists} "$SMPROGRAMS\Kivo Screen.lnk"
        !insertmacro UnselectSection ${SectionMenu}
    ${EndIf}
    ${If} $Former != ""
    ${AndIf} ${FileExists} "$DESKTOP\Kivo Screen.lnk"
        !insertmacro SelectSection ${SectionDesktop}
    ${EndIf}
    Call StartsWithWindows
    ${GetParameters} $1
    ClearErrors
    ${GetOptions} $1 "/AUTOSTART" $2
    ${IfNot} ${Errors}
        StrCpy $0 1
    ${EndIf}
    ClearErrors
    ${GetOptions} $1 "/NOAUTOSTART" $2
    ${IfNot} ${Errors}
        StrCpy $0 0
    ${EndIf}
    ${If} $0 = 1
        !insertmacro SelectSection ${SectionAutostart}
    ${EndIf}
FunctionEnd

; An update goes where the program is; /D= is for those who want it elsewhere.
Function SkipFolderPage
    ${If} $Former != ""
    ${AndIf} $INSTDIR == $Former
        Abort
    ${EndIf}
FunctionEnd

Function .onInstFailed
    SetOutPath "$TEMP"
    RMDir /r "${UNPACKED}"
    RMDir "$INSTDIR"
FunctionEnd

Section "un.$(ProgramName)" UnsectionProgram
    SectionIn RO
    SetOutPath "$TEMP" ; a folder that somebody is in cannot be removed
    InitPluginsDir
    StrCpy $List "$PLUGINSDIR\installed.txt"
    File "/oname=$List" "${STAGE}/installed.txt"
    StrCpy $Folder "$INSTDIR"
    Call un.MakeFree
    Call un.RemoveListed
    Delete "$SMPROGRAMS\Kivo Screen.lnk"
    Delete "$DESKTOP\Kivo Screen.lnk"
    DeleteRegValue HKCU "${RUN_KEY}" "Kivo Screen"
    DeleteRegValue HKCU "${APPROVED_KEY}" "Kivo Screen"
    DeleteRegKey HKCU "${UNINSTALL_KEY}"
    ; Thumbnails can be made again at any time, and the log tells of what is gone.
    RMDir /r "$LOCALAPPDATA\Kivo Tool\thumbnails"
    Delete "$LOCALAPPDATA\Kivo Tool\log.txt"
    Delete "$LOCALAPPDATA\Kivo Tool\log.txt.old"
    RMDir "$LOCALAPPDATA\Kivo Tool"
SectionEnd

; The file $0, and what a program that was killed while it wrote it has left beside it: a dot and six letters are added to the
; name then. The letters are random; whoever keeps a "Config.ini.backup" must not lose it, so only a mixture of capitals and
; small letters counts.
Function un.DeleteWritten
    Delete "$0"
    ${GetParent} "$0" $1
    ${GetFileName} "$0" $2
    StrLen $2 "$2."
    FindFirst $3 $4 "$0.*"
    ${DoWhile} $4 != ""
        StrCpy $5 $4 "" $2
        StrLen $6 $5
        System::Call 'shlwapi::StrSpnW(w r5, w "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz")i.r7'
        System::Call 'shlwapi::StrCSpnW(w r5, w "abcdefghijklmnopqrstuvwxyz")i.r8'
        StrCpy $5 $5 "" 1
        System::Call 'shlwapi::StrCSpnW(w r5, w "ABCDEFGHIJKLMNOPQRSTUVWXYZ")i.r9'
        ${If} $6 = 6
        ${AndIf} $7 = 6
        ${AndIf} $8 < 6
        ${AndIf} $9 < 5
            Delete "$1\$4"
        ${EndIf}
        FindNext $3 $4
    ${Loop}
    FindClose $3
FunctionEnd

; Every name the program writes to, and no other: pictures that lie there are the user's own.
Section /o "un.$(SettingsName)" UnsectionSettings
    StrCpy $0 "$APPDATA\Kivo Tool\Config.ini"
    Call un.DeleteWritten
    Delete "$0.lock"
    Delete "$0.lock.rmlock"
    Delete "$0.broken"
    Delete "$0.kept"
    Delete "$0.replaced"
    StrCpy $1 2
    ${DoUntil} $1 > 9
        Delete "$0.broken.$1"
        Delete "$0.kept.$1"
        Delete "$0.replaced.$1"
        IntOp $1 $1 + 1
    ${Loop}
    StrCpy $0 "$APPDATA\Kivo Tool\whole.png"
    Call un.DeleteWritten
    RMDir "$APPDATA\Kivo Tool"

    StrCpy $Folder "$PROFILE\Kivo Tool"
    StrCpy $0 "$Folder\whole.png"
    Call un.DeleteWritten
    StrCpy $0 "$Folder\whole.state"
    Call un.DeleteWritten
    Delete "$Folder\whole.pending"
    RMDir "$Folder"
    DeleteRegKey HKCU "Software\Kivo Tool\Kivo Config"
    DeleteRegKey /ifempty HKCU "Software\Kivo Tool"
SectionEnd

!insertmacro MUI_UNFUNCTION_DESCRIPTION_BEGIN
    !insertmacro MUI_DESCRIPTION_TEXT ${UnsectionProgram} "$(ProgramText)"
    !insertmacro MUI_DESCRIPTION_TEXT ${UnsectionSettings} "$(SettingsText)"
!insertmacro MUI_UNFUNCTION_DESCRIPTION_END

Function un.onInit
    ${GetParameters} $1
    ClearErrors
    ${GetOptions} $1 "/SETTINGS" $2
    ${IfNot} ${Errors}
        !insertmacro SelectSection ${UnsectionSettings}
    ${EndIf}
FunctionEnd
