; What the installer and the uninstaller ask about the game folder: where it really is, whose it is, who is using it.
; Each function exists twice, since an uninstaller can call only those whose names begin with "un.". They change $0 to $9.

Var Real       ; the folder as CaminhoReal gives it
Var Mutex      ; by which a launcher, too, has the folder
Var Apagar     ; Percorrer: 1 removes, 0 only looks
Var Guardar    ; Percorrer: 1 leaves what is the player's own
Var Achados    ; Percorrer: what is not the player's own (looking), what could not be removed (removing)

; The folder's record: the sentence, the name, where the folder really is; a line each. It makes the folder ours: the
; uninstaller removes a tree, so it wants to read here that this is the very folder that was found empty, and not a copy
; of it or one that was moved into the midst of other things.
!define MARCA "Desinstalar.txt"
!define FRASE "A desinstalação apaga o que há nesta pasta. Não guarde nada seu aqui."
!define DESINSTALADOR "Desinstalar.exe"
; What is put into the folder is called NAME.instalando until it is whole.
!define METADE "instalando"

!macro FuncoesDaPasta un

; $0: a path. Leaves in $0 where it really is: links and short names resolved, in the letter case on disk, no backslash at
; the end; what does not exist yet is kept as it is written. Empty for what lies on no drive of this computer.
Function ${un}CaminhoReal
  System::Call 'kernel32::GetFullPathNameW(w r0, i ${NSIS_MAX_STRLEN}, w .r0, p 0)'
  StrCpy $1 "" ; what does not exist yet, and the backslash before it
  ${Do}
    StrCpy $2 $0 1 -1
    ${If} $2 == "\"
      StrCpy $0 $0 -1
    ${EndIf}
    ; FILE_FLAG_BACKUP_SEMANTICS opens folders. The backslash tells the folder "C:\" from the drive "C:".
    System::Call 'kernel32::CreateFileW(w "$0\", i 0, i 7, p 0, i 3, i 0x02000000, p 0) p .r2'
    ${If} $2 != -1
      System::Call 'kernel32::GetFinalPathNameByHandleW(p r2, w .r0, i ${NSIS_MAX_STRLEN}, i 0)'
      System::Call 'kernel32::CloseHandle(p r2)'
      ${ExitDo}
    ${EndIf}
    ${Do}
      StrCpy $2 $0 1 -1
      StrCpy $0 $0 -1
      StrCpy $1 "$2$1"
      ${If} $0 == ""
        Return
      ${EndIf}
    ${LoopUntil} $2 == "\"
  ${Loop}
  StrCpy $2 $0 4
  StrCpy $3 $0 1 5
  ${If} $2 != "\\?\"
  ${OrIf} $3 != ":"
    StrCpy $0 ""
    Return
  ${EndIf}
  StrCpy $0 $0 "" 4
  StrCpy $2 $0 1 -1
  ${If} $2 == "\"
    StrCpy $0 $0 -1
  ${EndIf}
  StrCpy $0 "$0$1"
FunctionEnd

; $0: 1 when $Real is a folder of ours.
Function ${un}Nossa
  StrCpy $0 0
  ClearErrors
  FileOpen $1 "$Real\${MARCA}" r
  ${If} ${Errors}
    Return
  ${EndIf}
  FileReadUTF16LE $1 $2
  FileReadUTF16LE $1 $3
  FileReadUTF16LE $1 $4
  FileClose $1
  ${If} $2 == "${FRASE}$\r$\n"
  ${AndIf} $3 == "${NOME}$\r$\n"
  ${AndIf} $4 == "$Real$\r$\n"
    StrCpy $0 1
  ${EndIf}
FunctionEnd

; Takes the folder as a launcher and its helper do; it stays taken until the calling thread ends. $0: 1 when another has it.
Function ${un}Tomar
  ${If} $Mutex == ""
    StrLen $1 $Real
    IntOp $1 $1 * 2
    System::Alloc 32
    Pop $2
    System::Call 'bcrypt::BCryptOpenAlgorithmProvider(*p .r3, w "SHA256", p 0, i 0)'
    System::Call 'bcrypt::BCryptHash(p r3, p 0, i 0, w "$Real", i r1, p r2, i 32)'
    System::Call 'crypt32::CryptBinaryToStringW(p r2, i 8, i 0x4000000c, w .r4, *i ${NSIS_MAX_STRLEN})'
    System::Call 'bcrypt::BCryptCloseAlgorithmProvider(p r3, i 0)'
    System::Free $2
    System::Call 'kernel32::CreateMutexW(p 0, i 0, w "Local\ZuLauncher-$4") p .r1 ?e'
    Pop $2
    ${If} $1 = 0
      StrCpy $0 0
      ${If} $2 = 5 ; that of a launcher with more rights
        StrCpy $0 1
      ${EndIf}
      Return
    ${EndIf}
    StrCpy $Mutex $1
  ${EndIf}
  System::Call 'kernel32::WaitForSingleObject(p $Mutex, i 0) i .r1'
  StrCpy $0 1
  ${If} $1 = 0
  ${OrIf} $1 = 0x80 ; its owner ended without letting go
    StrCpy $0 0
  ${EndIf}
FunctionEnd

; $0: a program of the folder. Leaves in $0 1 when it is running, or held by another program.
Function ${un}EmUso
  StrCpy $1 "$Real\$0"
  StrCpy $0 0
  ; A running program refuses being written alone; a file with the read-only mark answers only who wants to read it.
  StrCpy $2 0x40000000 ; GENERIC_WRITE
  ${Do}
    System::Call 'kernel32::CreateFileW(w r1, i r2, i 0, p 0, i 3, i 0, p 0) p .r3 ?e'
    Pop $4
    ${If} $3 != -1
      System::Call 'kernel32::CloseHandle(p r3)'
      Return
    ${ElseIf} $4 = 32 ; a sharing violation, a locked part, a file mapped by another
    ${OrIf} $4 = 33
    ${OrIf} $4 = 1224
      StrCpy $0 1
      Return
    ${ElseIf} $2 == 0x80000000
      Return
    ${EndIf}
    StrCpy $2 0x80000000 ; GENERIC_READ
  ${Loop}
FunctionEnd

; $0: 1 when the launcher or the game is open in the folder, and has been for two seconds. Otherwise it is taken.
Function ${un}Ocupada
  ${For} $5 1 20
    Call ${un}Tomar
    ${For} $6 1 3
      ${If} $0 = 0
        ${If} $6 = 1
          StrCpy $0 "ZuLauncher.exe"
        ${ElseIf} $6 = 2
          StrCpy $0 "UpdaterHelper.exe"
        ${Else}
          StrCpy $0 "Zu.exe"
        ${EndIf}
        Call ${un}EmUso
      ${EndIf}
    ${Next}
    ${If} $0 = 0
      Return
    ${EndIf}
    Sleep 100
  ${Next}
FunctionEnd

; $2, $3: an entry of the folder, by its name and by its path from $Real. $R0: 1 when Percorrer passes it over.
Function ${un}Fica
  StrCpy $R0 1
  ${If} $2 == "."
  ${OrIf} $2 == ".."
    Return
  ${ElseIf} $Apagar = 0
    ${If} $3 == "${MARCA}.${METADE}" ; of a run that got no further
      Return
    ${EndIf}
  ${ElseIf} $3 == "${MARCA}" ; these two are the last to go
  ${OrIf} $3 == "${DESINSTALADOR}"
    Return
  ${EndIf}
  ${If} $Guardar = 1
    ${If} $3 == "Config\Zu.ini"
    ${OrIf} $3 == "Data\Macro.txt"
    ${OrIf} $3 == "Screenshots"
      Return
    ${EndIf}
  ${EndIf}
  StrCpy $R0 0
FunctionEnd

; Push a folder by its path from $Real, "" or with a backslash at its end. Goes through what is in it. A link stays where
; it is, and what it leads to is neither entered nor touched; so does another installation.
Function ${un}Percorrer
  Exch $0
  Push $1
  Push $2
  Push $3
  Push $4
  FindFirst $1 $2 "$Real\$0*"
  System::Call 'kernel32::GetFileAttributesW(w "$Real\$0") i .r4'
  ${If} $2 == ""
  ${AndIf} $4 != -1 ; it is there and may not be read
    IntOp $Achados $Achados + 1
  ${EndIf}
  ${DoUntil} $2 == ""
    StrCpy $3 "$0$2"
    Call ${un}Fica
    ${If} $R0 = 0
      System::Call 'kernel32::GetFileAttributesW(w "$Real\$3") i .r4'
      IntOp $4 $4 & 0x410 ; FILE_ATTRIBUTE_DIRECTORY, FILE_ATTRIBUTE_REPARSE_POINT
      ${If} $Apagar = 0
        StrCpy $R0 "$4 $3"
        ${If} $R0 == "16 Config"
        ${OrIf} $R0 == "16 Data"
          Push "$3\"
          Call ${un}Percorrer
        ${Else}
          IntOp $Achados $Achados + 1
        ${EndIf}
      ${ElseIf} $4 = 0x10
        ${IfNot} ${FileExists} "$Real\$3\${MARCA}"
          Push "$3\"
          Call ${un}Percorrer
          RMDir "$Real\$3"
        ${EndIf}
      ${ElseIf} $4 = 0
        SetFileAttributes "$Real\$3" NORMAL
        ClearErrors
        Delete "$Real\$3"
        ${If} ${Errors}
          IntOp $Achados $Achados + 1
        ${EndIf}
      ${EndIf}
    ${EndIf}
    FindNext $1 $2
  ${Loop}
  FindClose $1
  Pop $4
  Pop $3
  Pop $2
  Pop $1
  Pop $0
FunctionEnd
!macroend
