// The version resource that every program carries. ZU_NOME and ZU_DESCRICAO are set before this is included; the
// version comes from the build.
#pragma code_page(65001)
#include <winver.h>

VS_VERSION_INFO VERSIONINFO
FILEVERSION ZU_VERSAO_NUMERICA
PRODUCTVERSION ZU_VERSAO_NUMERICA
FILEFLAGSMASK VS_FFI_FILEFLAGSMASK
FILEOS VOS_NT_WINDOWS32
FILETYPE VFT_APP
BEGIN
    BLOCK "StringFileInfo"
    BEGIN
        BLOCK "041604B0"
        BEGIN
            VALUE "FileDescription", ZU_DESCRICAO
            VALUE "FileVersion", ZU_VERSAO_TEXTO
            VALUE "InternalName", ZU_NOME
            VALUE "OriginalFilename", ZU_NOME ".exe"
            VALUE "ProductName", "Zu Launcher"
            VALUE "ProductVersion", ZU_VERSAO_TEXTO
        END
    END
    BLOCK "VarFileInfo"
    BEGIN
        VALUE "Translation", 0x0416, 1200
    END
END
