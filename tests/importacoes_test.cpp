// The shipped programs may be started in a folder that anybody can write to, so what Windows loads for them before
// their first line runs must come from its own list of known DLLs, which no folder can replace.
#include <gtest/gtest.h>

#include <windows.h>

#include <cstring>
#include <set>
#include <vector>

#include "core/texto.h"
#include "tests/suporte/pasta.h"
#include "tests/suporte/processo.h"

namespace zu::launcher {
namespace {

class Imagem {
 public:
    explicit Imagem(const std::filesystem::path& caminho) {
        if (!LerArquivoInteiro(caminho, bytes_)) throw std::runtime_error("ler " + caminho.string());
        const auto dos = Ler<IMAGE_DOS_HEADER>(0);
        cabeca_ = Ler<IMAGE_NT_HEADERS64>(static_cast<std::size_t>(dos.e_lfanew));
        secoes_ = static_cast<std::size_t>(dos.e_lfanew) + offsetof(IMAGE_NT_HEADERS64, OptionalHeader) +
                  cabeca_.FileHeader.SizeOfOptionalHeader;
    }

    [[nodiscard]] WORD Subsistema() const { return cabeca_.OptionalHeader.Subsystem; }

    // The DLLs of the import table; delayed ones stand in another table.
    [[nodiscard]] std::set<std::string> Importadas() const {
        std::set<std::string> nomes;
        std::size_t posicao =
            NoArquivo(cabeca_.OptionalHeader.DataDirectory[IMAGE_DIRECTORY_ENTRY_IMPORT].VirtualAddress);
        for (;; posicao += sizeof(IMAGE_IMPORT_DESCRIPTOR)) {
            const auto entrada = Ler<IMAGE_IMPORT_DESCRIPTOR>(posicao);
            if (entrada.Name == 0) return nomes;
            nomes.insert(MinusculasAscii(bytes_.c_str() + NoArquivo(entrada.Name)));
        }
    }

 private:
    template <class T>
    [[nodiscard]] T Ler(std::size_t posicao) const {
        T valor{};
        std::memcpy(&valor, bytes_.substr(posicao, sizeof valor).data(), sizeof valor);
        return valor;
    }
    [[nodiscard]] std::size_t NoArquivo(DWORD endereco) const {
        for (WORD i = 0; i < cabeca_.FileHeader.NumberOfSections; ++i) {
            const auto secao = Ler<IMAGE_SECTION_HEADER>(secoes_ + i * sizeof(IMAGE_SECTION_HEADER));
            if (endereco >= secao.VirtualAddress && endereco < secao.VirtualAddress + secao.SizeOfRawData) {
                return endereco - secao.VirtualAddress + secao.PointerToRawData;
            }
        }
        throw std::runtime_error("endereço fora das seções");
    }

    std::string bytes_;
    IMAGE_NT_HEADERS64 cabeca_{};
    std::size_t secoes_ = 0;
};

TEST(Importacoes, SoDllsQueOSistemaGuarda) {
    // From "KnownDLLs" of the session manager's registry key.
    const std::set<std::string> conhecidas{"advapi32.dll", "gdi32.dll",   "kernel32.dll", "msvcrt.dll",
                                           "ole32.dll",    "shell32.dll", "user32.dll"};
    const std::pair<const wchar_t*, WORD> programas[] = {{L"ZuLauncher.exe", IMAGE_SUBSYSTEM_WINDOWS_GUI},
                                                         {L"UpdaterHelper.exe", IMAGE_SUBSYSTEM_WINDOWS_GUI},
                                                         {L"Forjal.exe", IMAGE_SUBSYSTEM_WINDOWS_CUI}};
    for (const auto& [programa, subsistema] : programas) {
        const Imagem imagem(teste::kPastaBin / programa);
        EXPECT_EQ(imagem.Subsistema(), subsistema) << ParaUtf8(programa);
        EXPECT_FALSE(imagem.Importadas().empty());
        for (const std::string& dll : imagem.Importadas()) {
            EXPECT_TRUE(conhecidas.contains(dll)) << ParaUtf8(programa) << " imports " << dll;
        }
    }
}

// What Windows shows as the properties of a program, and the icon of its file.
TEST(Importacoes, VersaoEIconeEmCadaPrograma) {
    for (const wchar_t* programa : {L"ZuLauncher.exe", L"UpdaterHelper.exe", L"Forjal.exe"}) {
        const std::filesystem::path caminho = teste::kPastaBin / programa;
        std::vector<char> dados(GetFileVersionInfoSizeW(caminho.c_str(), nullptr));
        ASSERT_TRUE(GetFileVersionInfoW(caminho.c_str(), 0, static_cast<DWORD>(dados.size()), dados.data()));
        VS_FIXEDFILEINFO* fixa = nullptr;
        wchar_t* texto = nullptr;
        UINT tamanho = 0;
        ASSERT_TRUE(VerQueryValueW(dados.data(), L"\\", reinterpret_cast<void**>(&fixa), &tamanho));
        EXPECT_EQ(fixa->dwFileVersionMS, MAKELONG(3, 1));
        EXPECT_EQ(fixa->dwFileVersionLS, MAKELONG(0, 1));
        ASSERT_TRUE(VerQueryValueW(dados.data(), L"\\StringFileInfo\\041604B0\\FileVersion",
                                   reinterpret_cast<void**>(&texto), &tamanho));
        EXPECT_STREQ(texto, L"1.3.1");
        HMODULE const modulo = LoadLibraryExW(caminho.c_str(), nullptr, LOAD_LIBRARY_AS_DATAFILE);
        EXPECT_NE(FindResourceW(modulo, MAKEINTRESOURCEW(1), RT_GROUP_ICON), nullptr) << ParaUtf8(programa);
        EXPECT_NE(FindResourceW(modulo, MAKEINTRESOURCEW(1), RT_MANIFEST), nullptr) << ParaUtf8(programa);
        FreeLibrary(modulo);
    }
}

}  // namespace
}  // namespace zu::launcher
