; The changes of the installer outside its folder: entries of the Start menu, and the folder in the PATH of the scope.
!include WinMessages.nsh
!define MENU "$SMPROGRAMS\CoQMV40Calculator"

!macro Entries UN
; $R1: the registry key with the scope's PATH. $R2: the PATH as ";first;second;", in memory, with space for one more
; folder. -2147483647 is HKEY_CURRENT_USER, -2147483646 is HKEY_LOCAL_MACHINE; access 3 reads and writes values.
; (A text variable of the installer holds 1023 characters; a PATH can be longer.)
Function ${UN}ReadPath
    ${If} $Scope == "user"
        System::Call 'advapi32::RegCreateKeyExW(p -2147483647, w "Environment", i 0, p 0, i 0, i 3, p 0, *p .R1, p 0) i'
    ${Else}
        System::Call 'advapi32::RegCreateKeyExW(p -2147483646, \
            w "System\CurrentControlSet\Control\Session Manager\Environment", i 0, p 0, i 0, i 3, p 0, *p .R1, p 0) i'
    ${EndIf}
    StrCpy $R4 0
    System::Call 'advapi32::RegQueryValueExW(p R1, w "Path", p 0, *i .R3, p 0, *i .R4) i .R5'
    ${If} $R5 <> 0
        StrCpy $R3 2 ; REG_EXPAND_SZ: there is none yet
        StrCpy $R4 0
    ${EndIf}
    IntOp $R5 $R4 + 8192
    System::Alloc $R5
    Pop $R2
    System::Call 'kernel32::lstrcpyW(p R2, w ";") p'
    IntPtrOp $R5 $R2 + 2
    System::Call 'advapi32::RegQueryValueExW(p R1, w "Path", p 0, p 0, p R5, *i R4) i'
    System::Call 'kernel32::lstrlenW(p R2) i .R5'
    ${If} $R5 > 1
        System::Call 'kernel32::lstrcatW(p R2, w ";") p'
    ${EndIf}
    ; The position of this folder in the PATH, 0 for none.
    System::Call 'shlwapi::StrStrIW(p R2, w ";$INSTDIR;") p .R6'
FunctionEnd

; Stores the PATH in $R2 with the type $R3, and notifies running programs.
Function ${UN}WritePath
    System::Call 'kernel32::lstrlenW(p R2) i .R5'
    ${If} $R5 < 3
        System::Call 'advapi32::RegDeleteValueW(p R1, w "Path") i'
    ${Else}
        IntOp $R5 $R5 - 1
        IntOp $R5 $R5 * 2
        IntPtrOp $R7 $R2 + $R5
        System::Call '*$R7(&i2 0)'
        IntPtrOp $R7 $R2 + 2
        System::Call 'advapi32::RegSetValueExW(p R1, w "Path", i 0, i R3, p R7, i R5) i'
    ${EndIf}
    SendMessage ${HWND_BROADCAST} ${WM_SETTINGCHANGE} 0 "STR:Environment" /TIMEOUT=1000
FunctionEnd

Function ${UN}FreePath
    System::Free $R2
    System::Call 'advapi32::RegCloseKey(p R1) i'
FunctionEnd
!macroend
!insertmacro Entries ""
!insertmacro Entries "un."

Function AddToPath
    Call ReadPath
    ${If} $R6 P= 0
        System::Call 'kernel32::lstrcatW(p R2, w "$INSTDIR;") p'
        Call WritePath
    ${EndIf}
    Call FreePath
FunctionEnd

Function un.RemoveFromPath
    Call un.ReadPath
    ${If} $R6 P<> 0
        StrLen $R5 "$INSTDIR;"
        IntOp $R5 $R5 * 2
        IntPtrOp $R7 $R6 + $R5
        System::Call 'kernel32::lstrlenW(p R7) i .R5'
        IntOp $R5 $R5 + 1
        IntOp $R5 $R5 * 2
        System::Call 'kernel32::RtlMoveMemory(p R6, p R7, p R5)'
        Call un.WritePath
    ${EndIf}
    Call un.FreePath
FunctionEnd

Function AddToMenu
    CreateDirectory "${MENU}"
    SetOutPath "$DOCUMENTS" ; where the prompt begins
    CreateShortCut "${MENU}\qmv40 command prompt.lnk" "$SYSDIR\cmd.exe" '/k "set "PATH=$INSTDIR;%PATH%" & qmv40 --help"' "$INSTDIR\qmv40.exe"
    SetOutPath "$INSTDIR"
    CreateShortCut "${MENU}\Documents.lnk" "$INSTDIR\docs"
    CreateShortCut "${MENU}\Samples.lnk" "$INSTDIR\samples"
FunctionEnd

Function un.RemoveFromMenu
    Delete "${MENU}\qmv40 command prompt.lnk"
    Delete "${MENU}\Documents.lnk"
    Delete "${MENU}\Samples.lnk"
    RMDir "${MENU}"
FunctionEnd
