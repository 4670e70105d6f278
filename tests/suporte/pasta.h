// A folder of a test's own, gone with the test.
#pragma once

#include <windows.h>

#include <filesystem>
#include <fstream>
#include <map>
#include <random>
#include <stdexcept>
#include <string>
#include <vector>

#include "core/arquivo.h"
#include "core/handle.h"
#include "core/utf16.h"

namespace zu::launcher::teste {

class PastaTemporaria {
 public:
    explicit PastaTemporaria(const std::wstring& nome = L"pasta com espaço") {
        // Process ids come again, and a test that was killed leaves its folder behind.
        raiz_ = std::filesystem::temp_directory_path() / (L"zu-teste-" + std::to_wstring(std::random_device()()));
        pasta_ = raiz_ / nome;
        std::filesystem::create_directories(pasta_);
        pasta_ = CaminhoCanonico(pasta_);
    }
    PastaTemporaria(const PastaTemporaria&) = delete;
    PastaTemporaria& operator=(const PastaTemporaria&) = delete;
    ~PastaTemporaria() {
        std::error_code erro;
        std::filesystem::remove_all(raiz_, erro);
    }

    [[nodiscard]] const std::filesystem::path& Caminho() const { return pasta_; }
    [[nodiscard]] std::filesystem::path operator/(const std::string& relativo) const {
        return (pasta_ / DeUtf8(relativo)).make_preferred();
    }

    void Escrever(const std::string& relativo, const std::string& conteudo) const {
        const std::filesystem::path caminho = *this / relativo;
        std::filesystem::create_directories(caminho.parent_path());
        if (!(std::ofstream(caminho, std::ios::binary) << conteudo << std::flush))
            throw std::runtime_error("escrever " + relativo);
    }
    // "(nada)" when there is no such file.
    [[nodiscard]] std::string Ler(const std::string& relativo) const {
        std::string conteudo;
        return LerArquivoInteiro(*this / relativo, conteudo) ? conteudo : "(nada)";
    }
    [[nodiscard]] bool Tem(const std::string& relativo) const { return std::filesystem::exists(*this / relativo); }

    // Changes a file without its size and time showing it.
    void Adulterar(const std::string& relativo, const std::string& conteudo) const {
        const HandleArquivo arquivo = Prender(relativo, 0, GENERIC_READ | GENERIC_WRITE);
        FILETIME hora{};
        DWORD escritos = 0;
        GetFileTime(arquivo.Valor(), nullptr, nullptr, &hora);
        WriteFile(arquivo.Valor(), conteudo.data(), static_cast<DWORD>(conteudo.size()), &escritos, nullptr);
        if (SetFileTime(arquivo.Valor(), nullptr, nullptr, &hora) == 0)
            throw std::runtime_error("adulterar " + relativo);
    }

    // Somebody else's hold on a file that is there, which leaves others `deixando`.
    [[nodiscard]] HandleArquivo Prender(const std::string& relativo, DWORD deixando = FILE_SHARE_READ,
                                        DWORD acesso = GENERIC_READ) const {
        return HandleArquivo(
            CreateFileW((*this / relativo).c_str(), acesso, deixando, nullptr, OPEN_EXISTING, 0, nullptr));
    }

    // Every file below, by its path with "/"; the logs apart, which every run writes.
    [[nodiscard]] std::vector<std::string> Nomes() const {
        std::vector<std::string> nomes;
        for (const auto& entrada : std::filesystem::recursive_directory_iterator(pasta_))
            if (entrada.is_regular_file() && entrada.path().extension() != L".log")
                nomes.push_back(ParaUtf8(entrada.path().lexically_relative(pasta_).generic_wstring()));
        return nomes;
    }
    // The same with what is in them.
    [[nodiscard]] std::map<std::string, std::string> Tudo() const {
        std::map<std::string, std::string> tudo;
        for (const std::string& nome : Nomes())
            tudo[nome] = Ler(nome);
        return tudo;
    }

 private:
    std::filesystem::path raiz_;
    std::filesystem::path pasta_;
};

}  // namespace zu::launcher::teste
