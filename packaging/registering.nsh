; Registers a component for all accounts or for one. Used by the installer, its uninstaller and register32.nsi.
!include LogicLib.nsh
!include FileFunc.nsh

Var Scope          ; "machine" or "user"

!macro Registering UN

; For one account, the writes of the component to HKEY_CLASSES_ROOT (-2147483648) are redirected to the classes of that
; account, below HKEY_CURRENT_USER (-2147483647).
Function ${UN}BeginRegistering
    ${If} $Scope == "user"
        System::Call 'oleaut32::OaEnablePerUserTLibRegistration()'
        System::Call 'advapi32::RegCreateKeyW(p -2147483647, w "Software\Classes", *p .r2) i'
        System::Call 'advapi32::RegOverridePredefKey(p -2147483648, p r2) i'
        System::Call 'advapi32::RegCloseKey(p r2) i'
    ${EndIf}
    ClearErrors
FunctionEnd

Function ${UN}EndRegistering
    ${If} $Scope == "user"
        System::Call 'advapi32::RegOverridePredefKey(p -2147483648, p 0) i'
    ${EndIf}
FunctionEnd
!macroend
