; The installer for the current user of 64-bit Windows: needs no administrator's rights, installs the folder of the package as it
; is, registers both halves of the component for the user, and leaves nothing behind when it is removed.
;
; makensis -DVERSION=0.1.0 -DSOURCE=folder -DFILES=list.nsh -DTARGET=setup.exe vorquill21.nsi
;
; The list defines the macros InstallFiles and RemoveFiles. "setup.exe /S /D=C:\a folder" installs in silence, which must be the
; last argument and stands without quotes; "uninstall.exe /S" removes.

Unicode true
Target amd64-unicode
SetCompressor /SOLID lzma
RequestExecutionLevel user

!include "MUI2.nsh"
!include "x64.nsh"
!include "${FILES}"

!define NAME "Vorquill21"
!define UNINSTALL_KEY "Software\Microsoft\Windows\CurrentVersion\Uninstall\${NAME}"
!define START_MENU "$SMPROGRAMS\${NAME}"

Name "${NAME} ${VERSION}"
OutFile "${TARGET}"
InstallDir "$LOCALAPPDATA\Programs\${NAME}"
InstallDirRegKey HKCU "${UNINSTALL_KEY}" "InstallLocation"
VIProductVersion "${VERSION}.0"
VIAddVersionKey "ProductName" "${NAME}"
VIAddVersionKey "ProductVersion" "${VERSION}"
VIAddVersionKey "FileVersion" "${VERSION}"
VIAddVersionKey "FileDescription" "${NAME} for the current user"
VIAddVersionKey "LegalCopyright" "MIT licence"

!insertmacro MUI_PAGE_LICENSE "${SOURCE}\LICENSE.txt"
!insertmacro MUI_PAGE_DIRECTORY
!insertmacro MUI_PAGE_INSTFILES
!insertmacro MUI_UNPAGE_CONFIRM
!insertmacro MUI_UNPAGE_INSTFILES
!insertmacro MUI_LANGUAGE "English"

; Runs the registering program of one half, where the system has it, on the component of that half.
!macro Register PROGRAM ARGUMENTS COMPONENT
  ${If} ${FileExists} "${PROGRAM}"
    ExecWait '"${PROGRAM}" /s ${ARGUMENTS} "${COMPONENT}"' $0
    ${If} $0 <> 0
      DetailPrint "${COMPONENT} could not be registered: $0"
      SetErrorLevel 3
    ${EndIf}
  ${EndIf}
!macroend
!macro RegisterBoth ARGUMENTS
  !insertmacro Register "$SYSDIR\regsvr32.exe" "${ARGUMENTS}" "$INSTDIR\64-bit\bin\Vorquill21.dll"
  !insertmacro Register "$WINDIR\SysWOW64\regsvr32.exe" "${ARGUMENTS}" "$INSTDIR\32-bit\bin\Vorquill21.dll"
!macroend

Function .onInit
  ${IfNot} ${RunningX64}
    MessageBox MB_ICONSTOP "This installer is for 64-bit Windows. Use the 32-bit half of the package." /SD IDOK
    Abort
  ${EndIf}
  SetRegView 64
FunctionEnd

Function un.onInit
  SetRegView 64
FunctionEnd

Section
  SetShellVarContext current
  !insertmacro InstallFiles
  SetOutPath "$INSTDIR"
  WriteUninstaller "$INSTDIR\uninstall.exe"
  !insertmacro RegisterBoth "/n /i:user"

  CreateDirectory "${START_MENU}"
  CreateShortcut "${START_MENU}\${NAME} documentation.lnk" "$INSTDIR\README.html"
  CreateShortcut "${START_MENU}\Remove ${NAME}.lnk" "$INSTDIR\uninstall.exe"

  WriteRegStr HKCU "${UNINSTALL_KEY}" "DisplayName" "${NAME} ${VERSION}"
  WriteRegStr HKCU "${UNINSTALL_KEY}" "DisplayVersion" "${VERSION}"
  WriteRegStr HKCU "${UNINSTALL_KEY}" "InstallLocation" "$INSTDIR"
  WriteRegStr HKCU "${UNINSTALL_KEY}" "UninstallString" '"$INSTDIR\uninstall.exe"'
  WriteRegStr HKCU "${UNINSTALL_KEY}" "QuietUninstallString" '"$INSTDIR\uninstall.exe" /S'
  WriteRegDWORD HKCU "${UNINSTALL_KEY}" "NoModify" 1
  WriteRegDWORD HKCU "${UNINSTALL_KEY}" "NoRepair" 1
SectionEnd

Section "Uninstall"
  SetShellVarContext current
  !insertmacro RegisterBoth "/u /n /i:user"
  Delete "${START_MENU}\${NAME} documentation.lnk"
  Delete "${START_MENU}\Remove ${NAME}.lnk"
  RMDir "${START_MENU}"
  DeleteRegKey HKCU "${UNINSTALL_KEY}"
  Delete "$INSTDIR\uninstall.exe"
  !insertmacro RemoveFiles
  RMDir "$INSTDIR"
SectionEnd
