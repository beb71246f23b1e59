; Installs Kivo Screen for one user, with no rights of an administrator. build_installer.sh calls this with
;   STAGE         the folder with the program as it is to be installed
;   REMOVE_LIST   a script with one line for each of its files and folders, for the uninstaller
;   VERSION, SIZE_KB, OUTPUT
;
; Command line: /S installs or removes without asking, /D=FOLDER says where to, /AUTOSTART starts it with Windows.
; The uninstaller keeps what the user made; /SETTINGS removes that too.

Target amd64-unicode ; as the program: the installer needs nothing that is not needed anyway
Unicode true
SetCompressor /SOLID lzma
RequestExecutionLevel user
Name "Kivo Screen"
OutFile "${OUTPUT}"
InstallDir "$LOCALAPPDATA\Programs\Kivo Screen"
!define UNINSTALL_KEY "Software\Microsoft\Windows\CurrentVersion\Uninstall\Kivo Screen"
!define RUN_KEY "Software\Microsoft\Windows\CurrentVersion\Run"
InstallDirRegKey HKCU "${UNINSTALL_KEY}" "InstallLocation"
ManifestDPIAware true
VIProductVersion "${VERSION}.0"
VIAddVersionKey "ProductName" "Kivo Screen"
VIAddVersionKey "FileDescription" "Kivo Screen installer"
VIAddVersionKey "FileVersion" "${VERSION}"
VIAddVersionKey "ProductVersion" "${VERSION}"
VIAddVersionKey "LegalCopyright" "MIT licence"

!include MUI2.nsh
!include FileFunc.nsh
!include LogicLib.nsh
!include WinMessages.nsh
!include Sections.nsh

!define MUI_ICON "${ICON}"
!define MUI_UNICON "${ICON}"
!define MUI_COMPONENTSPAGE_SMALLDESC
!define MUI_FINISHPAGE_RUN "$INSTDIR\KivoScreen.exe"
!insertmacro MUI_PAGE_COMPONENTS
!insertmacro MUI_PAGE_DIRECTORY
!insertmacro MUI_PAGE_INSTFILES
!insertmacro MUI_PAGE_FINISH
!insertmacro MUI_UNPAGE_COMPONENTS
!insertmacro MUI_UNPAGE_INSTFILES
!insertmacro MUI_LANGUAGE "English"
!insertmacro MUI_LANGUAGE "SimpChinese"
!insertmacro MUI_LANGUAGE "Russian"

LangString ProgramName ${LANG_ENGLISH} "Kivo Screen"
LangString ProgramName ${LANG_SIMPCHINESE} "Kivo Screen"
LangString ProgramName ${LANG_RUSSIAN} "Kivo Screen"
LangString ProgramText ${LANG_ENGLISH} "The program and what lies beside it."
LangString ProgramText ${LANG_SIMPCHINESE} "程序及其所需文件。"
LangString ProgramText ${LANG_RUSSIAN} "Программа и её файлы."
LangString MenuName ${LANG_ENGLISH} "Start menu entry"
LangString MenuName ${LANG_SIMPCHINESE} "开始菜单快捷方式"
LangString MenuName ${LANG_RUSSIAN} "Ярлык в меню «Пуск»"
LangString MenuText ${LANG_ENGLISH} "An entry in the Start menu."
LangString MenuText ${LANG_SIMPCHINESE} "在开始菜单中添加快捷方式。"
LangString MenuText ${LANG_RUSSIAN} "Запуск из меню «Пуск»."
LangString DesktopName ${LANG_ENGLISH} "Desktop shortcut"
LangString DesktopName ${LANG_SIMPCHINESE} "桌面快捷方式"
LangString DesktopName ${LANG_RUSSIAN} "Ярлык на рабочем столе"
LangString DesktopText ${LANG_ENGLISH} "A shortcut on the desktop."
LangString DesktopText ${LANG_SIMPCHINESE} "在桌面上添加快捷方式。"
LangString DesktopText ${LANG_RUSSIAN} "Запуск с рабочего стола."
LangString AutostartName ${LANG_ENGLISH} "Start with Windows"
LangString AutostartName ${LANG_SIMPCHINESE} "开机自动启动"
LangString AutostartName ${LANG_RUSSIAN} "Запускать вместе с Windows"
LangString AutostartText ${LANG_ENGLISH} "The screen shows live values as soon as you have signed in. The program waits in the tray."
LangString AutostartText ${LANG_SIMPCHINESE} "登录后屏幕立即显示实时数据，程序驻留在托盘中。"
LangString AutostartText ${LANG_RUSSIAN} "Экран показывает данные сразу после входа в систему, программа ждёт в области уведомлений."
LangString SettingsName ${LANG_ENGLISH} "My settings and layouts"
LangString SettingsName ${LANG_SIMPCHINESE} "我的设置和布局"
LangString SettingsName ${LANG_RUSSIAN} "Мои настройки и макеты"
LangString SettingsText ${LANG_ENGLISH} "Removes your settings too. Your own pictures stay where they are."
LangString SettingsText ${LANG_SIMPCHINESE} "同时删除您的设置。您自己的图片会保留。"
LangString SettingsText ${LANG_RUSSIAN} "Удалить и ваши настройки. Ваши изображения останутся на месте."
LangString StillRunning ${LANG_ENGLISH} "Kivo Screen is still running. End it (its exit button) and try again."
LangString StillRunning ${LANG_SIMPCHINESE} "Kivo Screen 仍在运行。请退出程序后重试。"
LangString StillRunning ${LANG_RUSSIAN} "Kivo Screen ещё работает. Завершите программу и повторите попытку."

; Ends a running copy as the end of the user's session would: an ordinary close only hides it in the tray. Its file can
; be written again once it is gone.
!macro EndRunningCopy
    ${If} ${FileExists} "$INSTDIR\KivoScreen.exe"
        StrCpy $1 0
        ${Do}
            ; Each time: one that has just been started has no window yet.
            FindWindow $0 "" "Kivo Screen"
            ${If} $0 <> 0
                SendMessage $0 ${WM_ENDSESSION} 1 0 /TIMEOUT=3000
            ${EndIf}
            ClearErrors
            FileOpen $2 "$INSTDIR\KivoScreen.exe" a
            ${IfNot} ${Errors}
                FileClose $2
                ${ExitDo}
            ${EndIf}
            IntOp $1 $1 + 1
            ${If} $1 > 100
                MessageBox MB_RETRYCANCEL|MB_ICONEXCLAMATION "$(StillRunning)" /SD IDCANCEL IDRETRY +2
                Abort
                StrCpy $1 0
            ${EndIf}
            Sleep 100
        ${Loop}
    ${EndIf}
!macroend

Section "$(ProgramName)" SectionProgram
    SectionIn RO
    !insertmacro EndRunningCopy
    SetOutPath "$INSTDIR"
    File /r "${STAGE}/*"
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
SectionEnd

!insertmacro MUI_FUNCTION_DESCRIPTION_BEGIN
    !insertmacro MUI_DESCRIPTION_TEXT ${SectionProgram} "$(ProgramText)"
    !insertmacro MUI_DESCRIPTION_TEXT ${SectionMenu} "$(MenuText)"
    !insertmacro MUI_DESCRIPTION_TEXT ${SectionDesktop} "$(DesktopText)"
    !insertmacro MUI_DESCRIPTION_TEXT ${SectionAutostart} "$(AutostartText)"
!insertmacro MUI_FUNCTION_DESCRIPTION_END

Function .onInit
    ; An update keeps what was chosen before.
    ReadRegStr $0 HKCU "${RUN_KEY}" "Kivo Screen"
    ${GetParameters} $1
    ClearErrors
    ${GetOptions} $1 "/AUTOSTART" $2
    ${IfNot} ${Errors}
    ${OrIf} $0 != ""
        !insertmacro SelectSection ${SectionAutostart}
    ${EndIf}
FunctionEnd

Section "un.$(ProgramName)" UnsectionProgram
    SectionIn RO
    !insertmacro EndRunningCopy
    !include "${REMOVE_LIST}"
    Delete "$INSTDIR\Uninstall.exe"
    RMDir "$INSTDIR" ; only if nothing of the user's lies in it
    Delete "$SMPROGRAMS\Kivo Screen.lnk"
    Delete "$DESKTOP\Kivo Screen.lnk"
    DeleteRegValue HKCU "${RUN_KEY}" "Kivo Screen"
    DeleteRegKey HKCU "${UNINSTALL_KEY}"
    ; Thumbnails can be made again at any time.
    RMDir /r "$LOCALAPPDATA\Kivo Tool\thumbnails"
    RMDir "$LOCALAPPDATA\Kivo Tool"
SectionEnd

Section /o "un.$(SettingsName)" UnsectionSettings
    Delete "$APPDATA\Kivo Tool\Config.ini"
    Delete "$APPDATA\Kivo Tool\Config.ini.broken"
    Delete "$APPDATA\Kivo Tool\whole.png"
    RMDir "$APPDATA\Kivo Tool"
    Delete "$PROFILE\Kivo Tool\whole.png"
    Delete "$PROFILE\Kivo Tool\whole.pending"
    RMDir "$PROFILE\Kivo Tool"
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
