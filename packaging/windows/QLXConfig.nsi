; The Windows installer. The build says what goes in:
;   VERSION    of the program, three numbers
;   PROGRAM    its file
;   ICON       the program's icon
;   FILES      folder of FILES\install.nsh and FILES\remove.nsh, which list what comes beside the program
;   OUTPUT     the installer to make
Target amd64-unicode
Unicode true
ManifestDPIAware true
ManifestSupportedOS all
RequestExecutionLevel admin
SetCompressor /SOLID lzma

!include LogicLib.nsh
!include MUI2.nsh
!include WinVer.nsh

!define NAME "Quillon Configuration Tool"
!define PUBLISHER "Quillon"
!define EXE "QLXConfig.exe"
!define UNINSTALLER "QLXConfig-uninstall.exe"
!define SETTINGS "QLXConfig.xml"
!define MENU "$SMPROGRAMS\Quillon"
!define KEY "Software\Microsoft\Windows\CurrentVersion\Uninstall\QLXConfig"

; Exit codes, those of Windows for the same trouble.
!define ERROR_SHARING_VIOLATION 32
!define ERROR_OLD_WIN_VERSION 1150

Name "${NAME}"
OutFile "${OUTPUT}"
; Where the suite looks for it, or where it was installed before.
InstallDir "$PROGRAMFILES64\Harlune\MZP\BIN"
InstallDirRegKey HKLM "${KEY}" "InstallLocation"
BrandingText "${NAME} ${VERSION}"
ShowInstDetails nevershow
ShowUninstDetails nevershow
AllowSkipFiles off

VIProductVersion "${VERSION}.0"
VIAddVersionKey "CompanyName" "${PUBLISHER}"
VIAddVersionKey "FileDescription" "${NAME} Setup"
VIAddVersionKey "FileVersion" "${VERSION}"
VIAddVersionKey "LegalCopyright" ""
VIAddVersionKey "ProductName" "${NAME}"
VIAddVersionKey "ProductVersion" "${VERSION}"

!define MUI_ICON "${ICON}"
!define MUI_UNICON "${ICON}"
!define MUI_ABORTWARNING
!insertmacro MUI_PAGE_DIRECTORY
!insertmacro MUI_PAGE_INSTFILES
!insertmacro MUI_UNPAGE_CONFIRM
!insertmacro MUI_UNPAGE_INSTFILES

!insertmacro MUI_LANGUAGE "English"
!insertmacro MUI_LANGUAGE "German"
!insertmacro MUI_LANGUAGE "Spanish"

LangString IN_USE ${LANG_ENGLISH} "${NAME} is open. Please close its window and try again."
LangString IN_USE ${LANG_GERMAN} "${NAME} ist geöffnet. Bitte schließen Sie das Fenster und versuchen Sie es erneut."
LangString IN_USE ${LANG_SPANISH} "${NAME} está abierta. Cierre su ventana e inténtelo de nuevo."
LangString TOO_OLD ${LANG_ENGLISH} "${NAME} needs Windows 7 or later."
LangString TOO_OLD ${LANG_GERMAN} "${NAME} benötigt Windows 7 oder neuer."
LangString TOO_OLD ${LANG_SPANISH} "${NAME} necesita Windows 7 o posterior."
LangString REMOVE_SETTINGS ${LANG_ENGLISH} "Remove the configuration of the drivers, ${SETTINGS}, as well?$\n$\nThe drivers lose all their settings with it."
LangString REMOVE_SETTINGS ${LANG_GERMAN} "Auch die Konfiguration der Treiber, ${SETTINGS}, entfernen?$\n$\nMit ihr gehen alle Einstellungen der Treiber verloren."
LangString REMOVE_SETTINGS ${LANG_SPANISH} "¿Eliminar también la configuración de los controladores, ${SETTINGS}?$\n$\nCon ella se pierden todos los ajustes de los controladores."

; Windows lets nobody write to a program that runs.
!macro RefuseWhileInUse
  ${Do}
    ${IfNot} ${FileExists} "$INSTDIR\${EXE}"
      ${ExitDo}
    ${EndIf}
    ClearErrors
    FileOpen $0 "$INSTDIR\${EXE}" a
    ${IfNot} ${Errors}
      FileClose $0
      ${ExitDo}
    ${EndIf}
    ${If} ${Cmd} `MessageBox MB_RETRYCANCEL|MB_ICONEXCLAMATION "$(IN_USE)" /SD IDCANCEL IDCANCEL`
      SetErrorLevel ${ERROR_SHARING_VIOLATION}
      Quit
    ${EndIf}
  ${Loop}
!macroend

Function .onInit
  SetShellVarContext all
  ${IfNot} ${AtLeastWin7}
    MessageBox MB_OK|MB_ICONSTOP "$(TOO_OLD)" /SD IDOK
    SetErrorLevel ${ERROR_OLD_WIN_VERSION}
    Quit
  ${EndIf}
FunctionEnd

Section
  !insertmacro RefuseWhileInUse
  SetOutPath "$INSTDIR"
  File "/oname=${EXE}" "${PROGRAM}"
  !include "${FILES}/install.nsh"
  SetOutPath "$INSTDIR"
  WriteUninstaller "$INSTDIR\${UNINSTALLER}"

  CreateDirectory "${MENU}"
  CreateShortcut "${MENU}\${NAME}.lnk" "$INSTDIR\${EXE}"

  SectionGetSize 0 $0
  WriteRegStr HKLM "${KEY}" "DisplayName" "${NAME}"
  WriteRegStr HKLM "${KEY}" "DisplayVersion" "${VERSION}"
  WriteRegStr HKLM "${KEY}" "Publisher" "${PUBLISHER}"
  WriteRegStr HKLM "${KEY}" "DisplayIcon" '"$INSTDIR\${EXE}",0'
  WriteRegStr HKLM "${KEY}" "InstallLocation" "$INSTDIR"
  WriteRegStr HKLM "${KEY}" "UninstallString" '"$INSTDIR\${UNINSTALLER}"'
  WriteRegStr HKLM "${KEY}" "QuietUninstallString" '"$INSTDIR\${UNINSTALLER}" /S'
  WriteRegDWORD HKLM "${KEY}" "EstimatedSize" $0
  WriteRegDWORD HKLM "${KEY}" "NoModify" 1
  WriteRegDWORD HKLM "${KEY}" "NoRepair" 1
SectionEnd

Function un.onInit
  SetShellVarContext all
FunctionEnd

; The directory is the suite's: only what the installer or the tool itself has put there goes.
Section un.
  !insertmacro RefuseWhileInUse
  ${If} ${FileExists} "$INSTDIR\${SETTINGS}"
    ${If} ${Cmd} `MessageBox MB_YESNO|MB_ICONQUESTION|MB_DEFBUTTON2 "$(REMOVE_SETTINGS)" /SD IDNO IDYES`
      Delete "$INSTDIR\${SETTINGS}"
      Delete "$INSTDIR\${SETTINGS}.bak"
      Delete "$INSTDIR\${SETTINGS}.unreadable"
    ${EndIf}
  ${EndIf}
  !include "${FILES}/remove.nsh"
  Delete "$INSTDIR\${EXE}"
  Delete "$INSTDIR\${UNINSTALLER}"
  RMDir "$INSTDIR"
  Delete "${MENU}\${NAME}.lnk"
  RMDir "${MENU}"
  DeleteRegKey HKLM "${KEY}"
SectionEnd
