# Delay-loaded import libraries. Windows resolves a program's ordinary imports before its first line runs, and looks for
# those DLLs that are not on its list of known ones in the program's own folder first. Delayed, they are loaded on first
# use, after the program has limited the search to System32.

function(zu_atrasar nome dll)
    set(def ${CMAKE_BINARY_DIR}/atraso/${nome}.def)
    set(biblioteca ${CMAKE_BINARY_DIR}/atraso/lib${nome}.a)
    list(JOIN ARGN "\n" funcoes)
    file(CONFIGURE OUTPUT ${def} CONTENT "LIBRARY ${dll}\nEXPORTS\n${funcoes}\n")
    add_custom_command(
        OUTPUT ${biblioteca}
        COMMAND ${CMAKE_DLLTOOL} -m i386:x86-64 -d ${def} -D ${dll} -y ${biblioteca}
        DEPENDS ${def}
        VERBATIM)
    add_custom_target(${nome}_atraso DEPENDS ${biblioteca})
    add_library(${nome} INTERFACE)
    target_link_libraries(${nome} INTERFACE ${biblioteca})
    add_dependencies(${nome} ${nome}_atraso)
endfunction()

if(NOT CMAKE_DLLTOOL)
    find_program(CMAKE_DLLTOOL dlltool REQUIRED)
endif()

zu_atrasar(zu_bcrypt bcrypt.dll
    BCryptCloseAlgorithmProvider BCryptCreateHash BCryptDestroyHash BCryptDestroyKey BCryptExportKey
    BCryptFinalizeKeyPair BCryptFinishHash BCryptGenRandom BCryptGenerateKeyPair BCryptHashData BCryptImportKeyPair
    BCryptOpenAlgorithmProvider BCryptSignHash BCryptVerifySignature)

zu_atrasar(zu_winhttp winhttp.dll
    WinHttpCloseHandle WinHttpConnect WinHttpCrackUrl WinHttpOpen WinHttpOpenRequest WinHttpQueryDataAvailable
    WinHttpQueryHeaders
    WinHttpReadData WinHttpReceiveResponse WinHttpSendRequest WinHttpSetOption WinHttpSetTimeouts)

zu_atrasar(zu_dwmapi dwmapi.dll DwmFlush)

zu_atrasar(zu_oleacc oleacc.dll AccessibleObjectFromWindow LresultFromObject)

zu_atrasar(zu_oleaut32 oleaut32.dll SysAllocStringLen)

zu_atrasar(zu_gdiplus gdiplus.dll
    GdipAddPathArc GdipClosePathFigure GdipCreateFromHDC GdipCreateLineBrushFromRect GdipCreatePath GdipCreatePen1
    GdipCreateSolidFill GdipDeleteBrush GdipDeleteGraphics GdipDeletePath GdipDeletePen GdipDrawArc GdipDrawLine
    GdipDrawPath GdipFillEllipse GdipFillPath GdipFillPolygon GdipResetClip GdipSetClipPath
    GdipSetClipRect GdipSetLinePresetBlend GdipSetPenLineCap197819 GdipSetPixelOffsetMode GdipSetSmoothingMode
    GdiplusShutdown GdiplusStartup)
