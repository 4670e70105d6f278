// A workshop of the server team, for the tests of its tool.
#pragma once

#include <gmock/gmock.h>

#include <algorithm>
#include <functional>
#include <string>
#include <vector>

#include "tests/suporte/pasta.h"
#include "tools/forjal/forjal.h"
#include "update/lista.h"

namespace zu::launcher::forjal {

class SaidaDeTeste final : public Saida {
 public:
    void Linha(std::string_view texto) override { linhas += std::string(texto) + "\n"; }
    void Erro(std::string_view texto) override { erros += std::string(texto) + "\n"; }
    void Progresso(unsigned quanto, std::string_view) override {
        EXPECT_LE(quanto, 100U);
        porCento = quanto;
        if (aoProgredir) aoProgredir();
    }

    [[nodiscard]] bool Tem(std::string_view parte) const { return (linhas + erros).find(parte) != std::string::npos; }

    std::string linhas;
    std::string erros;
    unsigned porCento = 0;
    std::function<void()> aoProgredir;
};

// So that a failed expectation shows what the tool said.
inline std::ostream& operator<<(std::ostream& fluxo, const SaidaDeTeste& saida) {
    return fluxo << '\n' << saida.linhas << saida.erros;
}

// A workshop: "chaves" with a key pair, "cliente" and "saida" to publish from and to.
class Forjal : public testing::Test {
 protected:
    // The build's own keys, which take long to make: copies, for a test may spoil them.
    Forjal() { std::filesystem::copy(ZU_PASTA_CHAVES, chaves_.Caminho()); }

    // "@" in an argument stands for the test's folder and "#" for the folder with the keys.
    int Rodar(const std::vector<std::string>& argumentos) {
        saida_.linhas.clear();
        saida_.erros.clear();
        std::vector<std::wstring> trocados;
        for (const std::string& argumento : argumentos) {
            std::wstring& trocado = trocados.emplace_back(DeUtf8(argumento));
            for (const auto& [letra, pasta] : {std::pair(L'@', &pasta_), std::pair(L'#', &chaves_)}) {
                const std::size_t onde = trocado.find(letra);
                if (onde != std::wstring::npos) trocado.replace(onde, 1, pasta->Caminho().native());
            }
        }
        return RodarForjal(trocados, saida_);
    }
    // What a command has come to, and words that it must have said.
    void Diz(int codigo, int esperado, const std::string& parte) {
        EXPECT_EQ(codigo, esperado) << saida_;
        EXPECT_TRUE(saida_.Tem(parte)) << parte << saida_;
    }
    // Refused in these words, with nothing changed on the disk.
    void Recusa(const std::vector<std::string>& argumentos, const std::string& parte, int codigo = kRecusado) {
        const auto antes = pasta_.Tudo();
        EXPECT_EQ(Rodar(argumentos), codigo) << testing::PrintToString(argumentos) << saida_;
        EXPECT_THAT(saida_.erros, testing::HasSubstr(parte));
        EXPECT_EQ(saida_.Tem("Veja: Forjal"), codigo == kUsoErrado && !argumentos.empty());
        EXPECT_EQ(pasta_.Tudo(), antes) << testing::PrintToString(argumentos);
    }

    // The usual arguments of a publication, those apart that `mais` gives.
    static std::vector<std::string> ParaPublicar(int seq, std::vector<std::string> mais) {
        for (const std::string usual :
             {"--cliente=@\\cliente", "--saida=@\\saida", "--chave=#\\lista.chave", "--seq="}) {
            const std::string opcao = usual.substr(0, usual.find('=') + 1);
            const auto dada = [&](const std::string& um) { return um.starts_with(opcao); };
            if (std::ranges::none_of(mais, dada)) mais.push_back(opcao == usual ? usual + std::to_string(seq) : usual);
        }
        mais.insert(mais.begin(), "publicar");
        return mais;
    }
    int Publicar(int seq, const std::vector<std::string>& mais = {}) { return Rodar(ParaPublicar(seq, mais)); }
    int Conferir() { return Rodar({"conferir", "--publicado=@\\saida", "--pub=#\\lista.pub"}); }

    // From now on the client consists of these, each written NAME=CONTENT.
    void Cliente(const std::vector<std::string>& arquivos) {
        Apagar("cliente");
        for (const std::string& um : arquivos)
            pasta_.Escrever("cliente/" + um.substr(0, um.find('=')), um.substr(um.find('=') + 1));
    }
    // All that stands below "saida", but for the lock, which goes with its process; folders too, with "/" at their end.
    std::map<std::string, std::string> Publicado() {
        std::map<std::string, std::string> tudo;
        for (const auto& entrada : std::filesystem::recursive_directory_iterator(pasta_ / "saida")) {
            std::string nome = ParaUtf8(entrada.path().lexically_relative(pasta_ / "saida").generic_wstring());
            if (entrada.is_directory()) nome += "/";
            if (nome != "Forjal.trava") tudo[nome] = pasta_.Ler("saida/" + nome);
        }
        return tudo;
    }
    update::UpdateList Lista() {
        update::UpdateList lista;
        std::string erro;
        EXPECT_TRUE(update::LerLista(pasta_.Ler("saida/UpdateList.txt"), lista, erro)) << erro;
        return lista;
    }
    auto Hora(const std::string& relativo) { return std::filesystem::last_write_time(pasta_ / relativo); }
    void Apagar(const std::string& relativo) { std::filesystem::remove_all(pasta_ / relativo); }

    teste::PastaTemporaria chaves_{L"chaves"};
    teste::PastaTemporaria pasta_{L"oficina ç"};
    SaidaDeTeste saida_;
};

}  // namespace zu::launcher::forjal
