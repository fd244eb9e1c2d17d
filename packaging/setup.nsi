; The installer: copies the package to Program Files, registers the component, and takes both back. Silent with /S.
; packaging/windows defines VERSION, SETUP (the file to write) and LISTS (macros that install and remove the files).
Unicode true
Target amd64-unicode ; a 64-bit process: it can load the component and sees the registry that 64-bit callers see
SetCompressor lzma
!include "${LISTS}"

Name "CoQMV40Calculator ${VERSION}"
OutFile "${SETUP}"
RequestExecutionLevel admin
!define CLASS "CLSID\{5B2E9C41-7A3D-4F6E-9B12-3C8D4E7F1A26}\InprocServer32"
!define UNINSTALL "Software\Microsoft\Windows\CurrentVersion\Uninstall\CoQMV40Calculator"
InstallDir "$PROGRAMFILES64\CoQMV40Calculator"
InstallDirRegKey HKLM "${UNINSTALL}" "InstallLocation"

VIProductVersion "${VERSION}.0"
VIAddVersionKey "ProductName" "CoQMV40Calculator"
VIAddVersionKey "ProductVersion" "${VERSION}"
VIAddVersionKey "FileDescription" "CoQMV40Calculator setup"
VIAddVersionKey "FileVersion" "${VERSION}"
VIAddVersionKey "LegalCopyright" ""

Page directory
Page instfiles
UninstPage uninstConfirm
UninstPage instfiles

Section
    !insertmacro InstallFiles
    SetOutPath "$INSTDIR"
    ClearErrors
    RegDLL "$INSTDIR\CoQMV40Calculator.dll"
    IfErrors 0 registered
        SetErrorLevel 2
        Abort "CoQMV40Calculator.dll could not be registered."
    registered:
    WriteUninstaller "$INSTDIR\uninstall.exe"
    WriteRegStr HKLM "${UNINSTALL}" "DisplayName" "CoQMV40Calculator"
    WriteRegStr HKLM "${UNINSTALL}" "DisplayVersion" "${VERSION}"
    WriteRegStr HKLM "${UNINSTALL}" "InstallLocation" "$INSTDIR"
    WriteRegStr HKLM "${UNINSTALL}" "UninstallString" '"$INSTDIR\uninstall.exe"'
    WriteRegStr HKLM "${UNINSTALL}" "QuietUninstallString" '"$INSTDIR\uninstall.exe" /S'
    WriteRegDWORD HKLM "${UNINSTALL}" "NoModify" 1
    WriteRegDWORD HKLM "${UNINSTALL}" "NoRepair" 1
SectionEnd

Section "Uninstall"
    ; Another copy may have been registered since: that one stays.
    ReadRegStr $0 HKCR "${CLASS}" ""
    StrCmp $0 "$INSTDIR\CoQMV40Calculator.dll" 0 notOurs
        UnRegDLL "$INSTDIR\CoQMV40Calculator.dll"
    notOurs:
    !insertmacro RemoveFiles
    Delete "$INSTDIR\uninstall.exe"
    RMDir "$INSTDIR"
    DeleteRegKey HKLM "${UNINSTALL}"
SectionEnd
