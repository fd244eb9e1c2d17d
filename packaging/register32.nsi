; Registers or unregisters the 32-bit component for the installer, because a 64-bit process cannot load it.
;   register32.exe /SCOPE=machine|user /ACTION=register|unregister /FILE="C:\folder\CoQMV40Calculator.dll"
; The exit code is 0 for success, else 1. packaging/windows defines OUTPUT (the file to write) and SIGN.
Unicode true
Target x86-unicode
SetCompressor lzma
!include "${__FILEDIR__}/registering.nsh"

Name "CoQMV40Calculator"
OutFile "${OUTPUT}"
!finalize '"${SIGN}" "%1"'
RequestExecutionLevel user ; it has the rights of the program that starts it
SilentInstall silent

!insertmacro Registering ""

Section
    ${GetParameters} $0
    ${GetOptions} $0 "/SCOPE=" $Scope
    ${GetOptions} $0 "/ACTION=" $1
    ${GetOptions} $0 "/FILE=" $3
    Call BeginRegistering
    ${If} $1 == "register"
        RegDLL "$3"
    ${Else}
        UnRegDLL "$3"
    ${EndIf}
    ${If} ${Errors}
        SetErrorLevel 1
    ${EndIf}
    Call EndRegistering
SectionEnd
