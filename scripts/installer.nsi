; The installer: for the user who starts it, without an administrator. make-package gives VERSION,
; WIDTH (32 or 64), FILES (the folder with what is installed), LIST (the generated list of what is removed) and OUT.
!if ${WIDTH} == 64
  Target amd64-unicode
  !define NAME "Kelvane"
!else
  Target x86-unicode
  !define NAME "Kelvane (32-bit)"
!endif
!include MUI2.nsh
!include FileFunc.nsh
!include x64.nsh

!define UNINSTALL_KEY "Software\Microsoft\Windows\CurrentVersion\Uninstall\${NAME}"
!define DATA "$LOCALAPPDATA\Kelvane"
!define LOG_FOLDER "$DOCUMENTS\Kelvane"

Name "${NAME}"
OutFile "${OUT}"
RequestExecutionLevel user
InstallDir "$LOCALAPPDATA\Programs\${NAME}"
InstallDirRegKey HKCU "${UNINSTALL_KEY}" "InstallLocation"
SetCompressor /SOLID lzma
BrandingText " "
ManifestDPIAware true
VIProductVersion "${VERSION}.0"
VIAddVersionKey "ProductName" "Kelvane"
VIAddVersionKey "CompanyName" "Morvath Software"
VIAddVersionKey "FileDescription" "Installer of the Kelvane receiver front panel, ${WIDTH}-bit"
VIAddVersionKey "FileVersion" "${VERSION}"
VIAddVersionKey "ProductVersion" "${VERSION}"

!define MUI_ICON "${FILES}\..\kelvane.ico"
!define MUI_UNICON "${FILES}\..\kelvane.ico"
!define MUI_COMPONENTSPAGE_SMALLDESC
!define MUI_FINISHPAGE_RUN
!define MUI_FINISHPAGE_RUN_TEXT "Start Kelvane"
!define MUI_FINISHPAGE_RUN_FUNCTION startPanel
!define MUI_UNCONFIRMPAGE_TEXT_TOP "Kelvane's program files will be removed. Your own data stay: \
receivers, memories, lists and settings, and the station log. They are in$\r$\n${DATA}$\r$\n${LOG_FOLDER}"
!insertmacro MUI_PAGE_COMPONENTS
!insertmacro MUI_PAGE_DIRECTORY
!insertmacro MUI_PAGE_INSTFILES
!insertmacro MUI_PAGE_FINISH
!insertmacro MUI_UNPAGE_CONFIRM
!insertmacro MUI_UNPAGE_INSTFILES
!insertmacro MUI_LANGUAGE "English"

; A program that runs cannot be replaced; half an installation would be worse than none.
!macro refuseWhileRunning
  ${If} ${FileExists} "$INSTDIR\Kelvane.exe"
    ClearErrors
    FileOpen $0 "$INSTDIR\Kelvane.exe" a
    ${If} ${Errors}
      SetErrorLevel 3
      MessageBox MB_OK|MB_ICONEXCLAMATION "Kelvane is running. Please close it, then start this again." /SD IDOK
      Quit
    ${EndIf}
    FileClose $0
  ${EndIf}
!macroend

Section "Kelvane" SectionProgram
  SectionIn RO
  SetShellVarContext current
  !insertmacro refuseWhileRunning
  SetOutPath "$INSTDIR"
  File /r "${FILES}/*"
  WriteUninstaller "$INSTDIR\Uninstall.exe"
  ; The station log lies where the program is started: in a folder of the user's documents.
  CreateDirectory "${LOG_FOLDER}"
  SetOutPath "${LOG_FOLDER}"
  CreateShortCut "$SMPROGRAMS\${NAME}.lnk" "$INSTDIR\Kelvane.exe"
  WriteRegStr HKCU "${UNINSTALL_KEY}" "DisplayName" "${NAME}"
  WriteRegStr HKCU "${UNINSTALL_KEY}" "DisplayVersion" "${VERSION}"
  WriteRegStr HKCU "${UNINSTALL_KEY}" "DisplayIcon" "$INSTDIR\Kelvane.exe"
  WriteRegStr HKCU "${UNINSTALL_KEY}" "Publisher" "Morvath Software"
  WriteRegStr HKCU "${UNINSTALL_KEY}" "InstallLocation" "$INSTDIR"
  WriteRegStr HKCU "${UNINSTALL_KEY}" "UninstallString" '"$INSTDIR\Uninstall.exe"'
  WriteRegStr HKCU "${UNINSTALL_KEY}" "QuietUninstallString" '"$INSTDIR\Uninstall.exe" /S'
  WriteRegDWORD HKCU "${UNINSTALL_KEY}" "NoModify" 1
  WriteRegDWORD HKCU "${UNINSTALL_KEY}" "NoRepair" 1
  ${GetSize} "$INSTDIR" "/S=0K" $0 $1 $2
  WriteRegDWORD HKCU "${UNINSTALL_KEY}" "EstimatedSize" $0
SectionEnd

Section /o "Scripting" SectionScripting
  RegDLL "$INSTDIR\Sondrel.dll"
  RegDLL "$INSTDIR\Ambrel.dll"
  WriteRegDWORD HKCU "${UNINSTALL_KEY}" "ComponentsRegistered" 1
SectionEnd

!insertmacro MUI_FUNCTION_DESCRIPTION_BEGIN
  !insertmacro MUI_DESCRIPTION_TEXT ${SectionProgram} "The panel, its two components and its lists."
  !insertmacro MUI_DESCRIPTION_TEXT ${SectionScripting} "Registers the components, so that PowerShell, \
Python and other programs can use them. The panel itself does not need it."
!insertmacro MUI_FUNCTION_DESCRIPTION_END

Function .onInit
  ; Asked by what the program needs, since what Windows says of its version is often not so.
  System::Call 'kernel32::GetModuleHandle(t "user32") p .r0'
  System::Call 'kernel32::GetProcAddress(p r0, m "GetDpiForWindow") p .r1'
  ${If} $1 P= 0
    MessageBox MB_OK|MB_ICONSTOP "Kelvane needs Windows 10 or later." /SD IDOK
    SetErrorLevel 2
    Quit
  ${EndIf}
  !if ${WIDTH} == 64
    ${IfNot} ${RunningX64}
      MessageBox MB_OK|MB_ICONSTOP "This is the 64-bit Kelvane, and this Windows is a 32-bit one." /SD IDOK
      SetErrorLevel 2
      Quit
    ${EndIf}
  !endif
  ; A silent installation asks nothing: "/scripting" chooses the component that is off by default.
  ${GetParameters} $0
  ClearErrors
  ${GetOptions} $0 "/scripting" $1
  ${IfNot} ${Errors}
    !insertmacro SelectSection ${SectionScripting}
  ${EndIf}
FunctionEnd

Function startPanel
  SetOutPath "${LOG_FOLDER}"
  Exec '"$INSTDIR\Kelvane.exe"'
FunctionEnd

Section "Uninstall"
  SetShellVarContext current
  !insertmacro refuseWhileRunning
  ReadRegDWORD $0 HKCU "${UNINSTALL_KEY}" "ComponentsRegistered"
  ${If} $0 == 1
    UnRegDLL "$INSTDIR\Sondrel.dll"
    UnRegDLL "$INSTDIR\Ambrel.dll"
  ${EndIf}
  Delete "$SMPROGRAMS\${NAME}.lnk"
  ; File by file: what somebody else put into the folder stays.
  !include "${LIST}"
  Delete "$INSTDIR\Uninstall.exe"
  RMDir "$INSTDIR"
  DeleteRegKey HKCU "${UNINSTALL_KEY}"
  DetailPrint "Your receivers, memories, lists and settings stay in ${DATA}"
  DetailPrint "and in the registry, your station log in ${LOG_FOLDER}."
  SetDetailsView show
SectionEnd
