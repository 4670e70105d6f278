// A workshop of the server team, for the tests of its tool.
#pragma once

#include <gtest/gtest.h>

#include <functional>
#include <optional>
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
    void Progresso(unsigned porCento, std::string_view) override {
        EXPECT_LE(porCento, 100U);
        if (aoProgredir) aoProgredir();
    }

    [[nodiscard]] std::string Tudo() const { return linhas + erros; }

    std::string linhas;
    std::string erros;
    std::function<void()> aoProgredir;
};

// A workshop: "chaves" with a key pair, "cliente" and "saida" to publish from and to.
class Forjal : public testing::Test {
 protected:
    // Making an RSA pair takes long: one serves all tests of a run.
    static void SetUpTestSuite() {
        chaves_.emplace(L"chaves");
        SaidaDeTeste saida;
        const std::vector<std::wstring> argumentos{L"chaves", L"--saida=" + chaves_->Caminho().native()};
        ASSERT_EQ(RodarForjal(argumentos, saida), kFeito) << saida.erros;
    }
    static void TearDownTestSuite() { chaves_.reset(); }

    // "@" in an argument stands for the test's folder and "#" for the folder with the keys.
    int Rodar(const std::vector<std::string>& argumentos) {
        saida_.linhas.clear();
        saida_.erros.clear();
        std::vector<std::wstring> trocados;
        for (const std::string& argumento : argumentos) {
            std::wstring& trocado = trocados.emplace_back();
            for (const wchar_t c : DeUtf8(argumento)) {
                if (c == L'@') {
                    trocado += pasta_.Caminho().native();
                } else if (c == L'#') {
                    trocado += chaves_->Caminho().native();
                } else {
                    trocado.push_back(c);
                }
            }
        }
        return RodarForjal(trocados, saida_);
    }
    int Publicar(int seq, const std::vector<std::string>& mais = {}) {
        std::vector<std::string> argumentos{"publicar", "--cliente=@\\cliente", "--saida=@\\saida",
                                            "--chave=#\\lista.chave", "--seq=" + std::to_string(seq)};
        argumentos.insert(argumentos.end(), mais.begin(), mais.end());
        return Rodar(argumentos);
    }
    int Conferir() { return Rodar({"conferir", "--publicado=@\\saida", "--pub=#\\lista.pub"}); }

    update::UpdateList Lista() {
        update::UpdateList lista;
        std::string erro;
        const std::string texto = pasta_.Ler("saida/UpdateList.txt");
        EXPECT_TRUE(update::LerLista(update::SepararAssinatura(texto).assinados, lista, erro)) << erro;
        return lista;
    }
    std::uint64_t Hora(const std::string& relativo) {
        InfoArquivo info;
        EXPECT_TRUE(LerInfoArquivo(pasta_ / relativo, info)) << relativo;
        return info.modificado;
    }
    void Apagar(const std::string& relativo) { std::filesystem::remove_all(pasta_ / relativo); }

    static inline std::optional<teste::PastaTemporaria> chaves_;
    teste::PastaTemporaria pasta_{L"oficina ç"};
    SaidaDeTeste saida_;
};

inline bool Contem(const std::string& texto, std::string_view parte) {
    return texto.find(parte) != std::string::npos;
}

}  // namespace zu::launcher::forjal
