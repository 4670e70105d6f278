// What Windows sees of the shipped programs' files. They may be started in a folder that anybody can write to, so what
// is loaded for them before their first line runs must come from Windows' own list of known DLLs, which no folder can
// replace.
#include <gtest/gtest.h>

#include <windows.h>

#include <set>
#include <vector>

#include "core/texto.h"
#include "core/utf16.h"
#include "tests/suporte/processo.h"

namespace zu::launcher {
namespace {

// The DLLs of the import table; delayed ones stand in another table.
std::set<std::string> Importadas(const BYTE* imagem, const IMAGE_NT_HEADERS64& cabeca) {
    const DWORD tabela = cabeca.OptionalHeader.DataDirectory[IMAGE_DIRECTORY_ENTRY_IMPORT].VirtualAddress;
    std::set<std::string> nomes;
    for (const auto* dll = reinterpret_cast<const IMAGE_IMPORT_DESCRIPTOR*>(imagem + tabela); dll->Name != 0; ++dll)
        nomes.insert(MinusculasAscii(reinterpret_cast<const char*>(imagem + dll->Name)));
    return nomes;
}

// As the properties of the file show it.
std::string Versao(const std::filesystem::path& caminho) {
    std::vector<char> dados(GetFileVersionInfoSizeW(caminho.c_str(), nullptr));
    wchar_t* texto = nullptr;
    UINT tamanho = 0;
    GetFileVersionInfoW(caminho.c_str(), 0, static_cast<DWORD>(dados.size()), dados.data());
    const wchar_t* const lugar = L"\\StringFileInfo\\041604B0\\FileVersion";
    return VerQueryValueW(dados.data(), lugar, reinterpret_cast<void**>(&texto), &tamanho) ? ParaUtf8(texto) : "";
}

TEST(Importacoes, SoDllsQueOSistemaGuardaEVersaoIconeEManifesto) {
    // From "KnownDLLs" of the session manager's registry key.
    const std::set<std::string> conhecidas{"advapi32.dll", "gdi32.dll",   "kernel32.dll", "msvcrt.dll",
                                           "ole32.dll",    "shell32.dll", "user32.dll"};
    const std::pair<const wchar_t*, WORD> programas[] = {{L"ZuLauncher.exe", IMAGE_SUBSYSTEM_WINDOWS_GUI},
                                                         {L"UpdaterHelper.exe", IMAGE_SUBSYSTEM_WINDOWS_GUI},
                                                         {L"Forjal.exe", IMAGE_SUBSYSTEM_WINDOWS_CUI}};
    for (const auto& [nome, subsistema] : programas) {
        const std::filesystem::path programa = teste::kPastaBin / nome;
        SCOPED_TRACE(programa.string());
        HMODULE const modulo = LoadLibraryExW(programa.c_str(), nullptr, LOAD_LIBRARY_AS_IMAGE_RESOURCE);
        ASSERT_NE(modulo, nullptr);
        const BYTE* const imagem = reinterpret_cast<const BYTE*>(reinterpret_cast<ULONG_PTR>(modulo) & ~ULONG_PTR{3});
        const auto& cabeca = *reinterpret_cast<const IMAGE_NT_HEADERS64*>(
            imagem + reinterpret_cast<const IMAGE_DOS_HEADER*>(imagem)->e_lfanew);
        EXPECT_EQ(cabeca.OptionalHeader.Subsystem, subsistema);
        EXPECT_TRUE(Importadas(imagem, cabeca).contains("kernel32.dll"));
        for (const std::string& dll : Importadas(imagem, cabeca))
            EXPECT_TRUE(conhecidas.contains(dll)) << dll;
        EXPECT_EQ(Versao(programa), ZU_VERSAO);
        EXPECT_NE(FindResourceW(modulo, MAKEINTRESOURCEW(1), RT_GROUP_ICON), nullptr);
        EXPECT_NE(FindResourceW(modulo, MAKEINTRESOURCEW(1), RT_MANIFEST), nullptr);
        FreeLibrary(modulo);
    }
}

}  // namespace
}  // namespace zu::launcher
