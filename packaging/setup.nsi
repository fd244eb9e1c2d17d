; The installer: copies the package and registers the component; the uninstaller removes both. Silent with /S;
; /CURRENTUSER installs for the calling account only and needs no administrator rights.
; packaging/windows defines VERSION, SETUP (the file to write), LISTS (macros that call an action for every file and
; folder), SIGN (a program that signs files) and, if there is a component for 32-bit programs, REGISTER32
; (register32.exe).
;
; An installation is complete or has no effect: the files of a previous version are moved aside first, which Windows
; allows for a loaded DLL too, and they are moved back if anything fails. docs/windows.md lists the exit codes.
Unicode true
Target amd64-unicode ; a 64-bit process: it can load the component and sees the registry that 64-bit callers see
SetCompressor lzma
!include "${__FILEDIR__}/registering.nsh"
!include "${LISTS}"

Name "CoQMV40Calculator ${VERSION}"
OutFile "${SETUP}"
!uninstfinalize '"${SIGN}" "%1"'
; The user is asked for administrator rights only after the choice of an installation for all accounts.
RequestExecutionLevel user
AllowSkipFiles off
InstallDir "" ; .onInit chooses it, unless /D gave one

!define CLASS "Software\Classes\CLSID\{5B2E9C41-7A3D-4F6E-9B12-3C8D4E7F1A26}\InprocServer32"
!define TYPE_LIBRARY "Software\Classes\TypeLib\{8E4F2A17-3B6C-4D59-A2E8-71F0C3B9D645}"
!define UNINSTALL "Software\Microsoft\Windows\CurrentVersion\Uninstall\CoQMV40Calculator"
!define RUN_ONCE "Software\Microsoft\Windows\CurrentVersion\RunOnce"
!define COMPONENT "$INSTDIR\CoQMV40Calculator.dll"
!define COMPONENT32 "$INSTDIR\x86\CoQMV40Calculator.dll"
!define RUNS_32_BITS "$WINDIR\SysWOW64\regsvr32.exe" ; is there where Windows runs 32-bit programs
!define UNINSTALLER "$INSTDIR\uninstall.exe"
!define ASIDE "$INSTDIR\replaced-by-setup"

!define NOT_REGISTERED 2
!define IN_USE 3
!define NO_RIGHTS 4
!define RESTART_REQUIRED 3010 ; the system's own code for it: tools that deploy software know it

VIProductVersion "${VERSION}.0"
VIAddVersionKey "ProductName" "CoQMV40Calculator"
VIAddVersionKey "ProductVersion" "${VERSION}"
VIAddVersionKey "FileDescription" "CoQMV40Calculator setup"
VIAddVersionKey "FileVersion" "${VERSION}"
VIAddVersionKey "LegalCopyright" ""

Page components
Page directory
Page instfiles
UninstPage uninstConfirm
UninstPage instfiles

Var MovedAside     ; the folder of this run for the files of the previous version; empty: nothing to take back
Var Previous       ; the copy that was registered before
Var Previous32     ; the same for 32-bit programs
Var Failed         ; not empty: one of several steps failed

; Functions of both the installer and the uninstaller. The names of the uninstaller's functions must begin with "un.".
!macro Shared UN
!insertmacro Registering "${UN}"

; Prints the text in $1 on the console, or into the file to which the output is redirected.
Function ${UN}Say
    DetailPrint "$1"
    System::Call 'kernel32::GetStdHandle(i -11) p .r2'
    ${If} $2 P= 0
        System::Call 'kernel32::AttachConsole(i -1) i'
        System::Call 'kernel32::GetStdHandle(i -11) p .r2'
    ${EndIf}
    ${If} $2 P<> 0
    ${AndIf} $2 P<> -1
        FileWrite $2 "$1$\r$\n"
    ${EndIf}
FunctionEnd

Function ${UN}UseScope
    ${If} $Scope == "user"
        SetShellVarContext current
    ${Else}
        SetShellVarContext all
    ${EndIf}
FunctionEnd

; $0 becomes the file of the registered 32-bit component, empty for none. Only that component has this type library key.
Function ${UN}GetRegistered32
    ReadRegStr $0 SHCTX "${TYPE_LIBRARY}\1.0\0\win32" ""
FunctionEnd

; Registers or unregisters ($3 is "register" or "unregister") the 32-bit component $4. $0 is not 0 after a failure.
Function ${UN}Register32
    StrCpy $0 0
    !ifdef REGISTER32
        ${If} ${FileExists} "${RUNS_32_BITS}"
            InitPluginsDir
            File "/oname=$PLUGINSDIR\register32.exe" "${REGISTER32}"
            ClearErrors
            ExecWait '"$PLUGINSDIR\register32.exe" /SCOPE=$Scope /ACTION=$3 /FILE="$4"' $0
            ${If} ${Errors}
                StrCpy $0 1
            ${EndIf}
        ${EndIf}
    !endif
FunctionEnd

; Deletes the files that were moved aside. Files in use are deleted at the next restart. Only administrators can request
; that; an installation for one account uses the next logon instead. $1 is the text for that case.
Function ${UN}RemoveMovedAside
    RMDir /r /REBOOTOK "${ASIDE}"
    ${If} ${RebootFlag}
        ${If} $Scope == "user"
            WriteRegStr HKCU "${RUN_ONCE}" "CoQMV40Calculator" 'cmd.exe /c rmdir /s /q "${ASIDE}" & rmdir "$INSTDIR"'
        ${EndIf}
        Call ${UN}Say
        SetErrorLevel ${RESTART_REQUIRED}
    ${EndIf}
FunctionEnd

; A new folder below ASIDE, because files that an earlier run moved can still be in use.
Function ${UN}ChooseAside
    CreateDirectory "${ASIDE}"
    GetTempFileName $MovedAside "${ASIDE}"
    Delete "$MovedAside"
    CreateDirectory "$MovedAside"
FunctionEnd
!macroend
!insertmacro Shared ""
!insertmacro Shared "un."

!include "${__FILEDIR__}/entries.nsh"

!macro MoveAside NUMBER FILE SOURCE
    ${If} ${FileExists} "$INSTDIR\${FILE}"
        ClearErrors
        Rename "$INSTDIR\${FILE}" "$MovedAside\${NUMBER}"
        ${If} ${Errors}
            StrCpy $Failed "${FILE}"
        ${EndIf}
    ${EndIf}
!macroend

!macro MoveBack NUMBER FILE SOURCE
    ${If} ${FileExists} "$MovedAside\${NUMBER}"
        Delete "$INSTDIR\${FILE}"
        Rename "$MovedAside\${NUMBER}" "$INSTDIR\${FILE}"
    ${ElseIf} $Failed == "" ; every file of the previous version was moved: this one is new
        Delete "$INSTDIR\${FILE}"
    ${EndIf}
!macroend

!macro Install NUMBER FILE SOURCE
    File "/oname=${FILE}" "${SOURCE}"
!macroend

!macro MakeFolder FOLDER
    CreateDirectory "$INSTDIR\${FOLDER}"
!macroend

!macro RemoveFolder FOLDER
    RMDir "$INSTDIR\${FOLDER}"
!macroend

Function .onInit
    ${GetParameters} $0
    ClearErrors
    ${GetOptions} $0 "/CURRENTUSER" $1
    ${If} ${Errors}
        StrCpy $Scope "machine"
        Call RequireRights
    ${Else}
        StrCpy $Scope "user"
    ${EndIf}
    Call UseScope
    ${If} $INSTDIR == ""
        ReadRegStr $INSTDIR SHCTX "${UNINSTALL}" "InstallLocation"
    ${EndIf}
    ${If} $INSTDIR == ""
        ${If} $Scope == "user"
            StrCpy $INSTDIR "$LOCALAPPDATA\Programs\CoQMV40Calculator"
        ${Else}
            StrCpy $INSTDIR "$PROGRAMFILES64\CoQMV40Calculator"
        ${EndIf}
    ${EndIf}
FunctionEnd

Function RequireRights
    UserInfo::GetAccountType
    Pop $0
    ${If} $0 != "Admin"
        StrCpy $1 "Installing for all accounts needs administrator rights. For this account alone: setup.exe /CURRENTUSER"
        MessageBox MB_YESNO|MB_ICONQUESTION "Install for your account alone? That needs no administrator.$\r$\n$\r$\n\
            No: install for all accounts, after Windows has asked for administrator rights." /SD IDNO IDYES forThisAccount
        ${IfNot} ${Silent}
            ExecShell "runas" "$EXEPATH"
            Quit
        ${EndIf}
        Call Say
        SetErrorLevel ${NO_RIGHTS}
        Quit
        forThisAccount:
        StrCpy $Scope "user"
    ${EndIf}
FunctionEnd

; Undoes an installation that could not be completed.
Function RollBack
    ${If} $MovedAside != ""
        !insertmacro ForEachFile MoveBack
        !insertmacro MoveBack "uninstaller" "uninstall.exe" ""
        ${If} ${FileExists} "$Previous32"
            StrCpy $3 "register"
            StrCpy $4 "$Previous32"
            Call Register32
        ${EndIf}
        ${If} ${FileExists} "$Previous"
            Call BeginRegistering
            RegDLL "$Previous"
            Call EndRegistering
        ${EndIf}
        StrCpy $MovedAside ""
        SetOutPath "$TEMP"
        RMDir /r "${ASIDE}"
        !insertmacro ForEachFolderBackwards RemoveFolder
        RMDir "$INSTDIR"
    ${EndIf}
FunctionEnd

; $0: the exit code, $1: the text.
Function Fail
    SetErrorLevel $0
    Call Say
    Call RollBack
    Abort "$1"
FunctionEnd

; A file that could not be extracted ends the installation by itself.
Function .onInstFailed
    Call RollBack
FunctionEnd

Section "Component, tool and documents"
    SectionIn RO
    ReadRegStr $Previous SHCTX "${CLASS}" ""
    Call GetRegistered32
    StrCpy $Previous32 $0
    CreateDirectory "$INSTDIR"
    Call ChooseAside
    StrCpy $Failed ""
    !insertmacro ForEachFile MoveAside
    !insertmacro MoveAside "uninstaller" "uninstall.exe" ""
    ${If} $Failed != ""
        StrCpy $0 ${IN_USE}
        StrCpy $1 "$INSTDIR\$Failed is in use and cannot be replaced. Nothing was changed."
        Call Fail
    ${EndIf}

    SetOutPath "$INSTDIR"
    !insertmacro ForEachFolder MakeFolder
    !insertmacro ForEachFile Install
    StrCpy $3 "register"
    StrCpy $4 "${COMPONENT32}"
    Call Register32
    ${If} $0 != 0
        StrCpy $0 ${NOT_REGISTERED}
        StrCpy $1 "x86\CoQMV40Calculator.dll could not be registered. Nothing was changed."
        Call Fail
    ${EndIf}
    Call BeginRegistering
    RegDLL "${COMPONENT}"
    ${If} ${Errors}
        Call EndRegistering
        StrCpy $3 "unregister"
        Call Register32
        StrCpy $0 ${NOT_REGISTERED}
        StrCpy $1 "CoQMV40Calculator.dll could not be registered. Nothing was changed."
        Call Fail
    ${EndIf}
    Call EndRegistering
    !ifdef REGISTER32
        ${IfNot} ${FileExists} "${RUNS_32_BITS}"
            StrCpy $1 "This Windows runs no 32-bit programs: x86\CoQMV40Calculator.dll was not registered."
            Call Say
        ${EndIf}
    !endif

    WriteRegStr SHCTX "${UNINSTALL}" "DisplayName" "CoQMV40Calculator"
    WriteRegStr SHCTX "${UNINSTALL}" "DisplayVersion" "${VERSION}"
    WriteRegStr SHCTX "${UNINSTALL}" "InstallLocation" "$INSTDIR"
    WriteRegStr SHCTX "${UNINSTALL}" "UninstallString" '"${UNINSTALLER}"'
    WriteRegStr SHCTX "${UNINSTALL}" "QuietUninstallString" '"${UNINSTALLER}" /S'
    WriteRegDWORD SHCTX "${UNINSTALL}" "NoModify" 1
    WriteRegDWORD SHCTX "${UNINSTALL}" "NoRepair" 1
    WriteUninstaller "${UNINSTALLER}"

    StrCpy $MovedAside ""
    SetOutPath "$TEMP"
    StrCpy $1 "Installed. Programs that run now use the previous version until they end; its files go with the next restart."
    Call RemoveMovedAside
SectionEnd

Section "Start menu: command prompt, documents, samples"
    Call AddToMenu
SectionEnd

Section "qmv40 in every console (PATH)"
    Call AddToPath
SectionEnd

Function un.onInit
    ReadRegStr $0 HKCU "${UNINSTALL}" "InstallLocation"
    ${If} $0 == $INSTDIR
        StrCpy $Scope "user"
    ${Else}
        StrCpy $Scope "machine"
        UserInfo::GetAccountType
        Pop $0
        ${If} $0 != "Admin"
            StrCpy $1 "This was installed for all accounts. Uninstalling it needs administrator rights."
            MessageBox MB_OK|MB_ICONSTOP "$1" /SD IDOK
            Call un.Say
            SetErrorLevel ${NO_RIGHTS}
            Quit
        ${EndIf}
    ${EndIf}
    Call un.UseScope
FunctionEnd

; A file that cannot be deleted is moved aside. If that is refused too, it stays: it is not deleted at the next restart,
; because another installation could have replaced it by then.
!macro Remove NUMBER FILE SOURCE
    ClearErrors
    Delete "$INSTDIR\${FILE}"
    ${If} ${Errors}
        ClearErrors
        Rename "$INSTDIR\${FILE}" "$MovedAside\${NUMBER}"
        ${If} ${Errors}
            StrCpy $Failed "${FILE}"
        ${EndIf}
    ${EndIf}
!macroend

Section "Uninstall"
    ; If another copy was registered later, its registration stays.
    ReadRegStr $Previous SHCTX "${CLASS}" ""
    Call un.GetRegistered32
    ${If} $0 == "${COMPONENT32}"
        StrCpy $3 "unregister"
        StrCpy $4 "${COMPONENT32}"
        Call un.Register32
        ${If} $0 != 0
            StrCpy $1 "x86\CoQMV40Calculator.dll could not be unregistered. Nothing was removed."
            Call un.Say
            SetErrorLevel ${NOT_REGISTERED}
            Abort "$1"
        ${EndIf}
    ${EndIf}
    ${If} $Previous == "${COMPONENT}"
        Call un.BeginRegistering
        UnRegDLL "${COMPONENT}"
        ${If} ${Errors}
            Call un.EndRegistering
            StrCpy $1 "CoQMV40Calculator.dll could not be unregistered. Nothing was removed."
            Call un.Say
            SetErrorLevel ${NOT_REGISTERED}
            Abort "$1"
        ${EndIf}
        Call un.EndRegistering
    ${EndIf}
    SetOutPath "$TEMP"
    Call un.RemoveFromPath
    Call un.RemoveFromMenu
    Call un.ChooseAside
    StrCpy $Failed ""
    !insertmacro ForEachFile Remove
    !insertmacro ForEachFolderBackwards RemoveFolder
    StrCpy $1 "Uninstalled. Programs that run now use the component until they end; its files go with the next restart."
    Call un.RemoveMovedAside
    Delete "${UNINSTALLER}" ; stays if the uninstaller runs from this file (option _?)
    ${If} ${RebootFlag}
        RMDir /REBOOTOK "$INSTDIR"
    ${Else}
        RMDir "$INSTDIR"
    ${EndIf}
    DeleteRegKey SHCTX "${UNINSTALL}"
    ${If} $Failed != ""
        StrCpy $1 "Uninstalled, but $INSTDIR\$Failed is in use and stays."
        Call un.Say
        SetErrorLevel ${IN_USE}
    ${EndIf}
SectionEnd
