; The installer: per user, German and English, silent with /S. release/package hands over
; VERSION, OUTPUT, STAGE (the files as they will lie) and LISTS (what to install and to remove).
Unicode true
Target amd64-unicode
ManifestDPIAware true
RequestExecutionLevel user
SetCompressor /SOLID lzma
; Times of files would make two builds of one state differ.
SetDateSave off

!include MUI2.nsh
!include FileFunc.nsh
!include LogicLib.nsh

!define UNINSTALL_KEY "Software\Microsoft\Windows\CurrentVersion\Uninstall\Quartino"
!define SETTINGS_KEY "Software\Quartino"
!define SAMPLE_FOLDER "$DOCUMENTS\Quartino\Schule"

Name "Quartino ${VERSION}"
OutFile "${OUTPUT}"
InstallDir "$LOCALAPPDATA\Programs\Quartino"
InstallDirRegKey HKCU "${UNINSTALL_KEY}" "InstallLocation"
BrandingText " "
ShowInstDetails nevershow
ShowUninstDetails nevershow

VIProductVersion "${VERSION}.0"
VIAddVersionKey ProductName "Quartino"
VIAddVersionKey FileDescription "Quartino Setup"
VIAddVersionKey FileVersion "${VERSION}"
VIAddVersionKey ProductVersion "${VERSION}"
VIAddVersionKey LegalCopyright " "

!define MUI_ICON "${STAGE}\Quartino.ico"
!define MUI_UNICON "${STAGE}\Quartino.ico"
!define MUI_ABORTWARNING
!define MUI_COMPONENTSPAGE_SMALLDESC
!define MUI_FINISHPAGE_NOAUTOCLOSE
!insertmacro MUI_PAGE_WELCOME
!insertmacro MUI_PAGE_DIRECTORY
!insertmacro MUI_PAGE_INSTFILES
!insertmacro MUI_PAGE_FINISH
!insertmacro MUI_UNPAGE_COMPONENTS
!insertmacro MUI_UNPAGE_INSTFILES
; The first is shown where the system speaks neither.
!insertmacro MUI_LANGUAGE "English"
!insertmacro MUI_LANGUAGE "German"

LangString Running ${LANG_ENGLISH} "Quartino or its practice host is running. Please close it first; nothing was changed."
LangString Running ${LANG_GERMAN} "Quartino oder der Übungs-Host läuft noch. Bitte beenden Sie das Programm zuerst; es wurde nichts verändert."
LangString OldStays ${LANG_ENGLISH} "The installed version could not be removed; nothing was changed."
LangString OldStays ${LANG_GERMAN} "Die installierte Version konnte nicht entfernt werden; es wurde nichts verändert."
LangString PracticeHost ${LANG_ENGLISH} "Quartino practice host"
LangString PracticeHost ${LANG_GERMAN} "Quartino Übungs-Host"
LangString Language ${LANG_ENGLISH} '--language eng --help-file "$INSTDIR\quartino_eng.chm"'
LangString Language ${LANG_GERMAN} '--help-file "$INSTDIR\quartino.chm"'
LangString ProgramPart ${LANG_ENGLISH} "Quartino and its practice host"
LangString ProgramPart ${LANG_GERMAN} "Quartino und Übungs-Host"
LangString SettingsPart ${LANG_ENGLISH} "Settings"
LangString SettingsPart ${LANG_GERMAN} "Einstellungen"
LangString ListsPart ${LANG_ENGLISH} "Lists and drawings in Documents\Quartino"
LangString ListsPart ${LANG_GERMAN} "Listen und Zeichnungen in Dokumente\Quartino"

!include "${LISTS}"

; A program that runs cannot be opened for writing. Exit code 3 tells a silent caller.
!macro RefuseWhileRunning program
  ${If} ${FileExists} "${program}"
    ClearErrors
    FileOpen $0 "${program}" a
    ${If} ${Errors}
      MessageBox MB_OK|MB_ICONEXCLAMATION "$(Running)" /SD IDOK
      SetErrorLevel 3
      Quit
    ${EndIf}
    FileClose $0
  ${EndIf}
!macroend
!macro RefuseWhileAnyRuns folder
  !insertmacro RefuseWhileRunning "${folder}\Quartino.exe"
  !insertmacro RefuseWhileRunning "${folder}\KalveroPractice.exe"
  !insertmacro RefuseWhileRunning "${folder}\qto.exe"
!macroend

; $R0: where the version stands that is known to the system.
Section "-Program"
  !insertmacro RefuseWhileAnyRuns "$INSTDIR"
  ReadRegStr $R0 HKCU "${UNINSTALL_KEY}" "InstallLocation"
  ${If} $R0 != ""
  ${AndIf} ${FileExists} "$R0\Uninstall.exe"
    ; With the folder given it works in place and can be waited for.
    ExecWait '"$R0\Uninstall.exe" /S _?=$R0' $0
    ${If} $0 <> 0
      MessageBox MB_OK|MB_ICONEXCLAMATION "$(OldStays)" /SD IDOK
      SetErrorLevel 3
      Quit
    ${EndIf}
    Delete "$R0\Uninstall.exe"
    RMDir "$R0"
  ${EndIf}

  !insertmacro InstallFiles
  WriteUninstaller "$INSTDIR\Uninstall.exe"

  ; The user's own from here on: what lies there stays as it is.
  SetOverwrite off
  SetOutPath "${SAMPLE_FOLDER}"
  File "${STAGE}\samples\schule\*.*"
  SetOverwrite on

  SetOutPath "$INSTDIR"
  CreateShortcut "$SMPROGRAMS\$(PracticeHost).lnk" "$INSTDIR\KalveroPractice.exe" \
    '--known-while-running --drawing "${SAMPLE_FOLDER}\Teilbild.json" --project-folder "${SAMPLE_FOLDER}" $(Language)' \
    "$INSTDIR\Quartino.exe"

  WriteRegStr HKCU "${UNINSTALL_KEY}" "DisplayName" "Quartino"
  WriteRegStr HKCU "${UNINSTALL_KEY}" "DisplayVersion" "${VERSION}"
  WriteRegStr HKCU "${UNINSTALL_KEY}" "DisplayIcon" "$INSTDIR\Quartino.exe"
  WriteRegStr HKCU "${UNINSTALL_KEY}" "Publisher" "Quartino"
  WriteRegStr HKCU "${UNINSTALL_KEY}" "InstallLocation" "$INSTDIR"
  WriteRegStr HKCU "${UNINSTALL_KEY}" "UninstallString" '"$INSTDIR\Uninstall.exe"'
  WriteRegStr HKCU "${UNINSTALL_KEY}" "QuietUninstallString" '"$INSTDIR\Uninstall.exe" /S'
  ; What the uninstaller has to find again, whichever language it is run in.
  WriteRegStr HKCU "${UNINSTALL_KEY}" "Shortcut" "$SMPROGRAMS\$(PracticeHost).lnk"
  WriteRegDWORD HKCU "${UNINSTALL_KEY}" "NoModify" 1
  WriteRegDWORD HKCU "${UNINSTALL_KEY}" "NoRepair" 1
  ${GetSize} "$INSTDIR" "/S=0K" $0 $1 $2
  WriteRegDWORD HKCU "${UNINSTALL_KEY}" "EstimatedSize" $0
SectionEnd

Section "un.$(ProgramPart)"
  SectionIn RO
  !insertmacro RefuseWhileAnyRuns "$INSTDIR"
  ReadRegStr $R0 HKCU "${UNINSTALL_KEY}" "Shortcut"
  ${If} $R0 != ""
    Delete "$R0"
  ${EndIf}
  ; A host that was cut off has left itself known to the system.
  ExecWait '"$INSTDIR\KalveroPractice.exe" --unregister'
  !insertmacro RemoveFiles
  ; The note that a host leaves beside the program.
  Delete "$INSTDIR\kalvqtotemp"
  Delete "$INSTDIR\Uninstall.exe"
  SetOutPath "$TEMP"
  RMDir "$INSTDIR"
  DeleteRegKey HKCU "${UNINSTALL_KEY}"
SectionEnd

Section /o "un.$(SettingsPart)" SettingsSection
  DeleteRegKey HKCU "${SETTINGS_KEY}"
SectionEnd

Section /o "un.$(ListsPart)" ListsSection
  RMDir /r "$DOCUMENTS\Quartino"
SectionEnd

; Silent: /SETTINGS and /LISTS ask for what stays otherwise.
Function un.onInit
  ${GetParameters} $0
  ClearErrors
  ${GetOptions} $0 "/SETTINGS" $1
  ${IfNot} ${Errors}
    SectionSetFlags ${SettingsSection} ${SF_SELECTED}
  ${EndIf}
  ClearErrors
  ${GetOptions} $0 "/LISTS" $1
  ${IfNot} ${Errors}
    SectionSetFlags ${ListsSection} ${SF_SELECTED}
  ${EndIf}
FunctionEnd
