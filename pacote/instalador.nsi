; The players' installer: the launcher's three files, into a folder of the player's own. The launcher fetches the game.
; ./empacotar runs this in a folder with the client's files and definicoes.nsh, which says what is one package's own.
Unicode true
Target amd64-unicode
!include LogicLib.nsh
!include MUI2.nsh
!include nsDialogs.nsh
!include definicoes.nsh
!include "${__FILEDIR__}/pasta.nsh"

; Exit codes. NSIS's own are 1, cancelled by the player, and 2, a file that could not be written.
!define CODIGO_ABERTO 3
!define CODIGO_LUGAR 4
!define CODIGO_ALHEIA 5

!define CHAVE "Software\Microsoft\Windows\CurrentVersion\Uninstall\ZuLauncher-${NOME}"

Name "${NOME}" "${NOME_NO_TEXTO}"
OutFile "${ARQUIVO}"
; Not %LOCALAPPDATA% itself, where another program's data may have the name.
InstallDir "$LOCALAPPDATA\Programs\${NOME}"
InstallDirRegKey HKCU "${CHAVE}" "InstallLocation"
; A drive as a whole is refused aloud, below.
AllowRootDirInstall true
RequestExecutionLevel user
ManifestSupportedOS all
ManifestDPIAware true
SetCompressor /SOLID lzma
BrandingText "${NOME_NO_TEXTO} ${VERSAO}"

VIProductVersion "${VERSAO}.0"
VIFileVersion "${VERSAO}.0"
!define LINGUA 1046
VIAddVersionKey /LANG=${LINGUA} "ProductName" "${NOME}"
VIAddVersionKey /LANG=${LINGUA} "FileDescription" "Instalador do ${NOME}"
VIAddVersionKey /LANG=${LINGUA} "FileVersion" "${VERSAO}"
VIAddVersionKey /LANG=${LINGUA} "ProductVersion" "${VERSAO}"
VIAddVersionKey /LANG=${LINGUA} "LegalCopyright" ""

!define MUI_ICON "${__FILEDIR__}/../ui/recursos/icone.ico"
!define MUI_UNICON "${__FILEDIR__}/../ui/recursos/icone.ico"
!define MUI_WELCOMEFINISHPAGE_BITMAP "${__FILEDIR__}/lateral.bmp"
!define MUI_ABORTWARNING
!define MUI_DIRECTORYPAGE_TEXT_TOP "O launcher do ${NOME_NO_TEXTO} será instalado na pasta abaixo, que tem de ser nova ou estar vazia, e \
    depois baixa o jogo para ela: escolha um disco com espaço para o jogo. Não é preciso ser administrador."
!define MUI_PAGE_CUSTOMFUNCTION_LEAVE AoEscolherPasta
!insertmacro MUI_PAGE_DIRECTORY
!insertmacro MUI_PAGE_INSTFILES
!define MUI_FINISHPAGE_TEXT "Ao ser aberto, o launcher baixa o jogo e o mantém em dia."
!define MUI_FINISHPAGE_RUN "$INSTDIR\ZuLauncher.exe"
!define MUI_FINISHPAGE_RUN_TEXT "Abrir o ${NOME_NO_TEXTO}"
!insertmacro MUI_PAGE_FINISH
UninstPage custom un.Perguntar un.AoResponder
!insertmacro MUI_UNPAGE_INSTFILES
!insertmacro MUI_LANGUAGE "PortugueseBR"

!insertmacro FuncoesDaPasta ""
!insertmacro FuncoesDaPasta "un."

Var Motivo ; why the folder cannot be had
Var Codigo

; Ends the run with $Codigo and the text in $Motivo.
!macro Desistir
  ${IfNot} ${Silent}
    MessageBox MB_OK|MB_ICONSTOP "$Motivo"
  ${EndIf}
  SetErrorLevel $Codigo
  Abort "$Motivo"
!macroend

; Goes on once nobody is using the folder; the player may say that nobody ever will.
!macro EsperarLivre un
  ${Do}
    Call ${un}Ocupada
    ${If} $0 = 0
      ${ExitDo}
    ${EndIf}
    StrCpy $Motivo "O ${NOME} está aberto. Feche o launcher e o jogo e tente de novo."
    StrCpy $Codigo ${CODIGO_ABERTO}
    ${If} ${Silent}
    ${OrIf} ${Cmd} 'MessageBox MB_RETRYCANCEL|MB_ICONEXCLAMATION "$Motivo" IDCANCEL'
      SetErrorLevel $Codigo
      Abort "$Motivo"
    ${EndIf}
  ${Loop}
!macroend

; $R9: 1 when the path A is B or lies below it.
!macro DentroDe a b
  StrLen $R8 "${b}"
  StrCpy $R9 "${a}\" $R8
  StrCpy $R8 "${a}\" 1 $R8
  ${If} $R9 == "${b}"
  ${AndIf} $R8 == "\"
    StrCpy $R9 1
  ${Else}
    StrCpy $R9 0
  ${EndIf}
!macroend

!macro NadaAbaixoDe pasta
  StrCpy $0 "${pasta}"
  Call NadaAbaixoDe
!macroend

Function NadaAbaixoDe
  ${If} $0 != ""
    Call CaminhoReal
    !insertmacro DentroDe $Real $0
    ${If} $0 != ""
    ${AndIf} $R9 = 1
      StrCpy $Motivo "Esta pasta é do Windows ou dos programas de todos os usuários. Escolha uma pasta sua."
    ${EndIf}
  ${EndIf}
FunctionEnd

!macro NadaEmVoltaDe pasta
  StrCpy $0 "${pasta}"
  Call NadaEmVoltaDe
!macroend

Function NadaEmVoltaDe
  ${If} $0 != ""
    Call CaminhoReal
    !insertmacro DentroDe $0 $Real
    ${If} $R9 = 1
      StrCpy $Motivo "O jogo precisa de uma pasta só dele. Escolha uma pasta nova."
    ${EndIf}
  ${EndIf}
FunctionEnd

; Whether the game may live in $INSTDIR: $Motivo is empty, and $Real is where that is, or says why not.
Function Examinar
  StrCpy $Motivo ""
  StrCpy $Codigo ${CODIGO_LUGAR}
  StrCpy $0 $INSTDIR
  Call CaminhoReal
  StrCpy $Real $0
  ${If} $Real == ""
    StrCpy $Motivo "Esta pasta não fica num disco deste computador. Escolha outra."
    Return
  ${EndIf}
  !insertmacro NadaAbaixoDe $PROGRAMFILES64
  !insertmacro NadaAbaixoDe $PROGRAMFILES32
  !insertmacro NadaAbaixoDe $WINDIR
  ; The uninstaller would take with it what others put there later. A drive as a whole, too.
  !insertmacro NadaEmVoltaDe $EXEDIR
  !insertmacro NadaEmVoltaDe $PROFILE
  !insertmacro NadaEmVoltaDe $PROFILE\Downloads
  !insertmacro NadaEmVoltaDe $DESKTOP
  !insertmacro NadaEmVoltaDe $DOCUMENTS
  !insertmacro NadaEmVoltaDe $PICTURES
  !insertmacro NadaEmVoltaDe $MUSIC
  !insertmacro NadaEmVoltaDe $VIDEOS
  !insertmacro NadaEmVoltaDe $FAVORITES
  !insertmacro NadaEmVoltaDe $APPDATA
  !insertmacro NadaEmVoltaDe $LOCALAPPDATA\Programs
  !insertmacro NadaEmVoltaDe $TEMP
  !insertmacro NadaEmVoltaDe $SMSTARTUP
  StrLen $0 $Real
  ${If} $0 = 2
    StrCpy $Motivo "O jogo precisa de uma pasta só dele. Escolha uma pasta nova."
  ${EndIf}
  ${If} $Motivo != ""
    Return
  ${EndIf}
  Call Nossa
  ${If} $0 = 1
    Return
  ${EndIf}
  ; Below another installation it would go together with that one.
  StrCpy $0 $Real
  ${Do}
    StrCpy $1 $0 1 -1
    StrCpy $0 $0 -1
    ${If} $1 == "\"
    ${AndIf} ${FileExists} "$0\${MARCA}"
      StrCpy $Motivo "Esta pasta fica dentro da pasta de outro jogo. Escolha uma pasta nova."
      Return
    ${EndIf}
  ${LoopUntil} $0 == ""
  ; What an uninstallation has left for the player counts as nothing.
  StrCpy $Apagar 0
  StrCpy $Guardar 1
  StrCpy $Achados 0
  Push ""
  Call Percorrer
  ${If} $Achados > 0
    StrCpy $Codigo ${CODIGO_ALHEIA}
    StrCpy $Motivo "Esta pasta já tem outras coisas. Escolha uma pasta nova ou vazia."
  ${EndIf}
FunctionEnd

Function AoEscolherPasta
  Call Examinar
  ${If} $Motivo != ""
    MessageBox MB_OK|MB_ICONEXCLAMATION "$Motivo$\r$\n$\r$\n$INSTDIR"
    Abort
  ${EndIf}
FunctionEnd

; The file $R0 takes its name. A scanner may be looking at it, the player may just be opening it.
Function Pousar
  ${Do}
    ${For} $1 1 50
      SetFileAttributes "$INSTDIR\$R0" NORMAL
      ; MOVEFILE_REPLACE_EXISTING, MOVEFILE_WRITE_THROUGH
      System::Call 'kernel32::MoveFileExW(w "$INSTDIR\$R0.${METADE}", w "$INSTDIR\$R0", i 9) i .r2'
      ${If} $2 <> 0
        Return
      ${EndIf}
      Sleep 100
    ${Next}
    ${If} ${Silent}
    ${OrIf} ${Cmd} 'MessageBox MB_RETRYCANCEL|MB_ICONEXCLAMATION "Não foi possível gravar $R0. Feche o launcher e o jogo e tente de novo." IDCANCEL'
      SetErrorLevel 2
      Abort "Não foi possível gravar $R0."
    ${EndIf}
  ${Loop}
FunctionEnd
!macro Pousar nome
  StrCpy $R0 "${nome}"
  Call Pousar
!macroend

Function Marcar
  FileOpen $1 "$INSTDIR\${MARCA}.${METADE}" w
  FileWriteUTF16LE /BOM $1 "${FRASE}$\r$\n${NOME}$\r$\n$Real$\r$\n"
  FileClose $1
  !insertmacro Pousar "${MARCA}"
FunctionEnd

Section
  Call Examinar
  ${If} $Motivo != ""
    !insertmacro Desistir
  ${EndIf}
  StrCpy $INSTDIR $Real
  !insertmacro EsperarLivre ""
  SetOutPath "$INSTDIR"
  ; First of all: with this record the next run may go on with what this one has begun.
  Call Marcar
  File "/oname=ZuLauncher.exe.${METADE}" "cliente/ZuLauncher.exe"
  File "/oname=UpdaterHelper.exe.${METADE}" "cliente/UpdaterHelper.exe"
  File "/oname=Launcher.emu.${METADE}" "cliente/Launcher.emu"
  WriteUninstaller "$INSTDIR\${DESINSTALADOR}.${METADE}"
  ; What may still be in use comes first: then nothing has changed yet.
  !insertmacro Pousar ZuLauncher.exe
  !insertmacro Pousar UpdaterHelper.exe
  !insertmacro Pousar Launcher.emu
  !insertmacro Pousar ${DESINSTALADOR}

  CreateShortcut "$SMPROGRAMS\${NOME}.lnk" "$INSTDIR\ZuLauncher.exe"
  CreateShortcut "$DESKTOP\${NOME}.lnk" "$INSTDIR\ZuLauncher.exe"
  WriteRegStr HKCU "${CHAVE}" "DisplayName" "${NOME}"
  WriteRegStr HKCU "${CHAVE}" "DisplayVersion" "${VERSAO}"
  WriteRegStr HKCU "${CHAVE}" "Publisher" "${NOME}"
  WriteRegStr HKCU "${CHAVE}" "DisplayIcon" "$INSTDIR\ZuLauncher.exe"
  WriteRegStr HKCU "${CHAVE}" "InstallLocation" "$INSTDIR"
  WriteRegStr HKCU "${CHAVE}" "URLInfoAbout" "${PAGINA}"
  WriteRegStr HKCU "${CHAVE}" "UninstallString" '"$INSTDIR\${DESINSTALADOR}"'
  WriteRegStr HKCU "${CHAVE}" "QuietUninstallString" '"$INSTDIR\${DESINSTALADOR}" /S'
  WriteRegDWORD HKCU "${CHAVE}" "EstimatedSize" ${KIB}
  WriteRegDWORD HKCU "${CHAVE}" "NoModify" 1
  WriteRegDWORD HKCU "${CHAVE}" "NoRepair" 1
SectionEnd

Function .onInstFailed
  Delete "$INSTDIR\*.${METADE}"
FunctionEnd

Var Caixa

Function un.onInit
  StrCpy $Guardar 1
FunctionEnd

Function un.Perguntar
  !insertmacro MUI_HEADER_TEXT "Desinstalar o ${NOME_NO_TEXTO}" "O launcher, o jogo e os atalhos serão removidos."
  nsDialogs::Create 1018
  Pop $0
  ${NSD_CreateLabel} 0 0 100% 12u "Tudo o que há nesta pasta será apagado:"
  Pop $0
  ${NSD_CreateText} 0 14u 100% 13u "$INSTDIR"
  Pop $0
  SendMessage $0 ${EM_SETREADONLY} 1 0
  ${NSD_CreateLabel} 0 36u 100% 20u "As suas capturas de tela, configurações e macros ficam, para quando você voltar."
  Pop $0
  ${NSD_CreateCheckbox} 0 64u 100% 12u "Apagar também as minhas capturas de tela, configurações e macros"
  Pop $Caixa
  nsDialogs::Show
FunctionEnd

Function un.AoResponder
  ${NSD_GetState} $Caixa $0
  ${If} $0 = ${BST_CHECKED}
    StrCpy $Guardar 0
  ${EndIf}
FunctionEnd

Section Uninstall
  StrCpy $0 $INSTDIR
  Call un.CaminhoReal
  StrCpy $Real $0
  Call un.Nossa
  ${If} $0 = 0
    StrCpy $Codigo ${CODIGO_ALHEIA}
    StrCpy $Motivo "Esta pasta não é a que o instalador fez: foi movida ou copiada. Nada foi apagado; apague-a você mesmo.$\r$\n$\r$\n$INSTDIR"
    !insertmacro Desistir
  ${EndIf}
  !insertmacro EsperarLivre "un."
  ; A folder that is somebody's current one cannot go.
  SetOutPath "$TEMP"
  StrCpy $Apagar 1
  StrCpy $Achados 0
  Push ""
  Call un.Percorrer
  ${If} $Achados > 0
    StrCpy $Codigo 2
    StrCpy $Motivo "$Achados arquivo(s) em uso não puderam ser apagados. Feche os programas que os usam e desinstale de novo.$\r$\n$\r$\n$INSTDIR"
    !insertmacro Desistir
  ${EndIf}

  ; Another folder may have been installed with the same name since.
  ReadRegStr $0 HKCU "${CHAVE}" "InstallLocation"
  Call un.CaminhoReal
  ${If} $0 == $Real
    Delete "$SMPROGRAMS\${NOME}.lnk"
    Delete "$DESKTOP\${NOME}.lnk"
    DeleteRegKey HKCU "${CHAVE}"
  ${EndIf}
  ; The record stays for as long as the program does that wants it.
  ClearErrors
  Delete "$Real\${DESINSTALADOR}"
  ${IfNot} ${Errors}
    Delete "$Real\${MARCA}"
  ${EndIf}
  RMDir "$Real"
SectionEnd

!ifdef ASSINADO
  !uninstfinalize '"${__FILEDIR__}/assinar.sh" "%1"' = 0
!endif
