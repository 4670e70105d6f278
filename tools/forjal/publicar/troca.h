// The change of a published folder from one publication to the next, as its readers see it: the old one until the last
// moment, the new one from then on. Everything new is written and flushed below "Forjal.novos" in that folder; a
// journal, "Forjal.troca", then commits the change; renames carry it out, the record of what is published first and the
// list last. What is killed before the journal leaves the old publication, what is killed behind it is finished by
// `ContinuarTroca`.
#pragma once

#include <chrono>
#include <cstdint>
#include <filesystem>
#include <mutex>
#include <set>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "core/handle.h"

namespace zu::launcher::forjal {

constexpr std::wstring_view kNomeDoDiario = L"Forjal.troca";
constexpr std::wstring_view kPastaDosNovos = L"Forjal.novos";
constexpr std::string_view kTrocaInterrompida =
    "publicação interrompida no meio da troca: rode Forjal publicar --continuar";

// One rename, which can be repeated: what has been carried out is seen from the folder.
struct PassoDaTroca {
    std::string caminho;          // relative to the published folder
    std::uint64_t numero = 0;     // its name below "Forjal.novos"
    std::uint64_t tamanho = 0;    // bytes of the new file
    bool caixaDasLetras = false;  // nothing new: what stands there gets the letter case of `caminho`
};

// Whether a publication into this folder was interrupted in the midst of its renames.
bool TrocaInterrompida(const std::filesystem::path& saida);

// Finishes it. True too when there is nothing to finish; false with the reason in `erro`, and it may be tried again.
bool ContinuarTroca(const std::filesystem::path& saida, std::string& erro);

class Troca {
 public:
    explicit Troca(std::filesystem::path saida) : saida_(std::move(saida)) {}
    ~Troca();  // what has been prepared and not carried out goes, and leaves no trace
    Troca(const Troca&) = delete;
    Troca& operator=(const Troca&) = delete;

    // Sweeps what a killed publication has prepared. To be called first, with no interrupted change in the folder.
    bool Iniciar(std::string& erro);

    // A file on its way to `caminho`. Any thread may make one; `Concluir` adds it to the change.
    class Arquivo {
     public:
        Arquivo(Troca& troca, std::string caminho);
        explicit operator bool() const { return static_cast<bool>(arquivo_); }  // false: it could not be created
        bool Escrever(std::span<const std::uint8_t> bytes);
        bool Concluir();

     private:
        Troca& troca_;
        PassoDaTroca passo_;
        HandleArquivo arquivo_;
    };

    // What stands at `caminho` under another letter case is to have this one. Those of folders before those in them.
    void AcertarCaixa(const std::string& caminho);

    // Prepares record and list too (an empty text: it stays as it is), makes the folders, and proves that every target
    // can be replaced: a busy one is waited for some seconds. Nothing that readers see has changed yet.
    bool Preparar(std::string_view registro, std::string_view lista, std::string& erro);

    // Carries it out. After a failure the old publication stands, or the change is interrupted and can be continued;
    // `erro` tells.
    bool Efetivar(std::string& erro);

 private:
    friend class Arquivo;
    std::uint64_t NovoNumero();
    bool GravarTexto(std::wstring_view nome, std::string_view texto, std::string& erro);
    bool CriarPastasDosDestinos(std::string& erro);
    bool EsperarDestinos(std::string& erro) const;

    const std::filesystem::path saida_;
    std::mutex mutex_;  // of the two below
    std::uint64_t proximo_ = 0;
    std::vector<PassoDaTroca> passos_;
    std::vector<PassoDaTroca> caixas_;
    std::vector<std::filesystem::path> pastasCriadas_;
    bool iniciada_ = false;
    bool efetivando_ = false;
};

}  // namespace zu::launcher::forjal
